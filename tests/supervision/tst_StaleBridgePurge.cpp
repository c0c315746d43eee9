// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FakePath.h"
#include "Files.h"
#include "MessageLog.h"
#include "NodeProcess.h"
#include "PurgeLog.h"
#include "StaleBridges.h"
#include "TestRegistry.h"

#include <QTest>

#include <csignal>

namespace
{

//! Greater than any process id that the kernel assigns.
constexpr int s_noPid = 2147483647;

const QString s_idle = QStringLiteral("setInterval(() => {}, 1000000); console.log();");

} // namespace

//! The purge with stand-ins for lsof, which print the process ids of the test.
class tst_StaleBridgePurge : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void continuesWithoutLsof();
    void continuesWithoutLsofOutput_data();
    void continuesWithoutLsofOutput();
    void handlesLsofOutput_data();
    void handlesLsofOutput();
    void passesThePort();
    void killsInOrder();
    void continuesAfterAFailedKill();
    void continuesWithoutAWorkingKill_data();
    void continuesWithoutAWorkingKill();
};

void tst_StaleBridgePurge::continuesWithoutLsof()
{
    FakePath path(FakePath::Rest::Hidden);
    MessageLog log;
    StaleBridges::purge(PurgeLog::port);
    QCOMPARE(log.texts(), (QStringList {PurgeLog::checking, PurgeLog::noLsof}));
    QCOMPARE(log.warnings(), QStringList());
}

void tst_StaleBridgePurge::continuesWithoutLsofOutput_data()
{
    QTest::addColumn<QByteArray>("behaviour");
    QTest::newRow("hangs") << QByteArray("exec sleep 1000");
    QTest::newRow("dies") << QByteArray("kill -KILL $$");
}

void tst_StaleBridgePurge::continuesWithoutLsofOutput()
{
    QFETCH(QByteArray, behaviour);
    NodeProcess bystander(QStringLiteral("node"), s_idle);
    QVERIFY(bystander.isReady());
    FakePath path;
    const QString pidFile = path.filePath(QStringLiteral("pid"));
    // Its output until then is ignored.
    path.add(QStringLiteral("lsof"),
             "echo $$ > '" + QFile::encodeName(pidFile) + "'; echo " + QByteArray::number(bystander.processId()) + "; "
                 + behaviour);

    MessageLog log;
    StaleBridges::purge(PurgeLog::port);
    QCOMPARE(log.texts(), (QStringList {PurgeLog::checking, PurgeLog::noLsof}));
    QCOMPARE(log.warnings(), QStringList());
    const int pid = contentOf(pidFile).trimmed().toInt();
    QVERIFY(pid > 0);
    QCOMPARE(::kill(pid, 0), -1);
    QCOMPARE(bystander.state(), QProcess::Running);
}

void tst_StaleBridgePurge::handlesLsofOutput_data()
{
    QTest::addColumn<QByteArray>("behaviour");
    QTest::addColumn<QStringList>("lines");

    QTest::newRow("nothing") << QByteArray("exit 1") << QStringList {PurgeLog::nothing};
    QTest::newRow("whitespace") << QByteArray("printf ' \\n\\n\\t\\n'") << QStringList {PurgeLog::nothing};
    QTest::newRow("failure") << QByteArray("echo ' no way ' >&2; exit 2")
                             << QStringList {QStringLiteral("lsof error: \"no way\""), PurgeLog::nothing};
    QTest::newRow("whitespace for an error") << QByteArray("echo ' ' >&2") << QStringList {PurgeLog::nothing};
    QTest::newRow("the harmless error") << QByteArray("echo \"lsof: can't identify protocol\" >&2")
                                        << QStringList {PurgeLog::nothing};
    QTest::newRow("the harmless error among others")
        << QByteArray("printf '%s\\n' bad \"can't identify protocol\" bad >&2") << QStringList {PurgeLog::nothing};
    QTest::newRow("junk") << QByteArray("printf '\\377\\001 x\\n12x\\n-4\\n0\\nnode\\n'")
                          << QStringList {PurgeLog::waiting};
    QTest::newRow("error and junk") << QByteArray("echo bad >&2; echo junk")
                                    << QStringList {QStringLiteral("lsof error: \"bad\""), PurgeLog::waiting};
}

