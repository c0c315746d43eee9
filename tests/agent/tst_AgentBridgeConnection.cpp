// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AgentBridgeParts.h"
#include "ConnectedAgent.h"
#include "TestRegistry.h"
#include "TestSetup.h"

#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>
#include <QWebSocket>

#include <memory>

namespace
{

const QString s_connecting = QStringLiteral("[AgentBridge] Connecting to Loomra bridge ws://127.0.0.1:8765/ws");
const QString s_connected = QStringLiteral("[AgentBridge] Connected to Loomra bridge");
const QString s_disconnected = QStringLiteral("[AgentBridge] Disconnected from Loomra bridge");
const QString s_refused = QStringLiteral("[AgentBridge] WebSocket error: \"Connection refused\"");

} // namespace

class tst_AgentBridgeConnection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void connectsWhenMade();
    void doesNotWaitForReady();
    void isRefusedAndTriesAgain();
    void triesWithoutEnd();
    void startsThePauseFromTheEventLoop();
    void doesNotStartThePauseAnew();
    void takesARefusalOfTheHandshakeForAnError();
    void attemptIsNotMadeTwice();
    void intentWithoutConnectionStartsAnAttempt();
    void intentReplacesAClosingConnection();
    void survivesARestartOfThePeer();
    void takesAGoodbyeForNoError();
    void keepsThinkingWhenThePeerGoes();

    void saysGoodbye();
    void vanishesQuietly_data();
    void vanishesQuietly();
};

void tst_AgentBridgeConnection::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_AgentBridgeConnection::init()
{
    TestSetup::clearSettings();
}

void tst_AgentBridgeConnection::connectsWhenMade()
{
    ConnectedAgent c;
    QCOMPARE(c.agent.status(), QStringLiteral("connecting"));
    QVERIFY(c.peer.waitForConnection());
    QTRY_COMPARE(c.agent.status(), QStringLiteral("idle"));
    QCOMPARE(c.emitted.entries(), QStringList {QStringLiteral("statusChanged(\"idle\")")});
    QVERIFY(c.log.has(QtDebugMsg, s_connected));

    const QWebSocket *connection = c.peer.connection(0);
    QVERIFY(connection);
    QCOMPARE(connection->requestUrl().path(), QStringLiteral("/ws"));
    QCOMPARE(connection->origin(), QString());
    QCOMPARE(c.log.warnings(), QStringList());
}

void tst_AgentBridgeConnection::doesNotWaitForReady()
{
    ConnectedAgent c;
    QVERIFY(c.begin());
    QVERIFY(c.agent.isServiceAvailable());
    const ScriptedBridge::Request request = c.prompt();
    QCOMPARE(request.id, quint64(1));

    c.peer.ready();
    QTRY_VERIFY(c.log.has(QtDebugMsg, QStringLiteral("[AgentBridge] Bridge ready message received")));
    QCOMPARE(c.emitted.entries(), QStringList());
    QVERIFY(c.peer.isAllTaken());
}

void tst_AgentBridgeConnection::isRefusedAndTriesAgain()
{
    MessageLog log;
    const AgentBridge agent;
    SignalLog emitted(const_cast<AgentBridge *>(&agent));
    QTRY_COMPARE(agent.status(), QStringLiteral("error"));
    QVERIFY(log.has(QtWarningMsg, s_refused));
    QTRY_VERIFY(timerOf(agent)->isActive());
    QCOMPARE(timerOf(agent)->interval(), 3000);
    QCOMPARE(emitted.take().last(), QStringLiteral("statusChanged(\"error\")"));
    QCOMPARE(log.count(s_connecting), 1);

    ScriptedBridge peer;
    endPause(agent);
    QVERIFY(peer.waitForConnection());
    QTRY_COMPARE(agent.status(), QStringLiteral("idle"));
    QCOMPARE(
        emitted.take(),
        (QStringList {QStringLiteral("statusChanged(\"connecting\")"), QStringLiteral("statusChanged(\"idle\")")}));
    QVERIFY(!timerOf(agent)->isActive());
}

