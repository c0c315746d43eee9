// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConnectedSdk.h"
#include "DebugLogFile.h"

#include "FakePath.h"
#include "TestRegistry.h"
#include "TestSetup.h"

#include <QFileInfo>
#include <QTest>

namespace
{

const QByteArray s_on = "1";

//! The entries for a received frame that is a JSON object.
QStringList received(const QString &frame, const QString &parsed)
{
    return {
        QStringLiteral(R"(onWebSocketTextMessageReceived: WebSocket message received )")
            + QStringLiteral(R"({"messageLength":%1,"messagePreview":"%2"})")
                  .arg(QString::number(frame.size()), QString(frame).replace(QLatin1Char('"'), QLatin1String("\\\""))),
        QStringLiteral("onWebSocketTextMessageReceived: Parsed message object ") + parsed};
}

QStringList sent(const QString &method, int id)
{
    return {QStringLiteral(R"(sendRequest: sendRequest entry {"method":"%1","requestId":%2,"ready":1,"connected":1})")
                .arg(method, QString::number(id)),
            QStringLiteral(R"(sendRequest: sendRequest message sent {"method":"%1","requestId":%2})")
                .arg(method, QString::number(id))};
}

QStringList refused(const QString &method, int id)
{
    return {QStringLiteral(R"(sendRequest: sendRequest entry {"method":"%1","requestId":%2,"ready":0,"connected":0})")
                .arg(method, QString::number(id)),
            QStringLiteral(R"(sendRequest: sendRequest SDK not ready {"method":"%1","requestId":%2})")
                .arg(method, QString::number(id))};
}

const QString s_response = QStringLiteral(R"({"hasType":1,"type":"response","hasId":1})");

} // namespace

// The debug event log of a client without a child process. tst_LoomraSDKDebugChild covers the child.
class tst_LoomraSDKDebugLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void beginning();
    void service_data();
    void service();
    void readyInAllForms();
    void lossAndRefusedConnection();
    void requestAndReply();
    void refusal();
    void listings();
    void listingsWhileNotReady();
    void off_data();
    void off();

private:
    //! Makes the client ready and drops the events so far.
    void makeReady();

    std::unique_ptr<DebugLogFile> m_file;
    std::unique_ptr<ConnectedSdk> fixture;
};

void tst_LoomraSDKDebugLog::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_LoomraSDKDebugLog::init()
{
    m_file = std::make_unique<DebugLogFile>(s_on);
    fixture = std::make_unique<ConnectedSdk>();
}

void tst_LoomraSDKDebugLog::cleanup()
{
    fixture.reset();
    m_file.reset();
}

void tst_LoomraSDKDebugLog::makeReady()
{
    QVERIFY(fixture->connect());
    QVERIFY(fixture->becomeReady());
    m_file->takeEvents();
}

void tst_LoomraSDKDebugLog::beginning()
{
    QCOMPARE(m_file->lines().size(), 0); // the constructor logs nothing
    fixture->sdk.initialize();
    QCOMPARE(m_file->takeEvents(),
             QStringList({QStringLiteral("initialize: initialize called {}"),
                          QStringLiteral("ensureBridgeUserServiceStarted: requested tovi-bridge.service start "
                                         R"({"started":1})")}));
    QTRY_VERIFY(fixture->sdk.isConnected());
    QCOMPARE(
        m_file->takeEvents(),
        QStringList({QStringLiteral("connectWebSocket: connectWebSocket called "
                                    R"({"port":8765,"currentState":0})"),
                     QStringLiteral(R"(onWebSocketConnected: WebSocket connected {"wasConnected":0,"wasReady":0})")}));
    // The second time the service has been requested and the socket is open.
    fixture->sdk.initialize();
    QStringList events;
    QTRY_VERIFY((events += m_file->takeEvents()).size() > 1);
    QCOMPARE(events,
             QStringList({QStringLiteral("initialize: initialize called {}"),
                          QStringLiteral("connectWebSocket: connectWebSocket called "
                                         R"({"port":8765,"currentState":3})")}));
}

