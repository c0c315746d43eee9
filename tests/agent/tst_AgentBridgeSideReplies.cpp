// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConnectedAgent.h"
#include "TestRegistry.h"

#include <QTest>

// Replies to requests that run beside a chat: feedback and rephrased transcripts.
class tst_AgentBridgeSideReplies : public ConnectedAgentTest
{
    Q_OBJECT

private Q_SLOTS:
    void feedbackReplyEmitsNothing_data();
    void feedbackReplyEmitsNothing();
    void refusedFeedbackEndsAChat();
    void errorMessageForFeedbackIsShown();

    void rephraseAnswers_data();
    void rephraseAnswers();
    void rephraseTakesSessionAndUsage();
    void rephraseLeavesTheChatAlone();
    void rephraseFails();
    void listenerMayRephraseAgain();
};

void tst_AgentBridgeSideReplies::feedbackReplyEmitsNothing_data()
{
    QTest::addColumn<QString>("frame");
    QTest::addColumn<QString>("line");
    QTest::newRow("ok") << R"({"type":"response","id":%1,"payload":{"ok":true}})"
                        << "ok= true";
    QTest::newRow("not ok") << R"({"id":%1,"result":{"ok":false,"response":"hi","sessionId":"s9"}})"
                            << "ok= false";
    QTest::newRow("missing") << R"({"id":%1,"result":{}})"
                             << "ok= false";
    QTest::newRow("null") << R"({"id":%1,"result":null})"
                          << "(empty ack)";
    QTest::newRow("missing") << R"({"type":"response","id":%1})"
                             << "(empty ack)";
    QTest::newRow("text") << R"({"id":%1,"result":"ok"})"
                          << "(empty ack)";
}

void tst_AgentBridgeSideReplies::feedbackReplyEmitsNothing()
{
    QFETCH(QString, frame);
    QFETCH(QString, line);
    fixture->prompt(); // keeps thinking meanwhile
    fixture->agent.sendMessageFeedback(QStringLiteral("up"), 1, QStringLiteral("so"));
    QVERIFY(fixture->deliver(frame.arg(fixture->peer.takeRequest().id)));
    QCOMPARE(fixture->emitted.take(), QStringList());
    QVERIFY(fixture->log.has(QtDebugMsg,
                             QString(QStringLiteral("[AgentBridge] messageFeedback recorded") //
                                     + (line.startsWith(QLatin1Char('(')) ? QStringLiteral(" ") : QStringLiteral(", "))
                                     + line)));
    QVERIFY(fixture->agent.isThinking());
    QCOMPARE(fixture->agent.status(), QStringLiteral("thinking"));
    QVERIFY(!fixture->prompt().params.contains(QStringLiteral("sessionId")));
}

void tst_AgentBridgeSideReplies::refusedFeedbackEndsAChat()
{
    for (const char *frame : {R"({"type":"response","id":%1,"error":{"message":"no"}})",
                              R"({"id":%1,"error":"no","result":{"ok":true}})"}) {
        fixture->prompt();
        fixture->agent.sendMessageFeedback(QStringLiteral("up"), 1, QStringLiteral("so"));
        QVERIFY(fixture->deliver(QString::fromLatin1(frame).arg(fixture->peer.takeRequest().id)));
        // The same as for a chat, but without a text for the user.
        QCOMPARE(fixture->emitted.take(), failure({}));
        QCOMPARE(fixture->log.takeWarnings(), bridgeError(QStringLiteral("no")));
    }
}

void tst_AgentBridgeSideReplies::errorMessageForFeedbackIsShown()
{
    fixture->agent.sendMessageFeedback(QStringLiteral("up"), 1, QStringLiteral("so"));
    fixture->peer.error(fixture->peer.takeRequest(), QStringLiteral("no"));
    QTRY_COMPARE(fixture->emitted.entries(),
                 (QStringList {QStringLiteral("errorOccurred(\"no\")"), AgentSignals::Error}));
    QCOMPARE(fixture->log.takeWarnings(), bridgeError(QStringLiteral("no")));
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
    QTest::newRow("whitespace") << "  "
                                << "";
    QTest::newRow("placeholders") << "set %1 to %2"
                                  << "set %1 to %2";
}

