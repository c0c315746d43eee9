// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConnectedSdk.h"

#include "SingleShots.h"
#include "TestRegistry.h"
#include "WaitUntil.h"

#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QWebSocket>

namespace
{

const QString s_connected = QStringLiteral("connectedChanged()");
const QString s_ready = QStringLiteral("readyChanged()");
const QString s_refused = QStringLiteral("error(\"WebSocket error: 0\")");
const QStringList s_fall {s_connected, s_ready};

//! How often the start of the bridge's user service was requested.
int serviceRequests()
{
    QFile file(qEnvironmentVariable("TOVICTL_SYSTEMCTL_LOG"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().count("--user start tovi-bridge.service") : 0;
}

} // namespace

// The properties "connected" and "ready", and how a lost connection is re-established.
class tst_LoomraSDKConnection : public ConnectedSdkTest
{
    Q_OBJECT

private Q_SLOTS:
    void quittingGivesUpAnAttempt();
    void beginsDown();
    void connectsByInitialize();
    void readyComesInTwoForms_data();
    void readyComesInTwoForms();
    void readyAgain();
    void fallsWithTheConnection();
    void reportsAnOversizedMessage();
    void comesBack();
    void waitsForReady();
    void stopsTryingOnceReady();
    void runningTimerKeepsItsPhase();
    void keepsAnOpenConnection();
    void replacesAnAttemptUnderWay();
    void triesAsLongAsItTakes();
    void asksForTheServiceOnce();
    void triesWithoutAServiceManager();
    void reconnects();
    void reconnectsWhatIsClosed();
    void reconnectsFromAHungBridge_data();
    void reconnectsFromAHungBridge();
    void staysDownAfterTheEnd();
    void saysGoodbye();
};

void tst_LoomraSDKConnection::beginsDown()
{
    ConfigManager config;
    const LoomraSDK sdk(&config);
    QVERIFY(!sdk.isConnected());
    QVERIFY(!sdk.isReady());
    QCOMPARE(sdk.currentSessionId(), QString());
    QCOMPARE(sdk.currentModel(), QStringLiteral("default"));
    QCOMPARE(sdk.currentAgent(), QStringLiteral("build"));
    QVERIFY(!sdk.isWorkspaceIntelAvailable());
    QVERIFY(!sdk.isAiRuntimeAvailable());
    const auto *reconnect = sdk.findChild<QTimer *>(QStringLiteral("reconnectTimer"));
    QCOMPARE(reconnect->interval(), 3000);
    QVERIFY(!reconnect->isSingleShot());
    QVERIFY(!reconnect->isActive());
    QVERIFY(!sdk.findChild<QTimer *>(QStringLiteral("reminderTimer"))->isActive());
}

void tst_LoomraSDKConnection::connectsByInitialize()
{
    ConfigManager config;
    LoomraSDK sdk(&config);
    sdk.setConnectOnly(true);
    const int before = serviceRequests();
    sdk.initialize();
    QVERIFY(fixture->peer.waitForConnection(2));
    QTRY_VERIFY(sdk.isConnected());
    QVERIFY(!sdk.isReady());
    QTRY_COMPARE(serviceRequests(), before + 1);
}

void tst_LoomraSDKConnection::readyComesInTwoForms_data()
{
    QTest::addColumn<QString>("frame");
    QTest::newRow("type") << QStringLiteral(R"({"type":"ready","sdkInitialized":false})");
    QTest::newRow("type, bare") << QStringLiteral(R"({"type":"ready"})");
    QTest::newRow("type, with an id") << QStringLiteral(
        R"({"type":"ready","id":1,"payload":{"executorPathEnabled":false}})");
    QTest::newRow("event") << QStringLiteral(R"({"type":"event","payload":{"event":"ready"}})");
}

void tst_LoomraSDKConnection::readyComesInTwoForms()
{
    QFETCH(QString, frame);
    QVERIFY(fixture->lose());
    fixture->emitted.take();
    QVERIFY(fixture->connect());
    QCOMPARE(fixture->emitted.take(), QStringList(s_connected));
    QVERIFY(fixture->deliver(frame));
    QVERIFY(fixture->sdk.isReady());
    // Ids continue, and an id in "ready" is ignored.
    QCOMPARE(fixture->peer.takeRequest().text, QStringLiteral(R"({"id":3,"method":"ping","params":{}})"));
    QCOMPARE(fixture->peer.takeRequest().text, QStringLiteral(R"({"id":4,"method":"getCapabilities","params":{}})"));
    QCOMPARE(fixture->emitted.take(), QStringList(s_ready));
    fixture->log.takeWarnings();
}

void tst_LoomraSDKConnection::readyAgain()
{
    QVERIFY(fixture->becomeReady());
    QCOMPARE(fixture->emitted.take(), QStringList(s_ready));
}

void tst_LoomraSDKConnection::fallsWithTheConnection()
{
    QTimer *timer = fixture->timer("reconnectTimer");
    QVERIFY(!timer->isActive());
    QVERIFY(fixture->lose());
    QVERIFY(!fixture->sdk.isReady());
    // The peer closing the connection is also reported as an error.
    QCOMPARE(fixture->emitted.take(), QStringList(QStringLiteral("error(\"WebSocket error: 1\")")) + s_fall);
    QVERIFY(timer->isActive());
}

void tst_LoomraSDKConnection::reportsAnOversizedMessage()
{
    fixture->peer.announce(64 * 1024 * 1024 + 1);
    QTRY_VERIFY(fixture->timer("reconnectTimer")->isActive());
    QCOMPARE(
        fixture->emitted.take(),
        QStringList(QStringLiteral("error(\"Connection to Loomra bridge closed because a message was too large\")"))
            + s_fall);
    QCOMPARE(fixture->log.takeWarnings(),
             QStringList(QStringLiteral("Connection to Loomra bridge closed because a message was too large")));

    // The next connection is lost for another reason.
    QVERIFY(fixture->connect());
    fixture->emitted.take();
    QVERIFY(fixture->lose());
    QCOMPARE(fixture->emitted.take(), QStringList(QStringLiteral("error(\"WebSocket error: 1\")")) + s_fall);
}

void tst_LoomraSDKConnection::comesBack()
{
    QVERIFY(fixture->lose());
    fixture->emitted.take();
    fixture->expire("reconnectTimer");
    QVERIFY(fixture->peer.waitForConnection(2));
    QTRY_VERIFY(fixture->sdk.isConnected());
    // The timer runs until the bridge is ready.
    QVERIFY(fixture->timer("reconnectTimer")->isActive());
    QVERIFY(fixture->becomeReady());
    QVERIFY(!fixture->timer("reconnectTimer")->isActive());
    QCOMPARE(fixture->emitted.take(), QStringList({s_connected, s_ready}));
}

void tst_LoomraSDKConnection::waitsForReady()
{
    QVERIFY(fixture->lose());
    QVERIFY(fixture->connect());
    fixture->emitted.take();
    fixture->expire("reconnectTimer");
    QVERIFY(fixture->deliver(QStringLiteral("{}"))); // on the same connection
    QCOMPARE(fixture->peer.connectionCount(), 2);
    QVERIFY(fixture->sdk.isConnected());
    QVERIFY(fixture->timer("reconnectTimer")->isActive());
    QCOMPARE(fixture->emitted.take(), QStringList());
    fixture->log.takeWarnings();
}

//! A timer that runs although the connection is ready is stopped by its next tick, which does nothing else.
void tst_LoomraSDKConnection::stopsTryingOnceReady()
{
    const int before = serviceRequests();
    QTimer *timer = fixture->timer("reconnectTimer");
    timer->start();
    fixture->expire("reconnectTimer");
    QVERIFY(!timer->isActive());
    QVERIFY(fixture->deliver(QStringLiteral("{}"))); // on the same connection
    QCOMPARE(fixture->peer.connectionCount(), 1);
    QCOMPARE(fixture->emitted.take(), QStringList());
    QCOMPARE(serviceRequests(), before);
}

void tst_LoomraSDKConnection::runningTimerKeepsItsPhase()
{
    QVERIFY(fixture->lose());
    const QTimer *timer = fixture->timer("reconnectTimer");
    const int id = timer->timerId();
    QVERIFY(QMetaObject::invokeMethod(&fixture->sdk, "scheduleReconnect"));
    QVERIFY(timer->isActive());
    QCOMPARE(timer->timerId(), id); // QTimer::start() would have taken another one
}

//! The delayed attempt of initialize() may find the connection open.
void tst_LoomraSDKConnection::keepsAnOpenConnection()
{
    fixture->sdk.initialize();
    SingleShots::fire();
    QVERIFY(fixture->deliver(QStringLiteral("{}"))); // on the same connection
    QCOMPARE(fixture->peer.connectionCount(), 1);
    QVERIFY(fixture->sdk.isReady());
    QCOMPARE(fixture->emitted.take(), QStringList());
}

//! Only an open connection keeps from another attempt, so that a peer that never completes the handshake doesn't
//! block the client.
void tst_LoomraSDKConnection::replacesAnAttemptUnderWay()
{
    fixture->peer.close();
    QTRY_VERIFY(fixture->timer("reconnectTimer")->isActive());
    QTcpServer mute;
    QVERIFY(mute.listen(QHostAddress::LocalHost, BridgeConnection::Port));
    const auto *socket = fixture->sdk.findChild<QWebSocket *>();
    const auto nextAttempt = [&]() -> QTcpSocket * {
        fixture->expire("reconnectTimer");
        return waitUntil([&] { return mute.hasPendingConnections(); }) ? mute.nextPendingConnection() : nullptr;
    };

    const QTcpSocket *first = nextAttempt();
    QVERIFY(first);
    QTRY_VERIFY(socket->state() == QAbstractSocket::ConnectingState);
    QVERIFY(nextAttempt());
    QTRY_COMPARE(first->state(), QAbstractSocket::UnconnectedState);
    QCOMPARE(socket->state(), QAbstractSocket::ConnectingState);
    fixture->log.takeWarnings();
}

void tst_LoomraSDKConnection::triesAsLongAsItTakes()
{
    fixture->peer.close();
    QTRY_VERIFY(fixture->timer("reconnectTimer")->isActive());
    fixture->emitted.take();
    for (int i = 0; i < 20; ++i) {
        fixture->expire("reconnectTimer");
        QTRY_VERIFY(fixture->emitted.entries().contains(s_refused));
        QCOMPARE(fixture->emitted.take(), s_fall + QStringList(s_refused));
        QVERIFY(fixture->timer("reconnectTimer")->isActive());
    }
    const QStringList warnings = fixture->log.takeWarnings();
    QVERIFY2(warnings.last().startsWith(QStringLiteral("WebSocket error:")), qPrintable(warnings.last()));
    QVERIFY(fixture->peer.listen());
    fixture->expire("reconnectTimer");
    QVERIFY(fixture->peer.waitForConnection(2));
}

void tst_LoomraSDKConnection::asksForTheServiceOnce()
{
    const int before = serviceRequests();
    fixture->peer.close();
    for (int i = 0; i < 3; ++i) {
        QTRY_VERIFY(fixture->timer("reconnectTimer")->isActive());
        fixture->emitted.take();
        fixture->expire("reconnectTimer");
        QTRY_VERIFY(fixture->emitted.entries().contains(s_refused));
    }
    QTRY_COMPARE(serviceRequests(), before + 1);
    fixture->log.takeWarnings();
}

void tst_LoomraSDKConnection::triesWithoutAServiceManager()
{
    const QByteArray path = qgetenv("PATH");
    const QTemporaryDir nothing;
    qputenv("PATH", QFile::encodeName(nothing.path()));
    const int before = serviceRequests();
    fixture->peer.close();
    QTRY_VERIFY(fixture->timer("reconnectTimer")->isActive());
    for (int i = 0; i < 3; ++i) {
        fixture->emitted.take();
        fixture->expire("reconnectTimer");
        QTRY_VERIFY(fixture->emitted.entries().contains(s_refused));
    }
    qputenv("PATH", path);
    // Later attempts don't request it either.
    fixture->emitted.take();
    fixture->expire("reconnectTimer");
    QTRY_VERIFY(fixture->emitted.entries().contains(s_refused));
    QCOMPARE(serviceRequests(), before);
    fixture->log.takeWarnings();
}

void tst_LoomraSDKConnection::reconnects()
{
    fixture->sdk.reconnectBridge();
    QVERIFY(fixture->peer.waitForConnection(2));
    QTRY_VERIFY(fixture->sdk.isConnected());
    QWebSocketProtocol::CloseCode code = QWebSocketProtocol::CloseCodeAbnormalDisconnection;
    QString reason;
    QVERIFY(fixture->peer.waitForClose(0, &code, &reason));
    QCOMPARE(code, QWebSocketProtocol::CloseCodeNormal);
    QCOMPARE(reason, QString());
    QVERIFY(fixture->becomeReady());
    fixture->log.takeWarnings();
}

void tst_LoomraSDKConnection::reconnectsWhatIsClosed()
{
    fixture->peer.close();
    QTRY_VERIFY(!fixture->sdk.isConnected());
    QVERIFY(fixture->peer.listen());
    fixture->sdk.reconnectBridge();
    QVERIFY(fixture->peer.waitForConnection(2));
    QTRY_VERIFY(fixture->sdk.isConnected());
    fixture->log.takeWarnings();
}

void tst_LoomraSDKConnection::reconnectsFromAHungBridge_data()
{
    QTest::addColumn<int>("calls");
    QTest::newRow("once") << 1;
    QTest::newRow("twice") << 2;
}

void tst_LoomraSDKConnection::reconnectsFromAHungBridge()
{
    QFETCH(int, calls);
    // More than the system buffers. The peer can't read it, because this thread doesn't return to the event loop.
    fixture->sdk.sendChatMessage(QString(16 * 1024 * 1024, QLatin1Char('x')));
    QVERIFY(fixture->sdk.findChild<QWebSocket *>()->bytesToWrite() > 0);
    for (int i = 0; i < calls; ++i) {
        fixture->sdk.reconnectBridge();
        QVERIFY(!fixture->sdk.isConnected());
        QVERIFY(!fixture->sdk.isReady());
    }
    QCOMPARE(fixture->emitted.take(), s_fall);

    QVERIFY(fixture->peer.waitForConnection(2));
    QTRY_VERIFY(fixture->sdk.isConnected());
    QVERIFY(!fixture->sdk.isReady());
    QVERIFY(fixture->becomeReady());
    QCOMPARE(fixture->emitted.take(), QStringList({s_connected, s_ready}));
}

void tst_LoomraSDKConnection::staysDownAfterTheEnd()
{
    fixture->sdk.stopBridgeProcess(true);
    QVERIFY(fixture->sdk.isConnected()); // the bridge is not a child process
    fixture->peer.close();
    QTRY_VERIFY(!fixture->sdk.isConnected());
    fixture->emitted.take();
    // When a later queued call has run, the one that the disconnect queued has too.
    bool isLater = false;
    QMetaObject::invokeMethod(
        &fixture->sdk, [&] { isLater = true; }, Qt::QueuedConnection);
    QTRY_VERIFY(isLater);
    QVERIFY(!fixture->timer("reconnectTimer")->isActive());
    fixture->expire("reconnectTimer");
    QMetaObject::invokeMethod(&fixture->sdk, "onBridgeProcessFinished", Q_ARG(int, 1),
                              Q_ARG(QProcess::ExitStatus, QProcess::NormalExit));
    QCOMPARE(fixture->emitted.take(), s_fall);
    QCoreApplication::processEvents();
    QVERIFY(!fixture->timer("reconnectTimer")->isActive());
    fixture->sdk.stopBridgeProcess(true); // a second call has no effect
    QCOMPARE(fixture->emitted.take(), QStringList());
    fixture->log.takeWarnings();
}

void tst_LoomraSDKConnection::saysGoodbye()
{
    ScriptedBridge &peer = fixture->peer;
    {
        ConfigManager config;
        LoomraSDK sdk(&config);
        sdk.reconnectBridge();
        QVERIFY(peer.waitForConnection(2));
        QTRY_VERIFY(sdk.isConnected());
    }
    QWebSocketProtocol::CloseCode code = QWebSocketProtocol::CloseCodeAbnormalDisconnection;
    QString reason;
    QVERIFY(peer.waitForClose(1, &code, &reason));
    QCOMPARE(code, QWebSocketProtocol::CloseCodeNormal);
    QCOMPARE(reason, QString());
}

void tst_LoomraSDKConnection::quittingGivesUpAnAttempt()
{
    QVERIFY(fixture->lose());
    fixture->sdk.reconnectBridge();
    const auto *socket = fixture->sdk.findChild<QWebSocket *>();
    QCOMPARE(socket->state(), QAbstractSocket::ConnectingState);

    fixture->sdk.stopBridgeProcess(true);

    QCOMPARE(socket->state(), QAbstractSocket::UnconnectedState);
    QVERIFY(!fixture->timer("reconnectTimer")->isActive());
}

REGISTER_TEST(tst_LoomraSDKConnection, QCoreApplication)

#include "tst_LoomraSDKConnection.moc"
