// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

//! The directory that contains the script of the bridge.
namespace BridgePath
{

//! What the search depends on. All directories are absolute paths.
struct System
{
    //! Unchanged value of LOOMRA_BRIDGE_PATH, empty if unset. A relative path is relative to currentDirectory.
    QByteArray fromEnvironment;
    QString applicationDirectory;
    QString currentDirectory;
    QString home;
    //! Whether a directory exists.
    std::function<bool(const QString &)> exists;
};

//! The first candidate that exists, as a clean absolute path. If none does it is the last one, so that the error
//! message can name the missing script. Pure, any thread.
QString resolve(const System &system);

//! The same for this process. Needs the application object.
QString resolve();

} // namespace BridgePath
