// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonObject>
#include <QList>
#include <QProcess>

//! A stand-in for the desktop notification service, on the session bus that the test gets with NEEDS bus. It is a
//! separate process, because calls within one process don't use the bus.
class Notifications
{
public:
    //! Starts the service and waits until it can be called.
    Notifications();
    //! Ends the service.
    ~Notifications();
    Q_DISABLE_COPY_MOVE(Notifications)

    bool isRunning() const { return m_isRunning; }

    //! The calls so far that were not taken: "call" (Notify or CloseNotification), "number", and for Notify
    //! "application", "icon", "title", "body", "actions" (alternating keys and labels), "hints" (their names),
    //! "timeout" (in ms, or -1 if the service chooses), "event", "component".
    QList<QJsonObject> calls();
    //! Waits for the next call and takes it; empty on timeout. The client has received the reply by then.
    QJsonObject take();
    //! The same for the next notification; calls that close one are skipped.
    QJsonObject takeShown();

    //! The user picks an action: "default", or "1" for the first of the list.
    void invoke(const QJsonObject &notify, const QString &action);

private:
    QProcess m_process;
    QList<QJsonObject> m_calls;
    bool m_isRunning = false;
};
