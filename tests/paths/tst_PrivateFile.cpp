// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Files.h"
#include "PrivateFile.h"
#include "TestRegistry.h"

#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

namespace
{

constexpr int s_none = -1;

} // namespace

Q_DECLARE_METATYPE(PrivateFile::Existing)
Q_DECLARE_METATYPE(QIODevice::OpenMode)

class tst_PrivateFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void modes_data();
    void modes();
    void writes_data();
    void writes();
    void fails();
};

void tst_PrivateFile::modes_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<PrivateFile::Existing>("existing");
    QTest::addColumn<int>("after");

    QTest::newRow("new") << s_none << PrivateFile::Existing::BecomesPrivate << 0600;
    QTest::newRow("new, kept") << s_none << PrivateFile::Existing::KeepsItsMode << 0600;
    QTest::newRow("readable by all") << 0644 << PrivateFile::Existing::BecomesPrivate << 0600;
    QTest::newRow("readable by all, kept") << 0644 << PrivateFile::Existing::KeepsItsMode << 0644;
}

void tst_PrivateFile::modes()
{
    QFETCH(int, before);
    QFETCH(PrivateFile::Existing, existing);
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("file"));
    if (before != s_none) {
        QVERIFY(writeFile(path));
        QCOMPARE(::chmod(QFile::encodeName(path).constData(), static_cast<mode_t>(before)), 0);
    }
    QFile file(path);
    const mode_t umaskBefore = ::umask(0); // so that it can't make the file private
    const bool isOpen = PrivateFile::open(file, QIODevice::WriteOnly, existing);
    ::umask(umaskBefore);
    QVERIFY(isOpen);
    QTEST(modeOf(path), "after");
}

void tst_PrivateFile::writes_data()
{
    QTest::addColumn<QIODevice::OpenMode>("mode");
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("write") << QIODevice::OpenMode(QIODevice::WriteOnly) << QByteArray("new");
    QTest::newRow("append") << QIODevice::OpenMode(QIODevice::Append) << QByteArray("beforenew");
}

void tst_PrivateFile::writes()
{
    QFETCH(QIODevice::OpenMode, mode);
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("file"));
    const QString link = directory.filePath(QStringLiteral("link"));
    QVERIFY(writeFile(path, "before"));
    QVERIFY(QFile::link(path, link));
    {
        QFile file(link);
        QVERIFY(PrivateFile::open(file, mode, PrivateFile::Existing::BecomesPrivate));
        QCOMPARE(file.write("new"), 3);
    }
    QTEST(contentOf(path), "content");
    QVERIFY(QFileInfo(link).isSymLink());
}

void tst_PrivateFile::fails()
{
    const QTemporaryDir directory;
    QFile file(directory.path());
    QVERIFY(!PrivateFile::open(file, QIODevice::Append, PrivateFile::Existing::BecomesPrivate));
    QVERIFY(!file.isOpen());
}

REGISTER_TEST(tst_PrivateFile, QCoreApplication)
#include "tst_PrivateFile.moc"
