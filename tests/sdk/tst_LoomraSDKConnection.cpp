// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConnectedSdk.h"

#include "TestRegistry.h"
#include "WaitUntil.h"

#include <QFile>
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
    void comesBack();
    void waitsForReady();
    void triesAsLongAsItTakes();
    void asksForTheServiceOnce();
    void triesWithoutAServiceManager();
    void reconnects();
    void reconnectsWhatIsClosed();
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
    QVERIFY(c->peer.waitForConnection(2));
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
    QVERIFY(c->lose());
    c->heard.take();
    QVERIFY(c->connect());
    QCOMPARE(c->heard.take(), QStringList(s_connected));
    QVERIFY(c->deliver(frame));
    QVERIFY(c->sdk.isReady());
    // Ids continue, and an id in "ready" is ignored.
    QCOMPARE(c->peer.takeRequest().text, QStringLiteral(R"({"id":3,"method":"ping","params":{}})"));
    QCOMPARE(c->peer.takeRequest().text, QStringLiteral(R"({"id":4,"method":"getCapabilities","params":{}})"));
    QCOMPARE(c->heard.take(), QStringList(s_ready));
    c->log.takeWarnings();
}

void tst_LoomraSDKConnection::readyAgain()
{
    QVERIFY(c->becomeReady());
    QCOMPARE(c->heard.take(), QStringList(s_ready));
}

void tst_LoomraSDKConnection::fallsWithTheConnection()
{
    QTimer *timer = c->timer("reconnectTimer");
    QVERIFY(!timer->isActive());
    QVERIFY(c->lose());
    QVERIFY(!c->sdk.isReady());
    // The peer closing the connection is also reported as an error.
    QCOMPARE(c->heard.take(), QStringList(QStringLiteral("error(\"WebSocket error: 1\")")) + s_fall);
    QVERIFY(timer->isActive());
}

void tst_LoomraSDKConnection::comesBack()
{
    QVERIFY(c->lose());
    c->heard.take();
    c->expire("reconnectTimer");
    QVERIFY(c->peer.waitForConnection(2));
    QTRY_VERIFY(c->sdk.isConnected());
    // The timer runs until the bridge is ready.
    QVERIFY(c->timer("reconnectTimer")->isActive());
    QVERIFY(c->becomeReady());
    QVERIFY(!c->timer("reconnectTimer")->isActive());
    QCOMPARE(c->heard.take(), QStringList({s_connected, s_ready}));
}

void tst_LoomraSDKConnection::waitsForReady()
{
    QVERIFY(c->lose());
    QVERIFY(c->connect());
    c->heard.take();
    c->expire("reconnectTimer");
    QVERIFY(c->deliver(QStringLiteral("{}"))); // on the same connection
    QCOMPARE(c->peer.connectionCount(), 2);
    QVERIFY(c->sdk.isConnected());
    QVERIFY(c->timer("reconnectTimer")->isActive());
    QCOMPARE(c->heard.take(), QStringList());
    c->log.takeWarnings();
}

void tst_LoomraSDKConnection::triesAsLongAsItTakes()
{
    c->peer.close();
    QTRY_VERIFY(c->timer("reconnectTimer")->isActive());
    c->heard.take();
    for (int i = 0; i < 20; ++i) {
        c->expire("reconnectTimer");
        QTRY_VERIFY(c->heard.entries().contains(s_refused));
        QCOMPARE(c->heard.take(), s_fall + QStringList(s_refused));
        QVERIFY(c->timer("reconnectTimer")->isActive());
    }
    const QStringList warnings = c->log.takeWarnings();
    QVERIFY2(warnings.last().startsWith(QStringLiteral("WebSocket error:")), qPrintable(warnings.last()));
    QVERIFY(c->peer.listen());
    c->expire("reconnectTimer");
    QVERIFY(c->peer.waitForConnection(2));
}

