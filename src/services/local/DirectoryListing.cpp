// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "DirectoryListing.h"

#include <QDir>
#include <QMimeDatabase>

QFileInfoList DirectoryListing::entries(const QString &path)
{
    const QDir directory(path);
    // An empty path is the working directory for QDir.
    if (path.isEmpty() || !directory.exists()) {
        return {};
    }
    return directory.entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::DirsFirst | QDir::Name);
}

QString DirectoryListing::mimeIcon(const QFileInfo &file)
{
    return QMimeDatabase().mimeTypeForFile(file).iconName();
}
