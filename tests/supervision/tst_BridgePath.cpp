// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BridgePath.h"
#include "ScopedEnvironment.h"
#include "TestRegistry.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <unistd.h>

namespace
{

const QString s_printPath = QStringLiteral("--print-path");

} // namespace

class tst_BridgePath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesTheFirstPlaceThatExists_data();
    void takesTheFirstPlaceThatExists();
    void looksAtThePlacesInOrder();
    void usesTheEnvironmentOfThisProcess();
    void looksBesideTheExecutable();
};

void tst_BridgePath::takesTheFirstPlaceThatExists_data()
{
    QTest::addColumn<QByteArray>("fromEnvironment");
    QTest::addColumn<QStringList>("directories");
    QTest::addColumn<QString>("path");

    const QString libexec = QStringLiteral("/opt/libexec/tovi-forkeldaos/sdk-bridge");
    const QString share = QStringLiteral("/opt/share/tovi-forkeldaos/sdk-bridge");
    const QString tree = QStringLiteral("/opt/src/services/sdk-bridge");
    const QString current = QStringLiteral("/here/src/services/sdk-bridge");
    const QString home = QStringLiteral("/home/u/Loomra_Meridan/src/services/sdk-bridge");
    const QString last = QStringLiteral("/home/u/loomra_kde/src/services/sdk-bridge");
    const QStringList all {libexec, share, tree, current, home, last};
    const auto rest = [&](int first) { return QStringList(all.mid(first)); };

    QTest::newRow("libexec before all") << QByteArray() << all << libexec;
    QTest::newRow("share") << QByteArray() << rest(1) << share;
    QTest::newRow("beside the executable's directory") << QByteArray() << rest(2) << tree;
    QTest::newRow("current directory") << QByteArray() << rest(3) << current;
    QTest::newRow("home") << QByteArray() << rest(4) << home;
    QTest::newRow("other home") << QByteArray() << rest(5) << last;
    QTest::newRow("nowhere: the last one untested") << QByteArray() << QStringList() << last;

    const auto wish = [&](const char *name, const QByteArray &value, const QString &directory, const QString &path) {
        QTest::newRow(name) << value << QStringList {libexec, directory} << path;
    };
    wish("wish", "/b", QStringLiteral("/b"), QStringLiteral("/b"));
    wish("wish with whitespace", " /b\t\n", QStringLiteral("/b"), QStringLiteral("/b"));
    wish("wish with a space inside", "/b c", QStringLiteral("/b c"), QStringLiteral("/b c"));
    wish("wish in another alphabet", "/br\xc3\xbc", QStringLiteral("/brü"), QStringLiteral("/brü"));
    wish("wish with a slash behind", "/b/", QStringLiteral("/b"), QStringLiteral("/b"));
    wish("wish with dots", "/a/./../b", QStringLiteral("/b"), QStringLiteral("/b"));
    wish("relative wish", "b/c", QStringLiteral("/here/b/c"), QStringLiteral("/here/b/c"));
    wish("relative wish upwards", "../b", QStringLiteral("/b"), QStringLiteral("/b"));
    wish("a dot is the current directory", ".", QStringLiteral("/here"), QStringLiteral("/here"));
    wish("wish that doesn't exist", "/c", QStringLiteral("/b"), libexec);
    wish("wish of whitespace isn't the current directory", "  ", QStringLiteral("/here"), libexec);
    wish("no wish isn't the current directory", "", QStringLiteral("/here"), libexec);
    wish("no home directory is meant by ~", "~/b", QStringLiteral("/home/u/b"), libexec);
}

void tst_BridgePath::takesTheFirstPlaceThatExists()
{
    QFETCH(QByteArray, fromEnvironment);
    QFETCH(QStringList, directories);
    const auto exists = [&](const QString &path) { return directories.contains(path); };
    QTEST(BridgePath::resolve({fromEnvironment, QStringLiteral("/opt/bin"), QStringLiteral("/here"),
                               QStringLiteral("/home/u"), exists}),
          "path");
}

void tst_BridgePath::looksAtThePlacesInOrder()
{
    QStringList asked;
    const auto exists = [&](const QString &path) {
        asked.append(path);
        return false;
    };
    BridgePath::resolve({"/b", QStringLiteral("/a"), QStringLiteral("/c"), QStringLiteral("/h"), exists});
    // The fallback is not checked.
    QCOMPARE(asked,
             (QStringList {QStringLiteral("/b"), QStringLiteral("/libexec/tovi-forkeldaos/sdk-bridge"),
                           QStringLiteral("/share/tovi-forkeldaos/sdk-bridge"),
                           QStringLiteral("/src/services/sdk-bridge"), QStringLiteral("/c/src/services/sdk-bridge"),
                           QStringLiteral("/h/Loomra_Meridan/src/services/sdk-bridge")}));
}

void tst_BridgePath::usesTheEnvironmentOfThisProcess()
{
    const QTemporaryDir directory(QDir::homePath() + QStringLiteral("/XXXXXX"));
    const QString root = QDir(directory.path()).canonicalPath();
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(root));
    const ScopedEnvironment home("HOME", root.toUtf8());

    QCOMPARE(BridgePath::resolve(), root + QStringLiteral("/loomra_kde/src/services/sdk-bridge"));

    const QString below = root + QStringLiteral("/Loomra_Meridan/src/services/sdk-bridge");
    QVERIFY(QDir().mkpath(below));
    QCOMPARE(BridgePath::resolve(), below);

    // A file is ignored.
    QVERIFY(QDir().mkpath(root + QStringLiteral("/src/services")));
    QFile file(root + QStringLiteral("/src/services/sdk-bridge"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(BridgePath::resolve(), below);
    QVERIFY(file.remove());
    QVERIFY(QDir().mkpath(file.fileName()));
    QCOMPARE(BridgePath::resolve(), file.fileName());

    QVERIFY(QDir().mkpath(root + QStringLiteral("/mine")));
    const ScopedEnvironment wish("LOOMRA_BRIDGE_PATH", " mine ");
    QCOMPARE(BridgePath::resolve(), root + QStringLiteral("/mine"));

    QVERIFY(QDir::setCurrent(before));
}

void tst_BridgePath::looksBesideTheExecutable()
{
    // A hard link to this program in a separate directory, because other tests would find files beside the build.
    const QTemporaryDir directory(QCoreApplication::applicationDirPath() + QStringLiteral("/XXXXXX"));
    const QString bin = directory.filePath(QStringLiteral("bin"));
    const QString bridge = directory.filePath(QStringLiteral("libexec/tovi-forkeldaos/sdk-bridge"));
    QVERIFY(QDir().mkpath(bin));
    QVERIFY(QDir().mkpath(bridge));
    const QString program = bin + QStringLiteral("/program");
    QCOMPARE(::link(QFile::encodeName(QCoreApplication::applicationFilePath()).constData(),
                    QFile::encodeName(program).constData()),
             0);

    QProcess process;
    process.start(program, {QStringLiteral("tst_BridgePath"), s_printPath});
    QVERIFY(process.waitForFinished());
    QCOMPARE(QString::fromLocal8Bit(process.readAllStandardOutput()), bridge);
}

static int run(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (QCoreApplication::arguments().contains(s_printPath)) {
        std::fputs(qPrintable(BridgePath::resolve()), stdout);
        return 0;
    }
    tst_BridgePath test;
    return QTest::qExec(&test, argc, argv);
}

REGISTER_TEST_MAIN(tst_BridgePath, run)

#include "tst_BridgePath.moc"
