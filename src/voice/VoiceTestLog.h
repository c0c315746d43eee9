// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

#include <optional>

class QDateTime;
class QJsonObject;

//! The log of submitted voice tests, a file of JSON lines.
namespace VoiceTestLog
{

//! One sentence that was read aloud.
struct Result
{
    QString sentenceId;
    QString category;
    QString reference; //!< the sentence
    QString hypothesis; //!< the transcript
    double accuracy = 0; //!< 0 to 1
    int latencyMs = 0; //!< engine time in milliseconds
};

//! The settings during the test.
struct Settings
{
    QString sttInputMode;
    QString voiceSubmitMode;
    QString sttBackend;
    bool liveSttAvailable = false;
    int silenceTimeoutMs = 0;
};

//! The path of the log file. Creates its directory.
//! @param stateHome value of XDG_STATE_HOME, empty if that isn't set
QString path(const QString &stateHome, const QString &home);
//! The same with the environment and home of this process.
QString path();

//! The content of a line; nothing if the sentence's id, reference or hypothesis is blank.
//! @param utc time of submission
std::optional<QJsonObject> record(const Result &result, const Settings &settings, const QDateTime &utc);

//! Appends a record as one line. A failure is logged as a warning.
void append(const QString &path, const QJsonObject &record);

//! Appends the record of a result to the log file of this process, with the current time.
void append(const Result &result, const Settings &settings);

} // namespace VoiceTestLog
