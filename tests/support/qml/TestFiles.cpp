// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "TestFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>
#include <QVariant>

#include <sys/stat.h>
#include <unistd.h>

namespace
{

void require(bool succeeded, const QString &what)
{
    if (!succeeded) {
        QTest::qFail(qPrintable(QStringLiteral("cannot create ") + what), __FILE__, __LINE__);
    }
}

} // namespace

QString TestFiles::write(const QString &name, const QString &bytes) const
{
    QDir().mkpath(QFileInfo(path(name)).path());
    QFile file(path(name));
    require(file.open(QIODevice::WriteOnly) && file.write(bytes.toLatin1()) == bytes.size(), name);
    return path(name);
}

QString TestFiles::writeSparse(const QString &name, double size) const
{
    QFile file(path(name));
    require(file.open(QIODevice::WriteOnly) && file.resize(static_cast<qint64>(size)), name);
    return path(name);
}

QVariant TestFiles::bytesOf(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QVariant();
}

QString TestFiles::makeDirectory(const QString &name) const
{
    require(QDir().mkpath(path(name)), name);
    return path(name);
}

QString TestFiles::makeFifo(const QString &name) const
{
    require(mkfifo(QFile::encodeName(path(name)).constData(), 0600) == 0, name);
    return path(name);
}

void TestFiles::remove(const QString &name) const
{
    QFile::remove(path(name));
}

bool TestFiles::makeUnreadable(const QString &name) const
{
    QFile::setPermissions(path(name), {});
    return access(QFile::encodeName(path(name)).constData(), R_OK) != 0;
}
