// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QObject>
#include <QStringList>

//! Hears every signal of one object and writes them down in one list, in the order in which they came.
class SignalLog : public QObject
{
public:
    explicit SignalLog(QObject *sender, QObject *parent = nullptr);

    //! As in code: `statusChanged("idle")`, `usageReported(5, 0)`. Texts aren't escaped,
    //! JSON is compact.
    QStringList entries() const { return m_entries; }
    //! The same, and forgets them.
    QStringList take();

    // Every signal of the sender has a slot number of its own here, which no moc knows of.
    int qt_metacall(QMetaObject::Call call, int slot, void **arguments) override;

private:
    QList<int> m_signals;
    const QMetaObject *const m_senderType;
    QStringList m_entries;
};
