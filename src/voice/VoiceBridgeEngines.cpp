// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// How VoiceBridge chooses an engine, loads its model, and handles its transcripts.
#include "VoiceBridge.h"

#include "ModelPaths.h"
#include "MoonshineWorker.h"
#include "NemotronWorker.h"
#include "ThreadHandover.h"
#include "VoiceSettingsTable.h"
#include "WhisperWorker.h"

#include <QDebug>
#include <QFileInfo>

void VoiceBridge::detectEngines()
{
    const auto hasWhisperModel = [this](const QString &backend) {
        return !ModelPaths::resolveWhisperModelPath(backend, m_roots).isEmpty();
    };
    setAvailable(m_whisperSmallAvailable, hasWhisperModel(SttBackends::WhisperSmall),
                 &VoiceBridge::whisperSmallAvailableChanged);
    setAvailable(m_whisperSmallQ5Available, hasWhisperModel(SttBackends::WhisperSmallQ5),
                 &VoiceBridge::whisperSmallQ5AvailableChanged);
    qDebug() << "VoiceBridge: whisper-small:" << m_whisperSmallAvailable << "q5_1:" << m_whisperSmallQ5Available;

    const auto hasSherpa = [this](const SherpaWorker *worker) {
        const SherpaWorker::Availability found = worker->availability(m_roots);
        qDebug() << worker->engine().available << found.available() << "bin:" << found.program
                 << "model:" << found.model;
        return found.available();
    };
    setAvailable(m_moonshineAvailable, hasSherpa(m_moonshineWorker), &VoiceBridge::moonshineAvailableChanged);
    setAvailable(m_nemotronAvailable, hasSherpa(m_nemotronWorker), &VoiceBridge::nemotronAvailableChanged);
}

SherpaWorker *VoiceBridge::sherpaWorker(const QString &backend) const
{
    return backend == SttBackends::Moonshine ? m_moonshineWorker
        : backend == SttBackends::Nemotron   ? static_cast<SherpaWorker *>(m_nemotronWorker)
                                             : nullptr;
}

void VoiceBridge::setSttBackend(const QString &backend)
{
    const VoiceSetting<QString> &setting = VoiceSettingsTable::sttBackend;
    const QString id = setting.normalized(backend);
    if (id == m_settings.sttBackend) {
        return;
    }
    if (const QString reason = refusal(id); !reason.isEmpty()) {
        Q_EMIT errorOccurred(reason);
        return;
    }
    cancelListening();
    m_settings.sttBackend = id;
    m_isModelLoaded = false;
    m_modelName.clear();
    Q_EMIT sttBackendChanged();
    Q_EMIT modelLoadedChanged();
    m_settings.write(setting);
    loadModel(); // emits errorOccurred() on failure
}

QString VoiceBridge::refusal(const QString &backend) const
{
    const struct
    {
        QLatin1String backend;
        bool available;
        QString reason;
    } rows[] = {
        {SttBackends::WhisperSmall, m_whisperSmallAvailable,
         QStringLiteral("Whisper small.en model not found. Download ggml-small.en.bin")},
        {SttBackends::WhisperSmallQ5, m_whisperSmallQ5Available,
         QStringLiteral("Whisper small.en Q5 model not found. Run whisper-quantize")},
        {SttBackends::Moonshine, m_moonshineAvailable,
         QStringLiteral("Moonshine backend not available on this system")},
        {SttBackends::Nemotron, m_nemotronAvailable, QStringLiteral("Nemotron backend not available on this system")},
    };
    for (const auto &row : rows) {
        if (row.backend == backend) {
            return row.available ? QString() : row.reason;
        }
    }
    return QString();
}

bool VoiceBridge::loadModel(const QString &path)
{
    m_isModelLoaded = false;
    m_lastError.clear();
    Q_EMIT modelLoadedChanged();
    if (m_settings.sttBackend == SttBackends::Moonshine) {
        return loadSherpaModel(m_moonshineWorker, m_moonshineAvailable, path);
    }
    if (m_settings.sttBackend == SttBackends::Nemotron) {
        return loadSherpaModel(m_nemotronWorker, m_nemotronAvailable, path);
    }
    return loadWhisperModel(path);
}