void tst_AgentBridgeConnection::triesWithoutEnd()
{
    MessageLog log;
    const AgentBridge agent;
    timerOf(agent)->setInterval(1); // isRefusedAndTriesAgain checks the real interval
    QTRY_VERIFY(log.count(s_connecting) > 20);
    QVERIFY(!agent.isServiceAvailable());
    for (const QString &warning : log.warnings()) {
        QCOMPARE(warning, s_refused);
    }
}

void tst_AgentBridgeConnection::startsThePauseFromTheEventLoop()
{
    ConnectedAgent c;
    QVERIFY(c.begin());
    // Runs after the agent's own slot, within the same signal.
    bool wasActive = true;
    connect(socketOf(c.agent), &QWebSocket::disconnected, this, [&] { wasActive = timerOf(c.agent)->isActive(); });
    c.peer.drop();
    QTRY_VERIFY(timerOf(c.agent)->isActive());
    QVERIFY(!wasActive);
}

void tst_AgentBridgeConnection::doesNotStartThePauseAnew()
{
    MessageLog log;
    AgentBridge agent;
    QTimer *timer = timerOf(agent);
    QTRY_VERIFY(timer->isActive());
    timer->setTimerType(Qt::PreciseTimer);
    QTRY_VERIFY(timer->remainingTime() < 2700);
    const int before = timer->remainingTime();
    agent.sendIntent(QStringLiteral("hello")); // starts another attempt, which is refused too
    QTRY_COMPARE(log.count(s_refused), 2);
    QCoreApplication::processEvents(); // deliver queued calls
    QVERIFY(timer->remainingTime() <= before);
}

void tst_AgentBridgeConnection::takesARefusalOfTheHandshakeForAnError()
{
    MessageLog log;
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost, 8765));
    connect(&server, &QTcpServer::newConnection, this, [&] {
        QTcpSocket *client = server.nextPendingConnection();
        connect(client, &QTcpSocket::readyRead, client,
                [client] { client->write("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n"); });
    });
    AgentBridge agent;
    SignalLog emitted(&agent);
    QTRY_COMPARE(emitted.entries(), QStringList {QStringLiteral("statusChanged(\"error\")")});
    QTRY_VERIFY(timerOf(agent)->isActive());
    QCOMPARE(log.count(QStringLiteral("[AgentBridge] WebSocket error: ")), 1);
    QVERIFY(!agent.isServiceAvailable());
}

void tst_AgentBridgeConnection::attemptIsNotMadeTwice()
{
    ConnectedAgent c;
    timerOf(c.agent)->start(0); // ends while the first attempt is under way
    QVERIFY(c.begin());
    timerOf(c.agent)->start(0); // ends while connected
    QTRY_VERIFY(!timerOf(c.agent)->isActive());
    const ScriptedBridge::Request request = c.prompt();
    QCOMPARE(request.connection, 0);
    QCOMPARE(c.peer.connectionCount(), 1);
    QCOMPARE(c.log.count(s_connecting), 0);
    QCOMPARE(c.emitted.entries(), QStringList());
}

void tst_AgentBridgeConnection::intentWithoutConnectionStartsAnAttempt()
{
    ConnectedAgent c;
    QVERIFY(c.begin());
    c.peer.close();
    QTRY_COMPARE(c.agent.status(), QStringLiteral("disconnected"));
    QTRY_VERIFY(timerOf(c.agent)->isActive());
    c.emitted.take();
    c.log.clear();
    QVERIFY(c.peer.listen());

    c.agent.sendIntent(QStringLiteral("hello"));
    QCOMPARE(c.emitted.take(),
             (QStringList {
                 QStringLiteral("errorOccurred(\"Loomra bridge not connected (ws://127.0.0.1:8765/ws)\")"),
                 // No "disconnected", because that is the status already.
                 QStringLiteral("statusChanged(\"connecting\")"),
             }));
    QCOMPARE(c.log.count(s_connecting), 1);
    QVERIFY(!c.agent.isThinking());

    // A second prompt finds the attempt still running.
    c.agent.sendIntent(QStringLiteral("hello"));
    QCOMPARE(c.emitted.take(),
             (QStringList {
                 QStringLiteral("errorOccurred(\"Loomra bridge not connected (ws://127.0.0.1:8765/ws)\")"),
                 QStringLiteral("statusChanged(\"disconnected\")"),
             }));
    QCOMPARE(c.log.count(s_connecting), 1);

    QVERIFY(c.peer.waitForConnection(2));
    QTRY_COMPARE(c.agent.status(), QStringLiteral("idle"));
    // Rejected prompts are neither queued nor do they use up an id: the next one is the first that the peer receives.
    const ScriptedBridge::Request request = c.prompt(QStringLiteral("again"));
    QCOMPARE(request.params.value(QStringLiteral("message")).toString(), QStringLiteral("again"));
    QCOMPARE(request.id, quint64(1));
}

