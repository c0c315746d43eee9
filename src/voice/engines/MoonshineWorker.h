// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "SherpaWorker.h"

//! The Moonshine engine.
class MoonshineWorker : public SherpaWorker
{
    Q_OBJECT

public:
    //! @param runTimeout what a run of the program may take, in ms
    explicit MoonshineWorker(const SearchRoots &roots = SearchRoots::ofThisProcess(),
                             int runTimeout = SherpaEngine::moonshine().runTimeout);
};
