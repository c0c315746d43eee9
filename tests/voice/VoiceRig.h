// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "MessageLog.h"
#include "ScriptedMicrophone.h"
#include "VoiceBridge.h"

#include <QFile>
#include <QString>

#include <memory>

//! A file where a whisper model is looked for, in the test's home. It is there as long as this.
class WhisperModelFile
{
public:
    explicit WhisperModelFile(const QString &name = QStringLiteral("ggml-small.en-q5_1.bin"));
    ~WhisperModelFile();
    Q_DISABLE_COPY_MOVE(WhisperModelFile)

    QString path() const { return m_file.fileName(); }

private:
    QFile m_file;
};

namespace VoiceRig
{

//! The program's parts, but with this microphone.
VoiceParts partsWith(ScriptedMicrophone &microphone);

//! The lines of the voice log without their times, oldest first, as they came.
QStringList logEntries(const VoiceBridge &voice);

} // namespace VoiceRig

//! A voice path with a scripted microphone and a whisper model, whose engine the test plays. The shortest silence that
//! can be set ends an utterance.
struct ListeningRig
{
    static constexpr int SilenceChunks = 4; // of 200 ms

    explicit ListeningRig(ScriptedMicrophone::Afterwards afterwards = ScriptedMicrophone::Afterwards::Hisses);

    //! Speech, and the silence behind it.
    void hearSentence();
    QStringList log() const { return VoiceRig::logEntries(*voice); }

    MessageLog messages;
    const WhisperModelFile model;
    ScriptedMicrophone microphone;
    std::unique_ptr<VoiceBridge> voice;
};
