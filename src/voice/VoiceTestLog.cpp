// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "VoiceTestLog.h"
#include "LogDirectory.h"
#include "PrivateFile.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace
{

const QLatin1String s_sentenceId("sentenceId");

} // namespace

QString VoiceTestLog::path(const QString &stateHome, const QString &home)
{
    return LogDirectory::create(stateHome, home) + QLatin1String("/voice-test-feedback.log");
}

QString VoiceTestLog::path()
{
    return path(qEnvironmentVariable("XDG_STATE_HOME"), QDir::homePath());
}

std::optional<QJsonObject> VoiceTestLog::record(const Result &result, const Settings &settings, const QDateTime &utc)
{
    const QString sentenceId = result.sentenceId.trimmed();
    const QString reference = result.reference.trimmed();
    const QString hypothesis = result.hypothesis.trimmed();
    if (sentenceId.isEmpty() || reference.isEmpty() || hypothesis.isEmpty()) {
        return std::nullopt;
    }
    return QJsonObject {
        // Intentional: the format already appends a "Z" to a UTC time, but readers of the log expect two.
        {QStringLiteral("timestamp"), QString(utc.toString(Qt::ISODateWithMs) + QLatin1Char('Z'))},
        {QStringLiteral("event"), QStringLiteral("voice.test.submitted")},
        {QStringLiteral("source"), QStringLiteral("settings_voice_test")},
        {s_sentenceId, sentenceId},
        {QStringLiteral("category"), result.category.trimmed()},
        {QStringLiteral("reference"), reference},
        {QStringLiteral("hypothesis"), hypothesis},
        {QStringLiteral("accuracy"), result.accuracy},
        {QStringLiteral("latencyMs"), result.latencyMs},
        {QStringLiteral("sttInputMode"), settings.sttInputMode},
        {QStringLiteral("voiceSubmitMode"), settings.voiceSubmitMode},
        {QStringLiteral("sttBackend"), settings.sttBackend},
        {QStringLiteral("liveSttAvailable"), settings.liveSttAvailable},
        {QStringLiteral("silenceTimeoutMs"), settings.silenceTimeoutMs},
    };
}

void VoiceTestLog::append(const QString &path, const QJsonObject &record)
{
    const QByteArray line = QJsonDocument(record).toJson(QJsonDocument::Compact) + '\n';
    QFile file(path);
    if (!PrivateFile::open(file, QIODevice::Append | QIODevice::Text, PrivateFile::Existing::BecomesPrivate)
        || file.write(line) != line.size() || !file.flush()) {
        qWarning() << "VoiceBridge: cannot append voice test log:" << path;
        return;
    }
    qDebug() << "VoiceBridge: voice test feedback logged" << record.value(s_sentenceId).toString() << "->" << path;
}

void VoiceTestLog::append(const Result &result, const Settings &settings)
{
    if (const std::optional<QJsonObject> line = record(result, settings, QDateTime::currentDateTimeUtc())) {
        append(path(), *line);
    }
}
