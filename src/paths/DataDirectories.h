// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

//! The value of XDG_DATA_DIRS with a directory put in front.
//! @param directory absolute path, not empty
//! @param old the old value; empty if the variable is unset
//! @return directory, colon, old value. Intentional: if the old value is empty, the colon stays and the system's
//! default directories are not added. A caller that has a "share" beside the executable must set the variable first.
QByteArray dataDirectoriesWith(const QString &directory, const QByteArray &old);

//! Puts the directory "share" beside the executable in front of XDG_DATA_DIRS, if it exists. Call once on the main
//! thread, after the application object is created and before anything searches for data files.
//! @param executableDirectory another directory only in tests
void preferDataBesideExecutable(const QString &executableDirectory = QCoreApplication::applicationDirPath());
