// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QJsonObject>

//! Writes JSON that a user edits too. QJsonObject sorts its keys and knows numbers by value only, so a plain write
//! would reorder the file and turn 1.0 into 1.
namespace JsonLayout
{

//! The object as indented JSON. Keys are in the order of @p original, new ones follow, sorted; numbers and strings that
//! are still the same are spelled as there. Without a usable original this is QJsonDocument's indented form.
//! @param original an earlier version as text; may be empty or anything else
QByteArray write(const QJsonObject &object, const QByteArray &original);

} // namespace JsonLayout
