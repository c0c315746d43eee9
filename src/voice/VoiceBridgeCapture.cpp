// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// How VoiceBridge captures an utterance.
#include "VoiceBridge.h"

#include "Capture.h"
#include "ModelPaths.h"
#include "NemotronStreamingWorker.h"
#include "ThreadHandover.h"

#include <QDebug>

namespace
{

//! Copies an utterance. This is the only copy.
QByteArray bytesOf(const std::vector<qint16> &samples)
{
    return QByteArray(reinterpret_cast<const char *>(samples.data()), int(samples.size() * sizeof(qint16)));
}

} // namespace

bool VoiceBridge::wantsLive() const
{
    return m_settings.sttInputMode == SttInputMode::Live && m_liveSttAvailable;
}

void VoiceBridge::startListening()
{
    if (m_isListening || m_isTranscribing) {
        return;
    }
    const bool live = !m_batchSttMode && wantsLive();
    appendVoiceLog(QStringLiteral("START listening  mode=%1  backend=%2  silenceTimeout=%3ms")
                       .arg(live ? SttInputMode::Live : SttInputMode::Batch, m_settings.sttBackend,
                            QString::number(m_settings.silenceTimeoutMs)));
    if (live) {
        if (!prepareLiveSession()) {
            return;
        }
    } else {
        m_liveSessionActive = false;
        if (!m_isModelLoaded && !loadModel()) {
            return;
        }
    }
    const std::uint64_t number = ++m_captureNumber;
    setListening(true);
    // A slot may have cancelled already, and may then have started the next capture.
    if (!m_isListening || number != m_captureNumber) {
        return;
    }

    const bool liveMode = wantsLive() && m_liveSessionActive;
    QString reason;
    std::unique_ptr<Microphone> microphone = m_openMicrophone(&reason);
    if (!microphone) {
        // isListening stays true, so that nothing tries again before the user has cancelled.
        Q_EMIT errorOccurred(QStringLiteral("Cannot open microphone: ") + reason);
        return;
    }
    startCapture(number, std::move(microphone), liveMode);
}

bool VoiceBridge::prepareLiveSession()
{
    NemotronStreamingWorker *const worker = m_streamingWorker;
    if (!worker->isLoaded()) {
        const QString modelDir = ModelPaths::resolveStreamingModelDir(m_roots);
        if (modelDir.isEmpty()) {
            return false;
        }
        const bool loaded = ThreadHandover::call(worker, [worker, modelDir] { return worker->loadModel(modelDir); });
        if (!loaded) {
            Q_EMIT errorOccurred(QStringLiteral("Failed to load Nemotron streaming model"));
            return false;
        }
        setModelLoaded(worker->modelName());
        qDebug() << "VoiceBridge: live Nemotron streaming model loaded" << m_modelName;
    } else if (!m_isModelLoaded) {
        setModelLoaded(worker->modelName());
    }
    m_liveSessionActive = true;
    m_partialTranscript.clear();
    Q_EMIT partialTranscriptChanged();
    if (!m_liveSessionActive) {
        return false; // cancelled by a slot
    }
    ThreadHandover::call(worker, [worker] { worker->startSession(); });
    return true;
}

void VoiceBridge::startCapture(std::uint64_t number, std::unique_ptr<Microphone> microphone, bool liveMode)
{
    // The capture thread calls this object only through the link, which is cut before the object is deleted.
    const std::shared_ptr<CaptureLink> link = m_captureLink;
    Capture::Listener listener;
    listener.level = [this, link](double rms) {
        link->pass([this, rms] {
            m_inputLevel.store(rms, std::memory_order_relaxed);
            ThreadHandover::post(this, [this] { Q_EMIT inputLevelChanged(); });
        });
    };
    if (liveMode) {
        listener.chunk = [worker = m_streamingWorker, link](const QByteArray &pcm16Chunk) {
            link->pass([worker, pcm16Chunk] {
                ThreadHandover::post(worker, [worker, pcm16Chunk] { worker->feedChunk(pcm16Chunk); });
            });
        };
    }
    listener.finished = [this, link, number, liveMode](bool speechSeen, int chunks) {
        link->pass([=, this] {
            ThreadHandover::post(this, [=, this] { finishCapture(number, speechSeen, liveMode, chunks); });
        });
    };
    m_capture = std::make_unique<Capture>(std::move(microphone), std::chrono::milliseconds(m_settings.silenceTimeoutMs),
                                          std::move(m_captureBuffer), std::move(listener));
}

