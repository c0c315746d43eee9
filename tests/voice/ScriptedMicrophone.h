// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "Microphone.h"

#include <QtGlobal>

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

//! A microphone that delivers the chunks of a test's script as fast as they are read.
class ScriptedMicrophone
{
public:
    static constexpr qint16 Loud = 3000;
    static constexpr qint16 Quiet = 0;

    //! The result of a read after the end of the script.
    enum class Afterwards
    {
        Blocks, //!< until a chunk is added, like a frozen audio server
        Hisses, //!< a quiet chunk every 10 ms, five times faster than real time
        Talks, //!< a loud chunk every 10 ms
    };

    explicit ScriptedMicrophone(Afterwards afterwards = Afterwards::Hisses);
    //! Releases blocked reads.
    ~ScriptedMicrophone();

    //! Adds chunks in which all samples are equal.
    void hear(int chunks, qint16 sample);
    //! Reads fail after the end of the script.
    void breakDown();
    int chunksRead() const;
    //! Whether a read is blocked.
    bool isAwaited() const;
    int openStreams() const;
    //! The thread of the last read.
    std::thread::id readingThread() const;

    //! For VoiceParts. May outlive this object.
    OpenMicrophone opener();

private:
    struct State;
    class Stream;

    std::shared_ptr<State> m_state;
};
