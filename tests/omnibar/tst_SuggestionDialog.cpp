// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AssistantWindow.h"
#include "Looks.h"
#include "Presses.h"
#include "SharedWindow.h"
#include "TestRegistry.h"

#include <QAccessible>
#include <QFont>
#include <QGuiApplication>
#include <QTest>

namespace
{

QJsonObject action(const QString &id, const QString &label)
{
    return {{text("id"), id}, {text("label"), label}};
}

QJsonObject suggestion()
{
    return {{text("title"), text("Prepare “Focus — Development”?")},
            {text("body"), text("You often open the text editor and the terminal at this time.")},
            {text("suggestionId"), text("sug_1")},
            {text("actions"),
             QJsonArray {action(text("prepare"), text("Prepare now")), action(text("dismiss"), text("Not now"))}}};
}

QJsonObject with(const char *key, const QJsonValue &value)
{
    QJsonObject notification = suggestion();
    notification.insert(text(key), value);
    return notification;
}

} // namespace

//! The dialog with a workspace suggestion.
class tst_SuggestionDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void geometryAndWords();
    void looks_data();
    void looks();
    void narrowScreen();
    void actions_data();
    void actions();
    void closes_data();
    void closes();
    void escapeClosesItFirst();
    void onlyAClickOutsideClosesIt();
    void focusGoesInAndBack();
    void typingPressesNothing();
    void tabStaysInside();
    void accessibleNames();
    void withoutBodyOrActions();
    void newerSuggestion();
    void waitsWhileTheWindowIsABubble();
    void longBodyScrolls();
    void brokenNotifications_data();
    void brokenNotifications();
    void hostileTexts();

private:
    //! Shows a suggestion and waits for the dialog.
    bool show(AssistantWindow &bar, const QJsonObject &notification = suggestion());
    static QQuickItem *panel(AssistantWindow &bar);
    static bool isShown(AssistantWindow &bar) { return bar.isSeen(bar.item("suggestionTitle")); }
    static bool isInside(AssistantWindow &bar, QQuickItem *item) { return item && panel(bar)->isAncestorOf(item); }
    static QQuickItem *button(AssistantWindow &bar, int index) { return bar.items("suggestionAction").value(index); }

    SharedWindow<AssistantWindow> m_window;
};

bool tst_SuggestionDialog::show(AssistantWindow &bar, const QJsonObject &notification)
{
    bar.suggest(notification);
    return QTest::qWaitFor([&] { return isShown(bar); }) && bar.settle();
}

//! The dialog's frame: the background is beside the content.
QQuickItem *tst_SuggestionDialog::panel(AssistantWindow &bar)
{
    return bar.item("suggestionTitle")->parentItem()->parentItem();
}

void tst_SuggestionDialog::geometryAndWords()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(!isShown(bar));
    QVERIFY(show(bar));
    const QRectF place = bar.place(panel(bar));
    QCOMPARE(place.width(), 440.0);
    QVERIFY(qAbs(place.center().x() - 640) <= 1);
    QVERIFY(qAbs(place.center().y() - 400) <= 1);
    QCOMPARE(AssistantWindow::textsIn(panel(bar)),
             QStringList({text("Prepare “Focus — Development”?"),
                          text("You often open the text editor and the terminal at this time."), text("Prepare now"),
                          text("Not now")}));
    QQuickItem *title = bar.item("suggestionTitle");
    QQuickItem *body = bar.item("suggestionBody");
    QCOMPARE(title->property("font").value<QFont>().pointSize(), 12);
    QVERIFY(title->property("font").value<QFont>().bold());
    QCOMPARE(body->property("font").value<QFont>().pointSize(), 10);
    // Padding and spacing.
    QCOMPARE(bar.place(title).left(), place.left() + 16);
    QCOMPARE(bar.place(title).top(), place.top() + 16);
    QCOMPARE(bar.place(body).top(), bar.place(title).bottom() + 12);
}

void tst_SuggestionDialog::looks_data()
{
    QTest::addColumn<bool>("light");

    QTest::newRow("dark") << false;
    QTest::newRow("light") << true;
}

