// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QDBusVirtualObject>
#include <QStringList>

class QDBusMessage;

//! A stand-in for the accessibility bus and a screen reader on it. It uses the session bus and the display of the test:
//! programs that start while it lives turn their accessibility on. It records the notifications that become visible,
//! which a screen reader speaks, and reads the lists of the program that was started last.
//!
//! Programs call it while they start, so wait for them with the event loop running.
class ScreenReader : public QDBusVirtualObject
{
    Q_OBJECT

public:
    enum class Events
    {
        Notifications,
        //! It only reads. Needed to type: of a reader that wants events, the program asks permission for each key.
        None,
    };

    //! Errors fail the running test.
    explicit ScreenReader(Events events = Events::Notifications);
    //! Makes the display forget the accessibility bus.
    ~ScreenReader() override;
    Q_DISABLE_COPY_MOVE(ScreenReader)

    //! The names of the notifications so far.
    QStringList spoken() const { return m_spoken; }
    //! The names of all objects with this role that the program shows now, in their order: "push button", or "list item",
    //! which each message of a conversation is, named by its author and its text.
    QStringList shown(const QString &role) const;

    QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

private Q_SLOTS:
    void onStateChanged(const QDBusMessage &signal);

private:
    const Events m_events;
    QStringList m_spoken;
    //! The program that was started last, on the bus.
    QString m_program;
};
