// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "DataDirectories.h"

#include "Environment.h"

#include <QDir>
#include <QFileInfo>

QByteArray dataDirectoriesWith(const QString &directory, const QByteArray &old)
{
    return directory.toUtf8() + ':' + old;
}

void preferDataBesideExecutable(const QString &executableDirectory)
{
    const QString share = QDir(executableDirectory).filePath(QStringLiteral("share"));
    if (!QFileInfo::exists(share)) {
        return;
    }
    constexpr const char *variable = "XDG_DATA_DIRS";
    Environment::set(variable, dataDirectoriesWith(share, qgetenv(variable)));
}
