// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "Endpointer.h"
#include "Microphone.h"
#include "ThreadHandover.h"

#include <QByteArray>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

class QThread;

//! The way back from capture threads to the object that started them, which may be gone when a thread comes out of a
//! read that blocked for long.
class CaptureLink
{
public:
    //! Cuts the way: nothing goes through afterwards. Main thread, before the object ends.
    void cut();
    //! Does @p work at once on this thread, unless the way is cut; until it is done, the object lives. Any thread.
    template<typename Work>
    void pass(Work &&work)
    {
        const std::lock_guard lock(m_mutex);
        if (m_open) {
            work();
        }
    }

private:
    std::mutex m_mutex;
    bool m_open = true;
};

//! One capture: a microphone, a thread of its own that reads it to the end of the utterance, and what was heard.
//! Made and ended on the main thread.
//!
//! The thread ends within a chunk of stop(), unless the audio server has frozen in the middle of a read. It is then
//! left alone, with microphone and samples, and frees them itself: no read can be broken off, and a running thread
//! can't be deleted.
class Capture
{
public:
    //! All are called on the capture thread.
    struct Listener
    {
        //! Every fifth chunk: its level, 0 to 1.
        std::function<void(double rms)> level;
        //! Every chunk, speech or not. May be empty.
        std::function<void(const QByteArray &pcm16Chunk)> chunk;
        //! The last thing that the thread does. @p chunks counts those that were read, but not the one that ended it.
        std::function<void(bool speechSeen, int chunks)> finished;
    };

    //! The longest capture, in samples; the capacity of the array that take() gives back is never higher.
    static constexpr std::size_t MostSamples = std::size_t(Endpointer::MostChunks) * Pcm::ChunkSamples;
    //! How long join() waits, in milliseconds.
    static constexpr int JoinTimeoutMs = 3000;

    //! Starts at once.
    //! @param samples an array whose memory is used again
    Capture(std::unique_ptr<Microphone> microphone, int silenceTimeoutMs, std::vector<qint16> samples,
            Listener listener);
    //! As join().
    ~Capture();
    Q_DISABLE_COPY_MOVE(Capture)

    //! Asks the thread to end. What was heard stays.
    void stop();
    //! Stops, waits for the thread's end, at most @p timeoutMs, and closes the microphone.
    //! @return what was heard; empty when the thread has not ended
    std::vector<qint16> join(int timeoutMs = JoinTimeoutMs);

private:
    struct State;

    static void run(State &state);

    std::shared_ptr<State> m_state;
    QThread *m_thread = nullptr;
};
