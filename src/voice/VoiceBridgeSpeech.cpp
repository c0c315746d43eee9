// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// VoiceBridge beyond listening: speech, the wake word, the log of the voice test.
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
    if (ttsAvailable() && m_ttsEnabled && !text.trimmed().isEmpty()) {
        m_speechOutput->speak(text);
    }
}

void VoiceBridge::stopSpeaking()
{
    m_speechOutput->stop();
}

void VoiceBridge::onWakeWordActivated(const QString &phrase)
{
    // Whether the wake word is on isn't asked: who hears it while it is off has a detector of their own.
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
                         {m_sttInputMode, m_voiceSubmitMode, m_sttBackend, m_liveSttAvailable, m_silenceTimeoutMs});
}
