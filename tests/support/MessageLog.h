// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QtGlobal>

//! Takes all lines of Qt's log while it lives, in any thread, and keeps them from the terminal. When the running test
//! has failed it prints them at its end. One at a time.
class MessageLog
{
public:
    MessageLog();
    ~MessageLog();
    Q_DISABLE_COPY_MOVE(MessageLog)

    struct Line
    {
        QtMsgType type;
        QString text;
    };
    QList<Line> lines() const;
    void clear();

    //! The texts of all lines.
    QStringList texts() const;

    //! Whether there is a line of just this text.
    bool has(QtMsgType type, const QString &text) const;
    //! Number of lines that begin so.
    int count(const QString &start) const;

    //! Everything above debug level, in order.
    QStringList warnings() const;
    //! The same, and forgets them.
    QStringList takeWarnings();
};
