// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConnectedAgent.h"
#include "TestRegistry.h"
#include "WaitUntil.h"

#include <QDebug>
#include <QSettings>
#include <QTest>
#include <QWebSocket>

namespace
{

const QString s_stopped = QStringLiteral("agentReplied(\"_Stopped._\")");

QString modelKey()
{
    return QStringLiteral("omniBar/currentModel");
}

QString status(const char *value)
{
    return QStringLiteral("statusChanged(\"%1\")").arg(QLatin1String(value));
}

} // namespace

class tst_AgentBridgeIntents : public ConnectedAgentTest
{
    Q_OBJECT

private Q_SLOTS:
    void refusesBlankIntents_data();
    void refusesBlankIntents();
    void sendsAChat();
    void sendsWhatIsChosen_data();
    void sendsWhatIsChosen();
    void borrowsAStoredModel_data();
    void borrowsAStoredModel();
    void sendsTwoIntentsInARow();

    void cancelsNothingWhenIdle();
    void cancelsAChat();
    void cancelNamesTheSession();
    void cancelClearsTheProgress();
    void cancelLeavesAPlanThatDoesNotRun();
    void cancelsWithoutConnection();
    void cancelsAPendingFeedback();
    void cancelDropsARephrase();
    void cancelFreesAPromptThatIsTakenForAVote();

    void leavesTheClipboardAloneWithoutOne();
};

void tst_AgentBridgeIntents::refusesBlankIntents_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << "";
    QTest::newRow("blanks") << "   ";
    QTest::newRow("newlines and tabs") << "\n\t \r\n";
    QTest::newRow("non-breaking") << "\u00a0\u2003";
}

void tst_AgentBridgeIntents::refusesBlankIntents()
{
    QFETCH(QString, text);
    c->agent.sendIntent(text);
    QCOMPARE(c->heard.take(), QStringList {QStringLiteral("errorOccurred(\"Empty intent\")")});
    QCOMPARE(c->agent.status(), QStringLiteral("idle"));
    QCOMPARE(c->prompt().id, quint64(1)); // the first that comes

    // Blank comes before not connected.
    QVERIFY(c->disconnectPeer());
    c->agent.sendIntent(text);
    QCOMPARE(c->heard.take(), QStringList {QStringLiteral("errorOccurred(\"Empty intent\")")});
}

void tst_AgentBridgeIntents::sendsAChat()
{
    c->agent.sendIntent(QStringLiteral("  open the files \n"));
    QCOMPARE(c->heard.take(), (QStringList {AgentSignals::Thinking, status("thinking")}));
    QVERIFY(c->agent.isThinking());

    const ScriptedBridge::Request request = c->peer.takeRequest();
    QCOMPARE(request.text,
             QStringLiteral(R"({"id":1,"method":"chat","params":{"agent":"auto","inputMode":"text",)"
                            R"("message":"  open the files \n"}})"));
    QCOMPARE(c->log.lines().size(), 2);
    QVERIFY(c->log.has(QtDebugMsg, QStringLiteral("[AgentBridge] chat params model: \"(none)\" inputMode: \"text\"")));
    QVERIFY(c->log.has(QtDebugMsg, QStringLiteral("[AgentBridge] Sending request to bridge, id= 1")));
}

void tst_AgentBridgeIntents::sendsWhatIsChosen_data()
{
    QTest::addColumn<QString>("agentId");
    QTest::addColumn<QString>("model");
    QTest::addColumn<QString>("inputMode");
    QTest::addColumn<QJsonObject>("params");
    QTest::addColumn<QString>("line");

    QTest::newRow("all") << "planner"
                         << "p/m"
                         << "voice"
                         << json(QStringLiteral(
                                R"({"message":"hi","agent":"planner","model":"p/m","inputMode":"voice"})"))
                         << "[AgentBridge] chat params model: \"p/m\" inputMode: \"voice\"";
    QTest::newRow("auto goes out as such")
        << "auto"
        << ""
        << "text" << json(QStringLiteral(R"({"message":"hi","agent":"auto","inputMode":"text"})"))
        << "[AgentBridge] chat params model: \"(none)\" inputMode: \"text\"";
    QTest::newRow("nothing") << ""
                             << ""
                             << "" << json(QStringLiteral(R"({"message":"hi","inputMode":"text"})"))
                             << "[AgentBridge] chat params model: \"(none)\" inputMode: \"\"";
}

void tst_AgentBridgeIntents::sendsWhatIsChosen()
{
    QFETCH(QString, agentId);
    QFETCH(QString, model);
    QFETCH(QString, inputMode);
    QFETCH(QString, line);
    c->agent.setCurrentAgent(agentId);
    c->agent.setCurrentModel(model);
    c->agent.setInputMode(inputMode);
    c->agent.sendIntent(QStringLiteral("hi"));
    QTEST(c->peer.takeRequest().params, "params");
    QVERIFY(c->log.has(QtDebugMsg, line));
}

