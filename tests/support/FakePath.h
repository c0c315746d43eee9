// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

//! Stand-ins for programs: while this object lives, PATH starts with a temporary directory, or contains nothing else.
class FakePath
{
public:
    enum class Rest
    {
        Kept,
        Hidden, //!< only added programs are found
    };

    explicit FakePath(Rest rest = Rest::Kept);
    ~FakePath();
    Q_DISABLE_COPY_MOVE(FakePath)

    //! Adds an executable file and returns its path.
    //! @param script a shell script without its first line. It should exec a program that runs long, which would
    //! survive a kill of the shell otherwise.
    QString add(const QString &name, const QByteArray &script);
    //! The same with another interpreter, which need not exist.
    QString add(const QString &name, const QByteArray &script, const QByteArray &interpreter);
    //! A path in the directory, e.g. for a file that a stand-in writes.
    QString filePath(const QString &name) const;

private:
    const QTemporaryDir m_directory;
    const QByteArray m_before;
};
