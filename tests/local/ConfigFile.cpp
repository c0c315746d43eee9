// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConfigFile.h"

#include "Files.h"

#include <KSharedConfig>

namespace ConfigFile
{

QString path()
{
    return QDir::homePath() + QStringLiteral("/.config/loomra-kderc");
}

QByteArray content()
{
    return contentOf(path());
}

bool write(const QByteArray &lines)
{
    const bool isWritten = writeFile(path(), "[General]\n" + lines);
    KSharedConfig::openConfig()->reparseConfiguration();
    return isWritten;
}

void remove()
{
    QFile::remove(path());
    KSharedConfig::openConfig()->reparseConfiguration();
}

} // namespace ConfigFile
