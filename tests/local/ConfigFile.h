// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

//! The file in which ConfigManager keeps its values.
namespace ConfigFile
{

//! Told without asking KConfig.
QString path();

//! All of it; empty where there is none.
QByteArray content();

//! Puts lines into the group of the settings as a user would by hand, and lets this process forget what was there
//! before. @return whether it worked
bool write(const QByteArray &lines);

//! Leaves no file, and nothing of it in this process.
void remove();

} // namespace ConfigFile
