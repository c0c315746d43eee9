// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QDBusPendingReply>

//! Makes sure that screen readers find the program.
//!
//! Qt registers a program with the accessibility bus when the first window is shown. Qt 5.15 does so only if the
//! display names the bus in a property by then: where it has to request the address from the session bus, it registers
//! before the reply, over a connection that doesn't exist yet, and never tries again. The property is missing in a
//! Wayland session, and elsewhere until the first program requests the address.
//!
//! This requests the address and, if the property is still missing, sets it until Qt has read it. Without a running
//! accessibility service it does nothing: Qt waits for that service correctly.
//!
//! Main thread.
class AccessibilityBus
{
public:
    //! Requests the address. Needs an application object.
    AccessibilityBus();
    //! Removes the property that announce() set, because it would outlive the bus.
    ~AccessibilityBus();
    Q_DISABLE_COPY_MOVE(AccessibilityBus)

    //! Waits for the address, at most a second, and makes it known. Call before the first window is shown; Qt reads it
    //! when that happens.
    void announce();

private:
    QDBusPendingReply<QString> m_address;
    bool m_isAnnounced = false;
};