void tst_LoomraSDKDebugLog::service_data()
{
    QTest::addColumn<bool>("isThere");
    QTest::addColumn<QString>("event");
    QTest::newRow("no systemctl") << false << QStringLiteral("systemctl not found {}");
    QTest::newRow("cannot be started") << true
                                       << QStringLiteral(R"(requested tovi-bridge.service start {"started":0})");
}

void tst_LoomraSDKDebugLog::service()
{
    QFETCH(bool, isThere);
    QFETCH(QString, event);
    FakePath programs(FakePath::Rest::Hidden);
    if (isThere) {
        programs.add(QStringLiteral("systemctl"), QByteArray(), "/nonexistent/interpreter");
    }
    fixture->sdk.initialize();
    QCOMPARE(m_file->takeEvents(),
             QStringList({QStringLiteral("initialize: initialize called {}"),
                          QStringLiteral("ensureBridgeUserServiceStarted: ") + event}));
}

void tst_LoomraSDKDebugLog::readyInAllForms()
{
    QVERIFY(fixture->connect());
    m_file->takeEvents();
    const QString parsed = QStringLiteral(R"({"hasType":1,"type":"%1","hasId":0})");
    const QString noted = QStringLiteral("onWebSocketTextMessageReceived: Received ready message %1");
    const auto asked = [](int id) {
        return sent(QStringLiteral("ping"), id) + sent(QStringLiteral("getCapabilities"), id + 1);
    };

    const QString ready = QStringLiteral(R"({"type":"ready","sdkInitialized":true})");
    QVERIFY(fixture->deliver(ready));
    QCOMPARE(m_file->takeEvents(),
             received(ready, parsed.arg(QLatin1String("ready")))
                 + QStringList(noted.arg(QLatin1String(R"({"sdkInitialized":1,"wasReady":0})"))) + asked(1));
    const QString bare = QStringLiteral(R"({"type":"ready"})");
    QVERIFY(fixture->deliver(bare));
    QCOMPARE(m_file->takeEvents(),
             received(bare, parsed.arg(QLatin1String("ready")))
                 + QStringList(noted.arg(QLatin1String(R"({"sdkInitialized":0,"wasReady":1})"))) + asked(3));
    const QString event = QStringLiteral(R"({"type":"event","payload":{"event":"ready"}})");
    QVERIFY(fixture->deliver(event));
    QCOMPARE(m_file->takeEvents(), received(event, parsed.arg(QLatin1String("event"))) + asked(5));
}

void tst_LoomraSDKDebugLog::lossAndRefusedConnection()
{
    makeReady();
    fixture->peer.close();
    QTRY_VERIFY(!fixture->sdk.isConnected());
    QCOMPARE(m_file->takeEvents(),
             QStringList({QStringLiteral("onWebSocketError: WebSocket error "
                                         R"({"error":1,"errorString":"The remote host closed the connection"})"),
                          QStringLiteral("ensureBridgeUserServiceStarted: requested tovi-bridge.service start "
                                         R"({"started":1})"),
                          QStringLiteral(
                              R"(onWebSocketDisconnected: WebSocket disconnected {"wasConnected":1,"wasReady":1})")}));
    fixture->emitted.take();
    fixture->expire("reconnectTimer");
    QTRY_VERIFY(fixture->emitted.entries().contains(QStringLiteral("error(\"WebSocket error: 0\")")));
    QCOMPARE(
        m_file->takeEvents(),
        QStringList(
            {QStringLiteral("connectWebSocket: connectWebSocket called "
                            R"({"port":8765,"currentState":0})"),
             QStringLiteral(R"(onWebSocketDisconnected: WebSocket disconnected {"wasConnected":0,"wasReady":0})"),
             QStringLiteral(R"(onWebSocketError: WebSocket error {"error":0,"errorString":"Connection refused"})")}));
}

