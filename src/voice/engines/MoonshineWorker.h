// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "SherpaWorker.h"

//! The Moonshine engine.
class MoonshineWorker : public SherpaWorker
{
    Q_OBJECT

public:
    //! @param runTimeout for each run of the program
    explicit MoonshineWorker(std::chrono::milliseconds runTimeout = SherpaEngine::moonshine().runTimeout);
};
