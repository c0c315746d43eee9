// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Conversation.h"

#include "AgentBridge.h"
#include "SharedWindow.h"
#include "TestRegistry.h"

#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>

namespace
{

//! Follow-ups with these prompts.
QJsonArray followUps(const QStringList &prompts)
{
    QJsonArray array;
    for (const QString &prompt : prompts) {
        array.append(QJsonObject {{QStringLiteral("prompt"), prompt}});
    }
    return array;
}

QJsonObject block(const QString &type, const QString &content)
{
    return {{QStringLiteral("type"), type}, {QStringLiteral("content"), content}};
}

QJsonObject document(const QJsonArray &blocks, const QJsonArray &followUps = {})
{
    QJsonObject ui {{QStringLiteral("blocks"), blocks}};
    if (!followUps.isEmpty()) {
        ui.insert(QStringLiteral("followUps"), followUps);
    }
    return {{QStringLiteral("ui"), ui}};
}

} // namespace

//! How replies and errors of the bridge become rows.
class tst_ConversationReplies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void replyIsOneRow();
    void sessionGoesOn();
    void structureAndTextAreOneRow();
    void followUpsWithoutBlocks();
    void emptyReplyKeepsTheStructure();
    void errorDropsTheStructure();
    void everyReplyIsARow();
    void toolMarkupBecomesDone();
    void toolDot_data();
    void toolDot();
    void themeFollowsTheWording();
    void errorsAreRows();
    void failedFeedbackIsNone();
    void lateReplyIsDropped();
    void bridgeThatDiesTakesOnlyWhatWasInFlight();
    void closedInTheMiddleOfAReply();
    void suggestionsComeAndGo();
    void suggestionsStayAwayFromChoices();
    void suggestionIsAPrompt();
    void fourSuggestions();

private:
    SharedWindow<Conversation> m_window;
};

void tst_ConversationReplies::replyIsOneRow()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    const auto request = bar.ask(QStringLiteral("hello"));
    QVERIFY(bar.answer(request, QStringLiteral("Hello **you**.")));
    QCOMPARE(bar.rows(), (QStringList {QStringLiteral("user: hello"), QStringLiteral("assistant: Hello **you**.")}));
    QCOMPARE(bar.field(1, "messageType").toString(), QStringLiteral("text"));
    QCOMPARE(bar.field(1, "payload").toString(), QString());
    QCOMPARE(bar.field(1, "fallbackText").toString(), QStringLiteral("Hello **you**."));
    QTRY_VERIFY(bar.rowItem(1));
    QVERIFY(bar.inRow(1, "words")->property("text").toString().contains(QStringLiteral("<b>you</b>")));
}

void tst_ConversationReplies::sessionGoesOn()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.exchange(QStringLiteral("one"), QStringLiteral("two"),
                         {{QStringLiteral("sessionId"), QStringLiteral("s-1")}}));
    QCOMPARE(bar.ask(QStringLiteral("three")).params.value(QStringLiteral("sessionId")).toString(),
             QStringLiteral("s-1"));
}

void tst_ConversationReplies::structureAndTextAreOneRow()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    const QJsonObject ui = document({block(QStringLiteral("text"), QStringLiteral("Plain."))},
                                    followUps({QStringLiteral("Tell me the rest")}));
    QVERIFY(bar.exchange(QStringLiteral("go"), QStringLiteral("Plain."), ui));
    QCOMPARE(bar.rows(), (QStringList {QStringLiteral("user: go"), QStringLiteral("assistant: Plain.")}));
    QCOMPARE(bar.property("pendingUiJson").toString(), QString());
    QTRY_COMPARE(bar.suggestions().value(0), QStringLiteral("Tell me the rest"));
}

