// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "MoonshineWorker.h"

MoonshineWorker::MoonshineWorker(const SearchRoots &roots, int runTimeout)
    : SherpaWorker(SherpaEngine::moonshine(), roots, runTimeout)
{
}