void tst_AgentBridgeConnection::intentReplacesAClosingConnection()
{
    ConnectedAgent c;
    QVERIFY(c.begin());
    // More than the system buffers. The peer can't read it, because this thread doesn't return to the event loop.
    c.agent.sendIntent(QString(16 * 1024 * 1024, QLatin1Char('x')));
    socketOf(c.agent)->close();
    QCOMPARE(socketOf(c.agent)->state(), QAbstractSocket::ClosingState);
    c.emitted.take();

    c.agent.sendIntent(QStringLiteral("hello"));
    QCOMPARE(c.emitted.take(),
             (QStringList {
                 QStringLiteral("errorOccurred(\"Loomra bridge not connected (ws://127.0.0.1:8765/ws)\")"),
                 QStringLiteral("statusChanged(\"disconnected\")"),
                 QStringLiteral("statusChanged(\"connecting\")"),
             }));
    QCOMPARE(c.log.count(s_disconnected), 1);
    QVERIFY(c.peer.waitForConnection(2));
    QTRY_COMPARE(c.agent.status(), QStringLiteral("idle"));
}

void tst_AgentBridgeConnection::survivesARestartOfThePeer()
{
    ConnectedAgent c;
    QVERIFY(c.begin());
    ScriptedBridge::Request request = c.prompt();
    QVERIFY(c.deliver(json(
        QStringLiteral(R"({"type":"response","id":%1,"payload":{"response":"a","sessionId":"s1"}})").arg(request.id))));
    c.emitted.take();

    c.peer.close();
    QTRY_COMPARE(c.agent.status(), QStringLiteral("disconnected"));
    QVERIFY(!c.agent.isServiceAvailable());
    QVERIFY(c.log.has(QtDebugMsg, s_disconnected));
    QTRY_VERIFY(timerOf(c.agent)->isActive());

    // One attempt fails, the next one succeeds.
    endPause(c.agent);
    QTRY_COMPARE(c.agent.status(), QStringLiteral("error"));
    QVERIFY(c.peer.listen());
    QTRY_VERIFY(timerOf(c.agent)->isActive());
    endPause(c.agent);
    QVERIFY(c.peer.waitForConnection(2));
    QTRY_COMPARE(c.agent.status(), QStringLiteral("idle"));
    QCOMPARE(c.emitted.take(),
             (QStringList {
                 QStringLiteral("statusChanged(\"error\")"), // closed without a handshake
                 QStringLiteral("statusChanged(\"disconnected\")"),
                 QStringLiteral("statusChanged(\"connecting\")"), // refused
                 QStringLiteral("statusChanged(\"disconnected\")"),
                 QStringLiteral("statusChanged(\"error\")"),
                 QStringLiteral("statusChanged(\"connecting\")"),
                 QStringLiteral("statusChanged(\"idle\")"),
             }));

    // Session and ids continue.
    request = c.prompt();
    QCOMPARE(request.id, quint64(2));
    QCOMPARE(request.params.value(QStringLiteral("sessionId")).toString(), QStringLiteral("s1"));
    c.peer.reply(request, answer(QStringLiteral("back")));
    QTRY_COMPARE(c.agent.status(), QStringLiteral("idle"));
    QVERIFY(c.emitted.entries().contains(QStringLiteral("agentReplied(\"back\")")));
}

void tst_AgentBridgeConnection::takesAGoodbyeForNoError()
{
    ConnectedAgent c;
    QVERIFY(c.begin());
    c.peer.connection(0)->close(QWebSocketProtocol::CloseCodeGoingAway);
    QTRY_VERIFY(timerOf(c.agent)->isActive());
    QCOMPARE(c.emitted.take(), QStringList {QStringLiteral("statusChanged(\"disconnected\")")});
    QVERIFY(c.log.has(QtDebugMsg, s_disconnected));
    QCOMPARE(c.log.warnings(), QStringList());

    endPause(c.agent);
    QVERIFY(c.peer.waitForConnection(2));
    QTRY_COMPARE(c.agent.status(), QStringLiteral("idle"));
}

