// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "Pcm.h"

#include <QtGlobal>

#include <chrono>

//! Decides by level alone where an utterance begins and ends: it takes the level of each chunk and returns what to do
//! with the chunk. There is no pre-roll and no minimum length of speech. Before speech has begun only the limit ends a
//! capture. Uses neither audio nor clocks.
class Endpointer
{
public:
    enum class Decision
    {
        Skip, //!< silence before speech
        Store,
        StoreAndEnd, //!< last chunk of the silence that ends the utterance
    };

    //! 30 seconds, counted from the first chunk.
    static constexpr int MaximumChunks = 600;
    //! A chunk at or above this level is speech. Intentional: the single-precision value, which is slightly above 0.008
    //! as a double.
    static constexpr double SpeechThreshold = static_cast<double>(0.008f);

    //! @param silenceTimeout silence that ends an utterance, rounded down to whole chunks; one chunk if below 100 ms
    explicit Endpointer(std::chrono::milliseconds silenceTimeout);

    //! Takes the level of the next chunk, 0 to 1. Must not be called at the limit or after StoreAndEnd.
    Decision take(double rms);

    bool isAtLimit() const { return m_chunkIndex == MaximumChunks; }
    //! The index of the next chunk. The chunk that ended the utterance isn't counted.
    int chunkIndex() const { return m_chunkIndex; }
    bool speechSeen() const { return m_speechSeen; }

    //! Root mean square of one chunk of Pcm::ChunkSamples samples, 0 to 1.
    static double rms(const qint16 *samples);

private:
    const int m_silenceLimit; // chunks
    int m_chunkIndex = 0;
    int m_silenceChunks = 0;
    bool m_speechSeen = false;
};
