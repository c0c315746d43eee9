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

//! A microphone that hears what a test says, as quickly as it is read.
class ScriptedMicrophone
{
public:
    static constexpr qint16 Loud = 3000;
    static constexpr qint16 Quiet = 0;

    //! What a read gives when nothing is left of the script.
    enum class Afterwards
    {
        Blocks, //!< until something comes, as with an audio server that has frozen
        Hisses, //!< quiet chunks, one every 10 ms: a quicker second than that of a room
        Talks, //!< the same, but loud
    };

    explicit ScriptedMicrophone(Afterwards afterwards = Afterwards::Hisses);
    //! Lets go of reads that block.
    ~ScriptedMicrophone();

    //! Adds chunks whose samples are all the same.
    void hear(int chunks, qint16 sample);
    //! Reads fail from here on.
    void breakDown();
    //! Chunks that were read so far.
    int chunksRead() const;
    //! Somebody waits in a read for what comes next.
    bool isAwaited() const;
    //! Streams that are open now.
    int openStreams() const;
    //! The thread of the last read.
    std::thread::id readingThread() const;

    //! To be given to whoever opens a microphone. It may outlive this object.
    OpenMicrophone opener();

private:
    struct State;
    class Stream;

    std::shared_ptr<State> m_state;
};
