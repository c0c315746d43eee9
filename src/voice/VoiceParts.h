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

//! The parts of a VoiceBridge. Tests replace some of them.
struct VoiceParts
{
    //! The parts that the program uses.
    VoiceParts();
    ~VoiceParts();
    VoiceParts(VoiceParts &&) noexcept;
    VoiceParts &operator=(VoiceParts &&) = delete;

    std::unique_ptr<WhisperWorker> whisper;
    std::unique_ptr<MoonshineWorker> moonshine;
    std::unique_ptr<NemotronWorker> nemotron;
    std::unique_ptr<NemotronStreamingWorker> streaming;
    //! Whether the streaming worker has an engine. It has none in this build.
    bool liveSttAvailable = false;
    OpenMicrophone openMicrophone = openPulseMicrophone;
    //! For everything that is searched: programs, models and voices.
    SearchRoots roots = SearchRoots::ofThisProcess();
};
