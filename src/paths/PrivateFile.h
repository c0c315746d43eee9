// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QFile>

//! Files that contain what the user said or wrote, or keys. Only the user may read them, whatever the umask.
namespace PrivateFile
{

//! What happens to the mode of a file that exists already. A new one always gets 0600.
enum class Existing
{
    KeepsItsMode,
    BecomesPrivate,
};

//! Opens the file for writing. QFile::setPermissions() after opening would leave a moment in which others can open a
//! new file.
//! @param mode QIODevice::WriteOnly, which truncates the file, or QIODevice::Append, with QIODevice::Text or without
//! @return false if the file can't be opened; it then has no error string. An opened file has no name any more.
bool open(QFile &file, QIODevice::OpenMode mode, Existing existing);

} // namespace PrivateFile