void tst_SuggestionDialog::looks()
{
    QFETCH(bool, light);

    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.setLight(light);
    bar.invoke("appendUserMessage", {text("hello")});
    QVERIFY(show(bar));
    bar.screenshot(QStringLiteral("suggestion-") + QString::fromLatin1(QTest::currentDataTag()));
    const auto frames = bar.itemsWhere(panel(bar), [](QQuickItem *item) {
        return item->inherits("QQuickRectangle") && item->property("radius").toDouble() == 14;
    });
    QCOMPARE(frames.size(), 1);
    QCOMPARE(colourOf(frames.first()), light ? rgba(0.94, 0.95, 0.97, 0.96) : rgba(0.08, 0.09, 0.11, 0.90));
    QCOMPARE(colourOf(frames.first(), "border.color"), light ? rgba(0, 0, 0, 0.14) : rgba(1, 1, 1, 0.13));
    QCOMPARE(colourOf(bar.item("suggestionTitle")), light ? rgba(0.06, 0.07, 0.10, 0.95) : rgba(1, 1, 1, 0.9));
    // It follows the theme while it is open.
    bar.setLight(!light);
    QCOMPARE(colourOf(frames.first()), light ? rgba(0.08, 0.09, 0.11, 0.90) : rgba(0.94, 0.95, 0.97, 0.96));
}

void tst_SuggestionDialog::narrowScreen()
{
    AssistantWindow &bar = m_window.renew();
    QVERIFY(bar.begin());
    bar.evaluate("surface.screens = [{ 'width': 400, 'height': 300 }]");
    QVERIFY(bar.settle());
    QVERIFY(show(bar, with("body", text("words ").repeated(500))));
    QCOMPARE(bar.place(panel(bar)).width(), 352.0);
    QVERIFY(bar.place(panel(bar)).height() <= 300);
    QVERIFY(bar.isSeen(button(bar, 0)));
}

void tst_SuggestionDialog::actions_data()
{
    QTest::addColumn<By>("by");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("id");

    for (const auto &way : waysToPress) {
        QTest::addRow("first, %s", way.name) << way.by << 0 << text("prepare");
    }
    QTest::newRow("second") << By::Mouse << 1 << text("dismiss");
}

void tst_SuggestionDialog::actions()
{
    QFETCH(By, by);
    QFETCH(int, index);
    QFETCH(QString, id);

    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(show(bar));
    press(bar, button(bar, index), by);
    QCOMPARE(bar.sdk().takeCalls(),
             QStringList(text("applyWorkspaceSuggestionAction(%1, %2)").arg(id, AssistantWindow::json(suggestion()))));
    QCOMPARE(bar.property("workspaceSuggestionDialogOpen").toBool(), false);
    QVERIFY(bar.settle());
    QVERIFY(!isShown(bar));
}

void tst_SuggestionDialog::closes_data()
{
    QTest::addColumn<QString>("how");

    for (const char *how : {"Escape", "Escape on a button", "click outside"}) {
        QTest::newRow(how) << text(how);
    }
}

void tst_SuggestionDialog::closes()
{
    QFETCH(QString, how);

    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    // Twice: it can be opened again.
    for (int round = 0; round < 2; ++round) {
        QVERIFY(show(bar));
        QCOMPARE(bar.property("workspaceSuggestionDialogOpen").toBool(), true);
        if (how == text("Escape on a button")) {
            bar.focus(button(bar, 1));
        }
        if (how == text("click outside")) {
            bar.clickAt({40, 400});
        } else {
            bar.key(Qt::Key_Escape);
        }
        QCOMPARE(bar.property("workspaceSuggestionDialogOpen").toBool(), false);
        QVERIFY(bar.settle());
        QVERIFY(!isShown(bar));
        QCOMPARE(bar.sdk().takeCalls(), QStringList());
        QCOMPARE(bar.property("compactMode").toBool(), false);
    }
}

void tst_SuggestionDialog::escapeClosesItFirst()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.openTab());
    QVERIFY(show(bar));
    bar.key(Qt::Key_Escape);
    QVERIFY(bar.settle());
    QVERIFY(!isShown(bar));
    QCOMPARE(bar.property("settingsPanelOpen").toBool(), true);
    bar.key(Qt::Key_Escape);
    QCOMPARE(bar.property("settingsPanelOpen").toBool(), false);
    QCOMPARE(bar.property("compactMode").toBool(), false);
    // A click beside the dialog does nothing else either.
    QVERIFY(bar.openTab());
    QVERIFY(show(bar));
    bar.clickAt({40, 400});
    QVERIFY(bar.settle());
    QCOMPARE(bar.property("settingsPanelOpen").toBool(), true);
}

