// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "MessageLog.h"
#include "SpeechOutput.h"

#include <QDebug>
#include <QStringList>

#include <csignal>
#include <memory>

namespace SpeechWords
{

const QString begins = QStringLiteral("speakingChanged, speaking");
const QString ends = QStringLiteral("speakingChanged, silent");
const QString finished = QStringLiteral("speakingFinished");
const QString crashed = QStringLiteral("VoiceBridge: piper process error: \"Process crashed\"");
const QString notStarted = QStringLiteral("VoiceBridge: failed to start piper");

} // namespace SpeechWords

//! Whether a child has ended, and its end was noticed.
inline bool isGone(qint64 process)
{
    return ::kill(static_cast<pid_t>(process), 0) != 0;
}

//! Speech as it was found in the test's home, and all that it tells, signals and log, in one order. Its end is part of
//! the story.
class SpeechStory
{
public:
    SpeechStory()
    {
        m_speech->detect();
        m_log.clear();
        SpeechOutput *speech = m_speech.get();
        QObject::connect(speech, &SpeechOutput::speakingChanged, speech, [speech] {
            qDebug().noquote() << (speech->isSpeaking() ? SpeechWords::begins : SpeechWords::ends);
        });
        QObject::connect(speech, &SpeechOutput::speakingFinished, speech,
                         [] { qDebug().noquote() << SpeechWords::finished; });
    }

    SpeechOutput *operator->() const { return m_speech.get(); }
    SpeechOutput *get() const { return m_speech.get(); }
    //! Ends it.
    void destroy() { m_speech.reset(); }

    //! What was told so far.
    QStringList told() const
    {
        QStringList texts;
        for (const MessageLog::Line &line : m_log.lines()) {
            texts.append(line.text);
        }
        return texts;
    }
    //! The same, and forgets it.
    QStringList take()
    {
        const QStringList texts = told();
        m_log.clear();
        return texts;
    }

private:
    MessageLog m_log;
    std::unique_ptr<SpeechOutput> m_speech = std::make_unique<SpeechOutput>();
};
