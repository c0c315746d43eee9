// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "LogDirectory.h"

#include <QDir>

namespace LogDirectory
{

namespace
{

bool hasLogs(const QString &directory)
{
    return !QDir(directory).entryList({QStringLiteral("*.log")}, QDir::Files).isEmpty();
}

} // namespace

QString defaultStateHome(const QString &home)
{
    return home + QLatin1String("/.local/state");
}

QString create(const QString &stateHome, const QString &home)
{
    const QString state = stateHome.isEmpty() ? defaultStateHome(home) : stateHome;
    const QString directory = QDir::cleanPath(state + QLatin1String("/loomra-bridge/logs"));
    QDir().mkpath(directory);
    return directory;
}

QString ofBridge(const QString &stateHome, const QString &home, const QString &fallback)
{
    const QString directory = create(stateHome, home);
    return !hasLogs(directory) && hasLogs(fallback) ? fallback : directory;
}

QString ofBridge()
{
    return ofBridge(qEnvironmentVariable("XDG_STATE_HOME"), QDir::homePath());
}

} // namespace LogDirectory
