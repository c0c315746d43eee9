// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Feeding.h"

#include "Require.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QString>

namespace
{

constexpr int s_patience = 20000; // ms
constexpr int s_turn = 50; // ms

} // namespace

QString Feeding::withId(QString frame, qint64 id)
{
    return frame.replace(QLatin1Char(IdPlaceholder), QString::number(id));
}

void Feeding::pumpUntil(const std::function<bool()> &condition)
{
    const QDeadlineTimer deadline(s_patience);
    while (!condition()) {
        require(!deadline.hasExpired(), "the clients find the peer in this process");
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, s_turn);
    }
}
