// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

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
#include <QSet>
#include <QTest>

#include <algorithm>
#include <iterator>
#include <memory>

using Scenes::Scene;

namespace
{

constexpr int s_manySteps = 100; // more than any tab order has

//! Types of controls and the roles that fit them.
const struct
{
    const char *type;
    QList<QAccessible::Role> roles;
} s_controls[] = {
    {"QQuickTabButton", {QAccessible::PageTab}},
    {"QQuickSwitch", {QAccessible::CheckBox}},
    {"QQuickAbstractButton", {QAccessible::Button, QAccessible::RadioButton}},
    {"QQuickTextField", {QAccessible::EditableText}},
    {"QQuickComboBox", {QAccessible::ComboBox}},
    {"QQuickSpinBox", {QAccessible::SpinBox}},
    {"QQuickSlider", {QAccessible::Slider}},
    {"QQuickScrollBar", {QAccessible::ScrollBar}},
    {"QQuickTabBar", {QAccessible::PageTabList}},
};

//! A row of a list, of which only the current one is in the tab order, as there may be a thousand.
bool isRow(const QQuickItem *item)
{
    static const QStringList s_rows = {QStringLiteral("messageRow"),   QStringLiteral("sessionRow"),
                                       QStringLiteral("planStep"),     QStringLiteral("modelRow"),
                                       QStringLiteral("freeCheckRow"), QStringLiteral("logRow"),
                                       QStringLiteral("voiceLogRow"),  QStringLiteral("testResultRow")};
    return s_rows.contains(item->objectName());
}

QList<QAccessible::Role> rolesOf(QQuickItem *item)
{
    if (item->objectName() == QLatin1String("messageList") || item->objectName() == QLatin1String("sessionList")) {
        return {QAccessible::List};
    }
    // The others are buttons.
    if (isRow(item) && !item->inherits("QQuickAbstractButton")) {
        return {QAccessible::ListItem};
    }
    if (item->objectName() == QLatin1String("usageRing") || item->objectName() == QLatin1String("submittedBar")) {
        return {QAccessible::ProgressBar};
    }
    if (item->objectName() == QLatin1String("connectionDot")) {
        return {QAccessible::Indicator};
    }
    for (const auto &control : s_controls) {
        if (item->inherits(control.type)) {
            return control.roles;
        }
    }
    return {};
}

//! An item as failure messages name it.
QString described(QQuickItem *item)
{
    return item ? QStringLiteral("%1 \"%2\" (%3)")
                      .arg(QString::fromLatin1(item->metaObject()->className()), item->property("text").toString(),
                           item->objectName())
                : QStringLiteral("nothing");
}

QString listed(const QList<QQuickItem *> &items)
{
    QStringList names;
    std::transform(items.cbegin(), items.cend(), std::back_inserter(names), described);
    return names.join(QStringLiteral(", "));
}

//! Everything that assistive technology finds from the window down.
void collect(QAccessibleInterface *accessible, QSet<QObject *> *found)
{
    if (!accessible) {
        return;
    }
    found->insert(accessible->object());
    for (int child = 0; child < accessible->childCount(); ++child) {
        collect(accessible->child(child), found);
    }
}

//! Visible controls and rows without a name, with a wrong role or out of reach for assistive technology.
QStringList faults(Conversation &bar)
{
    QStringList wrong;
    QSet<QObject *> reachable;
    collect(QAccessible::queryAccessibleInterface(bar.window()), &reachable);
    const auto seen = bar.itemsWhere(bar.window()->contentItem(), [](QQuickItem *item) {
        return OmniBarFixture::isSeen(item) && (item->activeFocusOnTab() || !rolesOf(item).isEmpty());
    });
    for (QQuickItem *item : seen) {
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(item);
        if (!accessible) {
            wrong.append(described(item) + QStringLiteral(" is unknown"));
            continue;
        }
        if (accessible->text(QAccessible::Name).trimmed().isEmpty()) {
            wrong.append(described(item) + QStringLiteral(" has no name"));
        }
        if (!rolesOf(item).contains(accessible->role())) {
            wrong.append(described(item) + QStringLiteral(" has the role %1").arg(accessible->role()));
        }
        if (!reachable.contains(item)) {
            wrong.append(described(item) + QStringLiteral(" is out of reach"));
        }
    }
    if (seen.isEmpty()) {
        wrong.append(QStringLiteral("there are no controls"));
    }
    return wrong;
}

//! Visible texts that assistive technology doesn't find.
QStringList inaccessibleTexts(Conversation &bar)
{
    QString accessibleTexts;
    QSet<QObject *> reachable;
    collect(QAccessible::queryAccessibleInterface(bar.window()), &reachable);
    for (QObject *object : qAsConst(reachable)) {
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(object);
        for (const QAccessible::Text text : {QAccessible::Name, QAccessible::Description, QAccessible::Value}) {
            accessibleTexts += accessible->text(text).simplified() + QLatin1Char('\n');
        }
    }
    QStringList missing;
    const auto texts = bar.itemsWhere(bar.window()->contentItem(), [](QQuickItem *item) {
        return item->inherits("QQuickText") && OmniBarFixture::isSeen(item)
            && item->objectName() != QLatin1String("words");
    });
    for (QQuickItem *item : texts) {
        const QString text =
            item->property("text").toString().remove(QStringLiteral("<b>")).remove(QStringLiteral("</b>")).simplified();
        // Named in words.
        const bool isThumb = text.startsWith(QStringLiteral("👍")) || text.startsWith(QStringLiteral("👎"));
        // A single character, such as the cross of a button, is no text.
        if (text.size() > 1 && !isThumb && !accessibleTexts.contains(text)) {
            missing.append(text);
        }
    }
    return missing;
}

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

//! Presses Tab, or Shift and Tab, until the focus is back where it was. All items on the way, beginning with that one;
//! empty if the focus never comes back.
QList<QQuickItem *> walk(Conversation &bar, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QQuickItem *start = bar.window()->activeFocusItem();
    QList<QQuickItem *> stops;
    do {
        stops.append(bar.window()->activeFocusItem());
        bar.key(modifiers & Qt::ShiftModifier ? Qt::Key_Backtab : Qt::Key_Tab, modifiers);
        if (stops.size() > s_manySteps) {
            return {};
        }
    } while (bar.window()->activeFocusItem() != start);
    return stops;
}

//! What is wrong with the tab order of the visible items.
QStringList tabOrderFaults(Conversation &bar)
{
    QStringList wrong;
    QQuickItem *start = bar.window()->activeFocusItem();
    QList<QQuickItem *> stops;
    for (int step = 0; step < s_manySteps && (step == 0 || bar.window()->activeFocusItem() != start); ++step) {
        QQuickItem *stop = bar.window()->activeFocusItem();
        if (!stop) {
            return {QStringLiteral("the focus is lost")};
        }
        stops.append(stop);
        if (!bar.isSeen(stop)) {
            wrong.append(described(stop) + QStringLiteral(" can't be seen"));
        }
        if (step > 0 && !showsFocus(bar, stop)) {
            wrong.append(described(stop) + QStringLiteral(" doesn't show its focus"));
        }
        bar.key(Qt::Key_Tab);
    }
    if (bar.window()->activeFocusItem() != start) {
        return {QStringLiteral("the focus never comes back")};
    }

    const auto usable = bar.itemsWhere(bar.window()->contentItem(), [](QQuickItem *item) {
        return OmniBarFixture::isSeen(item) && item->isEnabled() && !rolesOf(item).isEmpty()
            && !item->inherits("QQuickScrollBar") && !item->inherits("QQuickTabBar")
            && !isRow(item)
            // The input has the keys of the menu.
            && item->objectName() != QLatin1String("slashMenuRow")
            && item->objectName() != QLatin1String("connectionDot")
            && item->objectName() != QLatin1String("submittedBar");
    });
    for (QQuickItem *item : usable) {
        // A list is reached through its current row.
        if (std::any_of(stops.cbegin(), stops.cend(),
                        [item](QQuickItem *stop) { return isRow(stop) && item->isAncestorOf(stop); })) {
            continue;
        }
        QQuickItem *row = item->parentItem();
        while (row && !isRow(row)) {
            row = row->parentItem();
        }
        const bool inOtherRow = row && !row->property("current").toBool() && !stops.contains(item);
        if (!inOtherRow && !stops.contains(item)) {
            wrong.append(described(item) + QStringLiteral(" is not in the tab order"));
        }
    }

    // Backwards it is the same order in reverse.
    const QList<QQuickItem *> back = walk(bar, Qt::ShiftModifier);
    QList<QQuickItem *> forth = stops.mid(1);
    std::reverse(forth.begin(), forth.end());
    if (back != QList<QQuickItem *> {stops.first()} + forth) {
        wrong.append(QStringLiteral("the reverse order differs: ") + listed(back) + QStringLiteral(" against ")
                     + listed(QList<QQuickItem *> {stops.first()} + forth));
    }
    return wrong;
}

} // namespace

