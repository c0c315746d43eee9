// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "SearchRoots.h"

//! Where the program that speaks lies, and its voice. Both are empty where nothing was found.
namespace PiperPaths
{

//! The program: one of the usual places, or the first on PATH.
QString findPiper(const SearchRoots &roots);

//! The model of an English voice. A directory's unsorted fall-back comes before what the next one has.
QString findVoice(const SearchRoots &roots);

} // namespace PiperPaths
