// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "WhisperWorker.h"

#include "ThreadHandover.h"
#include "Transcription.h"

#include <QDebug>
#include <QtEndian>

#include <algorithm>
#include <chrono>
#include <mutex>
#include <thread>
#include <vector>

#ifdef HAVE_WHISPER
#include <whisper.h>
#if __has_include(<ggml-backend.h>)
#include <ggml-backend.h>
#define HAVE_GGML_BACKENDS
#endif
#endif

namespace
{

//! Locks the mutex of the context. Unlike QMutexLocker it annotates this for ThreadSanitizer, because a contended
//! QMutex is locked inside Qt, where the sanitizer doesn't see it.
class ContextLock
{
public:
    explicit ContextLock(QMutex &mutex)
        : m_mutex(mutex)
    {
        m_mutex.lock();
        ThreadHandover::acquire(&m_mutex);
    }
    ~ContextLock()
    {
        ThreadHandover::release(&m_mutex);
        m_mutex.unlock();
    }
    Q_DISABLE_COPY_MOVE(ContextLock)

private:
    QMutex &m_mutex;
};

#ifdef HAVE_WHISPER

constexpr unsigned s_maxThreads = 8;

//! Some builds of the library have their compute backends as plugins. Without them it aborts the process when the first
//! model is loaded.
void loadBackends()
{
#ifdef HAVE_GGML_BACKENDS
    static std::once_flag once;
    std::call_once(once, [] {
        if (ggml_backend_reg_count() == 0) {
            ggml_backend_load_all();
        }
    });
#endif
}

whisper_context *loadContext(const QString &path)
{
    loadBackends();
    return whisper_init_from_file_with_params(path.toUtf8().constData(), whisper_context_default_params());
}

void freeContext(whisper_context *context)
{
    whisper_free(context);
}

//! The samples as floats from -1 to just below 1.
std::vector<float> samplesOf(const QByteArray &pcm16Data)
{
    constexpr float scale = 1.0F / 32768.0F;
    std::vector<float> samples(static_cast<std::size_t>(pcm16Data.size()) / sizeof(qint16));
    const char *source = pcm16Data.constData();
    for (float &sample : samples) {
        sample = static_cast<float>(qFromLittleEndian<qint16>(source)) * scale;
        source += sizeof(qint16);
    }
    return samples;
}

whisper_full_params parameters()
{
    whisper_full_params params = whisper_full_default_params(WHISPER_SAMPLING_GREEDY);
    params.no_context = true;
    params.single_segment = true;
    params.print_special = false;
    params.print_progress = false;
    params.print_realtime = false;
    params.print_timestamps = false;
    params.language = "en";
    // hardware_concurrency() is 0 if unknown.
    params.n_threads = static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1U, s_maxThreads));
    return params;
}

QString textOf(whisper_context *context)
{
    QString text;
    const int count = whisper_full_n_segments(context);
    for (int i = 0; i < count; ++i) {
        const char *segment = whisper_full_get_segment_text(context, i);
        if (segment == nullptr) {
            continue;
        }
        // Intentional: a blank segment still gets its separator.
        if (!text.isEmpty()) {
            text += QLatin1Char(' ');
        }
        text += QString::fromUtf8(segment).trimmed();
    }
    return text;
}

#else

whisper_context *loadContext([[maybe_unused]] const QString &path)
{
    static std::once_flag once;
    std::call_once(once, [] { qWarning("WhisperWorker: built without libwhisper"); });
    return nullptr;
}

void freeContext([[maybe_unused]] whisper_context *context)
{
}

#endif

} // namespace

WhisperWorker::~WhisperWorker()
{
    const ContextLock lock(m_contextMutex);
    if (m_whisperContext != nullptr) {
        freeContext(m_whisperContext);
        m_whisperContext = nullptr;
    }
}

bool WhisperWorker::loadModel(const QString &path)
{
    const ContextLock lock(m_contextMutex);
    if (m_whisperContext != nullptr) {
        freeContext(m_whisperContext);
        m_whisperContext = nullptr;
    }
    m_whisperContext = loadContext(path);
    return m_whisperContext != nullptr;
}

void WhisperWorker::transcribe([[maybe_unused]] const QByteArray &pcm16Data)
{
    const ContextLock lock(m_contextMutex);
    if (m_whisperContext == nullptr) {
        Q_EMIT transcriptionFailed(QStringLiteral("Model not loaded"));
        return;
    }
#ifdef HAVE_WHISPER
    if (pcm16Data.size() < Transcription::MinimumBytes) {
        Q_EMIT transcriptionFailed(Transcription::AudioTooShort);
        return;
    }
    const std::vector<float> samples = samplesOf(pcm16Data);
    const whisper_full_params params = parameters();

    const auto started = std::chrono::steady_clock::now();
    const int result = whisper_full(m_whisperContext, params, samples.data(), static_cast<int>(samples.size()));
    const std::chrono::duration<double, std::milli> elapsed = std::chrono::steady_clock::now() - started;
    if (result != 0) {
        Q_EMIT transcriptionFailed(QStringLiteral("whisper_full() returned error"));
        return;
    }

    const QString text = textOf(m_whisperContext);
    if (text.isEmpty()) {
        Q_EMIT transcriptionFailed(Transcription::NoSpeech);
        return;
    }
    Q_EMIT transcriptionReady(text, elapsed.count());
#endif
}

// Keeps the whole class in one object file. Tests compile this file again, against a stand-in for the library, and the
// linker then leaves out this object file of the engines' library.
#include "moc_WhisperWorker.cpp"