void tst_ConversationReplies::followUpsWithoutBlocks()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.exchange(QStringLiteral("go"), QStringLiteral("Plain."),
                         {{QStringLiteral("followUps"), followUps({QStringLiteral("Next")})}}));
    QTRY_COMPARE(bar.suggestions().value(0), QStringLiteral("Next"));
    QVERIFY(bar.exchange(QStringLiteral("go"), QStringLiteral("Plain again.")));
    QTRY_COMPARE(bar.suggestions().value(0), QStringLiteral("Tell me more"));
}

void tst_ConversationReplies::emptyReplyKeepsTheStructure()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    const QString ui = QStringLiteral(R"({"followUps":[{"prompt":"Next"}]})");
    Q_EMIT bar.agent()->structuredReplyReceived(ui);
    bar.emitReply(QString());
    QCOMPARE(bar.count(), 0);
    QCOMPARE(bar.property("pendingUiJson").toString(), ui);
    bar.emitReply(QStringLiteral("now"));
    QCOMPARE(bar.rows(), QStringList {QStringLiteral("assistant: now")});
    QTRY_COMPARE(bar.suggestions().value(0), QStringLiteral("Next"));
}

void tst_ConversationReplies::errorDropsTheStructure()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    Q_EMIT bar.agent()->structuredReplyReceived(QStringLiteral(R"({"followUps":[{"prompt":"Next"}]})"));
    Q_EMIT bar.agent()->errorOccurred(QStringLiteral("no luck"));
    QCOMPARE(bar.property("pendingUiJson").toString(), QString());
    bar.emitReply(QStringLiteral("now"));
    QCOMPARE(bar.rows(), (QStringList {QStringLiteral("assistant: Error: no luck"), QStringLiteral("assistant: now")}));
    QTRY_COMPARE(bar.suggestions().value(0), QStringLiteral("Tell me more"));
}

void tst_ConversationReplies::everyReplyIsARow()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.emitReply(QStringLiteral("same"));
    bar.emitReply(QStringLiteral("same"));
    QCOMPARE(bar.rows(), (QStringList {QStringLiteral("assistant: same"), QStringLiteral("assistant: same")}));
}

void tst_ConversationReplies::toolMarkupBecomesDone()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.exchange(QStringLiteral("go"),
                         QStringLiteral("<minimax:tool_call><invoke name=\"x\"><parameter name=\"y\">1</parameter>"
                                        "</invoke></minimax:tool_call>")));
    QVERIFY(bar.exchange(QStringLiteral("go"), QStringLiteral("It is <function=x>1</function>ready.")));
    QCOMPARE(bar.field(1, "text").toString(), QStringLiteral("Done."));
    QCOMPARE(bar.field(3, "text").toString(), QStringLiteral("It is ready."));
}

void tst_ConversationReplies::toolDot_data()
{
    QTest::addColumn<QString>("status");
    QTest::addColumn<QString>("expected");

    QTest::newRow("success") << QStringLiteral("success") << QStringLiteral("#ff4ade80");
    QTest::newRow("capitals") << QStringLiteral("SUCCESS") << QStringLiteral("#ff4ade80");
    QTest::newRow("error") << QStringLiteral("error") << QStringLiteral("#fff87171");
    QTest::newRow("failed") << QStringLiteral("Failed") << QStringLiteral("#fff87171");
    QTest::newRow("another") << QStringLiteral("pending") << QStringLiteral("#fffbbf24");
}

void tst_ConversationReplies::toolDot()
{
    QFETCH(QString, status);
    QFETCH(QString, expected);

    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(
        bar.exchange(QStringLiteral("go"), QStringLiteral("[TOOL: kde.notify] [STATUS: %1] [RESULT: ok]").arg(status)));
    QCOMPARE(bar.field(1, "text").toString(), QStringLiteral("Action completed."));
    QCOMPARE(bar.field(1, "toolName").toString(), QStringLiteral("kde.notify"));
    QTRY_VERIFY(bar.inRow(1, "toolDot"));
    QQuickItem *dot = bar.inRow(1, "toolDot")->childItems().value(0);
    QVERIFY(dot);
    QCOMPARE(bar.color(dot), expected);
    QVERIFY(!bar.inRow(0, "toolDot") || bar.inRow(0, "toolDot")->childItems().isEmpty());
}

