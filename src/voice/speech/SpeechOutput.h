// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "SearchRoots.h"

#include <QObject>

#include <chrono>

class QProcess;

//! Reads replies aloud, one at a time, with two child processes connected by a pipe: piper synthesizes the speech,
//! paplay plays it. Failures are only logged: the user can still read the reply.
//!
//! Main thread. speak() blocks until piper has started, for 3 s at most; stop() blocks for up to 1 s per process. Slots
//! may call speak() and stop(). With nested calls of speak() the last text is spoken.
class SpeechOutput : public QObject
{
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds StartTimeout {3000};
    static constexpr std::chrono::milliseconds KillTimeout {1000};

    using QObject::QObject;
    //! Stops without emitting signals.
    ~SpeechOutput() override;

    //! Program and voice model. Empty before detect() and if nothing was found.
    QString piperPath() const { return m_piperPath; }
    QString piperVoicePath() const { return m_piperVoicePath; }
    //! Program and voice model were found.
    bool isAvailable() const { return m_available; }
    bool isSpeaking() const { return m_speaking; }

    //! Searches program and voice model.
    void detect(const SearchRoots &roots);

    //! Stops the current reply and reads @p text aloud, which may be markdown. Does nothing if speech isn't available
    //! or the text is blank. If nothing of the text can be spoken, it only stops the current reply.
    void speak(const QString &text);
    //! Stops the current reply. Emits speakingFinished() before it returns, unless paplay couldn't be started or
    //! doesn't end within the timeout.
    void stop();

Q_SIGNALS:
    void availableChanged();
    //! May be emitted twice for one change because both processes report their end.
    void speakingChanged();
    //! The reply was played, was stopped, or failed in paplay. Not emitted if piper fails.
    void speakingFinished();

private:
    void startProcesses(const QString &text);
    void onPiperError(const QProcess &piper);
    void onPaplayFinished();
    void setSpeaking(bool speaking);
    //! Kills a process, waits for its end, with the signals that this emits, and retires it.
    void end(QProcess *process);
    //! Disconnects a process and deletes it once it has ended.
    void retire(QProcess *process);

    QString m_piperPath;
    QString m_piperVoicePath;
    QProcess *m_piper = nullptr;
    QProcess *m_paplay = nullptr;
    //! Counts the calls of speak(), so that an outer call notices a nested one.
    int m_speakNumber = 0;
    bool m_available = false;
    bool m_speaking = false;
};
