// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "Pcm.h"

#include <QLatin1String>

//! What all engines have in common when they are given an utterance.
namespace Transcription
{

//! The least that an engine is asked about: 0.1 s.
constexpr int shortestAudio = Pcm::SampleRate / 10 * Pcm::SampleBytes; // bytes

inline const QLatin1String audioTooShort("Audio too short");
inline const QLatin1String noSpeech("No speech detected in audio");

} // namespace Transcription
