// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QVector>

#include <optional>

//! Bridges that an earlier run left behind and that still occupy the port.
namespace StaleBridges
{

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