void tst_SuggestionDialog::onlyAClickOutsideClosesIt()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(show(bar));
    const QRectF place = bar.place(panel(bar));
    for (const QPointF point : {place.topLeft() + QPointF(2, 2), place.bottomRight() - QPointF(3, 3)}) {
        bar.clickAt(point.toPoint());
        QVERIFY(isShown(bar));
    }
    bar.clickAt((place.topLeft() - QPointF(2, 2)).toPoint());
    QTRY_VERIFY(!isShown(bar));
}

void tst_SuggestionDialog::focusGoesInAndBack()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.item("inputField")->hasActiveFocus());
    QVERIFY(show(bar));
    QVERIFY(isInside(bar, bar.window()->activeFocusItem()));
    // It stays inside.
    bar.item("inputField")->forceActiveFocus();
    QTRY_VERIFY(isInside(bar, bar.window()->activeFocusItem()));
    bar.key(Qt::Key_Escape);
    QTRY_VERIFY(bar.item("inputField")->hasActiveFocus());
    // To a control of the sheet too.
    QVERIFY(bar.openTab());
    bar.focus(bar.inTemplate(1, "templateSwitch"));
    QVERIFY(show(bar));
    QVERIFY(isInside(bar, bar.window()->activeFocusItem()));
    bar.click(button(bar, 1));
    QTRY_VERIFY(bar.inTemplate(1, "templateSwitch")->hasActiveFocus());
}

//! The dialog may appear while the user is typing.
void tst_SuggestionDialog::typingPressesNothing()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.type("half a");
    QVERIFY(show(bar));
    bar.type(" prompt");
    bar.key(Qt::Key_Return);
    QVERIFY(isShown(bar));
    QCOMPARE(bar.sdk().takeCalls(), QStringList());
    QCOMPARE(bar.property("inputField.text").toString(), text("half a"));
    QCOMPARE(bar.count(), 0);
}

void tst_SuggestionDialog::tabStaysInside()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(show(bar));
    QList<QQuickItem *> stops;
    for (int i = 0; i < 5; ++i) {
        bar.key(Qt::Key_Tab);
        stops.append(bar.window()->activeFocusItem());
        QVERIFY(isInside(bar, stops.last()));
    }
    QCOMPARE(stops.first(), button(bar, 0));
    QCOMPARE(stops.at(1), button(bar, 1));
    bar.focus(button(bar, 0));
    bar.key(Qt::Key_Backtab, Qt::ShiftModifier);
    QVERIFY(isInside(bar, bar.window()->activeFocusItem()));
}

void tst_SuggestionDialog::accessibleNames()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(show(bar));
    QAccessibleInterface *dialog = QAccessible::queryAccessibleInterface(bar.item("suggestionTitle")->parentItem());
    QVERIFY(dialog);
    QCOMPARE(dialog->role(), QAccessible::Dialog);
    QCOMPARE(dialog->text(QAccessible::Name), text("Prepare “Focus — Development”?"));
    QCOMPARE(dialog->text(QAccessible::Description),
             text("You often open the text editor and the terminal at this time."));
    QAccessibleInterface *first = QAccessible::queryAccessibleInterface(button(bar, 0));
    QCOMPARE(first->role(), QAccessible::Button);
    QCOMPARE(first->text(QAccessible::Name), text("Prepare now"));
}

void tst_SuggestionDialog::withoutBodyOrActions()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(show(bar, with("body", text(""))));
    QVERIFY(!bar.isSeen(bar.item("suggestionBody")));
    const qreal height = panel(bar)->height();
    QVERIFY(show(bar, QJsonObject {{text("title"), text("News")}}));
    QCOMPARE(bar.items("suggestionAction").size(), 0);
    QVERIFY(panel(bar)->height() < height);
    bar.key(Qt::Key_Escape);
    QVERIFY(bar.settle());
    QVERIFY(!isShown(bar));
}

void tst_SuggestionDialog::newerSuggestion()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(show(bar));
    const QJsonObject newer = with("title", text("Another"));
    bar.suggest(newer);
    QVERIFY(bar.settle());
    QCOMPARE(bar.textOf("suggestionTitle"), text("Another"));
    bar.click(button(bar, 0));
    QCOMPARE(bar.sdk().takeCalls(),
             QStringList(text("applyWorkspaceSuggestionAction(prepare, %1)").arg(AssistantWindow::json(newer))));
}

