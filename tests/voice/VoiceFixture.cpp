// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "VoiceFixture.h"

#include "Files.h"
#include "IsolatedRoots.h"

WhisperModelFile::WhisperModelFile(const QString &name)
    : m_file(isolatedRoots().userModels() + QLatin1Char('/') + name)
{
    if (!writeFile(path())) {
        qFatal("cannot write the model file");
    }
}

WhisperModelFile::~WhisperModelFile()
{
    m_file.remove();
}

VoiceParts VoiceFixture::parts()
{
    VoiceParts parts;
    parts.roots = isolatedRoots();
    return parts;
}

VoiceParts VoiceFixture::parts(ScriptedMicrophone &microphone)
{
    VoiceParts isolated = parts();
    isolated.openMicrophone = microphone.opener();
    return isolated;
}

QStringList VoiceFixture::logEntries(const VoiceBridge &voice)
{
    QStringList entries;
    for (const QString &line : voice.voiceLog()) {
        entries.prepend(line.section(QStringLiteral("] "), 1));
    }
    return entries;
}

ListeningFixture::ListeningFixture(ScriptedMicrophone::Afterwards afterwards)
    : microphone(afterwards)
    , voice(std::make_unique<VoiceBridge>(VoiceFixture::parts(microphone)))
{
    voice->setSilenceTimeoutMs(200);
    voice->setVoiceLogEnabled(true);
}

void ListeningFixture::hearSentence()
{
    microphone.hear(5, ScriptedMicrophone::Loud);
    microphone.hear(SilenceChunks, ScriptedMicrophone::Quiet);
}
