// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <concepts>

//! A log of what LoomraSDK does, for debugging: one JSON object per line in loomra-debug.log in the application's data
//! directory, readable by the user only. Off unless LOOMRA_DEBUG has any value at the time of an event. Write errors
//! are ignored. Main thread only.
namespace DebugEventLog
{

bool isOn();

//! One line with its newline. Only the double quotes of location and message are escaped and the data is inserted
//! unchanged, so that the line is as valid as they are. Pure.
//! @param data any JSON value
//! @param timestamp ms since the epoch
QByteArray line(const QString &location, const QString &message, const QString &data, qint64 timestamp);

//! Appends a line with the current time if the log is on.
void write(const QString &location, const QString &message, const QString &data);

//! The same with data that is built only if the log is on: otherwise an event costs one look at the environment.
//! @param data returns the JSON text
template<std::invocable Data>
void write(const QString &location, const QString &message, const Data &data)
{
    if (isOn()) {
        write(location, message, QString(data()));
    }
}

//! Escapes backslashes and double quotes for a JSON string in the data of an event. Pure.
QString escaped(const QString &text);
//! The same, and escapes newlines too.
QString escapedLines(const QString &text);

} // namespace DebugEventLog
