// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AccessibleItems.h"
#include "AccessibleWalk.h"
#include "Conversation.h"
#include "Scenes.h"
#include "ScriptedVoice.h"

#include "AgentBridge.h"
#include "SharedWindow.h"
#include "TestRegistry.h"
#include "Timeouts.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QQmlProperty>
#include <QStyleHints>
#include <QTest>

#include <memory>

using Scenes::Scene;

namespace
{

constexpr int s_manySteps = 100; // more than any tab order has

//! Whether an item shows that it has the focus: by its ring, by a cursor, or as a row by the frame of its bubble.
bool showsFocus(Conversation &bar, QQuickItem *item)
{
    if (item->inherits("QQuickTextInput")) {
        return item->property("cursorVisible").toBool();
    }
    if (item->objectName() == QLatin1String("messageRow")) {
        QQuickItem *bubble = bar.itemIn(item, QStringLiteral("messageBubble"));
        return QQmlProperty::read(bubble, QStringLiteral("border.width")).toInt() == 2;
    }
    if (item->objectName() == QLatin1String("sessionRow")) {
        return QQmlProperty::read(item, QStringLiteral("background.border.width")).toInt() == 2;
    }
    if (item->objectName() == QLatin1String("compactBubble")) {
        return item->property("visualFocus").toBool();
    }
    const auto rings = bar.itemsWhere(bar.window()->contentItem(), [&](QQuickItem *ring) {
        if (!QString::fromLatin1(ring->metaObject()->className()).startsWith(QLatin1String("FocusRing"))) {
            return false;
        }
        auto *control = ring->property("control").value<QQuickItem *>();
        return OmniBarFixture::isSeen(ring) && (control == item || item->isAncestorOf(control));
    });
    return !rings.isEmpty();
}

} // namespace

//! The OmniBar by keyboard and for assistive technology.
class tst_Accessibility : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void walk_data() { Scenes::add(); }
    void walk();
    void menus_data();
    void menus();
    void escapeWorksEverywhere();
    void escapeClosesTheSheetFromEverywhere();
    void escapeClosesTheSessionsFromEverywhere();
    void rowsByKeys();
    void rowsOutOfSightByKeys();
    void returnAndSpaceClick();
    void pressByAssistiveTechnology();
    void statesAreAccessible();
    void clickLeavesTheCursorInThePrompt();
    void vanishingControlsLeaveTheFocusToThePrompt();

private:
    std::unique_ptr<ScriptedVoice> m_voice;
    SharedWindow<Conversation> m_window {[this](Conversation &bar) { m_voice = std::make_unique<ScriptedVoice>(bar); }};
};

void tst_Accessibility::initTestCase()
{
    QAccessible::setActive(true);
    // A cursor that blinks would look like a focus that comes and goes.
    QGuiApplication::styleHints()->setCursorFlashTime(0);
}

void tst_Accessibility::walk()
{
    QFETCH(Scene, scene);

    Conversation &bar = m_window.take();
    m_voice->set("ttsAvailable", true);
    QVERIFY(bar.begin());
    QVERIFY(scene(bar));
    QVERIFY(bar.settle());
    const QStringList wrong = AccessibleWalk::faults(bar.window());
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QStringLiteral("\n    "))));
}

void tst_Accessibility::menus_data()
{
    QTest::addColumn<Scene>("scene");
    Scenes::addMenus();
}

void tst_Accessibility::menus()
{
    QFETCH(Scene, scene);

    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(scene(bar));
    QVERIFY(bar.settle());
    // Without the tab order, because Tab chooses or closes.
    const QStringList wrong = AccessibleWalk::controlFaults(bar.window()) + AccessibleWalk::textFaults(bar.window());
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QStringLiteral("\n    "))));
}

void tst_Accessibility::escapeWorksEverywhere()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(Scenes::conversation(bar));
    QVERIFY(bar.settle());
    const int stops = AccessibleWalk::stops(bar.window()).size();
    QVERIFY(stops > 10);
    for (int stop = 0; stop < stops; ++stop) {
        for (int step = 0; step < stop; ++step) {
            bar.key(Qt::Key_Tab);
        }
        const QString where = AccessibleItems::described(bar.window()->activeFocusItem());
        bar.key(Qt::Key_Escape);
        QVERIFY2(bar.property("compactMode").toBool(), qPrintable(where));
        bar.key(Qt::Key_Return); // the bubble has the focus
        QVERIFY2(!bar.property("compactMode").toBool(), qPrintable(where));
        QTRY_VERIFY(bar.item(QStringLiteral("inputField"))->hasActiveFocus());
    }
}