void tst_AgentBridgeConnection::keepsThinkingWhenThePeerGoes()
{
    ConnectedAgent c;
    QVERIFY(c.begin());
    const ScriptedBridge::Request request = c.prompt();
    c.peer.event(QStringLiteral("agent.routed"), {{QStringLiteral("agent"), QStringLiteral("planner")}});
    c.peer.event(QStringLiteral("plan.step"), {{QStringLiteral("index"), 1}, {QStringLiteral("total"), 3}});
    QTRY_COMPARE(c.agent.planStepIndex(), 1);
    c.emitted.take();

    timerOf(c.agent)->setInterval(1);
    c.peer.close();
    // Only the status changes, repeatedly.
    QTRY_VERIFY(c.log.count(s_connecting) > 3);
    const QStringList allowed {QStringLiteral("statusChanged(\"disconnected\")"),
                               QStringLiteral("statusChanged(\"connecting\")"),
                               QStringLiteral("statusChanged(\"error\")")};
    const QStringList entries = c.emitted.take();
    for (const QString &entry : entries) {
        QVERIFY2(allowed.contains(entry), qPrintable(entry));
    }
    QVERIFY(entries.count(allowed.at(1)) > 2);
    QVERIFY(c.agent.isThinking());
    QCOMPARE(c.agent.activePhase(), QStringLiteral("routing"));
    QCOMPARE(c.agent.routedAgent(), QStringLiteral("planner"));
    QCOMPARE(c.agent.planStepTotal(), 3);

    // The request is still open, so a restarted bridge may answer it.
    QVERIFY(c.peer.listen());
    QVERIFY(c.peer.waitForConnection(2));
    QTRY_COMPARE(c.agent.status(), QStringLiteral("idle"));
    QVERIFY(c.agent.isThinking());
    c.emitted.take();
    c.peer.reply(request.id, answer(QStringLiteral("late")));
    QTRY_VERIFY(!c.agent.isThinking());
    QVERIFY(c.emitted.entries().contains(QStringLiteral("agentReplied(\"late\")")));
}

void tst_AgentBridgeConnection::saysGoodbye()
{
    MessageLog log;
    ScriptedBridge peer;
    auto agent = std::make_unique<AgentBridge>();
    QTRY_VERIFY(agent->isServiceAvailable());
    QVERIFY(peer.waitForConnection());
    agent->sendIntent(QStringLiteral("hello"));
    peer.takeRequest();

    SignalLog emitted(agent.get());
    agent.reset();
    QCOMPARE(emitted.entries(), QStringList());
    QWebSocketProtocol::CloseCode code = QWebSocketProtocol::CloseCodeAbnormalDisconnection;
    QString reason = QStringLiteral("?");
    QVERIFY(peer.waitForClose(0, &code, &reason));
    QCOMPARE(code, QWebSocketProtocol::CloseCodeNormal);
    QCOMPARE(static_cast<int>(code), 1000);
    QCOMPARE(reason, QString());
    QCOMPARE(log.warnings(), QStringList());
}

void tst_AgentBridgeConnection::vanishesQuietly_data()
{
    QTest::addColumn<QString>("status");
    QTest::newRow("while connecting") << "connecting";
    QTest::newRow("after an error") << "error";
}

void tst_AgentBridgeConnection::vanishesQuietly()
{
    QFETCH(QString, status);
    MessageLog log;
    auto agent = std::make_unique<AgentBridge>();
    QTRY_COMPARE(agent->status(), status);
    log.clear();
    SignalLog emitted(agent.get());
    QPointer<QWebSocket> socket = socketOf(*agent);
    agent.reset();
    QVERIFY(!socket);
    QCoreApplication::processEvents(); // queued calls are dropped with the object
    QCOMPARE(emitted.entries(), QStringList());
    QCOMPARE(log.warnings(), QStringList());
}

REGISTER_TEST(tst_AgentBridgeConnection, QCoreApplication)
#include "tst_AgentBridgeConnection.moc"
