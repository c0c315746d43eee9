// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

//! The program's own QML, scripts and voice data, below ":/org/kde/loomra".
namespace ResourceTree
{

//! Pulls the tree out of the static library that holds it; a static initialiser in there registers it before main()
//! runs. Calling this more than once does no harm. Main thread.
void init();

} // namespace ResourceTree
