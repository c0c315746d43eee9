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
    void usesAStoredModel_data();
    void usesAStoredModel();
    void sendsTwoIntentsInARow();

    void cancelsNothingWhenIdle();
    void cancelsAChat();
    void cancelNamesTheSession();
    void cancelClearsTheProgress();
    void cancelLeavesAPlanThatDoesNotRun();
    void cancelsWithoutConnection();
    void cancelsAPendingFeedback();
    void cancelDropsARephrase();
    void cancelEndsAPromptNamedLikeFeedback();

    void copiesNothingWithoutGuiApplication();
};

void tst_AgentBridgeIntents::refusesBlankIntents_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << "";
    QTest::newRow("whitespace") << "   ";
    QTest::newRow("newlines and tabs") << "\n\t \r\n";
    QTest::newRow("non-breaking") << "\u00a0\u2003";
}

void tst_AgentBridgeIntents::refusesBlankIntents()
{
    QFETCH(QString, text);
    fixture->agent.sendIntent(text);
    QCOMPARE(fixture->emitted.take(), QStringList {QStringLiteral("errorOccurred(\"Empty intent\")")});
    QCOMPARE(fixture->agent.status(), QStringLiteral("idle"));
    QCOMPARE(fixture->prompt().id, quint64(1)); // nothing was sent before

    // The check for an empty text precedes the one for a connection.
    QVERIFY(fixture->disconnectPeer());
    fixture->agent.sendIntent(text);
    QCOMPARE(fixture->emitted.take(), QStringList {QStringLiteral("errorOccurred(\"Empty intent\")")});
}

void tst_AgentBridgeIntents::sendsAChat()
{
    fixture->agent.sendIntent(QStringLiteral("  open the files \n"));
    QCOMPARE(fixture->emitted.take(), (QStringList {AgentSignals::Thinking, status("thinking")}));
    QVERIFY(fixture->agent.isThinking());

    const ScriptedBridge::Request request = fixture->peer.takeRequest();
    QCOMPARE(request.text,
             QStringLiteral(R"({"id":1,"method":"chat","params":{"agent":"auto","inputMode":"text",)"
                            R"("message":"  open the files \n"}})"));
    QCOMPARE(fixture->log.lines().size(), 2);
    QVERIFY(fixture->log.has(QtDebugMsg,
                             QStringLiteral("[AgentBridge] chat params model: \"(none)\" inputMode: \"text\"")));
    QVERIFY(fixture->log.has(QtDebugMsg, QStringLiteral("[AgentBridge] Sending request to bridge, id= 1")));
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
    fixture->agent.setCurrentAgent(agentId);
    fixture->agent.setCurrentModel(model);
    fixture->agent.setInputMode(inputMode);
    fixture->agent.sendIntent(QStringLiteral("hi"));
    QTEST(fixture->peer.takeRequest().params, "params");
    QVERIFY(fixture->log.has(QtDebugMsg, line));
}

void tst_AgentBridgeIntents::usesAStoredModel_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("model");
    QTest::newRow("surrounded by whitespace") << "  p/m\t"
                                              << "p/m";
    QTest::newRow("plain") << "p/m"
                           << "p/m";
    QTest::newRow("whitespace") << "   "
                                << "";
    QTest::newRow("empty") << ""
                           << "";
}

void tst_AgentBridgeIntents::usesAStoredModel()
{
    QFETCH(QString, stored);
    QFETCH(QString, model);
    // Stored by another process after the agent was created.
    QSettings().setValue(modelKey(), stored);
    fixture->agent.sendIntent(QStringLiteral("hi"));

    const ScriptedBridge::Request request = fixture->peer.takeRequest();
    QCOMPARE(request.params.contains(QStringLiteral("model")), !model.isEmpty());
    QCOMPARE(request.params.value(QStringLiteral("model")).toString(), model);
    QCOMPARE(fixture->agent.currentModel(), model);
    QCOMPARE(fixture->emitted.take(), (QStringList {AgentSignals::Thinking, status("thinking")}));
    QCOMPARE(QSettings().value(modelKey()).toString(), stored);
    QVERIFY(fixture->log.has(QtDebugMsg,
                             QStringLiteral("[AgentBridge] chat params model: \"%1\" inputMode: \"text\"")
                                 .arg(model.isEmpty() ? QStringLiteral("(none)") : model)));
}

