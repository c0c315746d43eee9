// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QDir>
#include <QString>

//! Where the searches for programs, models and voices start. They are functions of these two, so that a test can give
//! them a tree of its own.
struct SearchRoots
{
    //! The user's home directory, absolute, without a slash at its end.
    QString home;
    //! What is put before absolute paths such as /usr/share. Empty but in tests.
    QString system;

    //! Where models and voices lie: the packaged ones, and the user's own.
    QString packagedModels() const { return system + QLatin1String("/usr/share/tovi-forkeldaos/models"); }
    QString ownModels() const { return home + QLatin1String("/.local/share/tovi-forkeldaos/models"); }

    //! Those of this process. The home follows a changed HOME.
    static SearchRoots ofThisProcess() { return {QDir::homePath(), QString()}; }
};
