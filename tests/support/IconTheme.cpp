// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "IconTheme.h"

#include <QDir>
#include <QFile>

#include <algorithm>

namespace IconTheme
{

bool write(const QString &directory, const QString &name, const QStringList &icons)
{
    QImage square(16, 16, QImage::Format_ARGB32);
    square.fill(Qt::white);
    QMap<QString, QImage> squares;
    for (const QString &icon : icons) {
        squares.insert(icon, square);
    }
    return write(directory, name, squares);
}

bool write(const QString &directory, const QString &name, const QMap<QString, QImage> &icons)
{
    const QString place = directory + QLatin1Char('/') + name;
    if (!QDir().mkpath(place + QStringLiteral("/16"))) {
        return false;
    }
    QFile index(place + QStringLiteral("/index.theme"));
    if (!index.open(QIODevice::WriteOnly)) {
        return false;
    }
    index.write("[Icon Theme]\nName=Test\nComment=Test\nDirectories=16\n\n[16]\nSize=16\nType=Scalable\nMinSize=8\n"
                "MaxSize=64\n");
    const QStringList names = icons.keys();
    return std::all_of(names.cbegin(), names.cend(), [&](const QString &icon) {
        return icons.value(icon).save(place + QStringLiteral("/16/") + icon + QStringLiteral(".png"));
    });
}

} // namespace IconTheme
