// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "WhisperStandIn.h"

#include "ggml-backend.h"

#include <QFileInfo>

#include <condition_variable>
#include <mutex>

struct whisper_context
{
    QByteArray path;
};

namespace
{

using Clock = std::chrono::steady_clock;
using Segments = QList<std::optional<QByteArray>>;

const whisper_context_params s_contextDefaults {true, 7};

struct State
{
    Segments segments {QByteArray("stand-in")};
    int result = 0;
    bool holds = false;
    bool isHeld = false;
    QStringList calls;
    bool contextParamsWereDefault = false;
    WhisperStandIn::Transcription transcription;
};

std::mutex s_mutex;
std::condition_variable s_changed;
State s_state;
// Not reset: these belong to the process.
int s_livingContexts = 0;
std::size_t s_backends = 0;

} // namespace

namespace WhisperStandIn
{

void reset()
{
    const std::lock_guard lock(s_mutex);
    s_state = State();
    s_changed.notify_all();
}

void say(const Segments &segments)
{
    const std::lock_guard lock(s_mutex);
    s_state.segments = segments;
}

void failWith(int result)
{
    const std::lock_guard lock(s_mutex);
    s_state.result = result;
}

void hold()
{
    const std::lock_guard lock(s_mutex);
    s_state.holds = true;
}

void waitUntilHeld()
{
    std::unique_lock lock(s_mutex);
    s_changed.wait(lock, [] { return s_state.isHeld; });
}

void letGo()
{
    const std::lock_guard lock(s_mutex);
    s_state.holds = false;
    s_changed.notify_all();
}

QStringList calls()
{
    const std::lock_guard lock(s_mutex);
    return s_state.calls;
}

int livingContexts()
{
    const std::lock_guard lock(s_mutex);
    return s_livingContexts;
}

Transcription lastTranscription()
{
    const std::lock_guard lock(s_mutex);
    return s_state.transcription;
}

whisper_full_params defaults(whisper_sampling_strategy strategy)
{
    whisper_full_params params {};
    params.strategy = strategy;
    params.n_threads = 99;
    params.n_max_text_ctx = 16384;
    params.translate = true;
    params.no_context = false;
    params.no_timestamps = true;
    params.single_segment = false;
    params.print_special = true;
    params.print_progress = true;
    params.print_realtime = true;
    params.print_timestamps = true;
    params.language = "xx";
    params.detect_language = true;
    params.temperature = 0.75F;
    return params;
}

bool contextParamsWereDefault()
{
    const std::lock_guard lock(s_mutex);
    return s_state.contextParamsWereDefault;
}

} // namespace WhisperStandIn

std::size_t ggml_backend_reg_count()
{
    const std::lock_guard lock(s_mutex);
    return s_backends;
}

void ggml_backend_load_all()
{
    const std::lock_guard lock(s_mutex);
    s_state.calls.append(QStringLiteral("backends"));
    ++s_backends;
}

whisper_context_params whisper_context_default_params()
{
    return s_contextDefaults;
}

whisper_context *whisper_init_from_file_with_params(const char *path, whisper_context_params params)
{
    const std::lock_guard lock(s_mutex);
    s_state.contextParamsWereDefault =
        params.use_gpu == s_contextDefaults.use_gpu && params.gpu_device == s_contextDefaults.gpu_device;
    const QString name = QString::fromUtf8(path);
    if (s_backends == 0 || !QFileInfo(name).isFile()) {
        s_state.calls.append(QStringLiteral("failed init ") + name);
        return nullptr;
    }
    s_state.calls.append(QStringLiteral("init ") + name);
    ++s_livingContexts;
    return new whisper_context {path};
}

void whisper_free(whisper_context *context)
{
    const std::lock_guard lock(s_mutex);
    s_state.calls.append(QStringLiteral("free"));
    --s_livingContexts;
    delete context;
}

whisper_full_params whisper_full_default_params(whisper_sampling_strategy strategy)
{
    const std::lock_guard lock(s_mutex);
    s_state.transcription.asked = Clock::now();
    return WhisperStandIn::defaults(strategy);
}

int whisper_full(whisper_context *context, whisper_full_params params, const float *samples, int n_samples)
{
    std::unique_lock lock(s_mutex);
    WhisperStandIn::Transcription &transcription = s_state.transcription;
    transcription.begun = Clock::now();
    transcription.context = context;
    transcription.params = params;
    transcription.language = params.language;
    transcription.samples.assign(samples, samples + n_samples);
    s_state.calls.append(QStringLiteral("full begins"));
    s_state.isHeld = s_state.holds;
    s_changed.notify_all();
    s_changed.wait(lock, [] { return !s_state.holds; });
    s_state.isHeld = false;
    s_state.calls.append(QStringLiteral("full ends"));
    transcription.ended = Clock::now();
    return s_state.result;
}

int whisper_full_n_segments([[maybe_unused]] whisper_context *context)
{
    const std::lock_guard lock(s_mutex);
    s_state.transcription.read = Clock::now();
    return s_state.segments.size();
}

const char *whisper_full_get_segment_text([[maybe_unused]] whisper_context *context, int index)
{
    const std::lock_guard lock(s_mutex);
    const std::optional<QByteArray> &segment = s_state.segments.at(index);
    return segment ? segment->constData() : nullptr;
}
