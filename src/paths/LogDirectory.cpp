// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "EventLogDirectory.h"
#include "BridgeLogDirectory.h"

#include <QDir>

namespace EventLogDirectory
{

namespace
{

bool hasLogs(const QString &directory)
{
    return !QDir(directory).entryList({QStringLiteral("*.log")}, QDir::Files).isEmpty();
}

} // namespace

QString choose(const QString &stateHome, const QString &home, const QString &other)
{
    const QString directory = BridgeLogDirectory::make(stateHome, home);
    return !hasLogs(directory) && hasLogs(other) ? other : directory;
}

QString path()
{
    return choose(qEnvironmentVariable("XDG_STATE_HOME"), QDir::homePath(), QStringLiteral("/tmp/loomra-bridge/logs"));
}

} // namespace EventLogDirectory
