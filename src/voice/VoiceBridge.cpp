// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "VoiceBridge.h"

#include "Capture.h"
#include "MoonshineWorker.h"
#include "NemotronStreamingWorker.h"
#include "NemotronWorker.h"
#include "SpeechOutput.h"
#include "ThreadHandover.h"
#include "WakeWord.h"
#include "WhisperWorker.h"

#include <QDebug>

VoiceBridge::VoiceBridge(QObject *parent)
    : VoiceBridge(VoiceParts(), parent)
{
}

VoiceBridge::VoiceBridge(VoiceParts parts, QObject *parent)
    : QObject(parent)
    , m_roots(parts.roots)
    , m_openMicrophone(parts.openMicrophone)
    , m_speechOutput(new SpeechOutput(this))
    , m_whisperWorker(parts.whisper.release())
    , m_moonshineWorker(parts.moonshine.release())
    , m_nemotronWorker(parts.nemotron.release())
    , m_streamingWorker(parts.streaming.release())
    , m_captureLink(std::make_shared<CaptureLink>())
{
    m_workerThread.setObjectName(QStringLiteral("voice engines"));
    adoptWorker(m_whisperWorker);
    adoptWorker(m_moonshineWorker);
    adoptWorker(m_nemotronWorker);
    adoptWorker(m_streamingWorker);
    connect(this, &VoiceBridge::requestTranscription, this, &VoiceBridge::dispatchTranscription);
    ThreadHandover::connect(m_streamingWorker, &NemotronStreamingWorker::partialReady, this,
                            &VoiceBridge::onPartialTranscript);
    connect(m_speechOutput, &SpeechOutput::availableChanged, this, &VoiceBridge::ttsAvailableChanged);
    connect(m_speechOutput, &SpeechOutput::speakingChanged, this, &VoiceBridge::speakingChanged);
    connect(m_speechOutput, &SpeechOutput::speakingFinished, this, &VoiceBridge::speakingFinished);
    m_workerThread.start(QThread::InheritPriority);

    readSettings();
    m_speechOutput->detect(m_roots);
    detectEngines();
    setAvailable(m_liveSttAvailable, parts.liveSttAvailable, &VoiceBridge::liveSttAvailableChanged);
    qDebug() << "VoiceBridge: live STT available:" << m_liveSttAvailable;
    WakeWord::connectSignal(this);
    m_postProcessor.loadInstalledRules();
    if (m_settings.wakeWordEnabled) {
        WakeWord::startService();
    }
}

VoiceBridge::~VoiceBridge()
{
    cancelListening();
    stopSpeaking();
    // A capture thread that is blocked by a frozen audio server may outlive this object.
    m_captureLink->cut();
    m_moonshineWorker->abort();
    m_nemotronWorker->abort();
    m_workerThread.quit();
    m_workerThread.wait();
    ThreadHandover::acquire(&m_workerThread);
}

template<typename Worker>
void VoiceBridge::adoptWorker(Worker *worker)
{
    worker->moveToThread(&m_workerThread);
    connect(&m_workerThread, &QThread::finished, worker, &QObject::deleteLater);
    // The last code that runs on the thread.
    connect(worker, &QObject::destroyed, [thread = &m_workerThread] { ThreadHandover::release(thread); });
    ThreadHandover::connect(worker, &Worker::transcriptionReady, this, &VoiceBridge::onTranscriptionReady);
    ThreadHandover::connect(worker, &Worker::transcriptionFailed, this, &VoiceBridge::onTranscriptionFailed);
}

void VoiceBridge::setAvailable(bool &flag, bool available, void (VoiceBridge::*changed)())
{
    if (flag != available) {
        flag = available;
        Q_EMIT(this->*changed)();
    }
}

void VoiceBridge::clearVoiceLog()
{
    if (!m_voiceLog.lines().isEmpty()) {
        m_voiceLog.clear();
        Q_EMIT voiceLogChanged();
    }
}

void VoiceBridge::appendVoiceLog(const QString &entry)
{
    if (m_settings.voiceLogEnabled) {
        m_voiceLog.append(QTime::currentTime(), entry);
        Q_EMIT voiceLogChanged();
    }
}
