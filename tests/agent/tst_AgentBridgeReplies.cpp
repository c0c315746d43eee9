// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConnectedAgent.h"
#include "TestRegistry.h"

#include <QTest>

namespace
{

const QString s_unexpected = QStringLiteral("errorOccurred(\"Unexpected result from Loomra bridge\")");
const QString s_empty = QStringLiteral("errorOccurred(\"Empty response from Loomra bridge\")");

} // namespace

// The reply to a chat, in all its forms.
class tst_AgentBridgeReplies : public ConnectedAgentTest
{
    Q_OBJECT

private Q_SLOTS:
    void rejectsFramesThatAreNotObjects_data();
    void rejectsFramesThatAreNotObjects();
    void logsTheStartOfAMessage();

    void endsAChat_data();
    void endsAChat();
    void namesTheTypeOfABadResult_data();
    void namesTheTypeOfABadResult();
    void structuredTextComesFirst();
    void aReplyMayBeAnsweredByTheNextIntent();

    void keepsTheSession();
    void keepsTheSessionOfAnEmptyReply();
};

void tst_AgentBridgeReplies::rejectsFramesThatAreNotObjects_data()
{
    QTest::addColumn<QString>("frame");
    QTest::addColumn<QString>("reason");
    QTest::newRow("word") << "hello"
                          << "illegal value";
    QTest::newRow("cut") << R"({"type":"ready")"
                         << "unterminated string";
    QTest::newRow("array") << R"([{"type":"ready"}])"
                           << "no error occurred";
    QTest::newRow("whitespace") << " "
                                << "illegal value";
}

void tst_AgentBridgeReplies::rejectsFramesThatAreNotObjects()
{
    QFETCH(QString, frame);
    QFETCH(QString, reason);
    fixture->prompt();
    QVERIFY(fixture->deliver(frame));
    QCOMPARE(fixture->emitted.take(), QStringList());
    QVERIFY(fixture->agent.isThinking());
    QCOMPARE(fixture->log.takeWarnings(),
             (QStringList {QStringLiteral("[AgentBridge] Failed to parse WebSocket message as JSON: ") + quoted(reason),
                           QStringLiteral("[AgentBridge] Raw message: ") + quoted(frame)}));
}

void tst_AgentBridgeReplies::logsTheStartOfAMessage()
{
    const QString frame = QStringLiteral("{\"type\":\"event\",\"fill\":\"%1\"}").arg(QString(300, QLatin1Char('x')));
    QVERIFY(fixture->deliver(frame));
    QCOMPARE(fixture->log.lines().size(), 1);
    QVERIFY(fixture->log.has(QtDebugMsg,
                             QStringLiteral("[AgentBridge] Received WebSocket message: ") + quoted(frame.left(200))));
}

