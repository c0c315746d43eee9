// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Endpointer.h"

#include <cmath>

namespace
{
//! Below this a time-out is one chunk. From 50 on it would be that anyway; what is shorter must not become none, which
//! would end an utterance with the first chunk of speech.
constexpr int leastTimeoutMs = 100;
} // namespace

Endpointer::Endpointer(int silenceTimeoutMs)
    : m_silenceLimit(silenceTimeoutMs >= leastTimeoutMs ? silenceTimeoutMs / Pcm::ChunkMs : 1)
{
}

Endpointer::Decision Endpointer::take(double rms)
{
    if (rms >= SpeechThreshold) {
        m_silenceChunks = 0;
    } else if (m_speechSeen) {
        ++m_silenceChunks;
    } else {
        ++m_chunkIndex;
        return Decision::Skip;
    }
    m_speechSeen = true;
    if (m_silenceChunks >= m_silenceLimit) {
        return Decision::StoreAndEnd;
    }
    ++m_chunkIndex;
    return Decision::Store;
}

double Endpointer::rms(const qint16 *samples)
{
    double sum = 0;
    for (int i = 0; i < Pcm::ChunkSamples; ++i) {
        const double sample = samples[i] * (1.0 / 32768);
        sum += sample * sample;
    }
    return std::sqrt(sum / Pcm::ChunkSamples);
}