//! The OmniBar by keyboard and for assistive technology. One long file, because the tests share the walks through the
//! tree.
class tst_Accessibility : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void namesAndRoles_data()
    {
        Scenes::add();
        QTest::newRow("menu of commands") << Scene(Scenes::choosingACommand);
    }
    void namesAndRoles();
    void everyTextIsAccessible_data()
    {
        Scenes::add();
        QTest::newRow("menu of commands") << Scene(Scenes::choosingACommand);
    }
    void everyTextIsAccessible();
    void tabOrder_data() { Scenes::add(); }
    void tabOrder();
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

void tst_Accessibility::namesAndRoles()
{
    QFETCH(Scene, scene);

    Conversation &bar = m_window.take();
    ScriptedVoice &voice = *m_voice;
    voice.set("ttsAvailable", true);
    QVERIFY(bar.begin());
    QVERIFY(scene(bar));
    QVERIFY(bar.settle());
    const QStringList wrong = faults(bar);
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QStringLiteral("\n    "))));
}

void tst_Accessibility::everyTextIsAccessible()
{
    QFETCH(Scene, scene);

    Conversation &bar = m_window.take();
    ScriptedVoice &voice = *m_voice;
    voice.set("ttsAvailable", true);
    QVERIFY(bar.begin());
    QVERIFY(scene(bar));
    QVERIFY(bar.settle());
    const QStringList wrong = inaccessibleTexts(bar);
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QStringLiteral("\n    "))));
}

