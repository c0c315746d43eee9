// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Conversation.h"

#include "AgentBridge.h"
#include "SharedWindow.h"
#include "TestRegistry.h"

#include <QGuiApplication>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

//! How prompts are sent: typed, clicked or suggested, and what then goes over the wire.
class tst_ConversationPrompts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void typedPrompt();
    void lettersOfAllKinds();
    void whitespaceIsNoPrompt();
    void sendButton();
    void twoPromptsAtOnce();
    void storedAgentAndModel();
    void chosenModelIsWrittenBeforeTheChat();
    void agentFollowsTheClient();
    void modeOfTheInput();
    void unknownCommandIsAPrompt();
    void attachedFilesGoAlong();
    void onlyTheUserEdits();
    void ctrlLClearsTheRowsAndNothingElse();
    void withoutAConnection();
    void richerClientsGetTheContext();

    void idleCards_data();
    void idleCards();
    void idleCardsFadeWithTheFirstLetter();

private:
    SharedWindow<Conversation> m_window;
};

void tst_ConversationPrompts::typedPrompt()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.property("barIdle").toBool());
    bar.type(QStringLiteral("  what time is it? "));
    bar.key(Qt::Key_Return);

    QCOMPARE(bar.rows(), QStringList {QStringLiteral("user: what time is it?")});
    QCOMPARE(bar.property("inputField.text").toString(), QString());
    const auto request = bar.bridge.takeRequest();
    QCOMPARE(request.method, QStringLiteral("chat"));
    QCOMPARE(request.params,
             (QJsonObject {{QStringLiteral("message"), QStringLiteral("what time is it?")},
                           {QStringLiteral("agent"), QStringLiteral("auto")},
                           {QStringLiteral("inputMode"), QStringLiteral("text")}}));
    QTRY_COMPARE(bar.property("bridgeStatus").toString(), QStringLiteral("thinking"));
    QVERIFY(bar.bridge.isAllTaken());
    QVERIFY(bar.window()->activeFocusItem() == bar.item(QStringLiteral("inputField")));
}

void tst_ConversationPrompts::lettersOfAllKinds()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    const QString prompt = QStringLiteral("Grüße, Καλημέρα, 你好, \"quotes\" \\ & <b>tags</b> 100%");
    QCOMPARE(bar.ask(prompt).params.value(QStringLiteral("message")).toString(), prompt);
    QCOMPARE(bar.rows(), QStringList {QStringLiteral("user: ") + prompt});
}

void tst_ConversationPrompts::whitespaceIsNoPrompt()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.key(Qt::Key_Return);
    bar.type(QStringLiteral("   "));
    bar.key(Qt::Key_Enter);
    QVERIFY(!bar.isSeen(bar.item(QStringLiteral("sendBtn"))));
    QCOMPARE(bar.count(), 0);
    // A request for the whitespace would arrive before this one.
    bar.ask(QStringLiteral("x"));
    QVERIFY(bar.bridge.isAllTaken());
    QCOMPARE(bar.rows(), QStringList {QStringLiteral("user: x")});
}

void tst_ConversationPrompts::sendButton()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QQuickItem *send = bar.item(QStringLiteral("sendBtn"));
    QVERIFY(!send->isVisible());
    bar.type(QStringLiteral("by mouse"));
    QTRY_VERIFY(bar.isSeen(send));
    QVERIFY(bar.settle());
    bar.click(send);
    QCOMPARE(bar.bridge.takeRequest(QStringLiteral("chat")).params.value(QStringLiteral("message")).toString(),
             QStringLiteral("by mouse"));
    QCOMPARE(bar.property("inputField.text").toString(), QString());
    QVERIFY(!send->isVisible());
}

void tst_ConversationPrompts::twoPromptsAtOnce()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    const auto first = bar.ask(QStringLiteral("again"));
    const auto second = bar.ask(QStringLiteral("again"));
    QCOMPARE(second.id, first.id + 1);
    QCOMPARE(bar.count(), 2);
}

void tst_ConversationPrompts::storedAgentAndModel()
{
    Conversation &bar = m_window.renew();
    QSettings settings;
    settings.setValue(QStringLiteral("omniBar/currentAgent"), QStringLiteral("planner"));
    settings.setValue(QStringLiteral("omniBar/currentModel"), QStringLiteral("loomra/one"));
    settings.sync();
    QVERIFY(bar.begin());
    QCOMPARE(bar.property("currentAgentId").toString(), QStringLiteral("planner"));
    QCOMPARE(bar.property("currentModelId").toString(), QStringLiteral("loomra/one"));
    const auto request = bar.ask();
    QCOMPARE(request.params.value(QStringLiteral("agent")).toString(), QStringLiteral("planner"));
    QCOMPARE(request.params.value(QStringLiteral("model")).toString(), QStringLiteral("loomra/one"));
}