void tst_SuggestionDialog::waitsWhileTheWindowIsABubble()
{
    AssistantWindow &bar = m_window.renew();
    QVERIFY(bar.begin());
    bar.invoke("shrinkToCompactBubble");
    QVERIFY(bar.settle());
    bar.suggest(suggestion());
    QVERIFY(bar.settle());
    QVERIFY(!isShown(bar));
    bar.click("compactBubble");
    QVERIFY(bar.settle());
    QVERIFY(isShown(bar));
    QTRY_VERIFY(isInside(bar, bar.window()->activeFocusItem()));
    // An action that collapses the window doesn't lose it.
    bar.invoke("shrinkToCompactBubble");
    QVERIFY(bar.settle());
    QVERIFY(!isShown(bar));
    bar.invoke("expandFromBubble");
    QVERIFY(bar.settle());
    QVERIFY(isShown(bar));
}

void tst_SuggestionDialog::longBodyScrolls()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(show(bar, with("body", text("word\n").repeated(200))));
    QQuickItem *pane = bar.item("suggestionBodyPane");
    QVERIFY(pane->property("interactive").toBool());
    const QRectF place = bar.place(panel(bar));
    QVERIFY(place.top() >= 0 && place.bottom() <= 800);
    QVERIFY(bar.isSeen(button(bar, 0)) && place.contains(bar.place(button(bar, 0))));
    bar.screenshot("suggestion-long");
    bar.key(Qt::Key_Tab);
    QVERIFY(pane->hasActiveFocus());
    const auto position = [&] { return pane->property("contentY").toDouble(); };
    const double end = pane->property("contentHeight").toDouble() - pane->height();
    bar.key(Qt::Key_Down);
    QCOMPARE(position(), 24.0);
    bar.key(Qt::Key_Up);
    QCOMPARE(position(), 0.0);
    bar.key(Qt::Key_PageDown);
    QCOMPARE(position(), pane->height());
    bar.key(Qt::Key_End);
    QCOMPARE(position(), end);
    bar.key(Qt::Key_PageDown);
    QCOMPARE(position(), end);
    bar.key(Qt::Key_Home);
    QCOMPARE(position(), 0.0);
    bar.key(Qt::Key_Tab);
    QVERIFY(button(bar, 0)->hasActiveFocus());
}

void tst_SuggestionDialog::brokenNotifications_data()
{
    QTest::addColumn<QString>("json");
    QTest::addColumn<bool>("warns");

    QTest::newRow("empty") << QString() << false;
    QTest::newRow("broken") << text("{\"title\":") << true;
    QTest::newRow("no object") << text("5") << true;
}

void tst_SuggestionDialog::brokenNotifications()
{
    QFETCH(QString, json);
    QFETCH(bool, warns);

    const QString warning = text("[OmniBar] workspace suggestion dialog JSON parse failed:");
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.sdk().emitSignal("workspaceSuggestionShowInAppDialog", json);
    QVERIFY(bar.settle());
    QVERIFY(!isShown(bar));
    const QStringList warnings = bar.takeWarnings();
    QCOMPARE(warnings.size(), warns ? 1 : 0);
    QVERIFY(!warns || warnings.first().startsWith(warning));
}

void tst_SuggestionDialog::hostileTexts()
{
    const QString words = text("<img src='file:///nowhere/x.png'><b>R&D</b> %1\n") + text("W").repeated(100000);
    QJsonArray many;
    for (int i = 0; i < 1000; ++i) {
        many.append(action(words, words));
    }
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QJsonObject notification = with("title", words);
    notification.insert(text("body"), words);
    notification.insert(text("actions"), many);
    QVERIFY(show(bar, notification));
    const QRectF place = bar.place(panel(bar));
    QCOMPARE(place.width(), 440.0);
    QVERIFY(place.top() >= 0 && place.bottom() <= 800);
    QCOMPARE(bar.items("suggestionAction").size(), 8);
    const auto texts = bar.itemsWhere(panel(bar), [](QQuickItem *item) { return item->inherits("QQuickText"); });
    for (QQuickItem *item : texts) {
        QCOMPARE(item->property("textFormat").toInt(), int(Qt::PlainText));
        QVERIFY(bar.place(item).right() <= place.right() - 16);
    }
    bar.screenshot("suggestion-hostile");
    // All buttons are reached.
    for (int i = 0; i < 8; ++i) {
        bar.focus(button(bar, i));
        QTRY_VERIFY(place.contains(bar.place(button(bar, i))));
    }
    bar.key(Qt::Key_Return);
    QVERIFY(bar.sdk().takeCalls().value(0).startsWith(text("applyWorkspaceSuggestionAction(") + words));
}

REGISTER_TEST(tst_SuggestionDialog, QGuiApplication)

#include "tst_SuggestionDialog.moc"