void tst_LoomraSDKDebugLog::requestAndReply()
{
    makeReady();
    fixture->sdk.sendChatMessage(QStringLiteral("a \"quoted\" word"));
    QCOMPARE(m_file->takeEvents(), sent(QStringLiteral("chat"), 3));
    // Logged by method, not by label.
    fixture->sdk.refreshAiRuntimePanel();
    QCOMPARE(m_file->takeEvents(), sent(QStringLiteral("aiRuntimeGetStatus"), 4));
    const QString reply = QStringLiteral(R"({"type":"response","id":3,"payload":{"response":"x"}})");
    QVERIFY(fixture->deliver(reply));
    QCOMPARE(m_file->takeEvents(), received(reply, s_response));
}

void tst_LoomraSDKDebugLog::refusal()
{
    fixture->sdk.listAgents();
    QCOMPARE(m_file->takeEvents(), refused(QStringLiteral("listAgents"), 1));
    fixture->sdk.renameSession(QString(), QString()); // rejected before a request is made
    QCOMPARE(m_file->takeEvents(), QStringList());
}

void tst_LoomraSDKDebugLog::listings()
{
    makeReady();
    const FakePath programs(FakePath::Rest::Hidden); // the CLI lists no models
    const QString flags = QStringLiteral(R"({"ready":1,"connected":1})");
    fixture->sdk.listSessions();
    QCOMPARE(m_file->takeEvents(),
             QStringList(QStringLiteral("listSessions: listSessions called ") + flags)
                 + sent(QStringLiteral("listSessions"), 3));
    const QString sessions = QStringLiteral(R"({"type":"response","id":3,"payload":{"sessions":[{},{}]}})");
    QVERIFY(fixture->deliver(sessions));
    QCOMPARE(m_file->takeEvents(),
             received(sessions, s_response)
                 + QStringList(QStringLiteral("onWebSocketTextMessageReceived: listSessions response "
                                              R"({"sessionCount":2,"requestId":3})")));
    fixture->sdk.listModels();
    QCOMPARE(m_file->takeEvents(),
             QStringList(QStringLiteral("listModels: listModels called ") + flags)
                 + sent(QStringLiteral("listModels"), 4));
    const QString models = QStringLiteral(R"({"id":4,"result":{"models":[{}]}})");
    QVERIFY(fixture->deliver(models));
    QCOMPARE(m_file->takeEvents(),
             received(models, QStringLiteral(R"({"hasType":0,"type":"","hasId":1})"))
                 + QStringList(QStringLiteral("onWebSocketTextMessageReceived: listModels response "
                                              R"({"modelCount":1,"requestId":4})")));
}

void tst_LoomraSDKDebugLog::listingsWhileNotReady()
{
    const FakePath programs(FakePath::Rest::Hidden);
    const QString flags = QStringLiteral(R"({"ready":0,"connected":0})");
    fixture->sdk.listSessions();
    fixture->sdk.listModels();
    QCOMPARE(m_file->takeEvents(),
             QStringList(QStringLiteral("listSessions: listSessions called ") + flags)
                 + refused(QStringLiteral("listSessions"), 1)
                 + QStringList(QStringLiteral("listModels: listModels called ") + flags)
                 + refused(QStringLiteral("listModels"), 2));
}

void tst_LoomraSDKDebugLog::off_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("unset") << QByteArray();
    QTest::newRow("empty") << QByteArray("");
}

void tst_LoomraSDKDebugLog::off()
{
    QFETCH(QByteArray, value);
    m_file.reset();
    m_file = std::make_unique<DebugLogFile>(value);
    fixture->sdk.listAgents();
    fixture->sdk.initialize();
    QTRY_VERIFY(fixture->sdk.isConnected());
    QVERIFY(fixture->becomeReady());
    fixture->sdk.listSessions();
    QVERIFY(fixture->deliver(QStringLiteral(R"({"id":4,"result":{"sessions":[]}})")));
    QVERIFY(fixture->deliver(QStringLiteral("not JSON")));
    QVERIFY(fixture->lose());
    QVERIFY(!QFileInfo::exists(m_file->path()));
    QVERIFY(!QFileInfo::exists(QFileInfo(m_file->path()).path()));
}

REGISTER_TEST(tst_LoomraSDKDebugLog, QCoreApplication)

#include "tst_LoomraSDKDebugLog.moc"
