// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "TestSetup.h"

#include <KAboutData>

#include <QDir>
#include <QSettings>

namespace TestSetup
{

void setAboutData()
{
    KAboutData::setApplicationData(
        KAboutData(QStringLiteral("loomra-kde"), QStringLiteral("Loomra KDE"), QStringLiteral("0.3.2")));
}

QString settingsFile()
{
    const QString config = qEnvironmentVariable("XDG_CONFIG_HOME", QDir::homePath() + QStringLiteral("/.config"));
    return config + QStringLiteral("/kde.org/loomra-kde.conf");
}

void clearSettings()
{
    QSettings settings;
    settings.clear();
    settings.sync();
}

} // namespace TestSetup