void VoiceBridge::stopListening()
{
    if (m_isListening && m_capture) {
        m_capture->stop();
    }
}

void VoiceBridge::cancelListening()
{
    m_liveSessionActive = false;
    joinCaptureThread();
    m_captureBuffer.clear();
    ThreadHandover::post(m_streamingWorker, [worker = m_streamingWorker] { worker->cancelSession(); });
    if (!m_partialTranscript.isEmpty()) {
        m_partialTranscript.clear();
        Q_EMIT partialTranscriptChanged();
    }
    if (m_isListening) {
        setListening(false);
    } else if (m_isTranscribing) {
        setTranscribing(false);
    }
}

void VoiceBridge::finishCapture(std::uint64_t number, bool speechSeen, bool liveMode, int chunks)
{
    const std::chrono::milliseconds audio = chunks * Pcm::ChunkDuration;
    if (number != m_captureNumber) {
        // This capture was cancelled, and the next one was started before this call was delivered. Thread, samples and
        // state belong to the next one, even if its microphone couldn't be opened.
        reportNoSpeech(audio);
        return;
    }
    joinCaptureThread();
    // Taken before any signal is emitted, because a slot may start the next capture. In live mode the engine has
    // received all audio already.
    QByteArray pcm16Data;
    if (!liveMode) {
        pcm16Data = bytesOf(m_captureBuffer);
        m_captureBuffer.clear();
    }
    if (!speechSeen || (!liveMode && pcm16Data.isEmpty())) {
        setListening(false);
        if (liveMode) {
            ThreadHandover::post(m_streamingWorker, [worker = m_streamingWorker] { worker->cancelSession(); });
        }
        m_partialTranscript.clear();
        Q_EMIT partialTranscriptChanged();
        reportNoSpeech(audio);
        return;
    }

    // Intentional: a live capture that was cancelled after speech had begun gets here, too. Its session ends with a
    // transcript or an error, which resets isTranscribing.
    appendVoiceLog(QStringLiteral("CAPTURE done  audio=%1ms  samples=%2")
                       .arg(audio.count())
                       .arg(pcm16Data.size() / int(sizeof(qint16))));
    setListening(false);
    if (liveMode) {
        m_liveSessionActive = false;
        setTranscribing(true);
        appendVoiceLog(QStringLiteral("TRANSCRIBING (live finalize)"));
        ThreadHandover::post(m_streamingWorker, [worker = m_streamingWorker] { worker->finalizeSession(); });
        return;
    }
    setTranscribing(true);
    appendVoiceLog(QStringLiteral("TRANSCRIBING (batch)  backend=%1").arg(m_settings.sttBackend));
    Q_EMIT requestTranscription(pcm16Data);
}

void VoiceBridge::reportNoSpeech(std::chrono::milliseconds audio)
{
    appendVoiceLog(QStringLiteral("SILENCE  no speech detected after %1 ms").arg(audio.count()));
    Q_EMIT errorOccurred(QStringLiteral("No speech detected"));
}

void VoiceBridge::joinCaptureThread()
{
    if (m_capture) {
        m_captureBuffer = m_capture->join();
        m_capture.reset();
    }
    m_inputLevel.store(0, std::memory_order_relaxed);
    Q_EMIT inputLevelChanged();
}

void VoiceBridge::setListening(bool listening)
{
    m_isListening = listening;
    Q_EMIT listeningChanged();
}

void VoiceBridge::setTranscribing(bool transcribing)
{
    m_isTranscribing = transcribing;
    Q_EMIT transcribingChanged();
}