void tst_AgentBridgeReplies::endsAChat_data()
{
    QTest::addColumn<QString>("frame"); // %1 is the id
    QTest::addColumn<QStringList>("emitted");
    QTest::addColumn<QStringList>("warnings");

    const QStringList none;
    const QStringList unexpected {s_unexpected, AgentSignals::NotThinking, AgentSignals::Error};
    const QStringList empty {s_empty, AgentSignals::NotThinking, AgentSignals::Error};
    const QStringList emptyLog {QStringLiteral("[AgentBridge] Empty response received from bridge")};
    const QStringList unexpectedLog {
        QStringLiteral("[AgentBridge] Unexpected result payload from bridge, result type:"),
        QStringLiteral("[AgentBridge] Full message:")};
    const auto with = [](const char *first) {
        return QStringList {QString::fromUtf8(first)} + AgentSignals::GoodReply;
    };

    // Both forms
    QTest::newRow("response") << R"({"type":"response","id":%1,"payload":{"response":"hi"}})" << AgentSignals::GoodReply
                              << none;
    QTest::newRow("older form") << R"({"id":%1,"result":{"response":"hi"}})" << AgentSignals::GoodReply << none;
    QTest::newRow("unknown type") << R"({"type":"x","id":%1,"result":{"response":"hi"}})" << AgentSignals::GoodReply
                                  << none;
    QTest::newRow("type no string") << R"({"type":1,"id":%1,"result":{"response":"hi"}})" << AgentSignals::GoodReply
                                    << none;
    QTest::newRow("id with a fraction") << R"({"id":%1.5,"result":{"response":"hi"}})" << AgentSignals::GoodReply
                                        << none;
    QTest::newRow("whitespace response") << R"({"id":%1,"result":{"response":" "}})"
                                         << QStringList {QStringLiteral("agentReplied(\" \")"),
                                                         AgentSignals::NotThinking, AgentSignals::Idle}
                                         << none;

    // Errors in a reply
    QTest::newRow("message") << R"({"type":"response","id":%1,"error":{"message":"no","code":"E1"}})"
                             << failure(QStringLiteral("no")) << bridgeError(QStringLiteral("no"));
    QTest::newRow("message beside a good payload")
        << R"({"type":"response","id":%1,"error":{"message":"no"},"payload":{"response":"hi"}})"
        << failure(QStringLiteral("no")) << bridgeError(QStringLiteral("no"));
    QTest::newRow("code alone is none in a response")
        << R"({"type":"response","id":%1,"error":{"code":"E1"},"payload":{"response":"hi"}})" << AgentSignals::GoodReply
        << none;
    QTest::newRow("empty error object") << R"({"type":"response","id":%1,"error":{},"payload":{"response":"hi"}})"
                                        << AgentSignals::GoodReply << none;
    QTest::newRow("text is none in a response")
        << R"({"type":"response","id":%1,"error":"x","payload":{"response":"hi"}})" << AgentSignals::GoodReply << none;
    QTest::newRow("message no string")
        << R"({"type":"response","id":%1,"error":{"message":5},"payload":{"response":"hi"}})" << AgentSignals::GoodReply
        << none;
    QTest::newRow("older: text") << R"({"id":%1,"error":"x","result":{"response":"hi"}})"
                                 << failure(QStringLiteral("x")) << bridgeError(QStringLiteral("x"));
    QTest::newRow("older: empty text") << R"({"id":%1,"error":"","result":{"response":"hi"}})"
                                       << AgentSignals::GoodReply << none;
    QTest::newRow("older: object is none")
        << R"({"id":%1,"error":{"message":"x"},"result":{"response":"hi"}})" << AgentSignals::GoodReply << none;
    QTest::newRow("older: object and no result")
        << R"({"id":%1,"error":{"message":"x"}})" << unexpected << unexpectedLog;
    QTest::newRow("placeholders stay") << R"({"id":%1,"error":"50% of %2"})" << failure(QStringLiteral("50% of %2"))
                                       << bridgeError(QStringLiteral("50% of %2"));

    // Invalid results
    QTest::newRow("result a text") << R"({"id":%1,"result":"hi"})" << unexpected << unexpectedLog;
    QTest::newRow("payload a text") << R"({"type":"response","id":%1,"payload":"hi"})" << unexpected << unexpectedLog;
    QTest::newRow("key of the other form")
        << R"({"type":"response","id":%1,"result":{"response":"hi"}})" << unexpected << unexpectedLog;
    QTest::newRow("empty response") << R"({"id":%1,"result":{"response":""}})" << empty << emptyLog;
    QTest::newRow("no response") << R"({"id":%1,"result":{}})" << empty << emptyLog;
    QTest::newRow("ui without a response")
        << R"({"id":%1,"result":{"response":"","ui":{"blocks":[1]},"followUps":[1]}})" << empty << emptyLog;

    // Messages of the type "error"
    QTest::newRow("error message") << R"({"type":"error","id":%1,"error":{"message":"no","code":"E1"}})"
                                   << failure(QStringLiteral("no")) << bridgeError(QStringLiteral("no"));
    QTest::newRow("error with a code") << R"({"type":"error","id":%1,"error":{"code":"E1"}})"
                                       << failure(QStringLiteral("E1")) << bridgeError(QStringLiteral("E1"));
    QTest::newRow("error with a numeric code")
        << R"({"type":"error","id":%1,"error":{"code":7}})" << failure({}) << none;
    QTest::newRow("error with nothing") << R"({"type":"error","id":%1,"error":{}})" << failure({}) << none;
    QTest::newRow("error as a text") << R"({"type":"error","id":%1,"error":"no"})" << failure({}) << none;
    QTest::newRow("error of no request") << R"({"type":"error","error":{"message":"no"}})"
                                         << failure(QStringLiteral("no")) << bridgeError(QStringLiteral("no"));

    // Structured text
    QTest::newRow("ui") << R"({"id":%1,"result":{"response":"hi","ui":{"blocks":[]}}})"
                        << with(R"(structuredReplyReceived("{"blocks":[]}"))") << none;
    QTest::newRow("ui takes followUps") << R"({"id":%1,"result":{"response":"hi","ui":{},"followUps":["a"]}})"
                                        << with(R"(structuredReplyReceived("{"followUps":["a"]}"))") << none;
    QTest::newRow("ui keeps its own")
        << R"({"id":%1,"result":{"response":"hi","ui":{"followUps":[]},"followUps":["a"]}})"
        << with(R"(structuredReplyReceived("{"followUps":[]}"))") << none;
    QTest::newRow("followUps alone") << R"({"id":%1,"result":{"response":"hi","followUps":[{"label":"x"}]}})"
                                     << with(R"(structuredReplyReceived("{"followUps":[{"label":"x"}]}"))") << none;
    QTest::newRow("followUps no array") << R"({"id":%1,"result":{"response":"hi","followUps":"x"}})"
                                        << AgentSignals::GoodReply << none;

    // Usage
    QTest::newRow("usage") << R"({"id":%1,"result":{"response":"hi","usage":{"inputTokens":5,"outputTokens":7}}})"
                           << with("usageReported(5, 7)") << none;
    QTest::newRow("usage 5, 0") << R"({"id":%1,"result":{"response":"hi","usage":{"inputTokens":5,"outputTokens":0}}})"
                                << with("usageReported(5, 0)") << none;
    QTest::newRow("usage -1, 5")
        << R"({"id":%1,"result":{"response":"hi","usage":{"inputTokens":-1,"outputTokens":5}}})"
        << with("usageReported(-1, 5)") << none;
    QTest::newRow("usage 0, 0") << R"({"id":%1,"result":{"response":"hi","usage":{"inputTokens":0,"outputTokens":0}}})"
                                << AgentSignals::GoodReply << none;
    QTest::newRow("usage below one") << R"({"id":%1,"result":{"response":"hi","usage":{"inputTokens":0.9}}})"
                                     << AgentSignals::GoodReply << none;
    QTest::newRow("usage empty") << R"({"id":%1,"result":{"response":"hi","usage":{}}})" << AgentSignals::GoodReply
                                 << none;
    QTest::newRow("usage huge") << R"({"id":%1,"result":{"response":"hi","usage":{"inputTokens":1e300}}})"
                                << with("usageReported(2147483647, 0)") << none;
    QTest::newRow("usage of an empty reply")
        << R"({"id":%1,"result":{"usage":{"inputTokens":3}}})"
        << (QStringList {QStringLiteral("usageReported(3, 0)")} + empty) << emptyLog;
    QTest::newRow("all at once")
        << R"({"id":%1,"result":{"response":"hi","ui":{},"usage":{"inputTokens":3,"outputTokens":4},"sessionId":"s"}})"
        << (QStringList {QStringLiteral("usageReported(3, 4)"), QStringLiteral("structuredReplyReceived(\"{}\")")}
            + AgentSignals::GoodReply)
        << none;
}

