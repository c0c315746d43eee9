// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BridgePath.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace
{

using BridgePath::System;

struct Place
{
    QString System::*base;
    QLatin1String path;
};

//! In the order of the search: installation, build, source tree.
const Place s_places[] = {
    {&System::applicationDirectory, QLatin1String("../libexec/tovi-forkeldaos/sdk-bridge")},
    {&System::applicationDirectory, QLatin1String("../share/tovi-forkeldaos/sdk-bridge")},
    {&System::applicationDirectory, QLatin1String("../src/services/sdk-bridge")},
    {&System::currentDirectory, QLatin1String("src/services/sdk-bridge")},
    {&System::home, QLatin1String("Loomra_Meridan/src/services/sdk-bridge")},
};
const Place s_lastPlace = {&System::home, QLatin1String("loomra_kde/src/services/sdk-bridge")};

QString below(const QString &base, const QString &path)
{
    return QDir::cleanPath(QDir(base).filePath(path));
}

} // namespace

QString BridgePath::resolve(const System &system)
{
    const QString wanted = QFile::decodeName(system.fromEnvironment).trimmed();
    // An empty path would name the current directory, which always exists.
    if (!wanted.isEmpty()) {
        const QString path = below(system.currentDirectory, wanted);
        if (system.exists(path)) {
            return path;
        }
    }
    for (const Place &place : s_places) {
        const QString path = below(system.*place.base, place.path);
        if (system.exists(path)) {
            return path;
        }
    }
    return below(system.*s_lastPlace.base, s_lastPlace.path);
}

QString BridgePath::resolve()
{
    return resolve({qgetenv("LOOMRA_BRIDGE_PATH"), QCoreApplication::applicationDirPath(), QDir::currentPath(),
                    QDir::homePath(), [](const QString &path) { return QDir(path).exists(); }});
}
