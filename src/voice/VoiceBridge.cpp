// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "VoiceBridge.h"

#include "Capture.h"
#include "MoonshineWorker.h"
#include "NemotronStreamingWorker.h"
#include "NemotronWorker.h"
#include "SpeechOutput.h"
#include "SttBackends.h"
#include "ThreadHandover.h"
#include "VoiceSettings.h"
#include "WakeWord.h"
#include "WhisperWorker.h"

#include <QDebug>

namespace
{

constexpr int leastSilenceMs = 200;
constexpr int mostSilenceMs = 5000;
constexpr int mostConfirmDelaySec = 15;

QString boolWord(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

//! Takes a setting over and stores it. False where it was so before.
template<typename T>
bool change(T &member, const T &value, const char *key)
{
    if (member == value) {
        return false;
    }
    member = value;
    VoiceSettings::write(key, value);
    return true;
}

} // namespace

VoiceBridge::VoiceBridge(QObject *parent)
    : VoiceBridge(VoiceParts(), parent)
{
}

VoiceBridge::VoiceBridge(VoiceParts parts, QObject *parent)
    : QObject(parent)
    , m_sttBackend(SttBackends::usual())
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
    if (m_wakeWordEnabled) {
        WakeWord::startService();
    }
}

VoiceBridge::~VoiceBridge()
{
    cancelListening();
    stopSpeaking();
    // A capture that a frozen audio server holds may end after this object.
    m_captureLink->cut();
    m_workerThread.quit();
    m_workerThread.wait();
    ThreadHandover::acquire(&m_workerThread);
}

template<typename Worker>
void VoiceBridge::adoptWorker(Worker *worker)
{
    worker->moveToThread(&m_workerThread);
    connect(&m_workerThread, &QThread::finished, worker, &QObject::deleteLater);
    // The last that is heard of the thread.
    connect(worker, &QObject::destroyed, [thread = &m_workerThread] { ThreadHandover::release(thread); });
    ThreadHandover::connect(worker, &Worker::transcriptionReady, this, &VoiceBridge::onTranscriptionReady);
    ThreadHandover::connect(worker, &Worker::transcriptionFailed, this, &VoiceBridge::onTranscriptionFailed);
}

void VoiceBridge::readSettings()
{
    const VoiceSettings stored = VoiceSettings::read();
    m_ttsEnabled = stored.ttsEnabled;
    m_wakeWordEnabled = stored.wakeWordEnabled;
    m_sttBackend = stored.sttBackend;
    m_liveSttEnabled = stored.liveSttEnabled;
    m_sttInputMode = stored.sttInputMode;
    m_voiceSubmitMode = stored.voiceSubmitMode;
    m_silenceTimeoutMs = stored.silenceTimeoutMs;
    m_voiceConfirmDelaySec = stored.voiceConfirmDelaySec;
    m_voiceLogEnabled = stored.voiceLogEnabled;
    qDebug().noquote().nospace() << "[VoiceBridge] init  sttBackend=" << m_sttBackend
                                 << " sttInputMode=" << m_sttInputMode << " voiceSubmitMode=" << m_voiceSubmitMode
                                 << " silenceTimeout=" << m_silenceTimeoutMs
                                 << "ms confirmDelay=" << m_voiceConfirmDelaySec
                                 << "s logEnabled=" << m_voiceLogEnabled;
}

void VoiceBridge::setAvailable(bool &flag, bool available, void (VoiceBridge::*changed)())
{
    if (flag != available) {
        flag = available;
        Q_EMIT(this->*changed)();
    }
}

void VoiceBridge::setTtsEnabled(bool enabled)
{
    if (change(m_ttsEnabled, enabled, VoiceKeys::ttsEnabled)) {
        Q_EMIT ttsEnabledChanged();
    }
}

