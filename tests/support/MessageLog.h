// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QtGlobal>

//! Collects all of Qt's log messages, of any thread, while it lives, in place of printing them. If the running test has
//! failed, the destructor prints them. Only one may exist at a time.
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

    //! Whether there is a line with exactly this text.
    bool has(QtMsgType type, const QString &text) const;
    //! The number of lines with this start.
    int count(const QString &start) const;

    //! The texts of all lines above info level, in order.
    QStringList warnings() const;
    //! The same, and removes them.
    QStringList takeWarnings();
};
