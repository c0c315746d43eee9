// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

#include <optional>

class QDateTime;
class QJsonObject;

//! The log of voice tests that the user submitted: a file of JSON lines.
namespace VoiceTestLog
{

//! One sentence that was read aloud.
struct Result
{
    QString sentenceId;
    QString category;
    QString reference; //!< what was to be read
    QString hypothesis; //!< what was understood
    double accuracy = 0; //!< 0 to 1
    int latencyMs = 0; //!< engine time
};

//! With what it was understood.
struct Settings
{
    QString sttInputMode;
    QString voiceSubmitMode;
    QString sttBackend;
    bool liveSttAvailable = false;
    int silenceTimeoutMs = 0;
};

//! The file, whose directory is made.
//! @param stateHome what XDG_STATE_HOME says, empty when it says nothing
QString path(const QString &stateHome, const QString &home);
//! The same by environment and home of this process.
QString path();

//! The line's content. Nothing where the sentence's id, reference or hypothesis is blank.
//! @param utc when it was submitted
std::optional<QJsonObject> record(const Result &result, const Settings &settings, const QDateTime &utc);

//! Writes a record as one line behind the others. A failure is warned of.
void append(const QString &path, const QJsonObject &record);

//! Both, now, in this process's file.
void append(const Result &result, const Settings &settings);

} // namespace VoiceTestLog
