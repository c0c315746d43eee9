// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QDir>
#include <QString>

//! Where the searches for programs, models and voices start. Tests search a directory tree of their own.
struct SearchRoots
{
    //! The user's home directory: absolute, without a trailing slash.
    QString home;
    //! Prefix of absolute paths such as /usr/share. Empty except in tests.
    QString system;

    //! The directories with models and voices: those of packages, and those that the user has installed.
    QString packagedModels() const { return system + QLatin1String("/usr/share/tovi-forkeldaos/models"); }
    QString userModels() const { return home + QLatin1String("/.local/share/tovi-forkeldaos/models"); }

    //! The real ones. The home follows HOME when that changes at run time.
    static SearchRoots ofThisProcess() { return {QDir::homePath(), QString()}; }
};
