// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Capture.h"

#include <QDeadlineTimer>
#include <QThread>

#include <array>

namespace
{
constexpr int s_levelInterval = 5; // chunks
} // namespace

void CaptureLink::cut()
{
    const std::lock_guard lock(m_mutex);
    m_open = false;
}

//! The thread's data. Shared, so that a thread can outlive its capture.
struct Capture::State
{
    std::unique_ptr<Microphone> microphone;
    const std::chrono::milliseconds silenceTimeout;
    std::vector<qint16> samples; // used by the thread only, until it has ended
    const Listener listener;
    std::atomic<bool> running = true;
    //! The capture no longer waits for the thread, which must not report levels and chunks any more: they would mix
    //! with those of a later capture. Guarded by the mutex, which is held while they are reported.
    bool abandoned = false;
    std::mutex mutex {};
};

Capture::Capture(std::unique_ptr<Microphone> microphone, std::chrono::milliseconds silenceTimeout,
                 std::vector<qint16> samples, Listener listener)
    : m_state(new State {std::move(microphone), silenceTimeout, std::move(samples), std::move(listener)})
{
    m_state->samples.clear();
    m_state->samples.reserve(MaximumSamples);
    m_thread = ThreadHandover::createThread([state = m_state] {
        run(*state);
        ThreadHandover::release(state.get());
    });
    m_thread->start(QThread::InheritPriority);
}

Capture::~Capture()
{
    join();
}

void Capture::stop()
{
    m_state->running.exchange(false);
}

std::vector<qint16> Capture::join(std::chrono::milliseconds timeout)
{
    stop();
    if (!m_thread) {
        return {};
    }
    QThread *thread = std::exchange(m_thread, nullptr);
    thread->quit();
    if (!thread->wait(QDeadlineTimer(timeout))) {
        {
            const std::lock_guard lock(m_state->mutex);
            m_state->abandoned = true;
        }
        QObject::connect(thread, &QThread::finished, thread, &QObject::deleteLater);
        // If it ended before the connection was made, there is no signal any more.
        if (thread->isFinished()) {
            thread->deleteLater();
        }
        return {};
    }
    ThreadHandover::acquire(m_state.get());
    delete thread;
    m_state->microphone.reset();
    return std::move(m_state->samples);
}

void Capture::run(State &state)
{
    Endpointer endpointer(state.silenceTimeout);
    std::array<qint16, Pcm::ChunkSamples> chunk;
    static_assert(sizeof(chunk) == Pcm::ChunkBytes);

    while (state.running && !endpointer.isAtLimit() && state.microphone->read(chunk.data(), sizeof(chunk))) {
        const double rms = Endpointer::rms(chunk.data());
        {
            const std::lock_guard lock(state.mutex);
            if (!state.abandoned && endpointer.chunkIndex() % s_levelInterval == 0) {
                state.listener.level(rms);
            }
            if (!state.abandoned && state.listener.chunk) {
                state.listener.chunk(QByteArray(reinterpret_cast<const char *>(chunk.data()), sizeof(chunk)));
            }
        }
        const Endpointer::Decision decision = endpointer.take(rms);
        if (decision != Endpointer::Decision::Skip) {
            state.samples.insert(state.samples.end(), chunk.begin(), chunk.end());
        }
        if (decision == Endpointer::Decision::StoreAndEnd) {
            break;
        }
    }
    {
        const std::lock_guard lock(state.mutex);
        if (state.abandoned) {
            state.microphone.reset();
        }
    }
    state.listener.finished(endpointer.speechSeen(), endpointer.chunkIndex());
}
