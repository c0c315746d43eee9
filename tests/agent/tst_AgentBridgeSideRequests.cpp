// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConnectedAgent.h"
#include "TestRegistry.h"

#include <QDebug>
#include <QTest>

// Requests that are sent beside a chat: transcripts to rephrase, actions on widgets, feedback.
class tst_AgentBridgeSideRequests : public ConnectedAgentTest
{
    Q_OBJECT

private Q_SLOTS:
    void rephrasesNothing();
    void rephrases();
    void rephraseComesBackWithoutConnection();
    void secondRephraseOverwritesTheFirst();
    void reportsUiActions_data();
    void reportsUiActions();
    void reportsNoUiActionWithoutConnection();
    void sendsFeedback();
    void sendsFeedbackWithoutQuery();
    void sendsNoFeedbackWithoutConnection();
};

void tst_AgentBridgeSideRequests::rephrasesNothing()
{
    fixture->agent.rephraseText(QString());
    fixture->agent.rephraseText(QStringLiteral(" \n"));
    QCOMPARE(fixture->emitted.take(), QStringList());
    QCOMPARE(fixture->log.lines().size(), 0);
    QCOMPARE(fixture->prompt().id, quint64(1));
    QVERIFY(fixture->disconnectPeer());
    fixture->agent.rephraseText(QStringLiteral(" "));
    QCOMPARE(fixture->emitted.take(), QStringList());
}

void tst_AgentBridgeSideRequests::rephrases()
{
    fixture->agent.setCurrentAgent(QStringLiteral("planner"));
    fixture->agent.setCurrentModel(QStringLiteral("p/m"));
    fixture->emitted.take();
    fixture->log.clear();
    const QString said = QString(100, QLatin1Char('x')) + QStringLiteral(" %1");
    fixture->agent.rephraseText(said);

    QCOMPARE(fixture->emitted.take(), QStringList()); // no thinking state
    QCOMPARE(fixture->log.lines().size(), 1);
    QVERIFY(fixture->log.has(QtDebugMsg,
                             QStringLiteral("[AgentBridge] rephrase request id= 1 text: \"%1\"").arg(said.left(80))));
    const ScriptedBridge::Request request = fixture->peer.takeRequest();
    QCOMPARE(request.id, quint64(1));
    QCOMPARE(request.method, QStringLiteral("chat"));
    QCOMPARE(request.params.keys(),
             (QStringList {QStringLiteral("agent"), QStringLiteral("message"), QStringLiteral("model")}));
    QCOMPARE(request.params.value(QStringLiteral("agent")).toString(), QStringLiteral("chat"));
    QVERIFY(request.params.value(QStringLiteral("message"))
                .toString()
                .endsWith(QStringLiteral("unchanged.\n\n\"") + said + QLatin1Char('"')));
}

void tst_AgentBridgeSideRequests::rephraseComesBackWithoutConnection()
{
    QVERIFY(fixture->disconnectPeer());
    fixture->agent.rephraseText(QStringLiteral(" open it "));
    QCOMPARE(fixture->emitted.take(), QStringList {QStringLiteral("rephraseReady(\" open it \", \" open it \")")});
    QCOMPARE(fixture->agent.status(), QStringLiteral("disconnected"));
    QCOMPARE(fixture->log.lines().size(), 0);
}

void tst_AgentBridgeSideRequests::secondRephraseOverwritesTheFirst()
{
    fixture->agent.rephraseText(QStringLiteral("one"));
    fixture->agent.rephraseText(QStringLiteral("two"));
    const ScriptedBridge::Request first = fixture->peer.takeRequest();
    const ScriptedBridge::Request second = fixture->peer.takeRequest();
    fixture->peer.reply(second, answer(QStringLiteral("Two")));
    QTRY_COMPARE(fixture->emitted.entries(), QStringList {QStringLiteral("rephraseReady(\"two\", \"Two\")")});
    fixture->emitted.take();
    // The first request is no longer known as a rephrase, so its reply is handled like that to a chat.
    fixture->peer.reply(first, answer(QStringLiteral("One")));
    QTRY_COMPARE(fixture->emitted.entries(), QStringList {QStringLiteral("agentReplied(\"One\")")});
}

void tst_AgentBridgeSideRequests::reportsUiActions_data()
{
    QTest::addColumn<QString>("data");
    QTest::addColumn<QString>("params");

    QTest::newRow("id, colon, label") << "dark:Dark theme"
                                      << R"({"actionType":"option_selected","data":{}})";
    QTest::newRow("object") << R"({"value": 5})"
                            << R"({"actionType":"option_selected","data":{"value":5}})";
    QTest::newRow("array") << "[5]"
                           << R"({"actionType":"option_selected","data":{}})";
}

