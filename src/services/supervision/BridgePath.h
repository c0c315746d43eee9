// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

//! Where the bridge lies: the directory that holds its script.
namespace BridgePath
{

//! What the search looks at. All directories are absolute paths.
struct Surroundings
{
    //! The value of LOOMRA_BRIDGE_PATH as it stands; empty when unset. A relative path starts at currentDirectory.
    QByteArray fromEnvironment;
    QString applicationDirectory;
    QString currentDirectory;
    QString home;
    //! Whether a path is that of a directory.
    std::function<bool(const QString &)> exists;
};

//! The first place that exists, as a clean absolute path. Where none does it is the last place all the same, so that
//! the path is never empty and the missing script can be told by name when it is to be started. Pure, any thread.
QString resolve(const Surroundings &surroundings);

//! The same for this process. Needs the application object.
QString resolve();

} // namespace BridgePath