void tst_ConversationReplies::themeFollowsTheWording()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QCOMPARE(bar.evaluate(QStringLiteral("omniTheme.uiLight")).toBool(), false);
    QVERIFY(bar.exchange(QStringLiteral("a"), QStringLiteral("Breeze Light was applied.")));
    QCOMPARE(bar.evaluate(QStringLiteral("omniBar.appearanceStore.lightChrome")).toBool(), true);
    QCOMPARE(bar.evaluate(QStringLiteral("omniTheme.uiLight")).toBool(), true);
    QVERIFY(bar.exchange(QStringLiteral("b"), QStringLiteral("What is the theme?")));
    QCOMPARE(bar.evaluate(QStringLiteral("omniTheme.uiLight")).toBool(), true);
    QVERIFY(bar.exchange(QStringLiteral("c"), QStringLiteral("Applied: the DARK one.")));
    QCOMPARE(bar.evaluate(QStringLiteral("omniTheme.uiLight")).toBool(), false);
}

void tst_ConversationReplies::errorsAreRows()
{
    Conversation &bar = m_window.take();
    bar.expectWarning(QStringLiteral("[AgentBridge]"));
    QVERIFY(bar.begin());
    bar.bridge.fail(bar.ask(QStringLiteral("one")), QStringLiteral("no model"));
    QTRY_COMPARE(bar.count(), 2);
    bar.bridge.error(bar.ask(QStringLiteral("two")), QString(), QStringLiteral("E_BUSY"));
    QTRY_COMPARE(bar.count(), 4);
    bar.bridge.reply(bar.ask(QStringLiteral("three")), QJsonObject {{QStringLiteral("response"), QString()}});
    QTRY_COMPARE(bar.count(), 6);
    bar.bridge.reply(bar.ask(QStringLiteral("four")), QStringLiteral("not an object"));
    QTRY_COMPARE(bar.count(), 8);
    QCOMPARE(bar.rows(),
             (QStringList {
                 QStringLiteral("user: one"), QStringLiteral("assistant: Error: no model"), QStringLiteral("user: two"),
                 QStringLiteral("assistant: Error: E_BUSY"), QStringLiteral("user: three"),
                 QStringLiteral("assistant: Error: Empty response from Loomra bridge"), QStringLiteral("user: four"),
                 QStringLiteral("assistant: Error: Unexpected result from Loomra bridge")}));
    // None of them blocks the next prompt.
    QVERIFY(bar.exchange(QStringLiteral("five"), QStringLiteral("fine")));
}

void tst_ConversationReplies::failedFeedbackIsNone()
{
    Conversation &bar = m_window.take();
    bar.expectWarning(QStringLiteral("[AgentBridge]"));
    QVERIFY(bar.begin());
    QVERIFY(bar.exchange(QStringLiteral("one"), QStringLiteral("two")));
    bar.invoke("voteMessage", {1, QStringLiteral("up")});
    bar.bridge.fail(bar.bridge.takeRequest(QStringLiteral("messageFeedback")), QStringLiteral("no store"));
    QTRY_COMPARE(bar.property("bridgeStatus").toString(), QStringLiteral("error"));
    QCOMPARE(bar.count(), 2);
}

