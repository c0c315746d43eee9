// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "EventLoop.h"

#include <QCoreApplication>
#include <QTimer>

namespace EventLoop
{

bool until(const std::function<bool()> &condition, std::chrono::milliseconds timeout)
{
    bool isOver = false;
    QTimer limit;
    limit.setSingleShot(true);
    limit.setTimerType(Qt::PreciseTimer);
    QObject::connect(&limit, &QTimer::timeout, [&] { isOver = true; });
    limit.start(timeout);
    while (!condition()) {
        if (isOver) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

void run(std::chrono::milliseconds duration)
{
    until([] { return false; }, duration);
}

} // namespace EventLoop
