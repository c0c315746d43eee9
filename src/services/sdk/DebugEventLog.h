// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <concepts>

//! A record of what the client does with the bridge, for those who look for a fault: one JSON object a line in
//! loomra-debug.log in the application's data directory. Off unless LOOMRA_DEBUG has a value, of whatever kind, at the
//! time of an event. What can't be written is lost without a word. Main thread only.
namespace DebugEventLog
{

bool isOn();

//! One line, its end included. Only the double quotes of location and message are escaped, and the data goes in as it
//! stands: the line is as valid as they are. Pure.
//! @param data JSON of any kind
//! @param timestamp ms since the epoch
QByteArray line(const QString &location, const QString &message, const QString &data, qint64 timestamp);

//! Adds a line with the time of now, if the log is on.
void write(const QString &location, const QString &message, const QString &data);

//! The same with data that is put together only where the log is on: off, an event costs a look at the environment.
//! @param data called for the text
template<std::invocable Data>
void write(const QString &location, const QString &message, const Data &data)
{
    if (isOn()) {
        write(location, message, QString(data()));
    }
}

//! A text for a JSON string in the data of an event: backslashes and double quotes escaped. Pure.
QString escaped(const QString &text);
//! The same, and ends of lines too.
QString escapedLines(const QString &text);

} // namespace DebugEventLog