void tst_StaleBridgePurge::handlesLsofOutput()
{
    QFETCH(QByteArray, behaviour);
    QFETCH(QStringList, lines);
    FakePath path;
    path.add(QStringLiteral("lsof"), behaviour);
    MessageLog log;
    StaleBridges::purge(PurgeLog::port);
    QCOMPARE(log.texts(), QStringList {PurgeLog::checking} + lines);
    QCOMPARE(log.warnings(), QStringList());
}

void tst_StaleBridgePurge::passesThePort()
{
    FakePath path;
    path.add(QStringLiteral("lsof"), "for word; do echo \"<$word>\" >&2; done");
    MessageLog log;
    StaleBridges::purge(4711);
    QCOMPARE(log.texts(),
             (QStringList {QStringLiteral("Checking for stale processes on port 4711"),
                           QStringLiteral("lsof error: \"<-ti>\\n<:4711>\""), PurgeLog::nothing}));
}

void tst_StaleBridgePurge::killsInOrder()
{
    NodeProcess first(QStringLiteral("node"), s_idle);
    NodeProcess other(QStringLiteral("nodes"), s_idle);
    NodeProcess last(QStringLiteral("node"), s_idle);
    QVERIFY(first.isReady() && other.isReady() && last.isReady());
    const qint64 own = QCoreApplication::applicationPid();
    FakePath path;
    path.add(QStringLiteral("lsof"),
             QStringLiteral("printf '%1\\njunk\\n%2\\n%3\\n%4\\n'")
                 .arg(last.processId())
                 .arg(own)
                 .arg(other.processId())
                 .arg(first.processId())
                 .toUtf8());
    const QStringList expected {
        PurgeLog::checking,
        PurgeLog::killing(last.processId()),
        PurgeLog::killed(last.processId()),
        PurgeLog::skippingOwn(own),
        PurgeLog::skippingOther(other.processId(), QStringLiteral("nodes")),
        PurgeLog::killing(first.processId()),
        PurgeLog::killed(first.processId()),
        PurgeLog::waiting,
    };
    MessageLog log;
    StaleBridges::purge(PurgeLog::port);
    QCOMPARE(log.texts(), expected);
    QCOMPARE(other.state(), QProcess::Running);
}

void tst_StaleBridgePurge::continuesAfterAFailedKill()
{
    NodeProcess bridge(QStringLiteral("node"), s_idle);
    QVERIFY(bridge.isReady());
    const qint64 pid = bridge.processId();
    FakePath path;
    path.add(QStringLiteral("lsof"), QStringLiteral("printf '%1\\n%2\\n'").arg(s_noPid).arg(pid).toUtf8());
    MessageLog log;
    StaleBridges::purge(PurgeLog::port);
    // Intentional: a process whose name can't be read is treated as a bridge.
    const QString failure = QStringLiteral("Failed to kill process %1 : \"Unknown error\"").arg(s_noPid);
    QCOMPARE(log.texts(),
             (QStringList {PurgeLog::checking, PurgeLog::killing(s_noPid), failure, PurgeLog::killing(pid),
                           PurgeLog::killed(pid), PurgeLog::waiting}));
    QCOMPARE(log.warnings(), QStringList {failure});
}

void tst_StaleBridgePurge::continuesWithoutAWorkingKill_data()
{
    QTest::addColumn<QByteArray>("behaviour");
    QTest::newRow("absent") << QByteArray();
    QTest::newRow("hangs") << QByteArray("exec /bin/sleep 1000");
    QTest::newRow("dies") << QByteArray("kill -KILL $$");
}

void tst_StaleBridgePurge::continuesWithoutAWorkingKill()
{
    QFETCH(QByteArray, behaviour);
    FakePath path(FakePath::Rest::Hidden);
    if (!behaviour.isEmpty()) {
        path.add(QStringLiteral("kill"), behaviour);
    }
    path.add(QStringLiteral("lsof"), "echo " + QByteArray::number(s_noPid));
    MessageLog log;
    StaleBridges::purge(PurgeLog::port);
    QCOMPARE(log.warnings().size(), 1);
    QCOMPARE(log.count(QStringLiteral("Failed to kill process %1 : \"").arg(s_noPid)), 1);
    QCOMPARE(log.count(QStringLiteral("Successfully")), 0);
    QCOMPARE(log.texts().last(), PurgeLog::waiting);
}

REGISTER_TEST(tst_StaleBridgePurge, QCoreApplication)
#include "tst_StaleBridgePurge.moc"
