// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BridgeConnection.h"
#include "ScriptedBridge.h"
#include "TestRegistry.h"

#include <QJsonObject>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWebSocket>

#include <algorithm>
#include <functional>
#include <memory>

using Retry = BridgeConnection::Retry;

Q_DECLARE_METATYPE(BridgeConnection::Retry)
Q_DECLARE_METATYPE(std::function<void(ScriptedBridge &)>)

class tst_BridgeConnection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fixedValues();
    void retryTimer_data();
    void retryTimer();
    void opensNothingByItself();
    void opensAndSends();
    void closesWithItsReason();
    void closingAClosedConnectionDoesNothing();
    void openingEndsAnEarlierConnection();
    void detectsTooLargeMessages_data();
    void detectsTooLargeMessages();
    void cutMessageLeavesNothingBehind_data();
    void cutMessageLeavesNothingBehind();
    void runningTimerKeepsItsPhase();
    void scheduledRetryWaitsForTheEventLoop();
    void repeatedRetryGoesOn();
    void endIsSilentAndPolite();
    void scheduledRetryDiesWithTheConnection();
};

static const QString s_host = QStringLiteral("127.0.0.1");

void tst_BridgeConnection::fixedValues()
{
    QCOMPARE(BridgeConnection::Port, 8765);
    QCOMPARE(BridgeConnection::RetryInterval, std::chrono::milliseconds(3000));
    QCOMPARE(BridgeConnection::MaxIncomingSize, quint64(67108864));

    QObject owner;
    const BridgeConnection connection(QStringLiteral("localhost"), Retry::Once, &owner);
    QCOMPARE(connection.url(), QUrl(QStringLiteral("ws://localhost:8765/ws")));
    QCOMPARE(connection.socket()->parent(), &owner);
    QCOMPARE(connection.socket()->origin(), QString());
    QCOMPARE(connection.socket()->version(), QWebSocketProtocol::Version13);
    QCOMPARE(connection.socket()->maxAllowedIncomingFrameSize(), BridgeConnection::MaxIncomingSize);
    QCOMPARE(connection.socket()->maxAllowedIncomingMessageSize(), BridgeConnection::MaxIncomingSize);
}

void tst_BridgeConnection::retryTimer_data()
{
    QTest::addColumn<Retry>("retry");
    QTest::addColumn<bool>("isSingleShot");
    QTest::newRow("once") << Retry::Once << true;
    QTest::newRow("until stopped") << Retry::UntilStopped << false;
}

void tst_BridgeConnection::retryTimer()
{
    QFETCH(Retry, retry);
    QObject owner;
    const BridgeConnection connection(s_host, retry, &owner);
    QCOMPARE(connection.retryTimer()->parent(), &owner);
    QCOMPARE(connection.retryTimer()->intervalAsDuration(), std::chrono::milliseconds(3000));
    QTEST(connection.retryTimer()->isSingleShot(), "isSingleShot");
    QVERIFY(!connection.retryTimer()->isActive());
}

void tst_BridgeConnection::opensNothingByItself()
{
    QObject owner;
    const BridgeConnection connection(s_host, Retry::Once, &owner);
    QCOMPARE(connection.socket()->state(), QAbstractSocket::UnconnectedState);
    QVERIFY(!connection.isOpen());
    QVERIFY(!connection.isConnecting());
}

void tst_BridgeConnection::opensAndSends()
{
    ScriptedBridge peer;
    QObject owner;
    BridgeConnection connection(s_host, Retry::Once, &owner);
    connection.open();
    QVERIFY(connection.isConnecting());
    QVERIFY(!connection.isOpen());
    QTRY_VERIFY(connection.isOpen());
    QVERIFY(!connection.isConnecting());

    connection.send(7, QStringLiteral("method"), {{QStringLiteral("key"), 1}});
    QCOMPARE(peer.takeRequest().text, QStringLiteral(R"({"id":7,"method":"method","params":{"key":1}})"));
}

