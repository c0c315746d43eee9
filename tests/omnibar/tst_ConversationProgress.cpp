// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Conversation.h"

#include "AgentBridge.h"
#include "SharedWindow.h"
#include "TestRegistry.h"

#include <QGuiApplication>
#include <QTest>

namespace
{

void reportStep(Conversation &bar, const QString &capability, int index, int total)
{
    bar.bridge.event(QStringLiteral("plan.step"),
                     {{QStringLiteral("index"), index},
                      {QStringLiteral("total"), total},
                      {QStringLiteral("capabilityId"), capability},
                      {QStringLiteral("phase"), QStringLiteral("start")}});
}

//! The text of the indicator at the end of the conversation.
QString shownLabel(Conversation &bar)
{
    QQuickItem *label = bar.item(QStringLiteral("phaseLabel"));
    return Conversation::isSeen(label) ? label->property("text").toString() : QString();
}

//! The tooltip of the connection dot.
QString tip(QQuickItem *dot)
{
    return dot->property("look").toMap().value(QStringLiteral("tip")).toString();
}

} // namespace

//! What the window shows between a prompt and its reply, and how a request is stopped.
class tst_ConversationProgress : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void thinkingIndicator();
    void indicatorInPhases_data();
    void indicatorInPhases();
    void steps();
    void labelOutlivesItsPhase();
    void labelIsShownByTheDot();
    void stopLeavesAPlanAlone();
    void stopByKeyboard();
    void escapeStopsBoth();
    void usageRing();
    void usageRingIsFull();

private:
    SharedWindow<Conversation> m_window;
};

void tst_ConversationProgress::thinkingIndicator()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QQuickItem *indicator = bar.item(QStringLiteral("thinkingIndicator"));
    QVERIFY(indicator);
    QCOMPARE(indicator->height(), 0.0);

    const auto request = bar.ask();
    QTRY_COMPARE(indicator->height(), 40.0);
    QVERIFY(bar.settle());
    QVERIFY(bar.isSeen(indicator));
    QCOMPARE(shownLabel(bar), QStringLiteral("Thinking…"));
    QVERIFY(!bar.isSeen(bar.item(QStringLiteral("stepBadge"))));
    // Below the last row, inside the list.
    QVERIFY(bar.place(indicator).top() >= bar.place(bar.rowItem(0)).bottom());
    QVERIFY(bar.place(bar.item(QStringLiteral("messageList"))).contains(bar.place(indicator)));

    QVERIFY(bar.answer(request, QStringLiteral("done")));
    QTRY_COMPARE(indicator->height(), 0.0);
    QVERIFY(!bar.isSeen(indicator));
}

void tst_ConversationProgress::indicatorInPhases_data()
{
    QTest::addColumn<QString>("phase");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("dot");

    QTest::newRow("creating") << QStringLiteral("creating") << QStringLiteral("Planning…")
                              << QStringLiteral("#fff59e0b");
    QTest::newRow("executing") << QStringLiteral("executing") << QStringLiteral("Executing…")
                               << QStringLiteral("#ff4ade80");
    QTest::newRow("another") << QStringLiteral("verifying") << QStringLiteral("verifying")
                             << QStringLiteral("#ff8b5cf6");
    QTest::newRow("routing") << QStringLiteral("routing") << QStringLiteral("Planner") << QStringLiteral("#ff8b5cf6");
}

void tst_ConversationProgress::indicatorInPhases()
{
    QFETCH(QString, phase);
    QFETCH(QString, label);
    QFETCH(QString, dot);

    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.ask();
    if (phase == QLatin1String("routing")) {
        bar.bridge.event(QStringLiteral("agent.routed"), {{QStringLiteral("agent"), QStringLiteral("planner")}});
    } else {
        bar.reportPhase(phase);
    }
    QTRY_COMPARE(shownLabel(bar), label);
    QTRY_COMPARE(bar.color(bar.item(QStringLiteral("phaseDot"))), dot);
}

void tst_ConversationProgress::steps()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.ask();
    reportStep(bar, QStringLiteral("theme.apply"), 0, 1);
    QTRY_COMPARE(shownLabel(bar), QStringLiteral("Running “Apply theme”…"));
    QQuickItem *badge = bar.item(QStringLiteral("stepBadge"));
    QVERIFY(!bar.isSeen(badge));

    reportStep(bar, QStringLiteral("kde.own_thing"), 1, 3);
    QTRY_COMPARE(shownLabel(bar), QStringLiteral("Running “kde own thing” (2/3)…"));
    // The badge is for the execution of a plan.
    QVERIFY(!bar.isSeen(badge));
    bar.reportPhase(QStringLiteral("executing"));
    QTRY_VERIFY(bar.isSeen(badge));
    QCOMPARE(bar.textsIn(badge), QStringList {QStringLiteral("2/3")});
}

