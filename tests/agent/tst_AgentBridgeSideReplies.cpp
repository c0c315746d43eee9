// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConnectedAgent.h"
#include "TestRegistry.h"

#include <QTest>

// Replies to what runs beside a chat: votes and rephrased transcripts.
class tst_AgentBridgeSideReplies : public ConnectedAgentTest
{
    Q_OBJECT

private Q_SLOTS:
    void feedbackIsQuiet_data();
    void feedbackIsQuiet();
    void refusedFeedbackEndsAChat();
    void errorMessageForFeedbackIsShown();

    void rephraseAnswers_data();
    void rephraseAnswers();
    void rephraseTakesSessionAndUsage();
    void rephraseLeavesTheChatAlone();
    void rephraseFails();
};

void tst_AgentBridgeSideReplies::feedbackIsQuiet_data()
{
    QTest::addColumn<QString>("frame");
    QTest::addColumn<QString>("line");
    QTest::newRow("ok") << R"({"type":"response","id":%1,"payload":{"ok":true}})"
                        << "ok= true";
    QTest::newRow("not ok") << R"({"id":%1,"result":{"ok":false,"response":"hi","sessionId":"s9"}})"
                            << "ok= false";
    QTest::newRow("nothing said") << R"({"id":%1,"result":{}})"
                                  << "ok= false";
    QTest::newRow("null") << R"({"id":%1,"result":null})"
                          << "(empty ack)";
    QTest::newRow("missing") << R"({"type":"response","id":%1})"
                             << "(empty ack)";
    QTest::newRow("text") << R"({"id":%1,"result":"ok"})"
                          << "(empty ack)";
}

void tst_AgentBridgeSideReplies::feedbackIsQuiet()
{
    QFETCH(QString, frame);
    QFETCH(QString, line);
    c->prompt(); // goes on thinking all the while
    c->agent.sendMessageFeedback(QStringLiteral("up"), 1, QStringLiteral("so"));
    QVERIFY(c->deliver(frame.arg(c->peer.takeRequest().id)));
    QCOMPARE(c->heard.take(), QStringList());
    QVERIFY(
        c->log.has(QtDebugMsg,
                   QString(QStringLiteral("[AgentBridge] messageFeedback recorded") //
                           + (line.startsWith(QLatin1Char('(')) ? QStringLiteral(" ") : QStringLiteral(", ")) + line)));
    QVERIFY(c->agent.isThinking());
    QCOMPARE(c->agent.status(), QStringLiteral("thinking"));
    QVERIFY(!c->prompt().params.contains(QStringLiteral("sessionId")));
}

void tst_AgentBridgeSideReplies::refusedFeedbackEndsAChat()
{
    for (const char *frame : {R"({"type":"response","id":%1,"error":{"message":"no"}})",
                              R"({"id":%1,"error":"no","result":{"ok":true}})"}) {
        c->prompt();
        c->agent.sendMessageFeedback(QStringLiteral("up"), 1, QStringLiteral("so"));
        QVERIFY(c->deliver(QString::fromLatin1(frame).arg(c->peer.takeRequest().id)));
        // No text for the user, but all the rest.
        QCOMPARE(c->heard.take(), failure({}));
        QCOMPARE(c->log.takeWarnings(), bridgeError(QStringLiteral("no")));
    }
}

void tst_AgentBridgeSideReplies::errorMessageForFeedbackIsShown()
{
    c->agent.sendMessageFeedback(QStringLiteral("up"), 1, QStringLiteral("so"));
    c->peer.error(c->peer.takeRequest(), QStringLiteral("no"));
    QTRY_COMPARE(c->heard.entries(), (QStringList {QStringLiteral("errorOccurred(\"no\")"), AgentSignals::Error}));
    QCOMPARE(c->log.takeWarnings(), bridgeError(QStringLiteral("no")));
}

void tst_AgentBridgeSideReplies::rephraseAnswers_data()
{
    QTest::addColumn<QString>("response");
    QTest::addColumn<QString>("text");
    QTest::newRow("bare") << "Open it"
                          << "Open it";
    QTest::newRow("quoted") << " \"Open it\"\n"
                            << "Open it";
    QTest::newRow("start only") << "'Open it"
                                << "'Open it";
    QTest::newRow("lone mark") << "\""
                               << "\"";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("blank") << "  "
                           << "";
    QTest::newRow("place holders") << "set %1 to %2"
                                   << "set %1 to %2";
}

void tst_AgentBridgeSideReplies::rephraseAnswers()
{
    QFETCH(QString, response);
    QFETCH(QString, text);
    c->agent.rephraseText(QStringLiteral("open uh it"));
    c->peer.reply(c->peer.takeRequest(),
                  answer(response, json(QStringLiteral(R"({"ui":{"blocks":[]},"followUps":["x"]})"))));
    QTRY_COMPARE(c->heard.entries(),
                 QStringList {QStringLiteral("rephraseReady(\"open uh it\", \"") + text + QStringLiteral("\")")});
    QVERIFY(c->log.has(QtDebugMsg, QStringLiteral("[AgentBridge] rephrase result: \"open uh it\" -> ") + quoted(text)));
}

void tst_AgentBridgeSideReplies::rephraseTakesSessionAndUsage()
{
    c->agent.rephraseText(QStringLiteral("x"));
    c->peer.replyOldForm(
        c->peer.takeRequest(),
        answer(QStringLiteral("X"), json(QStringLiteral(R"({"sessionId":"s1","usage":{"outputTokens":3}})"))));
    QTRY_COMPARE(c->heard.entries(),
                 (QStringList {QStringLiteral("usageReported(0, 3)"), QStringLiteral("rephraseReady(\"x\", \"X\")")}));
    QCOMPARE(c->prompt().params.value(QStringLiteral("sessionId")).toString(), QStringLiteral("s1"));
}

void tst_AgentBridgeSideReplies::rephraseLeavesTheChatAlone()
{
    const ScriptedBridge::Request chat = c->prompt();
    c->peer.event(QStringLiteral("plan.phase"), json(QStringLiteral(R"({"phase":"creating"})")));
    QTRY_COMPARE(c->agent.activePhase(), QStringLiteral("creating"));
    c->heard.take();
    c->agent.rephraseText(QStringLiteral("x"));
    c->peer.reply(c->peer.takeRequest(), answer(QStringLiteral("X")));
    QTRY_COMPARE(c->heard.entries(), QStringList {QStringLiteral("rephraseReady(\"x\", \"X\")")});
    c->heard.take();
    QVERIFY(c->agent.isThinking());
    QCOMPARE(c->agent.activePhase(), QStringLiteral("creating"));
    c->peer.reply(chat, answer(QStringLiteral("hi")));
    QTRY_COMPARE(c->heard.entries(),
                 (QStringList {QStringLiteral("activePhaseChanged(\"\")")} + AgentSignals::GoodReply));
}

void tst_AgentBridgeSideReplies::rephraseFails()
{
    // The failure is told like any other; no rephraseReady comes.
    c->agent.rephraseText(QStringLiteral("x"));
    c->peer.fail(c->peer.takeRequest(), QStringLiteral("no"), QStringLiteral("E1"));
    QTRY_COMPARE(c->heard.entries(), (QStringList {QStringLiteral("errorOccurred(\"no\")"), AgentSignals::Error}));
    QCOMPARE(c->log.takeWarnings(), bridgeError(QStringLiteral("no")));
}

REGISTER_TEST(tst_AgentBridgeSideReplies, QCoreApplication)
#include "tst_AgentBridgeSideReplies.moc"
