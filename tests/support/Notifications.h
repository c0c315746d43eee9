// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonObject>
#include <QList>
#include <QProcess>

//! A desktop notification service of the test's own, on the bus that the test asks for with NEEDS bus. It is another
//! process, as calls within one process don't cross the bus.
class Notifications
{
public:
    //! Starts the service and waits until it can be called.
    Notifications();
    //! Ends it.
    ~Notifications();
    Q_DISABLE_COPY_MOVE(Notifications)

    bool isRunning() const { return m_isRunning; }

    //! Calls of the service so far, without those that were taken: "call" (Notify or CloseNotification), "number",
    //! and of a Notify "application", "icon", "title", "body", "actions" (key and label in turn), "event", "component".
    QList<QJsonObject> calls();
    //! Waits for the next call and takes it; empty when none comes. The caller has heard of its result then.
    QJsonObject take();
    //! The same for the next notification; what is closed before it is passed over.
    QJsonObject takeShown();

    //! The user picks an action: "default", or "1" for the first of the list.
    void invoke(const QJsonObject &notify, const QString &action);

private:
    QProcess m_process;
    QList<QJsonObject> m_calls;
    bool m_isRunning = false;
};
