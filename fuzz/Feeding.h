// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QtGlobal>

#include <functional>

class QString;

//! What the fuzzed clients share.
namespace Feeding
{

//! Placeholder in a frame for the id of the request that was opened just before it.
constexpr char IdPlaceholder = '#';

//! Replaces each placeholder in the frame by the id.
QString withId(QString frame, qint64 id);

//! Runs the event loop until the condition holds. Aborts the program after 20 seconds.
void pumpUntil(const std::function<bool()> &condition);

} // namespace Feeding
