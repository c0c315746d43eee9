// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "EventLogDirectory.h"

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

QString usualStateHome(const QString &home)
{
    return home + QLatin1String("/.local/state");
}

QString choose(const QString &stateHome, const QString &home, const QString &other)
{
    const QString state = stateHome.isEmpty() ? usualStateHome(home) : stateHome;
    const QString directory = QDir::cleanPath(state + QLatin1String("/loomra-bridge/logs"));
    QDir().mkpath(directory);
    return !hasLogs(directory) && hasLogs(other) ? other : directory;
}

QString path()
{
    return choose(qEnvironmentVariable("XDG_STATE_HOME"), QDir::homePath(), QStringLiteral("/tmp/loomra-bridge/logs"));
}

} // namespace EventLogDirectory
