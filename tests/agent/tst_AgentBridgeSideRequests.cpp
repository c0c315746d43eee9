// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConnectedAgent.h"
#include "TestRegistry.h"

#include <QDebug>
#include <QTest>

// What is sent beside a chat: transcripts to be rephrased, actions on widgets, votes.
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
    c->agent.rephraseText(QString());
    c->agent.rephraseText(QStringLiteral(" \n"));
    QCOMPARE(c->heard.take(), QStringList());
    QCOMPARE(c->log.lines().size(), 0);
    QCOMPARE(c->prompt().id, quint64(1));
    QVERIFY(c->disconnectPeer());
    c->agent.rephraseText(QStringLiteral(" "));
    QCOMPARE(c->heard.take(), QStringList());
}

void tst_AgentBridgeSideRequests::rephrases()
{
    c->agent.setCurrentAgent(QStringLiteral("planner"));
    c->agent.setCurrentModel(QStringLiteral("p/m"));
    c->heard.take();
    c->log.clear();
    const QString said = QString(100, QLatin1Char('x')) + QStringLiteral(" %1");
    c->agent.rephraseText(said);

    QCOMPARE(c->heard.take(), QStringList()); // no thinking state
    QCOMPARE(c->log.lines().size(), 1);
    QVERIFY(
        c->log.has(QtDebugMsg, QStringLiteral("[AgentBridge] rephrase request id= 1 text: \"%1\"").arg(said.left(80))));
    const ScriptedBridge::Request request = c->peer.takeRequest();
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
    QVERIFY(c->disconnectPeer());
    c->agent.rephraseText(QStringLiteral(" open it "));
    QCOMPARE(c->heard.take(), QStringList {QStringLiteral("rephraseReady(\" open it \", \" open it \")")});
    QCOMPARE(c->agent.status(), QStringLiteral("disconnected"));
    QCOMPARE(c->log.lines().size(), 0);
}

void tst_AgentBridgeSideRequests::secondRephraseOverwritesTheFirst()
{
    c->agent.rephraseText(QStringLiteral("one"));
    c->agent.rephraseText(QStringLiteral("two"));
    const ScriptedBridge::Request first = c->peer.takeRequest();
    const ScriptedBridge::Request second = c->peer.takeRequest();
    c->peer.reply(second, answer(QStringLiteral("Two")));
    QTRY_COMPARE(c->heard.entries(), QStringList {QStringLiteral("rephraseReady(\"two\", \"Two\")")});
    c->heard.take();
    // What nothing knows as a rephrase any more is a reply like any other.
    c->peer.reply(first, answer(QStringLiteral("One")));
    QTRY_COMPARE(c->heard.entries(), QStringList {QStringLiteral("agentReplied(\"One\")")});
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
    c->agent.handleUiAction(QStringLiteral("option_selected"), 7, data);
    // Thinking, while the status stays.
    QCOMPARE(c->heard.take(), QStringList {AgentSignals::Thinking});
    QCOMPARE(c->agent.status(), QStringLiteral("idle"));
    QString quoted;
    QDebug(&quoted) << data;
    QCOMPARE(c->log.lines().size(), 1);
    QVERIFY(
        c->log.has(QtDebugMsg,
                   QStringLiteral("[AgentBridge] UI action: \"option_selected\" msgIdx: 7 data: ") + quoted.trimmed()));

    const ScriptedBridge::Request request = c->peer.takeRequest();
    QCOMPARE(request.text,
             QString(QStringLiteral("{\"id\":1,\"method\":\"handleStructuredUiAction\",\"params\":") + params
                     + QLatin1Char('}')));

    c->peer.reply(request, answer(QStringLiteral("Done."), json(QStringLiteral(R"({"sessionId":"s1"})"))));
    QTRY_COMPARE(c->heard.entries(),
                 (QStringList {QStringLiteral("agentReplied(\"Done.\")"), AgentSignals::NotThinking}));

    c->agent.handleUiAction(QStringLiteral("x"), 0, QString());
    QCOMPARE(c->peer.takeRequest().params, json(QStringLiteral(R"({"actionType":"x","data":{},"sessionId":"s1"})")));
}

void tst_AgentBridgeSideRequests::reportsNoUiActionWithoutConnection()
{
    QVERIFY(c->disconnectPeer());
    c->agent.handleUiAction(QStringLiteral("option_selected"), 7, QStringLiteral("a:b"));
    QCOMPARE(c->heard.take(),
             QStringList {QStringLiteral("errorOccurred(\"Cannot send UI action: bridge not connected\")")});
    QVERIFY(!c->agent.isThinking());
    QCOMPARE(c->log.lines().size(), 0);
}

void tst_AgentBridgeSideRequests::sendsFeedback()
{
    c->agent.setInputMode(QStringLiteral("voice"));
    c->heard.take();
    c->log.clear();
    c->agent.sendMessageFeedback(QStringLiteral("up"), 4, QString(2500, QLatin1Char('m')),
                                 QString(600, QLatin1Char('q')));
    QCOMPARE(c->heard.take(), QStringList());
    QCOMPARE(c->log.lines().size(), 1);
    QVERIFY(c->log.has(QtDebugMsg, QStringLiteral("[AgentBridge] Sending feedback: \"up\" msgIdx: 4")));

    const ScriptedBridge::Request request = c->peer.takeRequest();
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
    // As QML calls it with three arguments.
    QVERIFY(QMetaObject::invokeMethod(&c->agent, "sendMessageFeedback", Q_ARG(QString, QStringLiteral("down")),
                                      Q_ARG(int, 0), Q_ARG(QString, QStringLiteral("so"))));
    QCOMPARE(c->peer.takeRequest().params,
             json(QStringLiteral(
                 R"({"vote":"down","messageIndex":0,"messageText":"so","source":"omnibar","inputMode":"text"})")));
}

void tst_AgentBridgeSideRequests::sendsNoFeedbackWithoutConnection()
{
    QVERIFY(c->disconnectPeer());
    c->agent.sendMessageFeedback(QStringLiteral("up"), 4, QStringLiteral("so"), QStringLiteral("why"));
    QCOMPARE(c->heard.take(), QStringList());
    QCOMPARE(c->log.lines().size(), 1);
    QVERIFY(c->log.has(QtDebugMsg, QStringLiteral("[AgentBridge] Cannot send feedback: not connected")));
}

REGISTER_TEST(tst_AgentBridgeSideRequests, QCoreApplication)
#include "tst_AgentBridgeSideRequests.moc"
