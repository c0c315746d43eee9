// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QStringList>

//! Creates icon themes for tests.
namespace IconTheme
{

//! Writes a theme with only these icons, in sizes of 8 to 64 pixels.
//! @return false if that failed
bool write(const QString &directory, const QString &name, const QStringList &icons);

} // namespace IconTheme