void VoiceBridge::setWakeWordEnabled(bool enabled)
{
    if (!change(m_wakeWordEnabled, enabled, VoiceKeys::wakeWordEnabled)) {
        return;
    }
    Q_EMIT wakeWordEnabledChanged();
    enabled ? WakeWord::startService() : WakeWord::stopService();
}

void VoiceBridge::setLiveSttEnabled(bool enabled)
{
    setSttInputMode(enabled ? VoiceWords::live() : VoiceWords::batch());
}

void VoiceBridge::setSttInputMode(const QString &mode)
{
    const QString value = VoiceSettings::inputMode(mode);
    if (value == m_sttInputMode) {
        return;
    }
    m_sttInputMode = value;
    if (change(m_liveSttEnabled, value == VoiceWords::live(), VoiceKeys::liveSttEnabled)) {
        Q_EMIT liveSttEnabledChanged();
    }
    VoiceSettings::write(VoiceKeys::sttInputMode, value);
    tellOfSetting(VoiceKeys::sttInputMode, value, QStringLiteral("STT mode = %1").arg(value));
    Q_EMIT sttInputModeChanged();
}

void VoiceBridge::setVoiceSubmitMode(const QString &mode)
{
    if (change(m_voiceSubmitMode, VoiceSettings::submitMode(mode), VoiceKeys::voiceSubmitMode)) {
        tellOfSetting(VoiceKeys::voiceSubmitMode, m_voiceSubmitMode,
                      QStringLiteral("submit mode = %1").arg(m_voiceSubmitMode));
        Q_EMIT voiceSubmitModeChanged();
    }
}

void VoiceBridge::setVoiceTestActive(bool active)
{
    if (m_voiceTestActive != active) {
        m_voiceTestActive = active;
        Q_EMIT voiceTestActiveChanged();
    }
}

void VoiceBridge::setBatchSttMode(bool batch)
{
    if (m_batchSttMode != batch) {
        m_batchSttMode = batch;
        Q_EMIT batchSttModeChanged();
    }
}

void VoiceBridge::setSilenceTimeoutMs(int timeoutMs)
{
    if (change(m_silenceTimeoutMs, qBound(leastSilenceMs, timeoutMs, mostSilenceMs), VoiceKeys::silenceTimeoutMs)) {
        const QString value = QString::number(m_silenceTimeoutMs);
        tellOfSetting(VoiceKeys::silenceTimeoutMs, value, QStringLiteral("silence timeout = %1 ms").arg(value));
        Q_EMIT silenceTimeoutMsChanged();
    }
}

void VoiceBridge::setVoiceConfirmDelaySec(int delaySec)
{
    if (change(m_voiceConfirmDelaySec, qBound(0, delaySec, mostConfirmDelaySec), VoiceKeys::voiceConfirmDelaySec)) {
        const QString value = QString::number(m_voiceConfirmDelaySec);
        tellOfSetting(VoiceKeys::voiceConfirmDelaySec, value, QStringLiteral("confirm delay = %1 s").arg(value));
        Q_EMIT voiceConfirmDelaySecChanged();
    }
}

void VoiceBridge::setVoiceLogEnabled(bool enabled)
{
    if (change(m_voiceLogEnabled, enabled, VoiceKeys::voiceLogEnabled)) {
        // No line in the log itself: switched on it would begin with that, switched off it takes none.
        tellOfSetting(VoiceKeys::voiceLogEnabled, boolWord(enabled), QString());
        Q_EMIT voiceLogEnabledChanged();
    }
}

void VoiceBridge::tellOfSetting(const char *name, const QString &value, const QString &logEntry)
{
    qDebug().noquote().nospace() << "[VoiceBridge] " << name << " -> " << value;
    if (!logEntry.isEmpty()) {
        appendVoiceLog(QStringLiteral("Setting changed: ") + logEntry);
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
    if (m_voiceLogEnabled) {
        m_voiceLog.append(QTime::currentTime(), entry);
        Q_EMIT voiceLogChanged();
    }
}