void tst_AgentBridgeReplies::endsAChat()
{
    QFETCH(QString, frame);
    QFETCH(QStringList, warnings);
    const ScriptedBridge::Request request = fixture->prompt();
    QVERIFY(fixture->deliver(frame.replace(QStringLiteral("%1"), QString::number(request.id))));
    QTEST(fixture->emitted.take(), "emitted");
    const QStringList logged = fixture->log.takeWarnings();
    QCOMPARE(logged.size(), warnings.size());
    for (int i = 0; i < logged.size(); ++i) {
        QVERIFY2(logged.at(i).startsWith(warnings.at(i)), qUtf8Printable(logged.at(i)));
    }
    QVERIFY(!fixture->agent.isThinking());
}

void tst_AgentBridgeReplies::namesTheTypeOfABadResult_data()
{
    QTest::addColumn<QString>("result");
    QTest::addColumn<int>("type");
    QTest::newRow("null") << R"(,"result":null)" << 0;
    QTest::newRow("bool") << R"(,"result":false)" << 1;
    QTest::newRow("number") << R"(,"result":0)" << 2;
    QTest::newRow("text") << R"(,"result":"")" << 3;
    QTest::newRow("array") << R"(,"result":[])" << 4;
    QTest::newRow("missing") << "" << 128;
}