void tst_ConversationProgress::labelOutlivesItsPhase()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    auto *hold = bar.object(QStringLiteral("phaseLabelHoldTimer"));
    QVERIFY(hold);
    QCOMPARE(hold->property("interval").toInt(), 1200);

    const auto request = bar.ask();
    bar.reportPhase(QStringLiteral("executing"));
    QTRY_COMPARE(bar.property("activePhaseLabel").toString(), QStringLiteral("Executing…"));
    QVERIFY(bar.answer(request, QStringLiteral("done")));
    QCOMPARE(bar.property("activePhaseLabel").toString(), QStringLiteral("Executing…"));
    QVERIFY(hold->property("running").toBool());
    QTRY_COMPARE(bar.property("activePhaseLabel").toString(), QString());
    QVERIFY(!hold->property("running").toBool());
}

void tst_ConversationProgress::labelIsShownByTheDot()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QQuickItem *dot = bar.item(QStringLiteral("connectionDot"));
    QCOMPARE(tip(dot), QStringLiteral("Connected"));
    bar.ask();
    bar.reportPhase(QStringLiteral("creating"));
    QTRY_COMPARE(tip(dot), QStringLiteral("Planning…"));
}

void tst_ConversationProgress::stopLeavesAPlanAlone()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.ask();
    bar.setProperty("planRequestInFlight", true);
    QTRY_VERIFY(bar.isSeen(bar.item(QStringLiteral("stopBtn"))));
    QVERIFY(bar.settle());
    bar.click(QStringLiteral("stopBtn"));
    bar.bridge.takeRequest(QStringLiteral("cancel"));
    QTRY_COMPARE(bar.rows().last(), QStringLiteral("assistant: _Stopped._"));
    QVERIFY(bar.property("planRequestInFlight").toBool());
    QVERIFY(bar.invoke("isQueryProcessing").toBool());
}

void tst_ConversationProgress::stopByKeyboard()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.ask();
    QTRY_VERIFY(bar.isSeen(bar.item(QStringLiteral("stopBtn"))));
    QVERIFY(bar.settle());
    for (int steps = 0; steps < 50 && bar.window()->activeFocusItem() != bar.item(QStringLiteral("stopBtn")); ++steps) {
        bar.key(Qt::Key_Tab);
    }
    QVERIFY(bar.item(QStringLiteral("stopBtn"))->hasActiveFocus());
    bar.key(Qt::Key_Return);
    bar.bridge.takeRequest(QStringLiteral("cancel"));
    QTRY_COMPARE(bar.rows().last(), QStringLiteral("assistant: _Stopped._"));
}

void tst_ConversationProgress::escapeStopsBoth()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.ask();
    bar.setProperty("planRequestInFlight", true);
    bar.setProperty("pendingChatAfterPlan", QStringLiteral("later"));
    bar.key(Qt::Key_Escape);
    bar.bridge.takeRequest(QStringLiteral("cancel"));
    QTRY_COMPARE(bar.rows().last(), QStringLiteral("assistant: _Stopped._"));
    QVERIFY(!bar.property("planRequestInFlight").toBool());
    QCOMPARE(bar.property("pendingChatAfterPlan").toString(), QString());
    QVERIFY(!bar.invoke("isQueryProcessing").toBool());
    QVERIFY(!bar.property("compactMode").toBool());
}

void tst_ConversationProgress::usageRing()
{
    Conversation &bar = m_window.renew();
    QVERIFY(bar.begin());
    QVERIFY(!bar.item(QStringLiteral("usageRing")));
    const QJsonObject usage {{QStringLiteral("inputTokens"), 1000}, {QStringLiteral("outputTokens"), 234}};
    QVERIFY(bar.exchange(QStringLiteral("a"), QStringLiteral("b"), {{QStringLiteral("usage"), usage}}));
    QVERIFY(bar.exchange(QStringLiteral("c"), QStringLiteral("d"), {{QStringLiteral("usage"), usage}}));
    QTRY_VERIFY(bar.isSeen(bar.item(QStringLiteral("usageRing"))));
    QQuickItem *ring = bar.item(QStringLiteral("usageRing"));
    QCOMPARE(bar.property("sessionUsageTotal").toInt(), 2468);
    QCOMPARE(ring->property("progress").toReal(), 2468 / 50000.0);
    QCOMPARE(ring->property("tip").toString(), QStringLiteral("Input: 2000 · Output: 468 · Total: 2468"));
    QCOMPARE(ring->width(), 28.0);
}

void tst_ConversationProgress::usageRingIsFull()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    Q_EMIT bar.agent()->usageReported(70000, 1);
    QTRY_VERIFY(bar.item(QStringLiteral("usageRing")));
    QCOMPARE(bar.property("usageProgress").toReal(), 1.0);
}

REGISTER_TEST(tst_ConversationProgress, QGuiApplication)

#include "tst_ConversationProgress.moc"
