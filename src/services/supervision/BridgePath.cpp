// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BridgePath.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace
{

using BridgePath::Surroundings;

struct Place
{
    QString Surroundings::*base;
    QLatin1String path;
};

//! In the order of the search: installed, built, source tree.
const Place s_places[] = {
    {&Surroundings::applicationDirectory, QLatin1String("../libexec/tovi-forkeldaos/sdk-bridge")},
    {&Surroundings::applicationDirectory, QLatin1String("../share/tovi-forkeldaos/sdk-bridge")},
    {&Surroundings::applicationDirectory, QLatin1String("../src/services/sdk-bridge")},
    {&Surroundings::currentDirectory, QLatin1String("src/services/sdk-bridge")},
    {&Surroundings::home, QLatin1String("Loomra_Meridan/src/services/sdk-bridge")},
};
const Place s_lastPlace = {&Surroundings::home, QLatin1String("loomra_kde/src/services/sdk-bridge")};

QString below(const QString &base, const QString &path)
{
    return QDir::cleanPath(QDir(base).filePath(path));
}

} // namespace

QString BridgePath::resolve(const Surroundings &surroundings)
{
    const QString wanted = QFile::decodeName(surroundings.fromEnvironment).trimmed();
    // An empty path would name the current directory, which always exists.
    if (!wanted.isEmpty()) {
        const QString path = below(surroundings.currentDirectory, wanted);
        if (surroundings.exists(path)) {
            return path;
        }
    }
    for (const Place &place : s_places) {
        const QString path = below(surroundings.*place.base, place.path);
        if (surroundings.exists(path)) {
            return path;
        }
    }
    return below(surroundings.*s_lastPlace.base, s_lastPlace.path);
}

QString BridgePath::resolve()
{
    return resolve({qgetenv("LOOMRA_BRIDGE_PATH"), QCoreApplication::applicationDirPath(), QDir::currentPath(),
                    QDir::homePath(), [](const QString &path) { return QDir(path).exists(); }});
}
