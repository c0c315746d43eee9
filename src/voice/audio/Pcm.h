// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QtGlobal>

//! The one sound format between microphone and engines: 16 kHz, mono, signed 16 bit, little-endian, read in chunks.
namespace Pcm
{
constexpr int SampleRate = 16000; // Hz
constexpr int SampleBytes = sizeof(qint16);
constexpr int ChunkMs = 50;
constexpr int ChunkSamples = SampleRate / 1000 * ChunkMs;
constexpr int ChunkBytes = ChunkSamples * SampleBytes;
} // namespace Pcm