void tst_BridgeConnection::closesWithItsReason()
{
    ScriptedBridge peer;
    QObject owner;
    BridgeConnection connection(s_host, Retry::Once, &owner);
    connection.open();
    QTRY_VERIFY(connection.isOpen());
    connection.close(QStringLiteral("bye"));
    QWebSocketProtocol::CloseCode code = QWebSocketProtocol::CloseCodeAbnormalDisconnection;
    QString reason;
    QVERIFY(peer.waitForClose(0, &code, &reason));
    QCOMPARE(code, QWebSocketProtocol::CloseCodeNormal);
    QCOMPARE(reason, QStringLiteral("bye"));
}

void tst_BridgeConnection::closingAClosedConnectionDoesNothing()
{
    ScriptedBridge peer;
    QObject owner;
    BridgeConnection connection(s_host, Retry::Once, &owner);
    connection.close();
    QCOMPARE(connection.socket()->state(), QAbstractSocket::UnconnectedState);
    connection.open();
    connection.close(); // an attempt under way isn't given up
    QTRY_VERIFY(connection.isOpen());
}

void tst_BridgeConnection::openingEndsAnEarlierConnection()
{
    ScriptedBridge peer;
    QObject owner;
    BridgeConnection connection(s_host, Retry::Once, &owner);
    QSignalSpy disconnected(connection.socket(), &QWebSocket::disconnected);
    connection.open();
    QTRY_VERIFY(connection.isOpen());

    // More than the system buffers, so that the connection can't close.
    connection.socket()->sendBinaryMessage(QByteArray(16 * 1024 * 1024, 'x'));
    connection.close();
    QCOMPARE(connection.socket()->state(), QAbstractSocket::ClosingState);
    QCOMPARE(disconnected.count(), 0);
    connection.open();
    QCOMPARE(disconnected.count(), 1);
    QVERIFY(connection.isConnecting());
    QTRY_VERIFY(connection.isOpen());

    // An attempt under way ends without a signal.
    connection.close();
    QCOMPARE(disconnected.count(), 2);
    connection.open();
    connection.open();
    QTRY_VERIFY(connection.isOpen());
    QCOMPARE(disconnected.count(), 2);
}

void tst_BridgeConnection::detectsTooLargeMessages_data()
{
    using Peer = std::function<void(ScriptedBridge &)>;
    QTest::addColumn<Peer>("peerCloses");
    QTest::addColumn<bool>("isTooLarge");

    const auto closes = [](QWebSocketProtocol::CloseCode code) {
        return Peer([code](ScriptedBridge &peer) { peer.connection(0)->close(code); });
    };
    QTest::newRow("frame above the limit")
        << Peer([](ScriptedBridge &peer) { peer.announce(BridgeConnection::MaxIncomingSize + 1); }) << true;
    QTest::newRow("refused by the peer") << closes(QWebSocketProtocol::CloseCodeTooMuchData) << true;
    QTest::newRow("normal close") << closes(QWebSocketProtocol::CloseCodeNormal) << false;
    QTest::newRow("drop") << Peer([](ScriptedBridge &peer) { peer.drop(); }) << false;
}

void tst_BridgeConnection::detectsTooLargeMessages()
{
    QFETCH(std::function<void(ScriptedBridge &)>, peerCloses);
    QFETCH(bool, isTooLarge);
    ScriptedBridge peer;
    QObject owner;
    BridgeConnection connection(s_host, Retry::Once, &owner);
    bool isDisconnected = false;
    bool wasTooLarge = false;
    connect(connection.socket(), &QWebSocket::disconnected, &owner, [&] {
        isDisconnected = true;
        wasTooLarge = connection.wasMessageTooLarge();
    });
    connection.open();
    QTRY_VERIFY(connection.isOpen());
    QVERIFY(peer.waitForConnection());
    peerCloses(peer);
    QTRY_VERIFY(isDisconnected);
    QCOMPARE(wasTooLarge, isTooLarge);

    // The next connection resets it.
    isDisconnected = false;
    connection.open();
    QTRY_VERIFY(connection.isOpen());
    QVERIFY(peer.waitForConnection(2));
    peer.drop();
    QTRY_VERIFY(isDisconnected);
    QVERIFY(!wasTooLarge);
}

void tst_BridgeConnection::cutMessageLeavesNothingBehind_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("header of a frame") << QByteArrayLiteral("\x81\x05");
    QTest::newRow("part of a frame") << QByteArrayLiteral("\x81\x05yz");
    QTest::newRow("first of two frames") << QByteArrayLiteral("\x01\x02yz");
    QTest::newRow("part of the second frame") << QByteArrayLiteral("\x01\x02yz\x80\x02y");
}

