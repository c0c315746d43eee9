// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

//! Where the bridge's own log files lie.
namespace EventLogDirectory
{

//! The directory below the user's state, which is made if it is missing; or the other one, if there are log files in
//! that one and none in the first.
//! @param stateHome what XDG_STATE_HOME says, empty when it says nothing
//! @param other where a bridge without a home logs
QString choose(const QString &stateHome, const QString &home, const QString &other);

//! The same by environment, home and temporary directory of this process.
QString path();

} // namespace EventLogDirectory
