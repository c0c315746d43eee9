// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AgentBridge.h"
#include "ConfigManager.h"
#include "LoomraSDK.h"
#include "MessageLog.h"
#include "ScriptedBridge.h"
#include "SignalLog.h"
#include "TestRegistry.h"
#include "TestSetup.h"

#include <QJsonObject>
#include <QTest>

namespace
{

const QString s_line = QStringLiteral("\n");

} // namespace

// Sends the same frames to both clients of the bridge, to show where they agree and where they differ. Each has one
// open chat, whose id replaces the 1 in the table, and has received "ready".
class tst_BothClients : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void frames_data();
    void frames();
};

void tst_BothClients::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_BothClients::frames_data()
{
    QTest::addColumn<QString>("frame");
    QTest::addColumn<QString>("sdk"); // signals of LoomraSDK, one per line
    QTest::addColumn<QString>("agent"); // signals of AgentBridge, without thinkingChanged and statusChanged
    const auto row = [](const char *frame, const char *sdk, const char *agent) {
        QTest::newRow(frame) << QString::fromUtf8(frame) << QString::fromUtf8(sdk) << QString::fromUtf8(agent);
    };

    // Where they agree.
    row(R"({"type":"response","id":1,"payload":{"response":"hi"}})", R"(chatResponse("hi"))", R"(agentReplied("hi"))");
    row(R"({"id":1,"result":{"response":"hi"}})", R"(chatResponse("hi"))", R"(agentReplied("hi"))");
    row(R"({"type":"new form","id":1,"result":{"response":"hi"}})", R"(chatResponse("hi"))", R"(agentReplied("hi"))");
    row(R"({"type":"response","id":1,"payload":{"response":"hi"},"error":"no"})", R"(chatResponse("hi"))",
        R"(agentReplied("hi"))");
    row(R"({"type":"response","id":1,"payload":{"response":"hi"},"error":{}})", R"(chatResponse("hi"))",
        R"(agentReplied("hi"))");
    row(R"({"type":"response","id":1,"error":{"message":"no","code":"E1"}})", R"(error("no"))",
        R"(errorOccurred("no"))");
    row(R"({"id":1,"error":"no","result":{"response":"hi"}})", R"(error("no"))", R"(errorOccurred("no"))");
    row(R"({"type":"error","id":1,"error":{"message":"no"}})", R"(error("no"))", R"(errorOccurred("no"))");
    row(R"({"id":1,"error":{"message":"no"},"result":{"response":"hi"}})", R"(chatResponse("hi"))",
        R"(agentReplied("hi"))"); // in the older form an error must be a text
    row(R"({"id":1,"error":7,"result":{"response":"hi"}})", R"(chatResponse("hi"))", R"(agentReplied("hi"))");
    row(R"({"type":"response","id":-1,"payload":{"response":"hi"}})", "", "");
    row(R"({"type":"response","id":"1","payload":{"response":"hi"}})", "", "");
    row("not JSON", "", "");
    row("[]", "", ""); // a parse error for AgentBridge, an empty object for LoomraSDK
    row("7", "", "");

    // Where they differ: a code instead of a message,
    row(R"({"type":"response","id":1,"payload":{"response":"hi"},"error":{"code":"E1"}})", R"(error("E1"))",
        R"(agentReplied("hi"))");
    // streams,
    row(R"({"type":"stream","id":1,"result":{"response":"hi"}})", "", R"(agentReplied("hi"))");
    // "ready", which only LoomraSDK waits for,
    row(R"({"type":"ready"})", "readyChanged()", "");
    row(R"({"type":"event","payload":{"event":"ready"}})", "readyChanged()", "");
    // and events, which only AgentBridge handles.
    row(R"({"type":"event","payload":{"event":"tool.executed","tool":"x"}})", "", R"(actionStarted("x"))");
}

void tst_BothClients::frames()
{
    QFETCH(QString, frame);
    QFETCH(QString, sdk);
    QFETCH(QString, agent);
    MessageLog log;
    TestSetup::clearSettings();
    ScriptedBridge peer;
    AgentBridge second;
    QVERIFY(peer.waitForConnection());
    QTRY_VERIFY(second.isServiceAvailable());
    ConfigManager config;
    LoomraSDK first(&config);
    first.reconnectBridge();
    QVERIFY(peer.waitForConnection(2));
    QTRY_VERIFY(first.isConnected());
    peer.ready();
    QTRY_VERIFY(first.isReady());
    first.sendChatMessage(QStringLiteral("x"));
    second.sendIntent(QStringLiteral("x"));
    QHash<int, quint64> ids; // by connection
    for (int i = 0; i < 2; ++i) {
        const auto request = peer.takeRequest(QStringLiteral("chat"));
        ids.insert(request.connection, request.id);
    }

    const auto frameFor = [&](int connection) {
        return QString(frame).replace(QLatin1String("\"id\":1"),
                                      QStringLiteral("\"id\":") + QString::number(ids.value(connection)));
    };
    SignalLog emittedByFirst(&first);
    SignalLog emittedBySecond(&second);
    QVERIFY(QMetaObject::invokeMethod(&first, "onWebSocketTextMessageReceived", Q_ARG(QString, frameFor(1))));
    QCOMPARE(emittedByFirst.take().join(s_line), sdk);
    QVERIFY(QMetaObject::invokeMethod(&second, "onTextMessageReceived", Q_ARG(QString, frameFor(0))));
    QStringList emitted = emittedBySecond.take();
    emitted.removeAll(QStringLiteral("thinkingChanged(false)"));
    emitted.erase(std::remove_if(emitted.begin(), emitted.end(),
                                 [](const QString &entry) { return entry.startsWith(QLatin1String("statusChanged")); }),
                  emitted.end());
    QCOMPARE(emitted.join(s_line), agent);
}

REGISTER_TEST(tst_BothClients, QCoreApplication)

#include "tst_BothClients.moc"
