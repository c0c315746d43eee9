// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "MoonshineWorker.h"

MoonshineWorker::MoonshineWorker(std::chrono::milliseconds runTimeout)
    : SherpaWorker(SherpaEngine::moonshine(), runTimeout)
{
}
