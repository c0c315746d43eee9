// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "EventLoop.h"

#include <QCoreApplication>
#include <QTimer>

namespace EventLoop
{

bool until(const std::function<bool()> &condition, int milliseconds)
{
    bool isOver = false;
    QTimer limit;
    limit.setSingleShot(true);
    limit.setTimerType(Qt::PreciseTimer);
    QObject::connect(&limit, &QTimer::timeout, [&] { isOver = true; });
    limit.start(milliseconds);
    while (!condition()) {
        if (isOver) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

void run(int milliseconds)
{
    until([] { return false; }, milliseconds);
}

} // namespace EventLoop