void tst_ConversationPrompts::chosenModelIsWrittenBeforeTheChat()
{
    Conversation &bar = m_window.renew();
    QVERIFY(bar.begin());
    bar.setProperty("currentModelId", QStringLiteral(" loomra/two "));
    bar.setProperty("currentAgentId", QStringLiteral("planner"));
    const auto request = bar.ask();
    QCOMPARE(request.params.value(QStringLiteral("model")).toString(), QStringLiteral("loomra/two"));
    QCOMPARE(request.params.value(QStringLiteral("agent")).toString(), QStringLiteral("planner"));
    QCOMPARE(bar.agent()->currentModel(), QStringLiteral("loomra/two"));
    QCOMPARE(bar.agent()->currentAgent(), QStringLiteral("planner"));
}

void tst_ConversationPrompts::agentFollowsTheClient()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QCOMPARE(bar.evaluate(QStringLiteral("JSON.stringify(omniBar.availableAgents)")).toString(),
             QStringLiteral(R"([{"id":"auto","name":"Assistant"}])"));
    bar.agent()->setCurrentAgent(QStringLiteral("planner"));
    QCOMPARE(bar.property("currentAgentId").toString(), QStringLiteral("planner"));
    bar.agent()->setCurrentAgent(QString());
    QCOMPARE(bar.property("currentAgentId").toString(), QStringLiteral("auto"));
}

void tst_ConversationPrompts::modeOfTheInput()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.exchange(QStringLiteral("typed"), QStringLiteral("reply")));

    bar.setProperty("lastInputMode", QStringLiteral("voice"));
    QVERIFY(bar.settle());
    bar.click(bar.suggestion(QStringLiteral("Run again")));
    const auto suggested = bar.bridge.takeRequest(QStringLiteral("chat"));
    QCOMPARE(suggested.params.value(QStringLiteral("inputMode")).toString(), QStringLiteral("voice"));
    QVERIFY(bar.answer(suggested, QStringLiteral("done")));

    QCOMPARE(bar.ask().params.value(QStringLiteral("inputMode")).toString(), QStringLiteral("text"));
}

void tst_ConversationPrompts::unknownCommandIsAPrompt()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QCOMPARE(bar.ask(QStringLiteral("/helpme")).params.value(QStringLiteral("message")).toString(),
             QStringLiteral("/helpme"));
}

void tst_ConversationPrompts::attachedFilesGoAlong()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.evaluate(QStringLiteral("omniBar.slashAttachedFiles = [{ name: 'a.txt', path: '/tmp/a.txt', content: 'one' },"
                                " { name: 'b.md', path: '/tmp/b.md', content: 'two' }]"));
    QTRY_VERIFY(bar.textItem(QStringLiteral("a.txt, b.md attached — ask your question…")));
    const auto request = bar.ask(QStringLiteral("compare"));
    QCOMPARE(request.params.value(QStringLiteral("message")).toString(),
             QStringLiteral("--- File: a.txt (path: /tmp/a.txt) ---\n```\none\n```\n\n"
                            "--- File: b.md (path: /tmp/b.md) ---\n```\ntwo\n```\n\nUser question: compare"));
    QCOMPARE(bar.rows(), QStringList {QStringLiteral("user: compare")});
    QVERIFY(bar.textItem(QStringLiteral("Ask Tovi anything…")));
}

void tst_ConversationPrompts::onlyTheUserEdits()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QSignalSpy edited(bar.window(), SIGNAL(inputEdited()));
    bar.type(QStringLiteral("ab"));
    QCOMPARE(edited.size(), 2);
    bar.key(Qt::Key_Backspace);
    QCOMPARE(edited.size(), 3);
    bar.key(Qt::Key_Left);
    bar.evaluate(QStringLiteral("inputField.text = 'by the program'"));
    bar.key(Qt::Key_Return);
    QCOMPARE(bar.property("inputField.text").toString(), QString());
    QCOMPARE(edited.size(), 3);
    QVERIFY(!bar.bridge.takeRequest(QStringLiteral("chat")).params.isEmpty());
}

void tst_ConversationPrompts::ctrlLClearsTheRowsAndNothingElse()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.exchange(QStringLiteral("one"), QStringLiteral("two"),
                         {{QStringLiteral("usage"), QJsonObject {{QStringLiteral("inputTokens"), 7}}}}));
    bar.setProperty("userExpanded", true);
    bar.setProperty("chatExpanded", true);
    bar.type(QStringLiteral("draft"));
    bar.key(Qt::Key_L, Qt::ControlModifier);

    QCOMPARE(bar.count(), 0);
    QCOMPARE(bar.property("inputField.text").toString(), QStringLiteral("draft"));
    QCOMPARE(bar.property("sessionUsageTotal").toInt(), 7);
    QCOMPARE(bar.property("userExpanded").toBool(), true);
    QCOMPARE(bar.property("chatExpanded").toBool(), true);
    QVERIFY(bar.property("barIdle").toBool());
    QVERIFY(bar.bridge.isAllTaken());
    QVERIFY(bar.settle());
    QVERIFY(!bar.isSeen(bar.item(QStringLiteral("chatPanel"))));
}

