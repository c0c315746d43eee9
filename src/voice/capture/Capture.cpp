// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Capture.h"

#include <QThread>

#include <array>

namespace
{
constexpr int levelEvery = 5; // chunks
} // namespace

void CaptureLink::cut()
{
    const std::lock_guard lock(m_mutex);
    m_open = false;
}

//! What the thread works with. It shares it, so that it can outlive the capture.
struct Capture::State
{
    std::unique_ptr<Microphone> microphone;
    const int silenceTimeoutMs;
    std::vector<qint16> samples; // the thread's while it runs, then the capture's
    const Listener listener;
    std::atomic<bool> running = true;
    //! Nobody waits for it any more: it must not touch what a later capture uses. Under the mutex, as is what it tells
    //! before its end.
    bool abandoned = false;
    std::mutex mutex {};
};

Capture::Capture(std::unique_ptr<Microphone> microphone, int silenceTimeoutMs, std::vector<qint16> samples,
                 Listener listener)
    : m_state(new State {std::move(microphone), silenceTimeoutMs, std::move(samples), std::move(listener)})
{
    m_state->samples.clear();
    m_state->samples.reserve(MostSamples);
    m_thread = QThread::create([state = m_state] {
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

std::vector<qint16> Capture::join(int timeoutMs)
{
    stop();
    if (!m_thread) {
        return {};
    }
    QThread *thread = std::exchange(m_thread, nullptr);
    thread->quit();
    if (!thread->wait(timeoutMs)) {
        {
            const std::lock_guard lock(m_state->mutex);
            m_state->abandoned = true;
        }
        QObject::connect(thread, &QThread::finished, thread, &QObject::deleteLater);
        // It may have ended before it was connected, and then it won't tell any more.
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
    Endpointer endpointer(state.silenceTimeoutMs);
    std::array<qint16, Pcm::ChunkSamples> chunk;
    static_assert(sizeof(chunk) == Pcm::ChunkBytes);

    while (state.running && !endpointer.isAtLimit() && state.microphone->read(chunk.data(), sizeof(chunk))) {
        const double rms = Endpointer::rms(chunk.data());
        {
            const std::lock_guard lock(state.mutex);
            if (!state.abandoned && endpointer.chunkIndex() % levelEvery == 0) {
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
