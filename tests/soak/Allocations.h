// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QtGlobal>

//! Counts the blocks that the C allocator has given out in this process, by taking the place of malloc() and the like.
//! Unlike the memory of the process and mallinfo(), these figures don't depend on how free memory is divided.
namespace Allocations
{

//! False in builds whose sanitizer takes that place; the figures are 0 there.
bool areCounted();
qint64 blocks();
qint64 bytes();

} // namespace Allocations
