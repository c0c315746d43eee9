// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

//! A temporary directory that tests fill. Missing parent directories are created.
class FileTree
{
public:
    QString root() const { return m_directory.path(); }
    QString path(const QString &name) const { return m_directory.filePath(name); }

    void addDirectory(const QString &name) const { QDir(root()).mkpath(name); }
    //! @return the path
    QString addFile(const QString &name, const QByteArray &content = {}) const
    {
        const QString file = path(name);
        QDir().mkpath(QFileInfo(file).path());
        QFile written(file);
        if (!written.open(QIODevice::WriteOnly) || written.write(content) != content.size()) {
            qFatal("cannot write %s", qPrintable(file));
        }
        return file;
    }
    QByteArray contentOf(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QTemporaryDir m_directory;
};
