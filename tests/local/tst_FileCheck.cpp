// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FileCheck.h"
#include "Files.h"
#include "TestRegistry.h"

#include <QDateTime>
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
    void texts_data();
    void texts();
    void maximums_data();
    void maximums();
    void noTexts_data();
    void noTexts();
    void stamps();

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

void tst_FileCheck::texts_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("lineBreak");
    QTest::addColumn<bool>("byteOrderMark");
    const auto add = [](const char *name, const QByteArray &bytes, const char *kind, const char *lineBreak = nullptr,
                        bool mark = false) {
        QTest::newRow(name) << bytes << QString::fromUtf8(kind) << QString::fromUtf8(lineBreak) << mark;
    };
    add("empty", "", "file", "\n");
    add("one line", "one", "file", "\n");
    add("lines", "one\ntwo\n", "file", "\n");
    add("all control characters that text may have", "\x01\t\v\f\x1b\x7f", "file", "\n");
    add("UTF-8", "ünï €\n\xF0\x9F\x98\x80", "file", "\n");
    add("lines of Windows", "one\r\ntwo\r\n", "file", "\r\n");
    add("byte order mark",
        "\xEF\xBB\xBF"
        "one",
        "file", "\n", true);
    add("byte order mark and lines of Windows", "\xEF\xBB\xBF\r\n", "file", "\r\n", true);
    add("as large as allowed", QByteArray(100, 'x'), "file", "\n");
    add("too large", QByteArray(101, 'x'), "large");
    add("NUL", QByteArray("a\0b", 3), "binary");
    add("UTF-16",
        QByteArray("\xFF\xFE"
                   "a\0",
                   4),
        "binary");
    add("UTF-16 without NUL", "\xFF\xFE\x01\x4E", "binary");
    add("Latin-1", "\xFC", "binary");
    add("truncated UTF-8", "a\xE2\x82", "binary");
    add("overlong UTF-8", "\xC0\x80", "binary");
    add("surrogate in UTF-8", "\xED\xA0\x80", "binary");
    add("a byte order mark in the middle of others", "\xEF\xBB\xBF\xEF\xBB\xBF", "binary");
    add("lines of old Macs", "one\rtwo", "unsuitable");
    add("mixed lines", "one\r\ntwo\n", "unsuitable");
    add("mixed lines, as many returns as breaks", "one\n\rtwo", "unsuitable");
    add("no-break space", "a\xC2\xA0", "unsuitable");
    add("line separator", "a\xE2\x80\xA8", "unsuitable");
    add("paragraph separator", "a\xE2\x80\xA9", "unsuitable");
    add("character of frames", "\xEF\xB7\x90", "unsuitable");
}

void tst_FileCheck::texts()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, kind);
    QFETCH(const QString, lineBreak);
    QFETCH(const bool, byteOrderMark);
    QFile file(pathOf("text"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
    file.close();
    const QVariantMap found = FileCheck().examineText(pathOf("text"), 100);
    QCOMPARE(found.value(QStringLiteral("kind")).toString(), kind);
    QCOMPARE(found.value(QStringLiteral("size")).toInt(), bytes.size());
    QCOMPARE(found.value(QStringLiteral("lineBreak")).toString(), lineBreak);
    QCOMPARE(found.value(QStringLiteral("byteOrderMark")).toBool(), byteOrderMark);
}

void tst_FileCheck::maximums_data()
{
    QTest::addColumn<double>("maximum");
    QTest::addColumn<QString>("kind");
    const QString binary = QStringLiteral("binary"); // it was read
    const QString large = QStringLiteral("large");
    QTest::newRow("size") << 3.0 << binary;
    QTest::newRow("less") << 2.9 << large;
    QTest::newRow("negative") << -1.0 << large;
    QTest::newRow("beyond 64 bits") << 1e300 << binary;
    QTest::newRow("infinite") << qInf() << binary;
    QTest::newRow("negative infinite") << -qInf() << large;
    QTest::newRow("not a number") << qQNaN() << large;
}

//! A maximum may be any number of QML.
void tst_FileCheck::maximums()
{
    QFETCH(const double, maximum);
    QVERIFY(writeFile(pathOf("zeros"), QByteArray(3, '\0')));
    QTEST(FileCheck().examineText(pathOf("zeros"), maximum).value(QStringLiteral("kind")).toString(), "kind");
}

void tst_FileCheck::noTexts_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("kind");
    const auto add = [this](const char *name, const char *kind) {
        QTest::newRow(name) << pathOf(name) << QString::fromUtf8(kind);
    };
    add("2 GB", "large");
    add("fifo", "special");
    add("nowhere", "missing");
    QTest::newRow("folder") << m_folder.path() << "folder";
    QTest::newRow("a file of the kernel") << "/proc/self/cmdline"
                                          << "file";
}

//! Files whose content isn't even read.
void tst_FileCheck::noTexts()
{
    QFETCH(const QString, path);
    QFETCH(const QString, kind);
    QCOMPARE(FileCheck().examineText(path, 100).value(QStringLiteral("kind")).toString(), kind);
}

void tst_FileCheck::stamps()
{
    const FileCheck check;
    QCOMPARE(check.stamp(pathOf("nowhere")), QString());
    write("stamped", 5);
    const QString first = check.stamp(pathOf("stamped"));
    QVERIFY(!first.isEmpty());
    QCOMPARE(check.stamp(pathOf("stamped")), first);
    write("stamped", 6);
    QVERIFY(check.stamp(pathOf("stamped")) != first);
    write("stamped", 5);
    QFile file(pathOf("stamped"));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime(QDate(2001, 1, 1), QTime()), QFileDevice::FileModificationTime));
    QVERIFY(check.stamp(pathOf("stamped")) != first);
}

REGISTER_TEST(tst_FileCheck, QCoreApplication)

#include "tst_FileCheck.moc"
