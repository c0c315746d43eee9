// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "MessageLog.h"
#include "ScriptedMicrophone.h"
#include "VoiceBridge.h"

#include <QFile>
#include <QString>

#include <memory>

//! An empty whisper model in the test's home, where models are searched. Removed when this object is deleted.
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

namespace VoiceFixture
{

//! The parts that the program uses, but with isolatedRoots().
VoiceParts parts();
//! The same with a scripted microphone.
VoiceParts parts(ScriptedMicrophone &microphone);

//! The lines of the voice log without their times, oldest first.
QStringList logEntries(const VoiceBridge &voice);

} // namespace VoiceFixture

//! A VoiceBridge with a scripted microphone and a whisper model for the stand-in of libwhisper. Its silence timeout is
//! the minimum.
struct ListeningFixture
{
    static constexpr int SilenceChunks = 4; // 200 ms

    explicit ListeningFixture(ScriptedMicrophone::Afterwards afterwards = ScriptedMicrophone::Afterwards::Hisses);

    //! Adds speech and the silence after it.
    void hearSentence();
    QStringList log() const { return VoiceFixture::logEntries(*voice); }

    MessageLog messages;
    const WhisperModelFile model;
    ScriptedMicrophone microphone;
    std::unique_ptr<VoiceBridge> voice;
};
