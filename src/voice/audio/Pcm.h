// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QtGlobal>

#include <chrono>

//! The audio format between microphone and engines: 16 kHz, mono, signed 16 bit, little-endian, in chunks.
namespace Pcm
{
constexpr int SampleRate = 16000; // Hz
constexpr int SampleBytes = sizeof(qint16);
constexpr std::chrono::milliseconds ChunkDuration {50};
constexpr int ChunkSamples = SampleRate / 1000 * static_cast<int>(ChunkDuration.count());
constexpr int ChunkBytes = ChunkSamples * SampleBytes;
} // namespace Pcm
