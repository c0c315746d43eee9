// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "Microphone.h"
#include "SearchRoots.h"

#include <memory>

class MoonshineWorker;
class NemotronStreamingWorker;
class NemotronWorker;
class WhisperWorker;

//! What VoiceBridge is put together from. Tests put in parts of their own.
struct VoiceParts
{
    //! Those of the program.
    VoiceParts();
    ~VoiceParts();
    VoiceParts(VoiceParts &&) noexcept;
    VoiceParts &operator=(VoiceParts &&) = delete;

    std::unique_ptr<WhisperWorker> whisper;
    std::unique_ptr<MoonshineWorker> moonshine;
    std::unique_ptr<NemotronWorker> nemotron;
    std::unique_ptr<NemotronStreamingWorker> streaming;
    //! There is an engine behind the streaming worker. This build has none.
    bool liveSttAvailable = false;
    OpenMicrophone openMicrophone = openPulseMicrophone;
    SearchRoots roots = SearchRoots::ofThisProcess();
};
