// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "SearchRoots.h"

//! Where piper and its voices are installed. The results are empty if nothing is found.
namespace PiperPaths
{

//! The program: from one of the default places, otherwise the first on PATH.
QString findPiper(const SearchRoots &roots);

//! The model of an English voice: the first directory that has any, and in it a preferred voice if there is one.
QString findVoice(const SearchRoots &roots);

} // namespace PiperPaths
