// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "Timeouts.h"

#include <QCoreApplication>
#include <QTimer>

//! Runs the event loop until a condition holds, which must depend on events of this process. QTest::qWaitFor() sleeps
//! 10 ms between two checks, which adds up if both ends of a connection are in the test.
//! @param timeout in ms
//! @return false on timeout
template<typename Condition>
bool waitUntil(Condition condition, int timeout = Timeouts::Default)
{
    QTimer deadline;
    deadline.setSingleShot(true);
    deadline.start(timeout);
    while (!condition()) {
        if (!deadline.isActive()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}
