// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

//! The messages that a purge of the bridge's port logs.
namespace PurgeLog
{

constexpr int port = 8765;

const QString checking = QStringLiteral("Checking for stale processes on port 8765");
const QString noLsof = QStringLiteral("lsof command timed out or failed");
const QString nothing = QStringLiteral("No stale processes found on port");
const QString waiting = QStringLiteral("Waiting for port to be released...");

inline QString killing(qint64 pid)
{
    return QStringLiteral("Killing stale bridge process PID: %1").arg(pid);
}

inline QString killed(qint64 pid)
{
    return QStringLiteral("Successfully killed process %1").arg(pid);
}

inline QString skippingOwn(qint64 pid)
{
    return QStringLiteral("Skipping own PID %1").arg(pid);
}

inline QString skippingOther(qint64 pid, const QString &comm)
{
    return QStringLiteral("Skipping non-node process PID %1 comm: \"%2\"").arg(pid).arg(comm);
}

} // namespace PurgeLog
