// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "DesktopRun.h"

#include "PiperStandIn.h"
#include "ScriptedBridge.h"
#include "Sentence.h"
#include "SherpaStandIn.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <memory>

//! The user's side of the voice path, from outside the program.
namespace VoiceUser
{

//! Stores the settings of a user who has chosen the engine for which there is a stand-in.
//! @param more further lines of the group "voice"
void chooseEngine(const QByteArray &more = QByteArray());

//! Emits the signal of the wake word detector.
bool wake();

//! The number of programs that are recording from the microphone.
int readers();

//! Whether any of these processes is still running.
bool isAnyAlive(const QList<qint64> &processIds);

} // namespace VoiceUser

//! The started program with a microphone, a stand-in for the engine and one for piper, and a scripted bridge. Replies
//! are read aloud. Needs a display, a session bus, an audio daemon and a private network.
//!
//! Errors in its set-up fail the running test.
class VoiceRun
{
public:
    //! @param confirmDelay duration of the countdown before a transcript is sent
    //!  words what the user says. The engine doesn't understand it, so that short words do.
    explicit VoiceRun(std::chrono::seconds confirmDelay, const QString &words = QStringLiteral("Yes"));
    Q_DISABLE_COPY_MOVE(VoiceRun)

    //! Starts the program and waits for its window. @return false on timeout, or if it ends before
    bool start(const QStringList &arguments = {},
               const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment());
    DesktopRun &program() { return *m_program; }

    //! How often the chat client has connected to the bridge.
    int connections() { return m_program->errors().count("[AgentBridge] Connected to Loomra bridge\n"); }
    //! Waits until the chat client is connected again. @param before connections() before the connection was lost
    bool waitForConnection(int before = 0);
    //! The text and the input mode of all prompts that the bridge has received.
    QStringList prompts() const;

    //! Emits the wake word's signal and waits for the recording. @return false on timeout
    bool wakeAndListen();
    //! Moves the focus from the input to the microphone button.
    void focusMicrophone() const;
    //! Presses the focused microphone button and waits for the recording. @return false on timeout
    bool pressAndListen() const;
    //! Holds the focused microphone button until nothing records any more. @return false on timeout
    bool holdUntilSilent() const;

    //! The number of transcripts that the program has received from the engine.
    int transcripts() { return m_program->errors().count("VoiceBridge: transcribed in "); }
    //! Speaks while the program is listening, and waits for the transcript. @return false on timeout
    bool speak(const QString &transcript);

    //! Streams of the audio library in the program that are open, also those whose daemon is gone.
    int openStreams() const;
    //! Child processes of the program.
    int children() const;

    ScriptedBridge bridge;
    SherpaStandIn moonshine;
    PiperStandIn piper;
    Sentence sentence;

private:
    std::unique_ptr<DesktopRun> m_program;
};
