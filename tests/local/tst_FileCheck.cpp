// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FileCheck.h"
#include "TestRegistry.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

//! What the check finds about files of each kind. Opening the FIFO would block the test.
class tst_FileCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void kinds_data();
    void kinds();
    void permission();

private:
    QString pathOf(const char *name) const { return m_folder.filePath(QString::fromUtf8(name)); }
    void write(const char *name, qint64 size) const;

    const QTemporaryDir m_folder;
};

void tst_FileCheck::write(const char *name, qint64 size) const
{
    QFile file(pathOf(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.resize(size)); // a sparse file, which takes no space
}

void tst_FileCheck::initTestCase()
{
    write("empty", 0);
    write("small", 5);
    write("2 GB", Q_INT64_C(2) << 30);
    write("ünï\ncode", 7);
    QCOMPARE(mkfifo(QFile::encodeName(pathOf("fifo")).constData(), 0600), 0);
    const int server = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, QFile::encodeName(pathOf("socket")).constData(), sizeof(address.sun_path));
    QCOMPARE(bind(server, reinterpret_cast<const sockaddr *>(&address), sizeof(address)), 0);
    close(server);
    QVERIFY(QFile::link(pathOf("small"), pathOf("link")));
    QVERIFY(QFile::link(pathOf("fifo"), pathOf("link to a fifo")));
    QVERIFY(QFile::link(pathOf("nowhere"), pathOf("dangling")));
}

void tst_FileCheck::kinds_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<double>("size");
    const auto add = [this](const char *name, const char *kind, double size) {
        QTest::newRow(name) << pathOf(name) << QString::fromUtf8(kind) << size;
    };
    add("empty", "file", 0);
    add("small", "file", 5);
    add("2 GB", "file", 2147483648.0);
    add("ünï\ncode", "file", 7);
    add("link", "file", 5);
    add("fifo", "special", 0);
    add("link to a fifo", "special", 0);
    add("socket", "special", 0);
    add("nowhere", "missing", 0);
    add("small/inside", "missing", 0);
    add("dangling", "missing", 0);
    QTest::newRow("folder") << m_folder.path() << "folder" << 0.0;
    QTest::newRow("device") << "/dev/null"
                            << "special" << 0.0;
    QTest::newRow("no path") << QString() << "missing" << 0.0;
}

void tst_FileCheck::kinds()
{
    QFETCH(const QString, path);
    QFETCH(const QString, kind);
    QFETCH(const double, size);
    const QVariantMap found = FileCheck().examine(path);
    QCOMPARE(found.value(QStringLiteral("kind")).toString(), kind);
    QCOMPARE(found.value(QStringLiteral("size")).toDouble(), size);
    QCOMPARE(found.size(), 2);
}

void tst_FileCheck::permission()
{
    write("locked", 5);
    QVERIFY(QFile::setPermissions(pathOf("locked"), {}));
    if (access(QFile::encodeName(pathOf("locked")).constData(), R_OK) == 0) {
        QSKIP("this user may read everything");
    }
    const QVariantMap found = FileCheck().examine(pathOf("locked"));
    QCOMPARE(found.value(QStringLiteral("kind")).toString(), QStringLiteral("unreadable"));
    QCOMPARE(found.value(QStringLiteral("size")).toDouble(), 0.0);
}

REGISTER_TEST(tst_FileCheck, QCoreApplication)

#include "tst_FileCheck.moc"