void tst_ConversationReplies::lateReplyIsDropped()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    const auto request = bar.ask(QStringLiteral("slow"));
    QTRY_COMPARE(bar.property("bridgeStatus").toString(), QStringLiteral("thinking"));
    bar.key(Qt::Key_Escape);
    QTRY_COMPARE(bar.rows(), (QStringList {QStringLiteral("user: slow"), QStringLiteral("assistant: _Stopped._")}));
    bar.bridge.takeRequest(QStringLiteral("cancel"));
    QVERIFY(!bar.property("compactMode").toBool());

    bar.bridge.reply(request,
                     QJsonObject {{QStringLiteral("response"), QStringLiteral("too late")},
                                  {QStringLiteral("sessionId"), QStringLiteral("s-late")}});
    const auto next = bar.ask(QStringLiteral("next"));
    QVERIFY(!next.params.contains(QStringLiteral("sessionId")));
    QVERIFY(bar.answer(next, QStringLiteral("in time")));
    QCOMPARE(bar.rows().mid(2), (QStringList {QStringLiteral("user: next"), QStringLiteral("assistant: in time")}));
}

void tst_ConversationReplies::bridgeThatDiesTakesOnlyWhatWasInFlight()
{
    Conversation &bar = m_window.take();
    bar.expectWarning(QStringLiteral("[AgentBridge] WebSocket error:"));
    QVERIFY(bar.begin());
    QVERIFY(bar.exchange(QStringLiteral("one"), QStringLiteral("two"),
                         {{QStringLiteral("sessionId"), QStringLiteral("s-1")}}));
    bar.ask(QStringLiteral("in flight"));
    bar.type(QStringLiteral("draft"));
    const QStringList before = bar.rows();

    bar.bridge.close();
    QTRY_VERIFY(!bar.agent()->isServiceAvailable());
    QVERIFY(QStringList({QStringLiteral("disconnected"), QStringLiteral("error")})
                .contains(bar.property("bridgeStatus").toString()));
    QCOMPARE(bar.rows(), before);
    QCOMPARE(bar.property("inputField.text").toString(), QStringLiteral("draft"));

    QVERIFY(bar.bridge.listen());
    QTRY_COMPARE_WITH_TIMEOUT(bar.property("bridgeStatus").toString(), QStringLiteral("idle"),
                              OmniBarFixture::ReconnectTimeout);
    QCOMPARE(bar.rows(), before);
    bar.key(Qt::Key_Return);
    const auto request = bar.bridge.takeRequest(QStringLiteral("chat"));
    QCOMPARE(request.params.value(QStringLiteral("message")).toString(), QStringLiteral("draft"));
    QCOMPARE(request.params.value(QStringLiteral("sessionId")).toString(), QStringLiteral("s-1"));
    QVERIFY(bar.answer(request, QStringLiteral("here again")));
    QCOMPARE(bar.rows(),
             before + QStringList({QStringLiteral("user: draft"), QStringLiteral("assistant: here again")}));
    QVERIFY(!bar.property("thinking").toBool());
}

void tst_ConversationReplies::closedInTheMiddleOfAReply()
{
    Conversation &bar = m_window.take();
    bar.expectWarning(QStringLiteral("[AgentBridge] WebSocket error:"));
    QVERIFY(bar.begin());
    bar.ask(QStringLiteral("slow"));
    bar.bridge.event(QStringLiteral("plan.phase"), {{QStringLiteral("phase"), QStringLiteral("executing")}});
    QTRY_COMPARE(bar.property("activePhaseLabel").toString(), QStringLiteral("Executing…"));
    bar.bridge.drop();
    QTRY_COMPARE_WITH_TIMEOUT(bar.property("bridgeStatus").toString(), QStringLiteral("idle"),
                              OmniBarFixture::ReconnectTimeout);
    // The request stays open until the user stops it, because a reply may still come.
    QVERIFY(bar.property("thinking").toBool());
    bar.key(Qt::Key_Escape);
    QTRY_COMPARE(bar.rows(), (QStringList {QStringLiteral("user: slow"), QStringLiteral("assistant: _Stopped._")}));
    QVERIFY(!bar.property("thinking").toBool());
    QVERIFY(bar.exchange(QStringLiteral("next"), QStringLiteral("fine")));
}

