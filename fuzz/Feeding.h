// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QtGlobal>

#include <functional>

class QString;

//! What both clients of the bridge need to be fed with frames.
namespace Feeding
{

//! Where a frame means the id of the request that was opened just before it.
constexpr char IdPlaceholder = '#';

//! The frame with an id in the place of each placeholder.
QString withId(QString frame, qint64 id);

//! Runs the event loop until the condition holds; ends the program when that takes too long.
void pumpUntil(const std::function<bool()> &condition);

} // namespace Feeding
