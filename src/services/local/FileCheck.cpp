// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FileCheck.h"

#include <QFileInfo>

namespace
{

QString kindOf(const QFileInfo &file)
{
    if (!file.exists()) {
        return QStringLiteral("missing");
    }
    if (file.isDir()) {
        return QStringLiteral("folder");
    }
    if (!file.isFile()) {
        return QStringLiteral("special");
    }
    return file.isReadable() ? QStringLiteral("file") : QStringLiteral("unreadable");
}

} // namespace

QVariantMap FileCheck::examine(const QString &path) const
{
    const QFileInfo file(path);
    const QString kind = kindOf(file);
    // A double, because QML has no 64-bit integers.
    const double size = kind == QLatin1String("file") ? static_cast<double>(file.size()) : 0;
    return {{QStringLiteral("kind"), kind}, {QStringLiteral("size"), size}};
}