void tst_AgentBridgeIntents::sendsTwoIntentsInARow()
{
    fixture->agent.sendIntent(QStringLiteral("one"));
    fixture->agent.sendIntent(QStringLiteral("two"));
    QCOMPARE(fixture->emitted.take(), (QStringList {AgentSignals::Thinking, status("thinking")}));
    const ScriptedBridge::Request first = fixture->peer.takeRequest();
    const ScriptedBridge::Request second = fixture->peer.takeRequest();
    QCOMPARE(first.id, quint64(1));
    QCOMPARE(second.id, quint64(2));
    QCOMPARE(first.params.value(QStringLiteral("message")).toString(), QStringLiteral("one"));
    QCOMPARE(second.params.value(QStringLiteral("message")).toString(), QStringLiteral("two"));

    fixture->peer.reply(second, answer(QStringLiteral("B")));
    QTRY_COMPARE(fixture->emitted.entries(),
                 (QStringList {QStringLiteral("agentReplied(\"B\")"), AgentSignals::NotThinking, status("idle")}));
    fixture->emitted.take();
    fixture->peer.reply(first, answer(QStringLiteral("A")));
    QTRY_COMPARE(fixture->emitted.entries(), QStringList {QStringLiteral("agentReplied(\"A\")")});
}

void tst_AgentBridgeIntents::cancelsNothingWhenIdle()
{
    fixture->agent.cancelRequest();
    QCOMPARE(fixture->emitted.take(), QStringList());
    QCOMPARE(fixture->log.lines().size(), 0);
    QCOMPARE(fixture->prompt().id, quint64(1));
}

void tst_AgentBridgeIntents::cancelsAChat()
{
    const ScriptedBridge::Request chat = fixture->prompt();
    fixture->agent.cancelRequest();
    QCOMPARE(fixture->emitted.take(), (QStringList {AgentSignals::NotThinking, status("idle"), s_stopped}));
    QCOMPARE(fixture->log.lines().size(), 1);
    QVERIFY(
        fixture->log.has(QtDebugMsg, QStringLiteral("[AgentBridge] cancelRequest — aborting 1 pending request(s)")));

    const ScriptedBridge::Request cancel = fixture->peer.takeRequest();
    QCOMPARE(cancel.text, QStringLiteral(R"({"id":2,"method":"cancel","params":{}})"));

    // A second call has no effect.
    fixture->agent.cancelRequest();
    QCOMPARE(fixture->emitted.take(), QStringList());

    // A late reply and the reply to "cancel" are ignored, with the session and usage that they contain.
    const QString late = QStringLiteral(
        R"({"type":"response","id":%1,"payload":{"response":"late","sessionId":"s9","usage":{"inputTokens":5}}})");
    for (const ScriptedBridge::Request &request : {chat, cancel}) {
        QVERIFY(fixture->deliver(late.arg(request.id)));
        QVERIFY(fixture->log.has(
            QtDebugMsg,
            QStringLiteral("[AgentBridge] Message not for pending request, id= %1 pending= ()").arg(request.id)));
    }
    QCOMPARE(fixture->emitted.take(), QStringList());

    const ScriptedBridge::Request next = fixture->prompt();
    QCOMPARE(next.id, chat.id + 2);
    QVERIFY(!next.params.contains(QStringLiteral("sessionId")));
}

void tst_AgentBridgeIntents::cancelNamesTheSession()
{
    fixture->peer.reply(fixture->prompt(), answer(QStringLiteral("hi"), json(QStringLiteral(R"({"sessionId":"s1"})"))));
    QTRY_COMPARE(fixture->agent.status(), QStringLiteral("idle"));
    fixture->prompt();
    fixture->agent.cancelRequest();
    QCOMPARE(fixture->peer.takeRequest().text,
             QStringLiteral(R"({"id":3,"method":"cancel","params":{"sessionId":"s1"}})"));
}

void tst_AgentBridgeIntents::cancelClearsTheProgress()
{
    fixture->prompt();
    fixture->peer.event(QStringLiteral("agent.routed"), json(QStringLiteral(R"({"agent":"planner"})")));
    fixture->peer.event(QStringLiteral("plan.step"),
                        json(QStringLiteral(R"({"index":0,"total":2,"capabilityId":"theme.apply","phase":"run"})")));
    QTRY_COMPARE(fixture->agent.planStepIndex(), 0);
    fixture->emitted.take();

    fixture->agent.cancelRequest();
    QCOMPARE(fixture->emitted.take(),
             (QStringList {QStringLiteral("activePhaseChanged(\"\")"), QStringLiteral("routedAgentChanged(\"\")"),
                           QStringLiteral("planStepChanged()"), AgentSignals::NotThinking, status("idle"), s_stopped}));
    QCOMPARE(fixture->agent.planStepIndex(), -1);
    QCOMPARE(fixture->agent.planStepTotal(), 0);
    QCOMPARE(fixture->agent.planStepCapability(), QString());
    QCOMPARE(fixture->agent.planStepPhase(), QString());
    QCOMPARE(fixture->peer.takeRequest().method, QStringLiteral("cancel"));
}

