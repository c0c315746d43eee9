// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// How VoiceBridge listens.
#include "VoiceBridge.h"

#include "Capture.h"
#include "ModelPaths.h"
#include "NemotronStreamingWorker.h"
#include "ThreadHandover.h"
#include "VoiceSettings.h"

#include <QDebug>

namespace
{

//! The one copy of an utterance that is made.
QByteArray bytesOf(const std::vector<qint16> &samples)
{
    return QByteArray(reinterpret_cast<const char *>(samples.data()), int(samples.size() * sizeof(qint16)));
}

} // namespace

bool VoiceBridge::wantsLive() const
{
    return m_sttInputMode == VoiceWords::live() && m_liveSttAvailable;
}

void VoiceBridge::startListening()
{
    if (m_isListening || m_isTranscribing) {
        return;
    }
    const bool live = !m_batchSttMode && wantsLive();
    appendVoiceLog(
        QStringLiteral("START listening  mode=%1  backend=%2  silenceTimeout=%3ms")
            .arg(live ? VoiceWords::live() : VoiceWords::batch(), m_sttBackend, QString::number(m_silenceTimeoutMs)));
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
    setListening(true);
    // Whoever heard of that may have cancelled already.
    if (!m_isListening) {
        return;
    }

    const bool liveMode = wantsLive() && m_liveSessionActive;
    QString reason;
    std::unique_ptr<Microphone> microphone = m_openMicrophone(&reason);
    if (!microphone) {
        // Listening stays set, so that nothing tries again before the user has cancelled.
        Q_EMIT errorOccurred(QStringLiteral("Cannot open microphone: ") + reason);
        return;
    }
    startCapture(std::move(microphone), liveMode);
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
        return false; // cancelled by whoever heard of that
    }
    ThreadHandover::call(worker, [worker] { worker->startSession(); });
    return true;
}

void VoiceBridge::startCapture(std::unique_ptr<Microphone> microphone, bool liveMode)
{
    // The capture thread knows this object only through the link, which is cut before it goes.
    const std::shared_ptr<CaptureLink> link = m_captureLink;
    Capture::Listener listener;
    listener.level = [this, link](double rms) {
        link->pass([this, rms] {
            storeInputLevel(rms);
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
    const std::uint64_t number = ++m_captureNumber;
    listener.finished = [this, link, number, liveMode](bool speechSeen, int chunks) {
        link->pass([=, this] {
            ThreadHandover::post(this, [=, this] { finishCapture(number, speechSeen, liveMode, chunks); });
        });
    };
    m_capture = std::make_unique<Capture>(std::move(microphone), m_silenceTimeoutMs, std::move(m_captureBuffer),
                                          std::move(listener));
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
    const int audioMs = chunks * Pcm::ChunkMs;
    if (number != m_captureNumber) {
        // One that was cancelled, and another has begun before this was delivered: the newer one's thread, samples and
        // state aren't touched.
        tellOfNoSpeech(audioMs);
        return;
    }
    joinCaptureThread();
    // Taken before anybody is told of anything, as whoever hears of the end may start the next capture. In live mode
    // the engine has had it all, and none is left to be told of.
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
        tellOfNoSpeech(audioMs);
        return;
    }

    // A live capture that was cancelled after it had heard speech comes here as well. That isn't to be mended: its
    // session leads to a transcript or a failure, which ends what begins here.
    appendVoiceLog(QStringLiteral("CAPTURE done  audio=%1ms  samples=%2")
                       .arg(audioMs)
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
    appendVoiceLog(QStringLiteral("TRANSCRIBING (batch)  backend=%1").arg(m_sttBackend));
    Q_EMIT requestTranscription(pcm16Data);
}

void VoiceBridge::tellOfNoSpeech(int audioMs)
{
    appendVoiceLog(QStringLiteral("SILENCE  no speech detected after %1 ms").arg(audioMs));
    Q_EMIT errorOccurred(QStringLiteral("No speech detected"));
}

void VoiceBridge::joinCaptureThread()
{
    if (m_capture) {
        m_captureBuffer = m_capture->join();
        m_capture.reset();
    }
    m_inputLevel = 0;
    Q_EMIT inputLevelChanged();
}

void VoiceBridge::storeInputLevel(double rms)
{
    m_inputLevel = rms;
}

double VoiceBridge::inputLevel() const
{
    return m_inputLevel;
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
