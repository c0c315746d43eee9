// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ProjectModel.h"

#include "DirectoryListing.h"

namespace
{

//! Unlike FileService::getFileIcon(), which gives a directory the icon of its MIME type.
QString iconOf(const QFileInfo &entry)
{
    if (entry.isDir()) {
        return QStringLiteral("folder");
    }
    const QString icon = DirectoryListing::mimeIcon(entry);
    return icon.isEmpty() ? QStringLiteral("text-plain") : icon;
}

} // namespace

void ProjectModel::setRootPath(const QString &path)
{
    if (path == m_rootPath) {
        return;
    }
    m_rootPath = path;
    refresh();
    Q_EMIT rootPathChanged();
}

int ProjectModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_entries.size();
}

QVariant ProjectModel::data(const QModelIndex &index, int role) const
{
    if (!hasRow(index.row())) {
        return {};
    }
    const QFileInfo &entry = m_entries.at(index.row());
    switch (role) {
    case NameRole:
        return entry.fileName();
    case PathRole:
        return entry.absoluteFilePath();
    case IsDirectoryRole:
        return entry.isDir();
    case IconRole:
        return iconOf(entry);
    default:
        return {};
    }
}

QHash<int, QByteArray> ProjectModel::roleNames() const
{
    return {{NameRole, "name"}, {PathRole, "path"}, {IsDirectoryRole, "isDirectory"}, {IconRole, "icon"}};
}

void ProjectModel::refresh()
{
    beginResetModel();
    m_entries = DirectoryListing::entries(m_rootPath);
    endResetModel();
}

QString ProjectModel::getPath(int index) const
{
    return hasRow(index) ? m_entries.at(index).absoluteFilePath() : QString();
}

bool ProjectModel::isDirectory(int index) const
{
    return hasRow(index) && m_entries.at(index).isDir();
}