void tst_Accessibility::escapeClosesTheSheetFromEverywhere()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.emitReply(QStringLiteral("what the sheet covers"));
    QVERIFY(bar.settle());
    QVERIFY(Scenes::settings(bar));
    QVERIFY(bar.settle());
    const int stops = AccessibleWalk::stops(bar.window()).size();
    QVERIFY(stops > 5);
    for (int stop = 0; stop < stops; ++stop) {
        bar.setProperty("settingsPanelOpen", true);
        bar.item(QStringLiteral("inputField"))->forceActiveFocus();
        for (int step = 0; step < stop; ++step) {
            bar.key(Qt::Key_Tab);
        }
        const QString where = AccessibleItems::described(bar.window()->activeFocusItem());
        bar.key(Qt::Key_Escape);
        QVERIFY2(!bar.property("settingsPanelOpen").toBool(), qPrintable(where));
        QVERIFY2(!bar.property("compactMode").toBool(), qPrintable(where));
        QVERIFY2(bar.window()->activeFocusItem() && bar.isSeen(bar.window()->activeFocusItem()), qPrintable(where));
    }
}

void tst_Accessibility::escapeClosesTheSessionsFromEverywhere()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(Scenes::sessions(bar));
    QVERIFY(bar.settle());
    QQuickItem *input = bar.item(QStringLiteral("inputField"));
    QQuickItem *popup = bar.item(QStringLiteral("sessionPopup"));
    int inside = 0;
    for (int stop = 0; stop < s_manySteps; ++stop) {
        bar.setProperty("slashSessionPopupVisible", true);
        input->forceActiveFocus();
        for (int step = 0; step < stop; ++step) {
            bar.key(Qt::Key_Backtab, Qt::ShiftModifier);
        }
        const QQuickItem *focused = bar.window()->activeFocusItem();
        if (focused != input && !popup->isAncestorOf(focused)) {
            break;
        }
        inside += focused == input ? 0 : 1;
        bar.key(Qt::Key_Escape);
        QVERIFY(!bar.property("slashSessionPopupVisible").toBool());
        QVERIFY(!bar.property("compactMode").toBool());
        QTRY_VERIFY(input->hasActiveFocus());
    }
    QCOMPARE(inside, 4); // a row and its button, and two buttons above
}

void tst_Accessibility::rowsByKeys()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.emitReply(QStringLiteral("first answer"));
    bar.emitReply(QStringLiteral("second answer"));
    bar.emitReply(QStringLiteral("third answer"));
    QTRY_VERIFY(bar.rowItem(2));
    QVERIFY(bar.settle());
    QQuickItem *list = bar.item(QStringLiteral("messageList"));
    for (int step = 0; step < s_manySteps && !list->hasActiveFocus(); ++step) {
        bar.key(Qt::Key_Tab);
    }
    QVERIFY(list->hasActiveFocus());
    QCOMPARE(list->property("currentIndex").toInt(), 2);
    bar.key(Qt::Key_Up);
    QCOMPARE(list->property("currentIndex").toInt(), 1);
    bar.key(Qt::Key_Up);
    bar.key(Qt::Key_Up);
    QCOMPARE(list->property("currentIndex").toInt(), 0);
    bar.key(Qt::Key_Down);
    QCOMPARE(list->property("currentIndex").toInt(), 1);
    QVERIFY(showsFocus(bar, bar.rowItem(1)));

    bar.key(Qt::Key_Tab);
    QVERIFY(bar.inRow(1, "copyBtn")->hasActiveFocus());
    bar.key(Qt::Key_Return);
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("second answer"));
    bar.key(Qt::Key_Tab);
    QVERIFY(bar.inRow(1, "thumbUpBtn")->hasActiveFocus());
    bar.key(Qt::Key_Enter);
    QCOMPARE(
        bar.bridge.takeRequest(QStringLiteral("messageFeedback")).params.value(QStringLiteral("messageIndex")).toInt(),
        1);
    bar.key(Qt::Key_Tab);
    QVERIFY(bar.inRow(1, "thumbDownBtn")->hasActiveFocus());
    bar.key(Qt::Key_Space);
    QCOMPARE(bar.field(1, "feedbackVote").toString(), QStringLiteral("down"));
    // Back from the buttons to the rows.
    for (int step = 0; step < 3; ++step) {
        bar.key(Qt::Key_Backtab, Qt::ShiftModifier);
    }
    QVERIFY(list->hasActiveFocus());
    QCOMPARE(list->property("currentIndex").toInt(), 1);
}

