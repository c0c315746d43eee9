// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QDir>
#include <QFile>

//! A QML module that keeps the main window from loading.
namespace BrokenModule
{

//! Writes the module to a folder, which QML2_IMPORT_PATH then has to name. @return false if that failed
inline bool write(const QString &folder)
{
    const QString module = folder + QStringLiteral("/org/kde/kirigami.2");
    QFile qmldir(module + QStringLiteral("/qmldir"));
    return QDir().mkpath(module) && qmldir.open(QIODevice::WriteOnly)
        && qmldir.write("module org.kde.kirigami\nApplicationWindow 2.20 Missing.qml\n") > 0;
}

} // namespace BrokenModule
