// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QStringList>
#include <QTime>

//! The log of the voice path that is shown to the user, newest line first. Kept in memory only.
class VoiceLog
{
public:
    static constexpr int MaximumLines = 200;

    //! Adds a line with its time, in milliseconds, at the front. Beyond the maximum the oldest line is dropped.
    void append(QTime time, const QString &entry);
    void clear() { m_lines.clear(); }
    QStringList lines() const { return m_lines; }

private:
    QStringList m_lines;
};
