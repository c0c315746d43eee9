// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QDir>
#include <QString>

//! The directory below the user's state in which all logs about the bridge and the assistant lie. Services and voice
//! path share it and nothing else.
namespace BridgeLogDirectory
{

//! The directory for state of programs where XDG_STATE_HOME doesn't name another.
inline QString usualStateHome(const QString &home)
{
    return home + QLatin1String("/.local/state");
}

//! Its clean path. It is made if it is missing; where that fails, using it will.
//! @param stateHome what XDG_STATE_HOME says, empty when it says nothing
inline QString make(const QString &stateHome, const QString &home)
{
    const QString state = stateHome.isEmpty() ? usualStateHome(home) : stateHome;
    const QString directory = QDir::cleanPath(state + QLatin1String("/loomra-bridge/logs"));
    QDir().mkpath(directory);
    return directory;
}

} // namespace BridgeLogDirectory
