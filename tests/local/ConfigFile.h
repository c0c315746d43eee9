// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

//! The file in which ConfigManager stores its values.
namespace ConfigFile
{

//! Determined without KConfig.
QString path();

//! The whole content; empty if the file doesn't exist.
QByteArray content();

//! Replaces the settings by these lines, as a user would with an editor, and makes KConfig read them.
//! @return false if that failed
bool write(const QByteArray &lines);

//! Removes the file and makes KConfig forget it.
void remove();

} // namespace ConfigFile
