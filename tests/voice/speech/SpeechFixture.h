// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "IsolatedRoots.h"
#include "MessageLog.h"
#include "SpeechOutput.h"

#include <QDebug>
#include <QStringList>

#include <csignal>
#include <memory>

namespace SpeechEvents
{

const QString begins = QStringLiteral("speakingChanged, speaking");
const QString ends = QStringLiteral("speakingChanged, silent");
const QString finished = QStringLiteral("speakingFinished");
const QString crashed = QStringLiteral("VoiceBridge: piper process error: \"Process crashed\"");
const QString notStarted = QStringLiteral("VoiceBridge: failed to start piper");

} // namespace SpeechEvents

//! Whether a child process has ended and was reaped.
inline bool isGone(qint64 process)
{
    return ::kill(static_cast<pid_t>(process), 0) != 0;
}

//! Speech output with the programs in the test's home. Records its signals and log lines in one list, including those
//! that it emits when it is deleted.
class SpeechFixture
{
public:
    SpeechFixture()
    {
        m_speech->detect(isolatedRoots());
        m_log.clear();
        SpeechOutput *speech = m_speech.get();
        QObject::connect(speech, &SpeechOutput::speakingChanged, speech, [speech] {
            qDebug().noquote() << (speech->isSpeaking() ? SpeechEvents::begins : SpeechEvents::ends);
        });
        QObject::connect(speech, &SpeechOutput::speakingFinished, speech,
                         [] { qDebug().noquote() << SpeechEvents::finished; });
    }

    SpeechOutput *operator->() const { return m_speech.get(); }
    SpeechOutput *get() const { return m_speech.get(); }
    void destroy() { m_speech.reset(); }

    //! The recorded signals and log lines.
    QStringList events() const
    {
        QStringList texts;
        for (const MessageLog::Line &line : m_log.lines()) {
            texts.append(line.text);
        }
        return texts;
    }
    //! Returns the record and clears it.
    QStringList take()
    {
        const QStringList texts = events();
        m_log.clear();
        return texts;
    }

private:
    MessageLog m_log;
    std::unique_ptr<SpeechOutput> m_speech = std::make_unique<SpeechOutput>();
};
