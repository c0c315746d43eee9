// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

//! The value of XDG_DATA_DIRS with a directory put in front.
//! @param directory absolute path, not empty
//! @param old the value so far; empty when the variable is unset
//! @return directory, colon, old value. The colon stays with an empty old value: the list then names that directory
//! alone and the system's directories are not added, so whoever starts the program with a "share" beside it sets the
//! variable first.
QByteArray dataDirectoriesWith(const QString &directory, const QByteArray &old);

//! Puts the directory "share" beside the executable in front of XDG_DATA_DIRS, if it exists. Main thread, once, after
//! the application object and before anything looks for data files.
void preferDataBesideExecutable();
