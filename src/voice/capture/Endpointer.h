// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "Pcm.h"

#include <QtGlobal>

//! Decides by level alone where an utterance begins and ends: one chunk in, one decision out. There is no pre-roll and
//! no least length of speech; before speech has begun nothing but the limit ends a capture. Knows neither audio nor
//! clocks.
class Endpointer
{
public:
    enum class Decision
    {
        Skip, //!< silence before the speech
        Store,
        StoreAndEnd, //!< the last chunk of the silence that ends the speech
    };

    //! 30 seconds, counted from the first chunk.
    static constexpr int MostChunks = 600;
    //! A chunk at or above this level is speech. Meant as a single-precision figure: as a double it lies a trifle above
    //! 0.008.
    static constexpr double SpeechThreshold = static_cast<double>(0.008f);

    //! @param silenceTimeoutMs how long the silence after speech lasts, in whole chunks; below 100 it is one chunk
    explicit Endpointer(int silenceTimeoutMs);

    //! Takes the level of the next chunk, 0 to 1. Not to be called at the limit or after StoreAndEnd.
    Decision take(double rms);

    bool isAtLimit() const { return m_chunkIndex == MostChunks; }
    //! The number of the chunk that comes next. The one that ended the capture isn't counted.
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
