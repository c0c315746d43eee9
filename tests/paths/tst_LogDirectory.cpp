// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Files.h"
#include "LogDirectory.h"
#include "ScopedEnvironment.h"
#include "TestRegistry.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

namespace
{

const QString s_logs = QStringLiteral("/loomra-bridge/logs");

const QString s_log = QStringLiteral("/bridge.log");

//! A user's home directory and the fallback of a bridge that has none, both still empty.
struct Places
{
    const QTemporaryDir root;
    const QString home = root.filePath(QStringLiteral("home"));
    const QString standard = home + QStringLiteral("/.local/state") + s_logs;
    const QString other = root.filePath(QStringLiteral("other"));
};

} // namespace

class tst_LogDirectory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fixedValues();
    void createsTheDefaultDirectory();
    void choosesWhereLogsAre_data();
    void choosesWhereLogsAre();
    void stateHomeReplacesTheDefault();
    void pathIsClean();
    void followsTheEnvironment();
};

void tst_LogDirectory::fixedValues()
{
    QCOMPARE(LogDirectory::BridgeFallback, QLatin1String("/tmp/loomra-bridge/logs"));
}

void tst_LogDirectory::createsTheDefaultDirectory()
{
    const Places places;
    QCOMPARE(LogDirectory::ofBridge(QString(), places.home, places.other), places.standard);
    QVERIFY(QDir(places.standard).exists());
    QVERIFY(!QDir(places.other).exists());
}

void tst_LogDirectory::choosesWhereLogsAre_data()
{
    QTest::addColumn<QString>("inStandard");
    QTest::addColumn<QString>("inOther");
    QTest::addColumn<bool>("isOther");

    const QString log = QStringLiteral("bridge.log");
    const QString text = QStringLiteral("bridge.log.txt");
    QTest::newRow("standard alone") << log << QString() << false;
    QTest::newRow("other alone") << QString() << log << true;
    QTest::newRow("both") << log << log << false;
    QTest::newRow("no log in standard") << text << log << true;
    QTest::newRow("no log in other") << QString() << text << false;
    QTest::newRow("no log in either") << text << text << false;
    QTest::newRow("a folder is no log") << QString() << QStringLiteral("folder.log/bridge.log") << false;
}

void tst_LogDirectory::choosesWhereLogsAre()
{
    QFETCH(QString, inStandard);
    QFETCH(QString, inOther);
    QFETCH(bool, isOther);
    const Places places;
    const auto write = [](const QString &directory, const QString &name) {
        return name.isEmpty() || writeFile(directory + QLatin1Char('/') + name);
    };
    QVERIFY(write(places.standard, inStandard));
    QVERIFY(write(places.other, inOther));
    QCOMPARE(LogDirectory::ofBridge(QString(), places.home, places.other), isOther ? places.other : places.standard);
}

void tst_LogDirectory::stateHomeReplacesTheDefault()
{
    const Places places;
    QVERIFY(writeFile(places.standard + s_log));
    const QString state = places.root.filePath(QStringLiteral("state"));
    QCOMPARE(LogDirectory::ofBridge(state, places.home, places.other), state + s_logs);
    QVERIFY(QDir(state + s_logs).exists());

    QVERIFY(writeFile(places.other + s_log));
    QCOMPARE(LogDirectory::ofBridge(state, places.home, places.other), places.other);
}

void tst_LogDirectory::pathIsClean()
{
    const Places places;
    const QString state = places.root.filePath(QStringLiteral("a/../state//"));
    QCOMPARE(LogDirectory::ofBridge(state, places.home, places.other),
             places.root.filePath(QStringLiteral("state")) + s_logs);
}

void tst_LogDirectory::followsTheEnvironment()
{
    // There is a log file, so the contents of the machine's temporary directory don't matter.
    const Places places;
    const char *variable = "XDG_STATE_HOME";
    const QString inHome = QDir::homePath() + QStringLiteral("/.local/state") + s_logs;
    QVERIFY(writeFile(inHome + s_log));
    for (const QByteArray &unset : {QByteArray(), QByteArray("")}) {
        const ScopedEnvironment stateHome(variable, unset);
        QCOMPARE(LogDirectory::ofBridge(), inHome);
    }

    const QString state = places.root.filePath(QStringLiteral("state"));
    QVERIFY(writeFile(state + s_logs + s_log));
    const ScopedEnvironment stateHome(variable, state.toLocal8Bit());
    QCOMPARE(LogDirectory::ofBridge(), state + s_logs);
}

REGISTER_TEST(tst_LogDirectory, QCoreApplication)
#include "tst_LogDirectory.moc"
