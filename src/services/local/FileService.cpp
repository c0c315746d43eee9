// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FileService.h"

#include "DirectoryListing.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

QStringList FileService::getFiles(const QString &path) const
{
    QStringList paths;
    const QFileInfoList entries = DirectoryListing::entries(path);
    paths.reserve(entries.size());
    for (const QFileInfo &entry : entries) {
        paths.append(entry.absoluteFilePath());
    }
    return paths;
}

QString FileService::readFile(const QString &path) const
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qWarning() << "Failed to open file:" << path;
        return {};
    }
    return QTextStream(&file).readAll();
}

bool FileService::writeFile(const QString &path, const QString &content) const
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        qWarning() << "Failed to write file:" << path;
        return false;
    }
    QTextStream(&file) << content;
    return true;
}

bool FileService::createFile(const QString &path) const
{
    // Append, so that a file that appears meanwhile isn't emptied.
    return !fileExists(path) && QFile(path).open(QIODevice::WriteOnly | QIODevice::Append);
}

bool FileService::deleteFile(const QString &path) const
{
    return QFile::remove(path);
}

bool FileService::renameFile(const QString &oldPath, const QString &newPath) const
{
    return QFile::rename(oldPath, newPath);
}

bool FileService::createDirectory(const QString &path) const
{
    return QDir().mkpath(path);
}

bool FileService::isDirectory(const QString &path) const
{
    return QFileInfo(path).isDir();
}

bool FileService::fileExists(const QString &path) const
{
    return QFileInfo::exists(path);
}

QString FileService::getFileIcon(const QString &path) const
{
    const QFileInfo file(path);
    const QString icon = DirectoryListing::mimeIcon(file);
    if (!icon.isEmpty()) {
        return icon;
    }
    return file.isDir() ? QStringLiteral("folder") : QStringLiteral("text-plain");
}