void tst_Accessibility::tabOrder()
{
    QFETCH(Scene, scene);

    Conversation &bar = m_window.take();
    ScriptedVoice &voice = *m_voice;
    voice.set("ttsAvailable", true);
    QVERIFY(bar.begin());
    QVERIFY(scene(bar));
    QVERIFY(bar.settle());
    const QStringList wrong = tabOrderFaults(bar);
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QStringLiteral("\n    "))));
}

void tst_Accessibility::escapeWorksEverywhere()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(Scenes::conversation(bar));
    QVERIFY(bar.settle());
    const int stops = walk(bar).size();
    QVERIFY(stops > 10);
    for (int stop = 0; stop < stops; ++stop) {
        for (int step = 0; step < stop; ++step) {
            bar.key(Qt::Key_Tab);
        }
        const QString where = described(bar.window()->activeFocusItem());
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
    const int stops = walk(bar).size();
    QVERIFY(stops > 5);
    for (int stop = 0; stop < stops; ++stop) {
        bar.setProperty("settingsPanelOpen", true);
        bar.item(QStringLiteral("inputField"))->forceActiveFocus();
        for (int step = 0; step < stop; ++step) {
            bar.key(Qt::Key_Tab);
        }
        const QString where = described(bar.window()->activeFocusItem());
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
    QTRY_VERIFY(bar.item(QStringLiteral("transparencySwitch")));
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
