// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "Timeouts.h"

#include <QCoreApplication>
#include <QTimer>

//! Runs the event loop until a condition holds that events of this process bring about. QTest::qWaitFor() sleeps
//! 10 ms between two looks, which adds up where both ends of a connection live in the test.
//! @param timeout in ms
//! @return false when the time ran out
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
