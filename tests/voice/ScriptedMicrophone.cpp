// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ScriptedMicrophone.h"

#include "Endpointer.h"

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

namespace
{
constexpr auto s_chunkInterval = 10ms;
} // namespace

struct ScriptedMicrophone::State
{
    mutable std::mutex mutex;
    std::condition_variable changed;
    std::deque<qint16> chunks; // the value of all samples of a chunk
    bool broken = false;
    Afterwards afterwards;
    int read = 0;
    int open = 0;
    bool awaited = false;
    std::thread::id reader;
};

class ScriptedMicrophone::Stream : public Microphone
{
public:
    explicit Stream(std::shared_ptr<State> state)
        : m_state(std::move(state))
    {
        const std::lock_guard lock(m_state->mutex);
        ++m_state->open;
    }

    ~Stream() override
    {
        const std::lock_guard lock(m_state->mutex);
        --m_state->open;
    }

    bool read(void *data, std::size_t bytes) override
    {
        std::unique_lock lock(m_state->mutex);
        const auto hasNext = [this] { return m_state->broken || !m_state->chunks.empty(); };
        if (m_state->afterwards == Afterwards::Blocks) {
            m_state->awaited = true;
            m_state->changed.wait(lock, hasNext);
            m_state->awaited = false;
        } else if (!hasNext()) {
            m_state->changed.wait_for(lock, s_chunkInterval, hasNext);
        }
        qint16 sample = m_state->afterwards == Afterwards::Talks ? Loud : Quiet;
        if (!m_state->chunks.empty()) {
            sample = m_state->chunks.front();
            m_state->chunks.pop_front();
        } else if (m_state->broken) {
            return false;
        }
        std::fill_n(static_cast<qint16 *>(data), bytes / sizeof(qint16), sample);
        ++m_state->read;
        m_state->reader = std::this_thread::get_id();
        return true;
    }

private:
    const std::shared_ptr<State> m_state;
};

ScriptedMicrophone::ScriptedMicrophone(Afterwards afterwards)
    : m_state(std::make_shared<State>())
{
    m_state->afterwards = afterwards;
}

ScriptedMicrophone::~ScriptedMicrophone()
{
    breakDown();
}

void ScriptedMicrophone::hear(int chunks, qint16 sample)
{
    const std::lock_guard lock(m_state->mutex);
    m_state->chunks.insert(m_state->chunks.end(), std::size_t(chunks), sample);
    m_state->changed.notify_all();
}

void ScriptedMicrophone::breakDown()
{
    const std::lock_guard lock(m_state->mutex);
    m_state->broken = true;
    m_state->changed.notify_all();
}

int ScriptedMicrophone::chunksRead() const
{
    const std::lock_guard lock(m_state->mutex);
    return m_state->read;
}

bool ScriptedMicrophone::isAwaited() const
{
    const std::lock_guard lock(m_state->mutex);
    return m_state->awaited && m_state->chunks.empty();
}

int ScriptedMicrophone::openStreams() const
{
    const std::lock_guard lock(m_state->mutex);
    return m_state->open;
}

std::thread::id ScriptedMicrophone::readingThread() const
{
    const std::lock_guard lock(m_state->mutex);
    return m_state->reader;
}

OpenMicrophone ScriptedMicrophone::opener()
{
    return [state = m_state](QString *) { return std::make_unique<Stream>(state); };
}