void tst_Accessibility::rowsOutOfSightByKeys()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    for (int i = 0; i < 40; ++i) {
        bar.emitReply(QStringLiteral("Answer %1.\n\n").arg(i).repeated(1 + i % 4));
    }
    QTRY_VERIFY(bar.rowItem(39));
    QVERIFY(bar.settle());
    QQuickItem *list = bar.item(QStringLiteral("messageList"));
    for (int step = 0; step < s_manySteps && !list->hasActiveFocus(); ++step) {
        bar.key(Qt::Key_Tab);
    }
    for (int row = 38; row >= 20; --row) {
        bar.key(Qt::Key_Up);
        QCOMPARE(list->property("currentIndex").toInt(), row);
    }
    QVERIFY(bar.settle());
    QTRY_VERIFY(bar.place(list).contains(bar.place(bar.inRow(20, "messageBubble"))));
    bar.key(Qt::Key_Tab);
    QVERIFY(bar.inRow(20, "copyBtn")->hasActiveFocus());
    // The current row stays in sight when the list grows at its end.
    bar.agent()->sendIntent(QStringLiteral("from elsewhere"));
    QTRY_COMPARE(bar.item(QStringLiteral("thinkingIndicator"))->height(), 40.0);
    QVERIFY(bar.settle());
    QVERIFY(bar.place(list).contains(bar.place(bar.inRow(20, "messageBubble"))));
    // A new reply leaves the focus alone.
    bar.emitReply(QStringLiteral("news"));
    QVERIFY(bar.settle());
    QVERIFY(bar.window()->activeFocusItem());
    QVERIFY(bar.window()->activeFocusItem() != bar.item(QStringLiteral("inputField")));
}

void tst_Accessibility::returnAndSpaceClick()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.settle());
    QQuickItem *button = bar.item(QStringLiteral("settingsBtn"));
    for (int step = 0; step < s_manySteps && !button->hasActiveFocus(); ++step) {
        bar.key(Qt::Key_Tab);
    }
    bool open = false;
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space, Qt::Key_Enter}) {
        bar.key(key);
        open = !open;
        QCOMPARE(bar.property("settingsPanelOpen").toBool(), open);
    }
}

void tst_Accessibility::pressByAssistiveTechnology()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    const auto press = [](QQuickItem *item, const QString &action) {
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(item);
        QAccessibleActionInterface *actions = accessible ? accessible->actionInterface() : nullptr;
        if (!actions || !actions->actionNames().contains(action)) {
            return false;
        }
        actions->doAction(action);
        return true;
    };
    const QString pressAction = QAccessibleActionInterface::pressAction();
    const QString toggleAction = QAccessibleActionInterface::toggleAction();
    QVERIFY(press(bar.item(QStringLiteral("settingsBtn")), pressAction));
    QVERIFY(bar.property("settingsPanelOpen").toBool());
    QVERIFY(bar.openTab(QStringLiteral("Look")));
    QVERIFY(press(bar.item(QStringLiteral("transparencySwitch")), toggleAction));
    QCOMPARE(bar.evaluate(QStringLiteral("omniBar.appearanceStore.translucentBackground")).toBool(), false);
    QVERIFY(press(bar.item(QStringLiteral("lightSegment")), pressAction));
    QCOMPARE(bar.evaluate(QStringLiteral("omniBar.appearanceStore.lightChrome")).toBool(), true);
    bar.setProperty("settingsPanelOpen", false);

    bar.emitReply(QStringLiteral("answer"));
    QTRY_VERIFY(bar.inRow(0, "copyBtn"));
    QVERIFY(press(bar.inRow(0, "copyBtn"), pressAction));
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("answer"));
    QVERIFY(press(bar.inRow(0, "thumbUpBtn"), pressAction) || press(bar.inRow(0, "thumbUpBtn"), toggleAction));
    QCOMPARE(bar.field(0, "feedbackVote").toString(), QStringLiteral("up"));
    QVERIFY(press(bar.suggestion(QStringLiteral("Run again")), pressAction));
    bar.bridge.takeRequest(QStringLiteral("chat"));
    QTRY_VERIFY(bar.item(QStringLiteral("stopBtn")));
    QVERIFY(press(bar.item(QStringLiteral("stopBtn")), pressAction));
    bar.bridge.takeRequest(QStringLiteral("cancel"));
    bar.invoke("shrinkToCompactBubble");
    QVERIFY(press(bar.item(QStringLiteral("compactBubble")), pressAction));
    QVERIFY(!bar.property("compactMode").toBool());
}