void tst_ConversationPrompts::withoutAConnection()
{
    Conversation &bar = m_window.renew();
    bar.bridge.close();
    bar.expectWarning(QStringLiteral("[AgentBridge] WebSocket error:"));
    QVERIFY(bar.begin());
    QTRY_COMPARE(bar.property("bridgeStatus").toString(), QStringLiteral("error"));
    QVERIFY(bar.textItem(QStringLiteral("Connecting...")));
    bar.type(QStringLiteral("lost"));
    bar.key(Qt::Key_Return);
    QTRY_COMPARE(bar.rows(),
                 (QStringList {QStringLiteral("user: lost"),
                               QStringLiteral("assistant: Error: Loomra bridge not connected "
                                              "(ws://127.0.0.1:8765/ws)")}));
    QVERIFY(bar.bridge.listen());
    QTRY_COMPARE_WITH_TIMEOUT(bar.property("bridgeStatus").toString(), QStringLiteral("idle"),
                              OmniBarFixture::ReconnectTimeout);
    // The lost prompt isn't sent later: the bridge's first request is the next prompt.
    QCOMPARE(bar.ask(QStringLiteral("found")).params.value(QStringLiteral("message")).toString(),
             QStringLiteral("found"));
    QVERIFY(bar.bridge.isAllTaken());
}

void tst_ConversationPrompts::richerClientsGetTheContext()
{
    Conversation &bar = m_window.renew();
    QObject *client = bar.fake(QStringLiteral(R"(
        QtObject {
            property string status: "idle"
            property bool isThinking: false
            property string activePhase: ""
            property string currentAgent: "auto"
            property string currentModel: ""
            property string inputMode: ""
            property var sent: []
            signal agentReplied(string response)
            signal structuredReplyReceived(string uiJson)
            signal errorOccurred(string error)
            signal usageReported(int inputTokens, int outputTokens)
            signal actionStarted(string actionName)
            signal planStepChanged()
            function sendIntentWithContext(prompt, context) { sent = sent.concat(prompt, context); }
        })"));
    QVERIFY(client);
    bar.provide(QStringLiteral("agentBridge"), QVariant::fromValue(client));
    QVERIFY(bar.begin());
    QMetaObject::invokeMethod(client, "agentReplied", Q_ARG(QString, QStringLiteral("before")));
    bar.type(QStringLiteral("go on"));
    bar.key(Qt::Key_Return);
    QCOMPARE(client->property("sent").toStringList(),
             (QStringList {QStringLiteral("go on"), QStringLiteral("Assistant: before\nUser: go on")}));
    QCOMPARE(client->property("inputMode").toString(), QStringLiteral("text"));
}

void tst_ConversationPrompts::idleCards_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("prompt");

    QTest::newRow("actions") << QStringLiteral("List KDE &\nSystem Actions")
                             << QStringLiteral("What kde and system actions can you help me with?");
    QTest::newRow("status") << QStringLiteral("System\nStatus") << QStringLiteral("Show my current system status");
    QTest::newRow("reminder") << QStringLiteral("Set\nReminder")
                              << QStringLiteral("What reminder actions can you help me with?");
    QTest::newRow("windows") << QStringLiteral("Open\nWindows") << QStringLiteral("List my open windows");
}

void tst_ConversationPrompts::idleCards()
{
    QFETCH(QString, label);
    QFETCH(QString, prompt);

    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.settle());
    QQuickItem *words = bar.textItem(label);
    QVERIFY(words);
    bar.click(words);
    QCOMPARE(bar.bridge.takeRequest(QStringLiteral("chat")).params.value(QStringLiteral("message")).toString(), prompt);
    QCOMPARE(bar.rows(), QStringList {QStringLiteral("user: ") + prompt});
    QCOMPARE(bar.property("inputField.text").toString(), QString());
    QVERIFY(bar.settle());
    QVERIFY(!bar.isSeen(bar.item(QStringLiteral("idleCards"))));
}

void tst_ConversationPrompts::idleCardsFadeWithTheFirstLetter()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QQuickItem *cards = bar.item(QStringLiteral("idleCards"));
    QVERIFY(bar.settle());
    QVERIFY(bar.isSeen(cards));
    const QPoint place = bar.place(bar.textItem(QStringLiteral("Open\nWindows"))).center().toPoint();

    bar.type(QStringLiteral("x"));
    QTRY_VERIFY(!bar.isSeen(cards));
    bar.clickAt(place);
    QCOMPARE(bar.count(), 0);

    bar.key(Qt::Key_Backspace);
    QTRY_COMPARE(cards->opacity(), 1.0);
    bar.setProperty("voiceConfirmPending", true);
    QVERIFY(!bar.isSeen(cards));
}

REGISTER_TEST(tst_ConversationPrompts, QGuiApplication)

#include "tst_ConversationPrompts.moc"
