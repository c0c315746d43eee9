// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConfigFile.h"

#include <KSharedConfig>

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace ConfigFile
{

QString path()
{
    return QDir::homePath() + QStringLiteral("/.config/loomra-kderc");
}

QByteArray content()
{
    QFile file(path());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool write(const QByteArray &lines)
{
    QFile file(path());
    if (!QDir().mkpath(QFileInfo(file).path()) || !file.open(QIODevice::WriteOnly)) {
        return false;
    }
    file.write("[General]\n" + lines);
    file.close();
    KSharedConfig::openConfig()->reparseConfiguration();
    return true;
}

void remove()
{
    QFile::remove(path());
    KSharedConfig::openConfig()->reparseConfiguration();
}

} // namespace ConfigFile