void tst_AgentBridgeSideRequests::reportsUiActions()
{
    QFETCH(QString, data);
    QFETCH(QString, params);
    fixture->agent.handleUiAction(QStringLiteral("option_selected"), 7, data);
    // thinkingChanged without a change of status.
    QCOMPARE(fixture->emitted.take(), QStringList {AgentSignals::Thinking});
    QCOMPARE(fixture->agent.status(), QStringLiteral("idle"));
    QString quoted;
    QDebug(&quoted) << data;
    QCOMPARE(fixture->log.lines().size(), 1);
    QVERIFY(fixture->log.has(QtDebugMsg,
                             QStringLiteral("[AgentBridge] UI action: \"option_selected\" msgIdx: 7 data: ")
                                 + quoted.trimmed()));

    const ScriptedBridge::Request request = fixture->peer.takeRequest();
    QCOMPARE(request.text,
             QString(QStringLiteral("{\"id\":1,\"method\":\"handleStructuredUiAction\",\"params\":") + params
                     + QLatin1Char('}')));

    fixture->peer.reply(request, answer(QStringLiteral("Done."), json(QStringLiteral(R"({"sessionId":"s1"})"))));
    QTRY_COMPARE(fixture->emitted.entries(),
                 (QStringList {QStringLiteral("agentReplied(\"Done.\")"), AgentSignals::NotThinking}));

    fixture->agent.handleUiAction(QStringLiteral("x"), 0, QString());
    QCOMPARE(fixture->peer.takeRequest().params,
             json(QStringLiteral(R"({"actionType":"x","data":{},"sessionId":"s1"})")));
}

void tst_AgentBridgeSideRequests::reportsNoUiActionWithoutConnection()
{
    QVERIFY(fixture->disconnectPeer());
    fixture->agent.handleUiAction(QStringLiteral("option_selected"), 7, QStringLiteral("a:b"));
    QCOMPARE(fixture->emitted.take(),
             QStringList {QStringLiteral("errorOccurred(\"Cannot send UI action: bridge not connected\")")});
    QVERIFY(!fixture->agent.isThinking());
    QCOMPARE(fixture->log.lines().size(), 0);
}

void tst_AgentBridgeSideRequests::sendsFeedback()
{
    fixture->agent.setInputMode(QStringLiteral("voice"));
    fixture->emitted.take();
    fixture->log.clear();
    fixture->agent.sendMessageFeedback(QStringLiteral("up"), 4, QString(2500, QLatin1Char('m')),
                                       QString(600, QLatin1Char('q')));
    QCOMPARE(fixture->emitted.take(), QStringList());
    QCOMPARE(fixture->log.lines().size(), 1);
    QVERIFY(fixture->log.has(QtDebugMsg, QStringLiteral("[AgentBridge] Sending feedback: \"up\" msgIdx: 4")));

    const ScriptedBridge::Request request = fixture->peer.takeRequest();
    QCOMPARE(request.id, quint64(1));
    QCOMPARE(request.method, QStringLiteral("messageFeedback"));
    QJsonObject expected =
        json(QStringLiteral(R"({"vote":"up","messageIndex":4,"source":"omnibar","inputMode":"voice"})"));
    expected.insert(QStringLiteral("messageText"), QString(2000, QLatin1Char('m')));
    expected.insert(QStringLiteral("userQuery"), QString(500, QLatin1Char('q')));
    QCOMPARE(request.params, expected);
}

void tst_AgentBridgeSideRequests::sendsFeedbackWithoutQuery()
{
    // QML calls it with three arguments.
    QVERIFY(QMetaObject::invokeMethod(&fixture->agent, "sendMessageFeedback", Q_ARG(QString, QStringLiteral("down")),
                                      Q_ARG(int, 0), Q_ARG(QString, QStringLiteral("so"))));
    QCOMPARE(fixture->peer.takeRequest().params,
             json(QStringLiteral(
                 R"({"vote":"down","messageIndex":0,"messageText":"so","source":"omnibar","inputMode":"text"})")));
}

void tst_AgentBridgeSideRequests::sendsNoFeedbackWithoutConnection()
{
    QVERIFY(fixture->disconnectPeer());
    fixture->agent.sendMessageFeedback(QStringLiteral("up"), 4, QStringLiteral("so"), QStringLiteral("why"));
    QCOMPARE(fixture->emitted.take(), QStringList());
    QCOMPARE(fixture->log.lines().size(), 1);
    QVERIFY(fixture->log.has(QtDebugMsg, QStringLiteral("[AgentBridge] Cannot send feedback: not connected")));
}

REGISTER_TEST(tst_AgentBridgeSideRequests, QCoreApplication)
#include "tst_AgentBridgeSideRequests.moc"
