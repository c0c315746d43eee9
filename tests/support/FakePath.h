// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

//! Stand-ins for programs: while it lives, PATH begins with a directory of its own, or is that directory alone.
class FakePath
{
public:
    enum class Rest
    {
        Kept,
        Hidden, //!< nothing is found but what was added
    };

    explicit FakePath(Rest rest = Rest::Kept);
    ~FakePath();
    Q_DISABLE_COPY_MOVE(FakePath)

    //! Adds an executable file and returns its path.
    //! @param script of the shell, without its first line. What it runs it should exec, or that outlives a kill.
    QString add(const QString &name, const QByteArray &script);
    //! The same with another interpreter, or one that doesn't exist.
    QString add(const QString &name, const QByteArray &script, const QByteArray &interpreter);
    //! A path in the directory, for what a stand-in notes down.
    QString filePath(const QString &name) const;

private:
    const QTemporaryDir m_directory;
    const QByteArray m_before;
};
