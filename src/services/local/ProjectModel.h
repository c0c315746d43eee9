// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QAbstractListModel>
#include <QFileInfoList>
#include <QString>

//! The entries of one directory, known to QML as the type ProjectModel. It doesn't watch the directory.
class ProjectModel : public QAbstractListModel
{
    Q_OBJECT

    //! The directory; none if empty. A path that is no directory gives an empty model.
    Q_PROPERTY(QString rootPath READ rootPath WRITE setRootPath NOTIFY rootPathChanged)

public:
    enum ProjectRoles
    {
        NameRole = Qt::UserRole + 1, //!< without the path
        PathRole, //!< absolute
        IsDirectoryRole,
        IconRole, //!< icon name; reads the file if its name doesn't tell its type
    };
    Q_ENUM(ProjectRoles)

    using QAbstractListModel::QAbstractListModel;

    QString rootPath() const { return m_rootPath; }
    void setRootPath(const QString &path);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    //! Lists the directory again.
    Q_INVOKABLE void refresh();
    //! The absolute path of an entry; empty if there is no such row.
    Q_INVOKABLE QString getPath(int index) const;
    //! Whether an entry is a directory; false if there is no such row.
    Q_INVOKABLE bool isDirectory(int index) const;

Q_SIGNALS:
    void rootPathChanged();

private:
    bool hasRow(int row) const { return row >= 0 && row < m_entries.size(); }

    QString m_rootPath;
    QFileInfoList m_entries;
};
