// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "SearchRoots.h"

//! Roots for searches in a test: its home, and a system directory that doesn't exist. Models, voices and programs that
//! this machine has under /usr aren't found.
//!
//! A program named piper is also searched on PATH. A test that must not find one hides it with FakePath.
inline SearchRoots isolatedRoots()
{
    return {QDir::homePath(), QDir::homePath() + QStringLiteral("/no-system")};
}