void tst_AgentBridgeReplies::namesTheTypeOfABadResult()
{
    QFETCH(QString, result);
    QFETCH(int, type);
    const QString frame = QStringLiteral("{\"id\":%1").arg(fixture->prompt().id) + result + QLatin1Char('}');
    QVERIFY(fixture->deliver(frame));
    QCOMPARE(
        fixture->log.takeWarnings(),
        (QStringList {QStringLiteral("[AgentBridge] Unexpected result payload from bridge, result type: %1").arg(type),
                      QStringLiteral("[AgentBridge] Full message: ") + quoted(frame)}));
    QCOMPARE(fixture->emitted.take(), (QStringList {s_unexpected, AgentSignals::NotThinking, AgentSignals::Error}));
}

void tst_AgentBridgeReplies::structuredTextComesFirst()
{
    // The state while each of the two signals is emitted.
    QStringList seen;
    const auto look = [&](const QString &) {
        seen.append(fixture->agent.status() + QLatin1Char(' ')
                    + (fixture->agent.isThinking() ? QStringLiteral("thinking") : QStringLiteral("still")));
    };
    connect(&fixture->agent, &AgentBridge::structuredReplyReceived, this, look);
    connect(&fixture->agent, &AgentBridge::agentReplied, this, look);
    QVERIFY(
        fixture->deliver(QStringLiteral(R"({"id":%1,"result":{"response":"hi","ui":{}}})").arg(fixture->prompt().id)));
    QCOMPARE(seen, (QStringList {QStringLiteral("thinking thinking"), QStringLiteral("thinking thinking")}));
}

void tst_AgentBridgeReplies::aReplyMayBeAnsweredByTheNextIntent()
{
    connect(&fixture->agent, &AgentBridge::agentReplied, &fixture->agent, [this](const QString &response) {
        if (response == QLatin1String("first")) {
            fixture->agent.sendIntent(QStringLiteral("next"));
        }
    });
    QVERIFY(fixture->deliver(QStringLiteral(R"({"id":%1,"result":{"response":"first"}})").arg(fixture->prompt().id)));
    const ScriptedBridge::Request next = fixture->peer.takeRequest();
    QCOMPARE(next.id, quint64(2));
    QVERIFY(fixture->deliver(QStringLiteral(R"({"id":%1,"result":{"response":"second"}})").arg(next.id)));
    QVERIFY(fixture->emitted.entries().contains(QStringLiteral("agentReplied(\"second\")")));
    QCOMPARE(fixture->agent.status(), QStringLiteral("idle"));
}

void tst_AgentBridgeReplies::keepsTheSession()
{
    const auto sessionOf = [](const ScriptedBridge::Request &request) {
        return request.params.value(QStringLiteral("sessionId"));
    };
    ScriptedBridge::Request request = fixture->prompt();
    QVERIFY(sessionOf(request).isUndefined());
    for (const char *session : {R"("s1")", R"("")", "null", "5"}) {
        QVERIFY(fixture->deliver(QStringLiteral(R"({"id":%1,"result":{"response":"hi","sessionId":%2}})")
                                     .arg(QString::number(request.id), QLatin1String(session))));
        request = fixture->prompt();
        QCOMPARE(sessionOf(request), QJsonValue(QStringLiteral("s1"))); // only replaced by a non-empty text
    }
    QVERIFY(
        fixture->deliver(QStringLiteral(R"({"id":%1,"result":{"response":"hi","sessionId":"s2"}})").arg(request.id)));
    QCOMPARE(sessionOf(fixture->prompt()), QJsonValue(QStringLiteral("s2")));
    fixture->agent.rephraseText(QStringLiteral("x"));
    QCOMPARE(sessionOf(fixture->peer.takeRequest()), QJsonValue(QStringLiteral("s2")));
    fixture->agent.sendMessageFeedback(QStringLiteral("up"), 0, QString());
    QCOMPARE(sessionOf(fixture->peer.takeRequest()), QJsonValue(QStringLiteral("s2")));
}

void tst_AgentBridgeReplies::keepsTheSessionOfAnEmptyReply()
{
    QVERIFY(fixture->deliver(
        QStringLiteral(R"({"id":%1,"result":{"response":"","sessionId":"s1"}})").arg(fixture->prompt().id)));
    QCOMPARE(fixture->log.takeWarnings().size(), 1);
    QCOMPARE(fixture->prompt().params.value(QStringLiteral("sessionId")).toString(), QStringLiteral("s1"));
}

REGISTER_TEST(tst_AgentBridgeReplies, QCoreApplication)
#include "tst_AgentBridgeReplies.moc"