void tst_AgentBridgeIntents::cancelLeavesAPlanThatDoesNotRun()
{
    fixture->prompt();
    fixture->peer.event(QStringLiteral("plan.step"), json(QStringLiteral(R"({"total":2,"phase":"wait"})")));
    QTRY_COMPARE(fixture->agent.planStepTotal(), 2);
    fixture->emitted.take();
    fixture->agent.cancelRequest();
    QCOMPARE(fixture->emitted.take(), (QStringList {AgentSignals::NotThinking, status("idle"), s_stopped}));
    QCOMPARE(fixture->agent.planStepTotal(), 2);
    QCOMPARE(fixture->agent.planStepPhase(), QStringLiteral("wait"));
    fixture->peer.takeRequest();
}

void tst_AgentBridgeIntents::cancelsWithoutConnection()
{
    const ScriptedBridge::Request chat = fixture->prompt();
    QVERIFY(fixture->deliver(
        json(QStringLiteral(R"({"type":"event","payload":{"event":"plan.phase","phase":"creating"}})"))));
    QVERIFY(fixture->disconnectPeer());
    fixture->agent.cancelRequest();
    QCOMPARE(fixture->emitted.take(),
             (QStringList {QStringLiteral("activePhaseChanged(\"\")"), AgentSignals::NotThinking, status("idle"),
                           s_stopped}));

    // Nothing was sent, neither then nor later, and "cancel" used no id.
    fixture->agent.sendIntent(QStringLiteral("refused, but connects"));
    QVERIFY(fixture->peer.waitForConnection(2));
    QTRY_VERIFY(fixture->agent.isServiceAvailable());
    fixture->emitted.take();

    // A bridge that has gone on with the request may still answer it.
    QVERIFY(fixture->deliver(json(
        QStringLiteral(R"({"type":"response","id":%1,"payload":{"response":"late","sessionId":"s9"}})").arg(chat.id))));
    QCOMPARE(fixture->emitted.take(), QStringList());
    const ScriptedBridge::Request next = fixture->prompt();
    QCOMPARE(next.id, chat.id + 1);
    QVERIFY(!next.params.contains(QStringLiteral("sessionId")));
}

void tst_AgentBridgeIntents::cancelsAPendingFeedback()
{
    // Intentional: any pending request counts, even one that the user doesn't see.
    fixture->agent.sendMessageFeedback(QStringLiteral("up"), 1, QStringLiteral("so"));
    fixture->peer.takeRequest();
    fixture->agent.cancelRequest();
    QCOMPARE(fixture->emitted.take(), QStringList {s_stopped});
    QCOMPARE(fixture->peer.takeRequest().method, QStringLiteral("cancel"));
}

void tst_AgentBridgeIntents::cancelDropsARephrase()
{
    fixture->agent.rephraseText(QStringLiteral("open uh files"));
    const ScriptedBridge::Request rephrase = fixture->peer.takeRequest();
    fixture->agent.cancelRequest();
    QCOMPARE(fixture->emitted.take(), QStringList {s_stopped});
    QCOMPARE(fixture->peer.takeRequest().method, QStringLiteral("cancel"));
    QVERIFY(fixture->deliver(
        json(QStringLiteral(R"({"type":"response","id":%1,"payload":{"response":"Open files"}})").arg(rephrase.id))));
    QCOMPARE(fixture->emitted.take(), QStringList());
}

void tst_AgentBridgeIntents::cancelEndsAPromptNamedLikeFeedback()
{
    // The label of a chat is its text, so the reply to this prompt is handled like one to feedback and shows nothing.
    // Cancelling still works.
    const ScriptedBridge::Request request = fixture->prompt(QStringLiteral("messageFeedback"));
    QVERIFY(fixture->deliver(QStringLiteral(R"({"id":%1,"result":{"response":"hi"}})").arg(request.id)));
    QCOMPARE(fixture->emitted.take(), QStringList());
    QVERIFY(fixture->agent.isThinking());
    fixture->agent.cancelRequest();
    QCOMPARE(fixture->emitted.take(), (QStringList {AgentSignals::NotThinking, status("idle"), s_stopped}));
    QCOMPARE(fixture->peer.takeRequest().method, QStringLiteral("cancel"));
}

void tst_AgentBridgeIntents::copiesNothingWithoutGuiApplication()
{
    fixture->agent.copyToClipboard(QStringLiteral("text")); // this process has no QGuiApplication
    QCOMPARE(fixture->emitted.take(), QStringList());
    QCOMPARE(fixture->log.lines().size(), 0);
}

REGISTER_TEST(tst_AgentBridgeIntents, QCoreApplication)
#include "tst_AgentBridgeIntents.moc"
