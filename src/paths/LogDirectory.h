// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

//! The directory below the user's state in which the bridge and the assistant keep their logs.
namespace LogDirectory
{

//! Where a bridge without a home directory writes.
inline const QLatin1String BridgeFallback("/tmp/loomra-bridge/logs");

//! The base directory for state that programs use when XDG_STATE_HOME is not set.
QString defaultStateHome(const QString &home);

//! Creates the log directory if it is missing and returns its clean path. A failure shows when the path is used.
//! @param stateHome value of XDG_STATE_HOME, empty when unset
QString create(const QString &stateHome, const QString &home);

//! Where to look for the bridge's own logs: the directory that create() returns, or @p fallback if only that one has
//! log files.
QString ofBridge(const QString &stateHome, const QString &home, const QString &fallback = BridgeFallback);

//! The same with the environment and home of this process.
QString ofBridge();

} // namespace LogDirectory
