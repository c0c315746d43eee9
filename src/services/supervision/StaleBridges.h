// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QVector>

#include <optional>

//! Bridges that an earlier run left behind and that still hold the port.
namespace StaleBridges
{

//! The process ids in what `lsof -t` printed, in its order. A line that isn't a decimal number above 0 is left out.
QVector<qint64> pidsIn(const QString &lsofOutput);

enum class Verdict
{
    Kill,
    SkipOwn, //!< this process: it is listed when it holds a connection to the port
    SkipOther, //!< a program that isn't ours to end
};

//! What is to be done with a process that is listed.
//! @param comm its name as the kernel tells it, trimmed; none if that can't be read, which counts as a bridge
Verdict verdictOn(qint64 pid, qint64 ownPid, const std::optional<QString> &comm);

//! Kills with signal 9 every process named "node" that has the TCP or UDP port open at either end, bridge or not.
//! Failures are logged and change nothing: the start of a new bridge goes on. Blocks for up to 2.5 s for lsof, up to
//! 1.5 s for each process that is killed, and 1 s more if lsof printed anything.
void purge(int port);

} // namespace StaleBridges