void tst_Accessibility::statesAreAccessible()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    const auto accessible = [](QQuickItem *item) { return QAccessible::queryAccessibleInterface(item); };

    QVERIFY(accessible(bar.item(QStringLiteral("inputField")))->state().focused);
    QVERIFY(accessible(bar.item(QStringLiteral("inputField")))->state().editable);
    QVERIFY(Scenes::settings(bar));
    QVERIFY(accessible(bar.item(QStringLiteral("darkSegment")))->state().checked);
    QVERIFY(!accessible(bar.item(QStringLiteral("lightSegment")))->state().checked);
    QVERIFY(accessible(bar.item(QStringLiteral("transparencySwitch")))->state().checkable);
    QVERIFY(accessible(bar.item(QStringLiteral("transparencySwitch")))->state().checked);
    QAccessibleValueInterface *value = accessible(bar.item(QStringLiteral("opacitySlider")))->valueInterface();
    QVERIFY(value);
    QCOMPARE(value->currentValue().toReal(), 1.0);
    QCOMPARE(value->minimumValue().toReal(), 0.65);
    bar.setProperty("settingsPanelOpen", false);

    bar.invoke("appendUserMessage", {QStringLiteral("a question")});
    bar.emitReply(QStringLiteral("an **answer**"));
    QTRY_VERIFY(bar.rowItem(1));
    QVERIFY(accessible(bar.rowItem(0))->text(QAccessible::Name).startsWith(QStringLiteral("You, ")));
    QVERIFY(accessible(bar.rowItem(0))->text(QAccessible::Name).endsWith(QStringLiteral(": a question")));
    QVERIFY(accessible(bar.rowItem(1))->text(QAccessible::Name).endsWith(QStringLiteral(": an **answer**")));
    bar.invoke("voteMessage", {1, QStringLiteral("up")});
    QVERIFY(accessible(bar.inRow(1, "thumbUpBtn"))->state().checked);
    QVERIFY(!accessible(bar.inRow(1, "thumbDownBtn"))->state().checked);
    QCOMPARE(accessible(bar.item(QStringLiteral("connectionDot")))->text(QAccessible::Name),
             QStringLiteral("Connected"));
    bar.ask();
    QTRY_COMPARE(accessible(bar.item(QStringLiteral("connectionDot")))->text(QAccessible::Name),
                 QStringLiteral("Thinking…"));
}

void tst_Accessibility::clickLeavesTheCursorInThePrompt()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(Scenes::conversation(bar));
    QVERIFY(bar.settle());
    QQuickItem *input = bar.item(QStringLiteral("inputField"));
    bar.click(bar.inRow(2, "copyBtn"));
    QVERIFY(input->hasActiveFocus());
    bar.click(QStringLiteral("expandBtn"));
    QVERIFY(input->hasActiveFocus());
    bar.click(QStringLiteral("settingsBtn"));
    bar.click(QStringLiteral("settingsBtn"));
    QVERIFY(input->hasActiveFocus());
}

void tst_Accessibility::vanishingControlsLeaveTheFocusToThePrompt()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.settle());
    QQuickItem *input = bar.item(QStringLiteral("inputField"));
    const auto goTo = [&](QQuickItem *item) {
        for (int step = 0; step < s_manySteps && item && !item->hasActiveFocus(); ++step) {
            bar.key(Qt::Key_Tab);
        }
        return item && item->hasActiveFocus();
    };

    // An idle card.
    QVERIFY(goTo(bar.textItem(QStringLiteral("Open\nWindows"))->parentItem()->parentItem()->parentItem()));
    bar.key(Qt::Key_Return);
    auto request = bar.bridge.takeRequest(QStringLiteral("chat"));
    QTRY_VERIFY(input->hasActiveFocus());

    // The stop button.
    QTRY_VERIFY(bar.isSeen(bar.item(QStringLiteral("stopBtn"))));
    QVERIFY(goTo(bar.item(QStringLiteral("stopBtn"))));
    bar.key(Qt::Key_Return);
    QTRY_VERIFY(input->hasActiveFocus());

    // A suggestion.
    QTRY_COMPARE(bar.suggestions().size(), 4);
    QVERIFY(bar.settle());
    QVERIFY(goTo(bar.suggestion(QStringLiteral("Run again"))));
    bar.key(Qt::Key_Return);
    request = bar.bridge.takeRequest(QStringLiteral("chat"));
    QTRY_VERIFY(input->hasActiveFocus());

    // The send button.
    QVERIFY(bar.answer(request, QStringLiteral("fine")));
    bar.type(QStringLiteral("by button"));
    QVERIFY(goTo(bar.item(QStringLiteral("sendBtn"))));
    bar.key(Qt::Key_Return);
    request = bar.bridge.takeRequest(QStringLiteral("chat"));
    QTRY_VERIFY(input->hasActiveFocus());
}

REGISTER_TEST(tst_Accessibility, QGuiApplication)

#include "tst_Accessibility.moc"
