// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QVector>

#include <chrono>
#include <optional>

//! Bridges that an earlier run left behind and that still occupy the port.
namespace StaleBridges
{

//! How long purge() waits for `lsof`, and for each `kill`.
constexpr std::chrono::milliseconds LsofTimeout {2000};
constexpr std::chrono::milliseconds KillTimeout {1000};
//! For the end of a helper program that was killed because it hung.
constexpr std::chrono::milliseconds EndTimeout {500};
//! Until the system has released the port.
constexpr std::chrono::milliseconds PortReleaseDelay {1000};

//! Parses the process ids that `lsof -t` printed, in its order. Lines that aren't positive decimal numbers are skipped.
QVector<qint64> pidsIn(const QString &lsofOutput);

enum class Verdict
{
    Kill,
    SkipOwn, //!< this process, which is listed if it is connected to the port
    SkipOther, //!< another program
};

//! What to do with a listed process.
//! @param comm its name from /proc, trimmed. A name that can't be read counts as that of a bridge.
Verdict verdictOn(qint64 pid, qint64 ownPid, const std::optional<QString> &comm);

//! Kills with SIGKILL every process named "node" that uses the TCP or UDP port at either end, whether it is a bridge or
//! not. Failures are logged and otherwise ignored. Blocks up to 2.5 s for lsof, up to 1.5 s for each killed process,
//! and another 1 s if lsof printed anything.
void purge(int port);

} // namespace StaleBridges