void tst_AgentBridgeIntents::borrowsAStoredModel_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("model");
    QTest::newRow("blanks around") << "  p/m\t"
                                   << "p/m";
    QTest::newRow("plain") << "p/m"
                           << "p/m";
    QTest::newRow("blank") << "   "
                           << "";
    QTest::newRow("empty") << ""
                           << "";
}

void tst_AgentBridgeIntents::borrowsAStoredModel()
{
    QFETCH(QString, stored);
    QFETCH(QString, model);
    // Stored by somebody else after the agent had looked.
    QSettings().setValue(modelKey(), stored);
    c->agent.sendIntent(QStringLiteral("hi"));

    const ScriptedBridge::Request request = c->peer.takeRequest();
    QCOMPARE(request.params.contains(QStringLiteral("model")), !model.isEmpty());
    QCOMPARE(request.params.value(QStringLiteral("model")).toString(), model);
    QCOMPARE(c->agent.currentModel(), model);
    QCOMPARE(c->heard.take(), (QStringList {AgentSignals::Thinking, status("thinking")}));
    QCOMPARE(QSettings().value(modelKey()).toString(), stored);
    QVERIFY(c->log.has(QtDebugMsg,
                       QStringLiteral("[AgentBridge] chat params model: \"%1\" inputMode: \"text\"")
                           .arg(model.isEmpty() ? QStringLiteral("(none)") : model)));
}

void tst_AgentBridgeIntents::sendsTwoIntentsInARow()
{
    c->agent.sendIntent(QStringLiteral("one"));
    c->agent.sendIntent(QStringLiteral("two"));
    QCOMPARE(c->heard.take(), (QStringList {AgentSignals::Thinking, status("thinking")}));
    const ScriptedBridge::Request first = c->peer.takeRequest();
    const ScriptedBridge::Request second = c->peer.takeRequest();
    QCOMPARE(first.id, quint64(1));
    QCOMPARE(second.id, quint64(2));
    QCOMPARE(first.params.value(QStringLiteral("message")).toString(), QStringLiteral("one"));
    QCOMPARE(second.params.value(QStringLiteral("message")).toString(), QStringLiteral("two"));

    c->peer.reply(second, answer(QStringLiteral("B")));
    QTRY_COMPARE(c->heard.entries(),
                 (QStringList {QStringLiteral("agentReplied(\"B\")"), AgentSignals::NotThinking, status("idle")}));
    c->heard.take();
    c->peer.reply(first, answer(QStringLiteral("A")));
    QTRY_COMPARE(c->heard.entries(), QStringList {QStringLiteral("agentReplied(\"A\")")});
}

void tst_AgentBridgeIntents::cancelsNothingWhenIdle()
{
    c->agent.cancelRequest();
    QCOMPARE(c->heard.take(), QStringList());
    QCOMPARE(c->log.lines().size(), 0);
    QCOMPARE(c->prompt().id, quint64(1));
}

void tst_AgentBridgeIntents::cancelsAChat()
{
    const ScriptedBridge::Request chat = c->prompt();
    c->agent.cancelRequest();
    QCOMPARE(c->heard.take(), (QStringList {AgentSignals::NotThinking, status("idle"), s_stopped}));
    QCOMPARE(c->log.lines().size(), 1);
    QVERIFY(c->log.has(QtDebugMsg, QStringLiteral("[AgentBridge] cancelRequest — aborting 1 pending request(s)")));

    const ScriptedBridge::Request cancel = c->peer.takeRequest();
    QCOMPARE(cancel.text, QStringLiteral(R"({"id":2,"method":"cancel","params":{}})"));

    // A second one finds nothing to do.
    c->agent.cancelRequest();
    QCOMPARE(c->heard.take(), QStringList());

    // Neither a late reply nor one to the cancel itself gets through, and what they carry isn't taken.
    const QString late = QStringLiteral(
        R"({"type":"response","id":%1,"payload":{"response":"late","sessionId":"s9","usage":{"inputTokens":5}}})");
    for (const ScriptedBridge::Request &request : {chat, cancel}) {
        QVERIFY(c->deliver(late.arg(request.id)));
        QVERIFY(c->log.has(
            QtDebugMsg,
            QStringLiteral("[AgentBridge] Message not for pending request, id= %1 pending= ()").arg(request.id)));
    }
    QCOMPARE(c->heard.take(), QStringList());

    const ScriptedBridge::Request next = c->prompt();
    QCOMPARE(next.id, chat.id + 2);
    QVERIFY(!next.params.contains(QStringLiteral("sessionId")));
}

void tst_AgentBridgeIntents::cancelNamesTheSession()
{
    c->peer.reply(c->prompt(), answer(QStringLiteral("hi"), json(QStringLiteral(R"({"sessionId":"s1"})"))));
    QTRY_COMPARE(c->agent.status(), QStringLiteral("idle"));
    c->prompt();
    c->agent.cancelRequest();
    QCOMPARE(c->peer.takeRequest().text, QStringLiteral(R"({"id":3,"method":"cancel","params":{"sessionId":"s1"}})"));
}

