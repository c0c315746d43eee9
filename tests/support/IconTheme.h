// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QImage>
#include <QMap>
#include <QStringList>

//! Creates icon themes for tests.
namespace IconTheme
{

//! Writes a theme with only these icons, in sizes of 8 to 64 pixels. They are white squares.
//! @return false if that failed
bool write(const QString &directory, const QString &name, const QStringList &icons);
//! The same with an image for each icon.
bool write(const QString &directory, const QString &name, const QMap<QString, QImage> &icons);

} // namespace IconTheme