void tst_AgentBridgeSideReplies::rephraseAnswers()
{
    QFETCH(QString, response);
    QFETCH(QString, text);
    fixture->agent.rephraseText(QStringLiteral("open uh it"));
    fixture->peer.reply(fixture->peer.takeRequest(),
                        answer(response, json(QStringLiteral(R"({"ui":{"blocks":[]},"followUps":["x"]})"))));
    QTRY_COMPARE(fixture->emitted.entries(),
                 QStringList {QStringLiteral("rephraseReady(\"open uh it\", \"") + text + QStringLiteral("\")")});
    QVERIFY(fixture->log.has(QtDebugMsg,
                             QStringLiteral("[AgentBridge] rephrase result: \"open uh it\" -> ") + quoted(text)));
}

void tst_AgentBridgeSideReplies::rephraseTakesSessionAndUsage()
{
    fixture->agent.rephraseText(QStringLiteral("x"));
    fixture->peer.replyOldForm(
        fixture->peer.takeRequest(),
        answer(QStringLiteral("X"), json(QStringLiteral(R"({"sessionId":"s1","usage":{"outputTokens":3}})"))));
    QTRY_COMPARE(fixture->emitted.entries(),
                 (QStringList {QStringLiteral("usageReported(0, 3)"), QStringLiteral("rephraseReady(\"x\", \"X\")")}));
    QCOMPARE(fixture->prompt().params.value(QStringLiteral("sessionId")).toString(), QStringLiteral("s1"));
}

void tst_AgentBridgeSideReplies::rephraseLeavesTheChatAlone()
{
    const ScriptedBridge::Request chat = fixture->prompt();
    fixture->peer.event(QStringLiteral("plan.phase"), json(QStringLiteral(R"({"phase":"creating"})")));
    QTRY_COMPARE(fixture->agent.activePhase(), QStringLiteral("creating"));
    fixture->emitted.take();
    fixture->agent.rephraseText(QStringLiteral("x"));
    fixture->peer.reply(fixture->peer.takeRequest(), answer(QStringLiteral("X")));
    QTRY_COMPARE(fixture->emitted.entries(), QStringList {QStringLiteral("rephraseReady(\"x\", \"X\")")});
    fixture->emitted.take();
    QVERIFY(fixture->agent.isThinking());
    QCOMPARE(fixture->agent.activePhase(), QStringLiteral("creating"));
    fixture->peer.reply(chat, answer(QStringLiteral("hi")));
    QTRY_COMPARE(fixture->emitted.entries(),
                 (QStringList {QStringLiteral("activePhaseChanged(\"\")")} + AgentSignals::GoodReply));
}

void tst_AgentBridgeSideReplies::rephraseFails()
{
    // Reported like any other error, without rephraseReady.
    fixture->agent.rephraseText(QStringLiteral("x"));
    fixture->peer.fail(fixture->peer.takeRequest(), QStringLiteral("no"), QStringLiteral("E1"));
    QTRY_COMPARE(fixture->emitted.entries(),
                 (QStringList {QStringLiteral("errorOccurred(\"no\")"), AgentSignals::Error}));
    QCOMPARE(fixture->log.takeWarnings(), bridgeError(QStringLiteral("no")));
}

void tst_AgentBridgeSideReplies::listenerMayRephraseAgain()
{
    QStringList originals; // as the later listener receives them
    connect(&fixture->agent, &AgentBridge::rephraseReady, this, [this](const QString &original) {
        if (original == QLatin1String("a")) {
            fixture->agent.rephraseText(QStringLiteral("b"));
        }
    });
    connect(&fixture->agent, &AgentBridge::rephraseReady, this,
            [&originals](const QString &original) { originals.append(original); });
    fixture->agent.rephraseText(QStringLiteral("a"));
    fixture->peer.reply(fixture->peer.takeRequest(), answer(QStringLiteral("A")));
    QTRY_COMPARE(originals, QStringList(QStringLiteral("a")));
    fixture->peer.reply(fixture->peer.takeRequest(), answer(QStringLiteral("B")));
    QTRY_COMPARE(originals, (QStringList {QStringLiteral("a"), QStringLiteral("b")}));
}

REGISTER_TEST(tst_AgentBridgeSideReplies, QCoreApplication)
#include "tst_AgentBridgeSideReplies.moc"
