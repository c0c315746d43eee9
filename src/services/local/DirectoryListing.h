// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QFileInfoList>

//! What the file browser shows of a directory.
namespace DirectoryListing
{

//! The entries of a directory, without hidden ones: directories first, then by name, case-sensitive. Empty if the path
//! is empty or no directory.
QFileInfoList entries(const QString &path);

//! The icon name of a file's MIME type, by its name and content; empty if it has none.
QString mimeIcon(const QFileInfo &file);

} // namespace DirectoryListing