//! The bridge dies while it sends a message. The next connection must not be affected.
void tst_BridgeConnection::cutMessageLeavesNothingBehind()
{
    QFETCH(QByteArray, bytes);
    ScriptedBridge peer;
    QObject owner;
    BridgeConnection connection(s_host, Retry::Once, &owner);
    QSignalSpy disconnected(connection.socket(), &QWebSocket::disconnected);
    QSignalSpy received(connection.socket(), &QWebSocket::textMessageReceived);
    // Qt gives the rest of a frame 5 s and then closes the connection.
    const auto waits = [&connection] {
        const QList<QTimer *> timers = connection.socket()->findChildren<QTimer *>();
        return std::any_of(timers.cbegin(), timers.cend(), [](const QTimer *timer) { return timer->isActive(); });
    };
    connection.open();
    QTRY_VERIFY(connection.isOpen());
    QVERIFY(peer.waitForConnection());
    peer.sendBytes(bytes);
    QTRY_VERIFY(waits());
    peer.drop();
    QTRY_COMPARE(disconnected.count(), 1);

    connection.open();
    QTRY_VERIFY(connection.isOpen());
    QVERIFY(peer.waitForConnection(2));
    QVERIFY(!waits());
    peer.sendRaw(QStringLiteral("next"));
    QTRY_COMPARE(received.count(), 1);
    QCOMPARE(received.at(0).at(0).toString(), QStringLiteral("next"));
    QCOMPARE(disconnected.count(), 1);
}

void tst_BridgeConnection::runningTimerKeepsItsPhase()
{
    QObject owner;
    BridgeConnection connection(s_host, Retry::Once, &owner);
    QTimer *timer = connection.retryTimer();
    connection.startRetryTimer();
    QVERIFY(timer->isActive());
    const int id = timer->timerId();
    connection.startRetryTimer();
    QCOMPARE(timer->timerId(), id); // QTimer::start() would have taken another one
}

void tst_BridgeConnection::scheduledRetryWaitsForTheEventLoop()
{
    QObject owner;
    BridgeConnection connection(s_host, Retry::Once, &owner);
    connection.scheduleRetry();
    QVERIFY(!connection.retryTimer()->isActive());
    QCoreApplication::processEvents();
    QVERIFY(connection.retryTimer()->isActive());
}

void tst_BridgeConnection::repeatedRetryGoesOn()
{
    QObject owner;
    BridgeConnection connection(s_host, Retry::UntilStopped, &owner);
    connection.retryTimer()->setInterval(1);
    QSignalSpy timeouts(connection.retryTimer(), &QTimer::timeout);
    connection.startRetryTimer();
    QTRY_VERIFY(timeouts.count() >= 3);
}

void tst_BridgeConnection::endIsSilentAndPolite()
{
    ScriptedBridge peer;
    QObject owner;
    auto connection = std::make_unique<BridgeConnection>(s_host, Retry::Once, &owner);
    bool isNotified = false;
    connect(connection->socket(), &QWebSocket::disconnected, &owner, [&] { isNotified = true; });
    connection->open();
    QTRY_VERIFY(connection->isOpen());
    connection.reset();
    QWebSocketProtocol::CloseCode code = QWebSocketProtocol::CloseCodeAbnormalDisconnection;
    QString reason;
    QVERIFY(peer.waitForClose(0, &code, &reason));
    QCOMPARE(code, QWebSocketProtocol::CloseCodeNormal);
    QVERIFY(!isNotified);
    QVERIFY(owner.children().isEmpty());
}

void tst_BridgeConnection::scheduledRetryDiesWithTheConnection()
{
    QObject owner;
    auto connection = std::make_unique<BridgeConnection>(s_host, Retry::Once, &owner);
    const QPointer<QTimer> timer = connection->retryTimer();
    connection->scheduleRetry();
    connection.reset();
    QCoreApplication::processEvents();
    QVERIFY(!timer);
}

REGISTER_TEST(tst_BridgeConnection, QCoreApplication)
#include "tst_BridgeConnection.moc"
