// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "VoiceRig.h"

#include <QDir>

namespace
{

QString modelDirectory()
{
    return QDir::homePath() + QStringLiteral("/.local/share/tovi-forkeldaos/models/");
}

} // namespace

WhisperModelFile::WhisperModelFile(const QString &name)
    : m_file(modelDirectory() + name)
{
    if (!QDir().mkpath(modelDirectory()) || !m_file.open(QIODevice::WriteOnly)) {
        qFatal("can't make the model file");
    }
    m_file.close();
}

WhisperModelFile::~WhisperModelFile()
{
    m_file.remove();
}

VoiceParts VoiceRig::partsWith(ScriptedMicrophone &microphone)
{
    VoiceParts parts;
    parts.openMicrophone = microphone.opener();
    return parts;
}

QStringList VoiceRig::logEntries(const VoiceBridge &voice)
{
    QStringList entries;
    for (const QString &line : voice.voiceLog()) {
        entries.prepend(line.section(QStringLiteral("] "), 1));
    }
    return entries;
}

ListeningRig::ListeningRig(ScriptedMicrophone::Afterwards afterwards)
    : microphone(afterwards)
    , voice(std::make_unique<VoiceBridge>(VoiceRig::partsWith(microphone), nullptr))
{
    voice->setSilenceTimeoutMs(200);
    voice->setVoiceLogEnabled(true);
}

void ListeningRig::hearSentence()
{
    microphone.hear(5, ScriptedMicrophone::Loud);
    microphone.hear(SilenceChunks, ScriptedMicrophone::Quiet);
}
