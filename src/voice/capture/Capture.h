// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "Endpointer.h"
#include "Microphone.h"
#include "ThreadHandover.h"

#include <QByteArray>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

class QThread;

//! The way back from capture threads to the object that started them. That object may be deleted while a thread is
//! still blocked in a read.
class CaptureLink
{
public:
    //! From now on pass() does nothing. Called on the main thread, before the object is deleted.
    void cut();
    //! Runs @p work on this thread, unless the link is cut. The object isn't deleted meanwhile. Any thread.
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

//! One capture: a microphone, the thread that reads it until the utterance ends, and the recorded samples. Created and
//! deleted on the main thread.
//!
//! The thread ends within one chunk after stop(), unless the audio server has frozen during a read. In that case the
//! thread is abandoned together with microphone and samples, and frees them itself when the read returns: a read can't
//! be interrupted, and a running thread can't be deleted.
class Capture
{
public:
    //! Called on the capture thread.
    struct Listener
    {
        //! The level of every fifth chunk, 0 to 1.
        std::function<void(double rms)> level;
        //! Every chunk, speech or not. May be empty, as the only one of these.
        std::function<void(const QByteArray &pcm16Chunk)> chunk;
        //! The thread's last call. @p chunks counts the chunks that were read, without the one that ended the
        //! utterance.
        std::function<void(bool speechSeen, int chunks)> finished;
    };

    //! The longest capture, in samples.
    static constexpr std::size_t MaximumSamples = std::size_t(Endpointer::MaximumChunks) * Pcm::ChunkSamples;
    static constexpr std::chrono::milliseconds JoinTimeout {3000};

    //! Starts at once.
    //! @param samples an array whose memory is reused
    Capture(std::unique_ptr<Microphone> microphone, std::chrono::milliseconds silenceTimeout,
            std::vector<qint16> samples, Listener listener);
    //! Calls join().
    ~Capture();
    Q_DISABLE_COPY_MOVE(Capture)

    //! Asks the thread to end. Keeps the samples.
    void stop();
    //! Stops, waits for the thread to end, and closes the microphone.
    //! @return the recorded samples, empty if the thread hasn't ended within @p timeout
    std::vector<qint16> join(std::chrono::milliseconds timeout = JoinTimeout);

private:
    struct State;

    static void run(State &state);

    std::shared_ptr<State> m_state;
    QThread *m_thread = nullptr;
};
