// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "Pcm.h"

#include <QLatin1String>

//! What all engines have in common when they transcribe an utterance.
namespace Transcription
{

//! Shorter utterances are refused: 0.1 s.
constexpr int MinimumBytes = Pcm::SampleRate / 10 * Pcm::SampleBytes;

inline const QLatin1String AudioTooShort("Audio too short");
inline const QLatin1String NoSpeech("No speech detected in audio");

} // namespace Transcription