void tst_ConversationReplies::suggestionsComeAndGo()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QCOMPARE(bar.property("responseSuggestionsModel.count").toInt(), 4);
    QCOMPARE(bar.suggestions(), QStringList());

    const auto request = bar.ask(QStringLiteral("which windows are open?"));
    QTRY_COMPARE(bar.property("bridgeStatus").toString(), QStringLiteral("thinking"));
    QCOMPARE(bar.suggestions(), QStringList());

    QVERIFY(bar.answer(request, QStringLiteral("Two.")));
    QTRY_COMPARE(bar.suggestions(),
                 (QStringList {QStringLiteral("List windows"), QStringLiteral("Focus window"),
                               QStringLiteral("Tell me more"), QStringLiteral("Run again")}));
    QVERIFY(bar.textItem(QStringLiteral("Suggested next steps")));

    bar.key(Qt::Key_L, Qt::ControlModifier);
    QTRY_COMPARE(bar.suggestions(), QStringList());
}

void tst_ConversationReplies::suggestionsStayAwayFromChoices()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    for (const char *type : {"options", "list", "slider", "table"}) {
        bar.evaluate(QStringLiteral("omniBar.chatModel.append({ role: 'assistant', text: 'x', messageType: '%1',"
                                    " payload: '', fallbackText: 'x', hasTool: false, toolStatus: '', toolName: '',"
                                    " createdAt: 1, feedbackVote: '', widgetState: '' })")
                         .arg(QLatin1String(type)));
        bar.emitReply(QStringLiteral("and a plain one"));
        QVERIFY(bar.settle());
        QCOMPARE(bar.suggestions(), QStringList());
        bar.invoke("appendUserMessage", {QStringLiteral("a new turn")});
        QTRY_COMPARE(bar.suggestions().size(), 4);
        bar.invoke("clearConversation");
    }
}

void tst_ConversationReplies::suggestionIsAPrompt()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    const QJsonArray offered {QJsonObject {{QStringLiteral("title"), QStringLiteral("Dim it")},
                                           {QStringLiteral("subtitle"), QStringLiteral("To 20 percent.")},
                                           {QStringLiteral("prompt"), QStringLiteral("Set brightness to 20%")}}};
    QVERIFY(bar.exchange(QStringLiteral("go"), QStringLiteral("Fine."), {{QStringLiteral("followUps"), offered}}));
    QTRY_VERIFY(bar.suggestion(QStringLiteral("Dim it")));
    QVERIFY(bar.settle());
    QQuickItem *card = bar.suggestion(QStringLiteral("Dim it"));
    QVERIFY(bar.textsIn(card).contains(QStringLiteral("To 20 percent.")));
    bar.type(QStringLiteral("draft"));
    bar.click(card);
    QCOMPARE(bar.bridge.takeRequest(QStringLiteral("chat")).params.value(QStringLiteral("message")).toString(),
             QStringLiteral("Set brightness to 20%"));
    QCOMPARE(bar.rows().last(), QStringLiteral("user: Set brightness to 20%"));
    QCOMPARE(bar.property("inputField.text").toString(), QStringLiteral("draft"));
}

void tst_ConversationReplies::fourSuggestions()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    const QStringList prompts {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d"),
                               QStringLiteral("e")};
    QVERIFY(bar.exchange(QStringLiteral("go"), QStringLiteral("Fine."),
                         {{QStringLiteral("followUps"), followUps(prompts)}}));
    QTRY_COMPARE(bar.suggestions(), prompts.mid(0, 4));
    QVERIFY(bar.settle());
    QQuickItem *cards = bar.item(QStringLiteral("suggestionCards"));
    for (QQuickItem *card : bar.items(QStringLiteral("suggestionCard"))) {
        QCOMPARE(card->width(), (cards->width() - 3 * 10) / 4);
        QCOMPARE(card->height(), 80.0);
    }
}

REGISTER_TEST(tst_ConversationReplies, QGuiApplication)

#include "tst_ConversationReplies.moc"
