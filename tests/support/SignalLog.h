// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QObject>
#include <QStringList>

//! Records all signals of an object in the order of their emission.
class SignalLog : public QObject
{
public:
    explicit SignalLog(QObject *sender, QObject *parent = nullptr);

    //! As in code: `statusChanged("idle")`, `usageReported(5, 0)`. Texts aren't escaped, JSON is compact.
    QStringList entries() const { return m_entries; }
    //! The same, and removes them.
    QStringList take();

    // Each signal of the sender is connected to a slot index of its own, without moc.
    int qt_metacall(QMetaObject::Call call, int slot, void **arguments) override;

private:
    QList<int> m_signals;
    const QMetaObject *const m_senderType;
    QStringList m_entries;
};
