// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QObject>
#include <QTemporaryDir>

//! A temporary directory that QML tests fill. Contents are texts with one character per byte, such as "\u00fc" for the
//! byte 0xFC. A failure fails the test.
class TestFiles : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE QString path(const QString &name) const { return m_directory.filePath(name); }
    //! Replaces a file. Missing directories are created. @return the path
    Q_INVOKABLE QString write(const QString &name, const QString &bytes) const;
    //! A file of this size, which takes no space. @return the path
    Q_INVOKABLE QString writeSparse(const QString &name, double size) const;
    //! The content of a file; null if there is none.
    Q_INVOKABLE QVariant bytesOf(const QString &name) const;
    Q_INVOKABLE QString makeDirectory(const QString &name) const;
    Q_INVOKABLE QString makeFifo(const QString &name) const;
    Q_INVOKABLE void remove(const QString &name) const;
    //! Whether the file is now unreadable for this process. It isn't if that may read everything.
    Q_INVOKABLE bool makeUnreadable(const QString &name) const;

private:
    QTemporaryDir m_directory;
};