void tst_LoomraSDKConnection::asksForTheServiceOnce()
{
    const int before = serviceRequests();
    c->peer.close();
    for (int i = 0; i < 3; ++i) {
        QTRY_VERIFY(c->timer("reconnectTimer")->isActive());
        c->heard.take();
        c->expire("reconnectTimer");
        QTRY_VERIFY(c->heard.entries().contains(s_refused));
    }
    QTRY_COMPARE(serviceRequests(), before + 1);
    c->log.takeWarnings();
}

void tst_LoomraSDKConnection::triesWithoutAServiceManager()
{
    const QByteArray path = qgetenv("PATH");
    const QTemporaryDir nothing;
    qputenv("PATH", QFile::encodeName(nothing.path()));
    const int before = serviceRequests();
    c->peer.close();
    QTRY_VERIFY(c->timer("reconnectTimer")->isActive());
    for (int i = 0; i < 3; ++i) {
        c->heard.take();
        c->expire("reconnectTimer");
        QTRY_VERIFY(c->heard.entries().contains(s_refused));
    }
    qputenv("PATH", path);
    // Later attempts don't request it either.
    c->heard.take();
    c->expire("reconnectTimer");
    QTRY_VERIFY(c->heard.entries().contains(s_refused));
    QCOMPARE(serviceRequests(), before);
    c->log.takeWarnings();
}

void tst_LoomraSDKConnection::reconnects()
{
    c->sdk.reconnectBridge();
    QVERIFY(c->peer.waitForConnection(2));
    QTRY_VERIFY(c->sdk.isConnected());
    QWebSocketProtocol::CloseCode code = QWebSocketProtocol::CloseCodeAbnormalDisconnection;
    QString reason;
    QVERIFY(c->peer.waitForClose(0, &code, &reason));
    QCOMPARE(code, QWebSocketProtocol::CloseCodeNormal);
    QCOMPARE(reason, QString());
    QVERIFY(c->becomeReady());
    c->log.takeWarnings();
}

void tst_LoomraSDKConnection::reconnectsWhatIsClosed()
{
    c->peer.close();
    QTRY_VERIFY(!c->sdk.isConnected());
    QVERIFY(c->peer.listen());
    c->sdk.reconnectBridge();
    QVERIFY(c->peer.waitForConnection(2));
    QTRY_VERIFY(c->sdk.isConnected());
    c->log.takeWarnings();
}

void tst_LoomraSDKConnection::staysDownAfterTheEnd()
{
    c->sdk.stopBridgeProcess(true);
    QVERIFY(c->sdk.isConnected()); // the bridge is not a child process
    c->peer.close();
    QTRY_VERIFY(!c->sdk.isConnected());
    c->heard.take();
    // When a later queued call has run, the one that the disconnect queued has too.
    bool isLater = false;
    QMetaObject::invokeMethod(
        &c->sdk, [&] { isLater = true; }, Qt::QueuedConnection);
    QTRY_VERIFY(isLater);
    QVERIFY(!c->timer("reconnectTimer")->isActive());
    c->expire("reconnectTimer");
    QMetaObject::invokeMethod(&c->sdk, "onBridgeProcessFinished", Q_ARG(int, 1),
                              Q_ARG(QProcess::ExitStatus, QProcess::NormalExit));
    QCOMPARE(c->heard.take(), s_fall);
    QCoreApplication::processEvents();
    QVERIFY(!c->timer("reconnectTimer")->isActive());
    c->sdk.stopBridgeProcess(true); // a second call has no effect
    QCOMPARE(c->heard.take(), QStringList());
    c->log.takeWarnings();
}

void tst_LoomraSDKConnection::saysGoodbye()
{
    ScriptedBridge &peer = c->peer;
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
    QVERIFY(c->lose());
    c->sdk.reconnectBridge();
    const auto *socket = c->sdk.findChild<QWebSocket *>();
    QCOMPARE(socket->state(), QAbstractSocket::ConnectingState);

    c->sdk.stopBridgeProcess(true);

    QCOMPARE(socket->state(), QAbstractSocket::UnconnectedState);
    QVERIFY(!c->timer("reconnectTimer")->isActive());
}

REGISTER_TEST(tst_LoomraSDKConnection, QCoreApplication)

#include "tst_LoomraSDKConnection.moc"
