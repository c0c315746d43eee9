// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QObject>
#include <QStringList>

//! Operations on files for the main window, known to QML as fileService. Stateless; each call blocks until the disk has
//! answered. Relative paths start at the process's working directory.
class FileService : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    //! The absolute paths of a directory's entries, see DirectoryListing::entries().
    Q_INVOKABLE QStringList getFiles(const QString &path) const;
    //! The content of a file in the encoding of the locale. Empty on failure, which is logged; use fileExists() to tell
    //! that from an empty file.
    Q_INVOKABLE QString readFile(const QString &path) const;
    //! Replaces the content of a file in place, so that links and permissions stay. A failure to open is logged.
    //! @return whether the file could be opened; errors while writing go unnoticed
    Q_INVOKABLE bool writeFile(const QString &path, const QString &content) const;
    //! Creates an empty file. @return false if the path exists or its directory doesn't
    Q_INVOKABLE bool createFile(const QString &path) const;
    //! Removes a file.
    Q_INVOKABLE bool deleteFile(const QString &path) const;
    //! Renames or moves a file. @return false if the new path exists
    Q_INVOKABLE bool renameFile(const QString &oldPath, const QString &newPath) const;
    //! Creates a directory and its parents. @return also true if it exists
    Q_INVOKABLE bool createDirectory(const QString &path) const;
    Q_INVOKABLE bool isDirectory(const QString &path) const;
    //! Whether there is a file or directory at a path.
    Q_INVOKABLE bool fileExists(const QString &path) const;
    //! The icon name of a file's MIME type, for display only.
    Q_INVOKABLE QString getFileIcon(const QString &path) const;
};
