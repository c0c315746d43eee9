// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "SearchRoots.h"

#include <QObject>

class QProcess;

//! Reads replies aloud with two child processes joined by a pipe: piper makes sound of text, paplay plays it. At most
//! one reply at a time. Failures are logged and told nobody else: a reply that can't be read aloud is still a reply.
//!
//! Main thread. speak() blocks until piper has started, for up to 3 s, stop() up to 1 s for each process.
//! Slots may call speak() and stop() again: of several calls of speak() in each other the one that came last speaks.
class SpeechOutput : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    //! Ends what is being said without a signal.
    ~SpeechOutput() override;

    //! Program and voice model, empty before detect() and where nothing was found.
    QString piperPath() const { return m_piperPath; }
    QString piperVoicePath() const { return m_piperVoicePath; }
    //! Both are there.
    bool isAvailable() const { return m_available; }
    bool isSpeaking() const { return m_speaking; }

    //! Looks for program and voice.
    void detect(const SearchRoots &roots = SearchRoots::ofThisProcess());

    //! Reads a reply aloud, without its markdown, in place of the one before. Does nothing where speech isn't available
    //! or @p text is blank; where nothing of it can be spoken, the one before ends all the same.
    void speak(const QString &text);
    //! Ends what is being said. speakingFinished() comes before it returns, but never where paplay could not be started
    //! or takes longer than the wait to end.
    void stop();

Q_SIGNALS:
    void availableChanged();
    //! Can come more than once for one change: both processes report their end.
    void speakingChanged();
    //! What was being said is over, be it said, cut off or failed in paplay; not when piper failed.
    void speakingFinished();

private:
    void startProcesses(const QString &text);
    void onPiperError(const QProcess &piper);
    void onPaplayFinished();
    void setSpeaking(bool speaking);
    //! Kills a process, waits for its end, whose signals come as of any other, and lets it go.
    void end(QProcess *process);
    //! Nothing more is heard of a process, which is deleted once it has ended.
    void retire(QProcess *process);

    QString m_piperPath;
    QString m_piperVoicePath;
    QProcess *m_piper = nullptr;
    QProcess *m_paplay = nullptr;
    //! Of the last call of speak(), by which an older one sees that it was overtaken.
    int m_number = 0;
    bool m_available = false;
    bool m_speaking = false;
};
