// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "ScriptedMicrophone.h"
#include "voice/VoiceBridge.h"

#include <QFile>
#include <QString>

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
