// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConnectedAgent.h"
#include "TestRegistry.h"

#include <QTest>

namespace
{

const QString s_unexpected = QStringLiteral("errorOccurred(\"Unexpected result from Loomra bridge\")");

} // namespace

// How replies are matched with requests.
class tst_AgentBridgeStrayReplies : public ConnectedAgentTest
{
    Q_OBJECT

private Q_SLOTS:
    void logsAGoodReply();
    void logsWhatAReplyHas_data();
    void logsWhatAReplyHas();
    void dropsStrayMessages_data();
    void dropsStrayMessages();
    void dropsADuplicate();
    void forgetsARequestThatFailed();

    void ignoresStreamsOfNoRequest();
    void treatsAStreamAsAReply();
};

void tst_AgentBridgeStrayReplies::logsAGoodReply()
{
    const ScriptedBridge::Request request = fixture->prompt();
    QVERIFY(fixture->deliver(
        QStringLiteral(R"({"id":%1,"result":{"response":"hello","sessionId":"s1","ui":{}}})").arg(request.id)));
    QCOMPARE(fixture->log.warnings(), QStringList());
    QCOMPARE(fixture->log.texts().mid(1),
             (QStringList {
                 QStringLiteral("[AgentBridge] Processing message, id= 1 hasResult= true hasError= true"),
                 QStringLiteral("[AgentBridge] Received response from bridge, sessionId= \"s1\" responseLength= 5"),
                 QStringLiteral("[AgentBridge] Structured UI payload detected, emitting structuredReplyReceived")}));

    // Follow-ups without "ui" log no separate line.
    QVERIFY(fixture->deliver(
        QStringLiteral(R"({"id":%1,"result":{"response":"hello","followUps":[]}})").arg(fixture->prompt().id)));
    QCOMPARE(fixture->log.count(QStringLiteral("[AgentBridge] Structured")), 0);
}

void tst_AgentBridgeStrayReplies::logsWhatAReplyHas_data()
{
    QTest::addColumn<QString>("frame");
    QTest::addColumn<QString>("line");
    QTest::newRow("response") << R"({"type":"response","id":7,"payload":{}})"
                              << "id= 7 hasResult= true hasError= false";
    QTest::newRow("response with a null") << R"({"type":"response","id":7,"payload":null,"error":{"code":"x"}})"
                                          << "id= 7 hasResult= false hasError= true";
    QTest::newRow("response with an empty error") << R"({"type":"response","id":7,"error":{}})"
                                                  << "id= 7 hasResult= true hasError= false";
    QTest::newRow("older, nulls") << R"({"id":7,"result":null,"error":null})"
                                  << "id= 7 hasResult= false hasError= false";
    QTest::newRow("older, missing") << R"({"id":7})"
                                    << "id= 7 hasResult= true hasError= true";
    QTest::newRow("no id") << "{}"
                           << "id= 0 hasResult= true hasError= true";
}

void tst_AgentBridgeStrayReplies::logsWhatAReplyHas()
{
    QFETCH(QString, frame);
    QFETCH(QString, line);
    QVERIFY(fixture->deliver(frame));
    QVERIFY(fixture->log.has(QtDebugMsg, QStringLiteral("[AgentBridge] Processing message, ") + line));
}

void tst_AgentBridgeStrayReplies::dropsStrayMessages_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("logged");
    QTest::newRow("unknown") << "99"
                             << "99";
    QTest::newRow("zero") << "0"
                          << "0";
    QTest::newRow("null") << "null"
                          << "0";
    QTest::newRow("text") << "\"1\""
                          << "0";
    QTest::newRow("negative") << "-1"
                              << "0";
    QTest::newRow("huge") << "1e300"
                          << "0";
    QTest::newRow("2 to the 32nd and 1") << "4294967297"
                                         << "4294967297";
    QTest::newRow("2 to the 64th and 1") << "18446744073709551617"
                                         << "0";
}

void tst_AgentBridgeStrayReplies::dropsStrayMessages()
{
    QFETCH(QString, id);
    QFETCH(QString, logged);
    fixture->prompt();
    fixture->prompt();
    for (const char *form : {R"({"type":"response","id":%1,"payload":%2})", R"({"id":%1,"result":%2})"}) {
        const QString result = QStringLiteral(R"({"response":"hi","sessionId":"s9","usage":{"inputTokens":5}})");
        QVERIFY(fixture->deliver(QString::fromLatin1(form).arg(id, result)));
        QVERIFY(fixture->log.has(
            QtDebugMsg,
            QStringLiteral("[AgentBridge] Message not for pending request, id= %1 pending= (1, 2)").arg(logged)));
    }
    QCOMPARE(fixture->emitted.take(), QStringList());
    QVERIFY(fixture->agent.isThinking());
    QVERIFY(!fixture->prompt().params.contains(QStringLiteral("sessionId")));
}

void tst_AgentBridgeStrayReplies::dropsADuplicate()
{
    const QString frame = QStringLiteral(R"({"id":%1,"result":{"response":"hi"}})").arg(fixture->prompt().id);
    QVERIFY(fixture->deliver(frame));
    QCOMPARE(fixture->emitted.take(), AgentSignals::GoodReply);
    QVERIFY(fixture->deliver(frame));
    QCOMPARE(fixture->emitted.take(), QStringList());
}

void tst_AgentBridgeStrayReplies::forgetsARequestThatFailed()
{
    const quint64 id = fixture->prompt().id;
    QVERIFY(fixture->deliver(QStringLiteral(R"({"type":"error","id":%1,"error":{"message":"no"}})").arg(id)));
    QCOMPARE(fixture->emitted.take(), failure(QStringLiteral("no")));
    QVERIFY(fixture->deliver(QStringLiteral(R"({"id":%1,"result":{"response":"hi"}})").arg(id)));
    QCOMPARE(fixture->emitted.take(), QStringList());
    QCOMPARE(fixture->log.takeWarnings(), bridgeError(QStringLiteral("no")));
    QVERIFY(fixture->log.has(
        QtDebugMsg, QStringLiteral("[AgentBridge] Message not for pending request, id= %1 pending= ()").arg(id)));

    // An unknown id leaves other requests open.
    const quint64 open = fixture->prompt().id;
    QVERIFY(fixture->deliver(QStringLiteral(R"({"type":"error","id":99,"error":{}})")));
    fixture->emitted.take();
    QVERIFY(fixture->deliver(QStringLiteral(R"({"id":%1,"result":{"response":"hi"}})").arg(open)));
    QCOMPARE(fixture->emitted.take(), (QStringList {QStringLiteral("agentReplied(\"hi\")"), AgentSignals::Idle}));
}

void tst_AgentBridgeStrayReplies::ignoresStreamsOfNoRequest()
{
    fixture->prompt();
    QVERIFY(fixture->deliver(QStringLiteral(R"({"type":"stream","payload":{"text":"part"}})")));
    QCOMPARE(fixture->emitted.take(), QStringList());
    QVERIFY(fixture->agent.isThinking());
}

void tst_AgentBridgeStrayReplies::treatsAStreamAsAReply()
{
    const quint64 id = fixture->prompt().id;
    QVERIFY(fixture->deliver(QStringLiteral(R"({"type":"stream","id":%1,"payload":{"response":"part"}})").arg(id)));
    QCOMPARE(fixture->emitted.take(), (QStringList {s_unexpected, AgentSignals::NotThinking, AgentSignals::Error}));
    QCOMPARE(fixture->log.takeWarnings().size(), 2);
}

REGISTER_TEST(tst_AgentBridgeStrayReplies, QCoreApplication)
#include "tst_AgentBridgeStrayReplies.moc"
