// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// VoiceBridge: speech output, the wake word, and the log of voice tests.
#include "VoiceBridge.h"

#include "SpeechOutput.h"
#include "VoiceTestLog.h"

#include <QDebug>

bool VoiceBridge::isSpeaking() const
{
    return m_speechOutput->isSpeaking();
}

bool VoiceBridge::ttsAvailable() const
{
    return m_speechOutput->isAvailable();
}

void VoiceBridge::speak(const QString &text)
{
    if (ttsAvailable() && m_settings.ttsEnabled && !text.trimmed().isEmpty()) {
        m_speechOutput->speak(text);
    }
}

void VoiceBridge::stopSpeaking()
{
    m_speechOutput->stop();
}

void VoiceBridge::onWakeWordActivated(const QString &phrase)
{
    // Intentional: doesn't check wakeWordEnabled. A user without our service may run another detector.
    qDebug() << "VoiceBridge: wake word activated:" << phrase;
    Q_EMIT wakeWordActivated(phrase);
    if (isSpeaking()) {
        stopSpeaking();
    }
    if (!m_isListening && !m_isTranscribing) {
        startListening();
    }
}

QString VoiceBridge::voiceTestLogPath() const
{
    return VoiceTestLog::path();
}

void VoiceBridge::appendVoiceTestFeedback(const QString &sentenceId, const QString &category, const QString &reference,
                                          const QString &hypothesis, double accuracy, int latencyMs)
{
    VoiceTestLog::append({sentenceId, category, reference, hypothesis, accuracy, latencyMs},
                         {m_settings.sttInputMode, m_settings.voiceSubmitMode, m_settings.sttBackend,
                          m_liveSttAvailable, m_settings.silenceTimeoutMs});
}
