// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Endpointer.h"

#include <cmath>

using namespace std::chrono_literals;

namespace
{
//! A shorter timeout is one chunk. Without a minimum, less than 50 ms would be no chunk at all, and the first chunk of
//! speech would end the utterance.
constexpr auto s_minSilence = 100ms;
} // namespace

Endpointer::Endpointer(std::chrono::milliseconds silenceTimeout)
    : m_silenceLimit(silenceTimeout >= s_minSilence ? static_cast<int>(silenceTimeout / Pcm::ChunkDuration) : 1)
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
