// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "VoiceParts.h"

#include "MoonshineWorker.h"
#include "NemotronStreamingWorker.h"
#include "NemotronWorker.h"
#include "WhisperWorker.h"

VoiceParts::VoiceParts()
    : whisper(std::make_unique<WhisperWorker>())
    , moonshine(std::make_unique<MoonshineWorker>())
    , nemotron(std::make_unique<NemotronWorker>())
    , streaming(std::make_unique<NemotronStreamingWorker>())
{
}

VoiceParts::~VoiceParts() = default;
VoiceParts::VoiceParts(VoiceParts &&) noexcept = default;