bool VoiceBridge::loadWhisperModel(const QString &path)
{
    const QString modelPath =
        path.isEmpty() ? ModelPaths::resolveWhisperModelPath(m_settings.sttBackend, m_roots) : path;
    if (modelPath.isEmpty()) {
        // Intentional: names the base model, which is easy to get, whichever model is missing.
        Q_EMIT errorOccurred(QStringLiteral(
            "Whisper model not found. Download ggml-base.en.bin to ~/.local/share/tovi-forkeldaos/models/"));
        return false;
    }
    qDebug() << "VoiceBridge: loading whisper model" << modelPath;
    if (!m_whisperWorker->loadModel(modelPath)) {
        Q_EMIT errorOccurred(QStringLiteral("Failed to load whisper model: ") + modelPath);
        return false;
    }
    setModelLoaded(QFileInfo(modelPath).fileName());
    return true;
}

bool VoiceBridge::loadSherpaModel(SherpaWorker *worker, bool available, const QString &path)
{
    const SherpaEngine &engine = worker->engine();
    if (!available) {
        Q_EMIT errorOccurred(engine.unavailable);
        return false;
    }
    const QString modelDir = worker->resolveModelDir(path, m_roots);
    if (modelDir.isEmpty()) {
        Q_EMIT errorOccurred(engine.dirNotFound);
        return false;
    }
    qDebug() << engine.loading << modelDir;
    if (!worker->load(modelDir, m_roots)) {
        Q_EMIT errorOccurred(engine.loadFailed + modelDir);
        return false;
    }
    setModelLoaded(worker->modelName());
    return true;
}

void VoiceBridge::setModelLoaded(const QString &name)
{
    m_isModelLoaded = true;
    m_modelName = name;
    Q_EMIT modelLoadedChanged();
}

void VoiceBridge::dispatchTranscription(const QByteArray &pcm16Data)
{
    if (SherpaWorker *const worker = sherpaWorker(m_settings.sttBackend)) {
        ThreadHandover::post(worker, [worker, pcm16Data] { worker->transcribe(pcm16Data); });
    } else {
        ThreadHandover::post(m_whisperWorker, [worker = m_whisperWorker, pcm16Data] { worker->transcribe(pcm16Data); });
    }
}

void VoiceBridge::onTranscriptionReady(const QString &text, double elapsedMs)
{
    setTranscribing(false);
    const QString final = m_postProcessor.isLoaded() ? m_postProcessor.correctFinal(text) : text;
    if (final != text) {
        qDebug() << "SttPostProcessor:" << text << "->" << final;
        appendVoiceLog(QStringLiteral("CORRECTED \"%1\" -> \"%2\"").arg(text, final));
    }
    m_lastTranscript = final;
    m_lastTranscriptionMs = elapsedMs;
    m_lastError.clear();
    m_partialTranscript.clear();
    Q_EMIT partialTranscriptChanged();
    qDebug() << "VoiceBridge: transcribed in" << elapsedMs << "ms:" << final;
    appendVoiceLog(QStringLiteral("TRANSCRIPT \"%1\"  latency=%2ms").arg(final, QString::number(elapsedMs, 'f', 0)));
    Q_EMIT transcriptReady(final);
}

void VoiceBridge::onTranscriptionFailed(const QString &error)
{
    setTranscribing(false);
    m_lastError = error;
    m_partialTranscript.clear();
    Q_EMIT partialTranscriptChanged();
    appendVoiceLog(QStringLiteral("ERROR %1").arg(error));
    Q_EMIT errorOccurred(error);
}

void VoiceBridge::onPartialTranscript(const QString &text)
{
    const QString partial = m_postProcessor.isLoaded() ? m_postProcessor.correctPartial(text) : text;
    if (partial != m_partialTranscript) {
        m_partialTranscript = partial;
        Q_EMIT partialTranscriptChanged();
    }
}
