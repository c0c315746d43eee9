// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Feeding.h"

#include "Require.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QString>

#include <chrono>

using namespace std::chrono_literals;

namespace
{

constexpr auto s_timeout = 20s;
constexpr auto s_pollInterval = 50ms;

} // namespace

QString Feeding::withId(QString frame, qint64 id)
{
    return frame.replace(QLatin1Char(IdPlaceholder), QString::number(id));
}

void Feeding::pumpUntil(const std::function<bool()> &condition)
{
    const QDeadlineTimer deadline(s_timeout);
    while (!condition()) {
        require(!deadline.hasExpired(), "the clients connect to the peer in this process in time");
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, s_pollInterval.count());
    }
}
