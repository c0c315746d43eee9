// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FakePath.h"

#include <QDir>
#include <QFile>
#include <QTest>

FakePath::FakePath(Rest rest)
    : m_directory(QDir::homePath() + QStringLiteral("/path-XXXXXX"))
    , m_before(qgetenv("PATH"))
{
    const QByteArray own = QFile::encodeName(m_directory.path());
    qputenv("PATH", rest == Rest::Hidden ? own : own + ':' + m_before);
}

FakePath::~FakePath()
{
    qputenv("PATH", m_before);
}

QString FakePath::add(const QString &name, const QByteArray &script)
{
    return add(name, script, QByteArrayLiteral("/bin/sh"));
}

QString FakePath::add(const QString &name, const QByteArray &script, const QByteArray &interpreter)
{
    QFile file(filePath(name));
    const QByteArray content = "#!" + interpreter + '\n' + script + '\n';
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()
        || !file.setPermissions(file.permissions() | QFile::ExeOwner)) {
        QTest::qFail(qPrintable(file.fileName() + QStringLiteral(": ") + file.errorString()), __FILE__, __LINE__);
    }
    return file.fileName();
}

QString FakePath::filePath(const QString &name) const
{
    return m_directory.filePath(name);
}
