// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QStringList>
#include <QTime>

//! What the user can read of the voice path's doings, newest first. It lives in memory only.
class VoiceLog
{
public:
    static constexpr int MostLines = 200;

    //! Puts a line with its time, to the millisecond, in front; the oldest line goes when there are too many.
    void append(QTime time, const QString &entry);
    void clear() { m_lines.clear(); }
    QStringList lines() const { return m_lines; }

private:
    QStringList m_lines;
};
