// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QStringList>

//! Icon themes that a test writes itself.
namespace IconTheme
{

//! Writes a theme of that name into the directory, with just these icons, for sizes of 8 to 64 pixels.
//! @return whether all of it could be written
bool write(const QString &directory, const QString &name, const QStringList &icons);

} // namespace IconTheme
