// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "MessageLog.h"
#include "NodeProcess.h"
#include "PrivateNetwork.h"
#include "PurgeLog.h"
#include "StaleBridges.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <csignal>

namespace
{

const QString s_listen =
    QStringLiteral("require('net').createServer().listen(8765, '127.0.0.1', () => console.log());");

} // namespace

//! Real processes that use the real port, found with the real lsof.
class tst_StaleBridgePort : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsNothingOnAFreePort();
    void killsANodeThatListens();
    void leavesAnotherNameAlone();
    void skipsThisProcess();
};

void tst_StaleBridgePort::findsNothingOnAFreePort()
{
    MessageLog log;
    StaleBridges::purge(PurgeLog::port);
    QCOMPARE(log.texts().first(), PurgeLog::checking);
    QCOMPARE(log.texts().last(), PurgeLog::nothing);
    QCOMPARE(log.warnings(), QStringList());
}

void tst_StaleBridgePort::killsANodeThatListens()
{
    NodeProcess bridge(QStringLiteral("node"), s_listen);
    QVERIFY(bridge.isReady());
    const qint64 pid = bridge.processId();

    MessageLog log;
    StaleBridges::purge(PurgeLog::port);
    QVERIFY(bridge.state() == QProcess::NotRunning || bridge.waitForFinished());
    QCOMPARE(bridge.exitStatus(), QProcess::CrashExit);
    QCOMPARE(bridge.exitCode(), SIGKILL);
    QCOMPARE(log.texts().first(), PurgeLog::checking);
    QCOMPARE(log.texts().mid(log.texts().size() - 3),
             (QStringList {PurgeLog::killing(pid), PurgeLog::killed(pid), PurgeLog::waiting}));
    QCOMPARE(log.warnings(), QStringList());

    QTcpServer next;
    QVERIFY(next.listen(QHostAddress::LocalHost, PurgeLog::port));
}

void tst_StaleBridgePort::leavesAnotherNameAlone()
{
    NodeProcess other(QStringLiteral("noder"), s_listen);
    QVERIFY(other.isReady());

    MessageLog log;
    StaleBridges::purge(PurgeLog::port);
    QVERIFY(log.has(QtDebugMsg, PurgeLog::skippingOther(other.processId(), QStringLiteral("noder"))));
    QCOMPARE(log.count(QStringLiteral("Killing")), 0);
    QCOMPARE(log.texts().last(), PurgeLog::waiting);

    QTcpServer next;
    QVERIFY(!next.listen(QHostAddress::LocalHost, PurgeLog::port));
    QCOMPARE(other.state(), QProcess::Running);
}

void tst_StaleBridgePort::skipsThisProcess()
{
    NodeProcess bridge(QStringLiteral("node"), s_listen);
    QVERIFY(bridge.isReady());
    QTcpSocket client;
    client.connectToHost(QHostAddress::LocalHost, PurgeLog::port);
    QVERIFY(client.waitForConnected());

    MessageLog log;
    StaleBridges::purge(PurgeLog::port);
    QVERIFY(log.has(QtDebugMsg, PurgeLog::skippingOwn(QCoreApplication::applicationPid())));
    QVERIFY(log.has(QtDebugMsg, PurgeLog::killed(bridge.processId())));
    QTRY_COMPARE(client.state(), QAbstractSocket::UnconnectedState);
}

REGISTER_PRIVATE_NETWORK_TEST(tst_StaleBridgePort, QCoreApplication)

#include "tst_StaleBridgePort.moc"