void tst_AgentBridgeIntents::cancelClearsTheProgress()
{
    c->prompt();
    c->peer.event(QStringLiteral("agent.routed"), json(QStringLiteral(R"({"agent":"planner"})")));
    c->peer.event(QStringLiteral("plan.step"),
                  json(QStringLiteral(R"({"index":0,"total":2,"capabilityId":"theme.apply","phase":"run"})")));
    QTRY_COMPARE(c->agent.planStepIndex(), 0);
    c->heard.take();

    c->agent.cancelRequest();
    QCOMPARE(c->heard.take(),
             (QStringList {QStringLiteral("activePhaseChanged(\"\")"), QStringLiteral("routedAgentChanged(\"\")"),
                           QStringLiteral("planStepChanged()"), AgentSignals::NotThinking, status("idle"), s_stopped}));
    QCOMPARE(c->agent.planStepIndex(), -1);
    QCOMPARE(c->agent.planStepTotal(), 0);
    QCOMPARE(c->agent.planStepCapability(), QString());
    QCOMPARE(c->agent.planStepPhase(), QString());
    QCOMPARE(c->peer.takeRequest().method, QStringLiteral("cancel"));
}

void tst_AgentBridgeIntents::cancelLeavesAPlanThatDoesNotRun()
{
    c->prompt();
    c->peer.event(QStringLiteral("plan.step"), json(QStringLiteral(R"({"total":2,"phase":"wait"})")));
    QTRY_COMPARE(c->agent.planStepTotal(), 2);
    c->heard.take();
    c->agent.cancelRequest();
    QCOMPARE(c->heard.take(), (QStringList {AgentSignals::NotThinking, status("idle"), s_stopped}));
    QCOMPARE(c->agent.planStepTotal(), 2);
    QCOMPARE(c->agent.planStepPhase(), QStringLiteral("wait"));
    c->peer.takeRequest();
}

void tst_AgentBridgeIntents::cancelsWithoutConnection()
{
    const ScriptedBridge::Request chat = c->prompt();
    QVERIFY(
        c->deliver(json(QStringLiteral(R"({"type":"event","payload":{"event":"plan.phase","phase":"creating"}})"))));
    QVERIFY(c->disconnectPeer());
    c->agent.cancelRequest();
    QCOMPARE(c->heard.take(),
             (QStringList {QStringLiteral("activePhaseChanged(\"\")"), AgentSignals::NotThinking, status("idle"),
                           s_stopped}));

    // Nothing went out, then or later, and the cancel took no id.
    c->agent.sendIntent(QStringLiteral("refused, but connects"));
    QVERIFY(c->peer.waitForConnection(2));
    QTRY_VERIFY(c->agent.isServiceAvailable());
    QCOMPARE(c->prompt().id, chat.id + 1);
}

void tst_AgentBridgeIntents::cancelsAPendingFeedback()
{
    // Odd to look at, but whatever waits counts.
    c->agent.sendMessageFeedback(QStringLiteral("up"), 1, QStringLiteral("so"));
    c->peer.takeRequest();
    c->agent.cancelRequest();
    QCOMPARE(c->heard.take(), QStringList {s_stopped});
    QCOMPARE(c->peer.takeRequest().method, QStringLiteral("cancel"));
}

void tst_AgentBridgeIntents::cancelDropsARephrase()
{
    c->agent.rephraseText(QStringLiteral("open uh files"));
    const ScriptedBridge::Request rephrase = c->peer.takeRequest();
    c->agent.cancelRequest();
    QCOMPARE(c->heard.take(), QStringList {s_stopped});
    QCOMPARE(c->peer.takeRequest().method, QStringLiteral("cancel"));
    QVERIFY(c->deliver(
        json(QStringLiteral(R"({"type":"response","id":%1,"payload":{"response":"Open files"}})").arg(rephrase.id))));
    QCOMPARE(c->heard.take(), QStringList());
}

void tst_AgentBridgeIntents::cancelFreesAPromptThatIsTakenForAVote()
{
    // A chat's label is its text, so the reply to this one word counts as that to a vote and shows nothing. The user
    // still gets out of it.
    const ScriptedBridge::Request request = c->prompt(QStringLiteral("messageFeedback"));
    QVERIFY(c->deliver(QStringLiteral(R"({"id":%1,"result":{"response":"hi"}})").arg(request.id)));
    QCOMPARE(c->heard.take(), QStringList());
    QVERIFY(c->agent.isThinking());
    c->agent.cancelRequest();
    QCOMPARE(c->heard.take(), (QStringList {AgentSignals::NotThinking, status("idle"), s_stopped}));
    QCOMPARE(c->peer.takeRequest().method, QStringLiteral("cancel"));
}

void tst_AgentBridgeIntents::leavesTheClipboardAloneWithoutOne()
{
    c->agent.copyToClipboard(QStringLiteral("text")); // this test is no graphical application
    QCOMPARE(c->heard.take(), QStringList());
    QCOMPARE(c->log.lines().size(), 0);
}

REGISTER_TEST(tst_AgentBridgeIntents, QCoreApplication)
#include "tst_AgentBridgeIntents.moc"
