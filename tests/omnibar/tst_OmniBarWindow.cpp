// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ScriptedVoice.h"

#include "AgentBridge.h"
#include "OmniBarFixture.h"
#include "TestRegistry.h"
#include "TestSetup.h"

#include <QFile>
#include <QGuiApplication>
#include <QQmlContext>
#include <QQmlExpression>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

namespace
{

// On a display of 1280 x 800.
constexpr QRect s_screen(0, 0, 1280, 800);
constexpr QRect s_bubble(1280 - 56 - 20, 20, 56, 56);

QString tool(const char *name)
{
    return QString::fromLatin1(name);
}

//! The bridge reports a tool that was run. Returns when the client has received it.
bool announceTool(OmniBarFixture &bar, const QString &name)
{
    QSignalSpy received(bar.agent(), &AgentBridge::actionStarted);
    bar.bridge.event(QStringLiteral("tool.executed"), {{QStringLiteral("tool"), name}});
    return QTest::qWaitFor([&] { return !received.isEmpty(); });
}

bool collapse(OmniBarFixture &bar)
{
    bar.invoke("shrinkToCompactBubble");
    return bar.settle() && QTest::qWaitFor([&] { return bar.window()->geometry() == s_bubble; });
}

//! The window left the bubble as if by the user's own hand, and then fills the screen with the focus in the prompt.
void verifyExpandedByHand(OmniBarFixture &bar)
{
    QCOMPARE(bar.property("compactMode").toBool(), false);
    QCOMPARE(bar.property("userExpanded").toBool(), true);
    QTRY_VERIFY(bar.item("inputField")->hasActiveFocus());
    QVERIFY(bar.settle());
    QTRY_COMPARE(bar.window()->geometry(), s_screen);
}

} // namespace

//! The window itself: what it is, where it is, and how it changes between its surface states. One long file, to have
//! all transitions between the states in one place. Each test has its own window, because most of them leave it in the
//! bubble, minimised or closed.
class tst_OmniBarWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isATransparentDialogOnTop();
    void coversTheScreen();
    void takesTheFocus();
    void opacityIsClamped_data();
    void opacityIsClamped();
    void storesItsLook();
    void entranceIsAnimated();

    void bubbleBeforeTheFirstFrame();
    void shrinksInItsCorner();
    void escapeCollapses();
    void clickOnTheBubbleExpands();
    void keysOnTheBubbleExpand_data();
    void keysOnTheBubbleExpand();
    void bubbleStaysWhereNothingRuns();
    void bubbleStopsWhatRuns();
    void actionCollapses_data();
    void actionCollapses();
    void userExpandedKeepsItOpen();
    void wakeWordExpands();
    void anyWayOutOfTheBubbleCountsAsTheUsers();
    void minimiseButton();
    void wakeWordRestoresAMinimisedWindow();
    void chatExpandedSurvivesTheBubble();
    void closeButtonFadesAndCloses_data();
    void closeButtonFadesAndCloses();
    void showsAgainAfterHiding();
    void ignoresDeactivation();

    void escapeWithAModifierIsEscape();
    void focusSurvivesDeactivation();
    void escapeChain_data();
    void escapeChain();
    void escapeOutsideTheInput();

    void blurIsOnlyAskedForWhenTranslucent();
};

void tst_OmniBarWindow::isATransparentDialogOnTop()
{
    OmniBarFixture bar;
    QVERIFY(bar.open());
    const Qt::WindowFlags flags = bar.window()->flags();
    QCOMPARE(flags & Qt::WindowType_Mask, Qt::WindowFlags(Qt::Dialog));
    QVERIFY(flags.testFlag(Qt::WindowStaysOnTopHint));
    QVERIFY(flags.testFlag(Qt::FramelessWindowHint));
    QCOMPARE(int(flags), int(Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint | Qt::Dialog));
    QCOMPARE(bar.window()->color(), QColor(Qt::transparent));
    QVERIFY(bar.window()->isVisible());
}

void tst_OmniBarWindow::coversTheScreen()
{
    OmniBarFixture bar;
    QVERIFY(bar.open());
    QTRY_COMPARE(bar.window()->geometry(), s_screen);
    QCOMPARE(bar.property("compactMode").toBool(), false);
    bar.screenshot("idle");
}

void tst_OmniBarWindow::takesTheFocus()
{
    OmniBarFixture bar;
    QVERIFY(bar.open());
    QVERIFY(bar.window()->isActive());
    QVERIFY(bar.item("inputField")->hasActiveFocus());
    bar.type("grüß");
    QCOMPARE(bar.property("inputField.text").toString(), QStringLiteral("grüß"));
}

void tst_OmniBarWindow::opacityIsClamped_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<double>("shown");

    QTest::newRow("nothing stored") << QVariant() << 1.0;
    QTest::newRow("too faint") << QVariant(0.2) << 0.65;
    QTest::newRow("negative") << QVariant(-1) << 0.65;
    QTest::newRow("lower limit") << QVariant(0.65) << 0.65;
    QTest::newRow("between") << QVariant(0.8) << 0.8;
    QTest::newRow("upper limit") << QVariant(1.0) << 1.0;
    QTest::newRow("too much") << QVariant(1.5) << 1.0;
    QTest::newRow("words") << QVariant(QStringLiteral("a lot")) << 1.0;
    QTest::newRow("nothing but the key") << QVariant(QString()) << 1.0;
    QTest::newRow("no number") << QVariant(QStringLiteral("nan")) << 1.0;
    QTest::newRow("list") << QVariant(QStringList {QStringLiteral("0.7"), QStringLiteral("0.8")}) << 1.0;
}

void tst_OmniBarWindow::opacityIsClamped()
{
    QFETCH(QVariant, stored);
    QFETCH(double, shown);

    OmniBarFixture bar;
    if (stored.isValid()) {
        bar.store("windowOpacity", stored);
    }
    QVERIFY(bar.open());
    QTRY_COMPARE(bar.property("windowFade").toDouble(), 1.0);
    QTRY_COMPARE(bar.window()->opacity(), shown);
}

void tst_OmniBarWindow::storesItsLook()
{
    {
        OmniBarFixture bar;
        QVERIFY(bar.open());
        QCOMPARE(bar.property("appearanceStore.windowOpacity").toDouble(), 1.0);
        QCOMPARE(bar.property("appearanceStore.lightChrome").toBool(), false);
        QCOMPARE(bar.property("appearanceStore.translucentBackground").toBool(), true);
        QCOMPARE(bar.property("appearanceStore.category").toString(), QStringLiteral("appearance"));
        bar.evaluate("appearanceStore.windowOpacity = 0.75, appearanceStore.lightChrome = true,"
                     " appearanceStore.translucentBackground = false");
    }
    const QSettings file(TestSetup::settingsFile(), QSettings::IniFormat);
    QVERIFY(QFile::exists(TestSetup::settingsFile()));
    QCOMPARE(file.value(QStringLiteral("appearance/windowOpacity")).toDouble(), 0.75);
    QCOMPARE(file.value(QStringLiteral("appearance/lightChrome")).toBool(), true);
    QCOMPARE(file.value(QStringLiteral("appearance/translucentBackground")).toString(), QStringLiteral("false"));

    OmniBarFixture bar;
    bar.store("windowOpacity", 0.75);
    bar.store("lightChrome", true);
    bar.store("translucentBackground", false);
    QVERIFY(bar.open());
    QTRY_COMPARE(bar.window()->opacity(), 0.75);
    QCOMPARE(bar.evaluate("omniTheme.uiLight").toBool(), true);
    QCOMPARE(bar.evaluate("omniTheme.translucentBackground").toBool(), false);
}

void tst_OmniBarWindow::entranceIsAnimated()
{
    OmniBarFixture bar;
    auto *window = qobject_cast<QQuickWindow *>(bar.load(QStringLiteral("OmniBar.qml")));
    QVERIFY(window);
    // Nothing was drawn yet: both animations are at their start.
    auto *container = window->findChild<QQuickItem *>(QStringLiteral("rootContainer"));
    QVERIFY(container);
    QVERIFY2(window->opacity() < 0.5, qPrintable(QString::number(window->opacity())));
    QVERIFY2(container->scale() < 0.98, qPrintable(QString::number(container->scale())));
    QTRY_COMPARE(window->opacity(), 1.0);
    QTRY_COMPARE(container->scale(), 1.0);

    const auto part = [&](int index) {
        QQmlExpression expression(qmlContext(container), container,
                                  QStringLiteral("entrance.animations[%1]").arg(index));
        return OmniBarFixture::animationSpec(expression.evaluate().value<QObject *>());
    };
    QCOMPARE(part(0), QStringLiteral("160 OutCubic"));
    QCOMPARE(part(1), QStringLiteral("220 OutBack"));
}

void tst_OmniBarWindow::bubbleBeforeTheFirstFrame()
{
    OmniBarFixture bar;
    auto *window = qobject_cast<QQuickWindow *>(bar.load(QStringLiteral("OmniBar.qml")));
    QVERIFY(window);
    bar.invoke("shrinkToCompactBubble");
    const auto bubble = [&] { return OmniBarFixture::itemIn(window->contentItem(), QStringLiteral("compactBubble")); };
    QTRY_VERIFY(bubble());
    QTRY_VERIFY(bubble()->hasActiveFocus());
}

void tst_OmniBarWindow::shrinksInItsCorner()
{
    OmniBarFixture bar;
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    // Compared before events are processed, because the window manager may move a large window.
    bar.invoke("shrinkToCompactBubble");
    QCOMPARE(bar.window()->position(), s_bubble.topLeft());
    QCOMPARE(bar.window()->width(), s_screen.width());
    QVERIFY(bar.settle());
    QTRY_COMPARE(bar.window()->geometry(), s_bubble);
}

void tst_OmniBarWindow::escapeCollapses()
{
    OmniBarFixture bar;
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    bar.setProperty("userExpanded", true);
    bar.key(Qt::Key_Escape);
    QCOMPARE(bar.property("compactMode").toBool(), true);
    QCOMPARE(bar.property("userExpanded").toBool(), false);
    QVERIFY(bar.settle());
    QTRY_COMPARE(bar.window()->geometry(), s_bubble);
    QCOMPARE(bar.behaviour(bar.window(), "width"), QStringLiteral("400 OutCubic"));
    QCOMPARE(bar.behaviour(bar.window(), "height"), QStringLiteral("400 OutCubic"));
    QCOMPARE(bar.behaviour(bar.item("rootContainer"), "scale"), QStringLiteral("350 OutCubic"));
    QCOMPARE(bar.behaviour(bar.item("rootContainer"), "opacity"), QStringLiteral("350 OutCubic"));
    QCOMPARE(bar.behaviour(bar.item("compactBubble"), "opacity"), QStringLiteral("350 OutCubic"));
    QCOMPARE(bar.behaviour(bar.item("compactBubble"), "scale"), QStringLiteral("350 OutBack"));

    QCOMPARE(bar.item("rootContainer")->scale(), 0.0);
    QCOMPARE(bar.item("rootContainer")->opacity(), 0.0);
    QVERIFY(bar.isSeen(bar.item("compactBubble")));
    QCOMPARE(bar.item("compactBubble")->scale(), 1.0);
    QCOMPARE(bar.place(bar.item("compactBubble")), QRectF(0, 0, 56, 56));
    QCOMPARE(bar.item("unreadBadge")->isVisible(), false);
    bar.screenshot("bubble");
}

void tst_OmniBarWindow::clickOnTheBubbleExpands()
{
    OmniBarFixture bar;
    QVERIFY(bar.open());
    bar.type("half a prompt");
    QVERIFY(collapse(bar));
    bar.click("compactBubble");
    verifyExpandedByHand(bar);
    QCOMPARE(bar.item("rootContainer")->scale(), 1.0);
    QCOMPARE(bar.item("rootContainer")->opacity(), 1.0);
    QVERIFY(!bar.isSeen(bar.item("compactBubble")));
    QVERIFY(bar.window()->isActive());
    bar.type(" more");
    QCOMPARE(bar.property("inputField.text").toString(), QStringLiteral("half a prompt more"));
}

void tst_OmniBarWindow::keysOnTheBubbleExpand_data()
{
    QTest::addColumn<int>("key");

    QTest::newRow("return") << int(Qt::Key_Return);
    QTest::newRow("enter") << int(Qt::Key_Enter);
    QTest::newRow("space") << int(Qt::Key_Space);
}

void tst_OmniBarWindow::keysOnTheBubbleExpand()
{
    QFETCH(int, key);

    OmniBarFixture bar;
    QVERIFY(bar.open());
    QVERIFY(collapse(bar));
    QVERIFY(bar.item("compactBubble")->hasActiveFocus());
    bar.type("x"); // the bubble ignores text
    bar.key(Qt::Key(key));
    QCOMPARE(bar.property("compactMode").toBool(), false);
    QCOMPARE(bar.property("userExpanded").toBool(), true);
    QTRY_VERIFY(bar.item("inputField")->hasActiveFocus());
    QCOMPARE(bar.property("inputField.text").toString(), QString());
}

void tst_OmniBarWindow::bubbleStaysWhereNothingRuns()
{
    OmniBarFixture bar;
    QVERIFY(bar.open());
    QVERIFY(collapse(bar));
    bar.key(Qt::Key_Escape);
    QVERIFY(bar.settle());
    QCOMPARE(bar.property("compactMode").toBool(), true);
    QTRY_COMPARE(bar.window()->geometry(), s_bubble);
    QVERIFY(bar.bridge.isAllTaken());
}

void tst_OmniBarWindow::bubbleStopsWhatRuns()
{
    OmniBarFixture bar;
    QVERIFY(bar.open());
    bar.type("do it");
    bar.key(Qt::Key_Return);
    bar.bridge.takeRequest(QStringLiteral("chat"));
    QVERIFY(collapse(bar));
    QVERIFY(bar.item("thinkingGlow"));
    bar.key(Qt::Key_Escape);
    QCOMPARE(bar.bridge.takeRequest().method, QStringLiteral("cancel"));
    QCOMPARE(bar.agent()->isThinking(), false);
    QCOMPARE(bar.property("compactMode").toBool(), true);
}

void tst_OmniBarWindow::actionCollapses_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<bool>("collapses");

    QTest::newRow("launch") << tool("kde_launch_app") << true;
    QTest::newRow("hyphens") << tool("kde-launch-app") << true;
    QTest::newRow("wallpaper") << tool("KDE_SET_WALLPAPER") << true;
    QTest::newRow("another tool") << tool("kde_get_volume") << false;
}

void tst_OmniBarWindow::actionCollapses()
{
    QFETCH(QString, action);
    QFETCH(bool, collapses);

    OmniBarFixture bar;
    QVERIFY(bar.open());
    QVERIFY(announceTool(bar, action));
    QCOMPARE(bar.property("compactMode").toBool(), collapses);
    QCOMPARE(bar.property("userExpanded").toBool(), false);
    QVERIFY(bar.settle());
    QTRY_COMPARE(bar.window()->geometry(), collapses ? s_bubble : s_screen);
}

void tst_OmniBarWindow::userExpandedKeepsItOpen()
{
    OmniBarFixture bar;
    QVERIFY(bar.open());
    QVERIFY(collapse(bar));
    bar.click("compactBubble");
    QVERIFY(announceTool(bar, tool("kde_launch_app")));
    QCOMPARE(bar.property("compactMode").toBool(), false);

    // Escape ends that.
    QVERIFY(bar.settle());
    bar.key(Qt::Key_Escape);
    QCOMPARE(bar.property("compactMode").toBool(), true);
    QCOMPARE(bar.property("userExpanded").toBool(), false);
}

void tst_OmniBarWindow::wakeWordExpands()
{
    OmniBarFixture bar;
    ScriptedVoice voice(bar);
    QVERIFY(bar.open());
    QVERIFY(collapse(bar));
    voice.emitSignal("wakeWordActivated", QStringLiteral("tovi"));
    verifyExpandedByHand(bar);
}

void tst_OmniBarWindow::anyWayOutOfTheBubbleCountsAsTheUsers()
{
    OmniBarFixture bar;
    QVERIFY(bar.open());
    QVERIFY(collapse(bar));
    bar.setProperty("compactMode", false);
    verifyExpandedByHand(bar);
}

void tst_OmniBarWindow::minimiseButton()
{
    OmniBarFixture bar;
    QVERIFY(bar.open());
    bar.invoke("appendUserMessage", {QStringLiteral("hello")});
    QTRY_VERIFY(bar.item("minimiseBtn"));
    QVERIFY(bar.settle());
    bar.setProperty("userExpanded", true);
    bar.click("minimiseBtn");
    QTRY_COMPARE(bar.window()->windowState(), Qt::WindowMinimized);
    QCOMPARE(bar.property("compactMode").toBool(), false);
    QCOMPARE(bar.property("userExpanded").toBool(), false);
    QCOMPARE(bar.property("chatModel.count").toInt(), 1);
}

void tst_OmniBarWindow::wakeWordRestoresAMinimisedWindow()
{
    OmniBarFixture bar;
    ScriptedVoice voice(bar);
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    bar.invoke("minimise");
    QTRY_VERIFY(!bar.window()->isExposed());
    voice.emitSignal("wakeWordActivated", QStringLiteral("tovi"));
    QTRY_VERIFY(bar.window()->isExposed());
    QVERIFY(QTest::qWaitForWindowActive(bar.window()));
    QCOMPARE(bar.window()->windowState(), Qt::WindowNoState);
    QTRY_COMPARE(bar.window()->geometry(), s_screen);
}

void tst_OmniBarWindow::chatExpandedSurvivesTheBubble()
{
    OmniBarFixture bar;
    QVERIFY(bar.open());
    bar.invoke("appendUserMessage", {QStringLiteral("hello")});
    QTRY_VERIFY(bar.item("expandBtn"));
    QVERIFY(bar.settle());
    const qreal lowHeight = bar.item("chatPanel")->height();
    bar.click("expandBtn");
    QVERIFY(bar.settle());
    QCOMPARE(bar.property("chatExpanded").toBool(), true);
    const qreal tallHeight = bar.item("chatPanel")->height();
    QVERIFY(tallHeight > lowHeight);

    QVERIFY(collapse(bar));
    QCOMPARE(bar.property("chatExpanded").toBool(), true);
    bar.click("compactBubble");
    QVERIFY(bar.settle());
    QCOMPARE(bar.property("chatExpanded").toBool(), true);
    QCOMPARE(bar.item("chatPanel")->height(), tallHeight);
    bar.click("expandBtn");
    QVERIFY(bar.settle());
    QCOMPARE(bar.property("chatExpanded").toBool(), false);
    QCOMPARE(bar.item("chatPanel")->height(), lowHeight);
}

void tst_OmniBarWindow::closeButtonFadesAndCloses_data()
{
    QTest::addColumn<QString>("button");

    QTest::newRow("bar") << QStringLiteral("barCloseBtn");
    QTest::newRow("chat header") << QStringLiteral("closeBtn");
}

void tst_OmniBarWindow::closeButtonFadesAndCloses()
{
    QFETCH(QString, button);

    OmniBarFixture bar;
    QVERIFY(bar.open());
    bar.invoke("appendUserMessage", {QStringLiteral("hello")});
    QTRY_VERIFY(bar.item(button));
    QVERIFY(bar.settle());

    // In this order: fade, scale, close.
    QStringList steps;
    connect(bar.window(), &QWindow::opacityChanged, this, [&] {
        if (bar.property("windowFade").toDouble() == 0.0 && !steps.contains(QStringLiteral("faded"))) {
            steps << QStringLiteral("faded");
        }
    });
    QQuickItem *container = bar.item("rootContainer");
    connect(container, &QQuickItem::scaleChanged, this, [&] {
        if (!steps.contains(QStringLiteral("scaling"))) {
            steps << QStringLiteral("scaling");
        }
        if (qFuzzyCompare(container->scale(), 0.96)) {
            steps << QStringLiteral("scaled");
        }
    });
    connect(bar.window(), &QWindow::visibleChanged, this, [&] { steps << QStringLiteral("closed"); });
    QCOMPARE(bar.animationSpec(bar.evaluate("closing.animations[0]").value<QObject *>()), QStringLiteral("120 Linear"));
    QCOMPARE(bar.animationSpec(bar.evaluate("closing.animations[1]").value<QObject *>()), QStringLiteral("120 Linear"));
    bar.click(button);
    QVERIFY(bar.window()->isVisible());
    QTRY_VERIFY(!bar.window()->isVisible());
    QCOMPARE(steps,
             QStringList({QStringLiteral("faded"), QStringLiteral("scaling"), QStringLiteral("scaled"),
                          QStringLiteral("closed")}));
}

void tst_OmniBarWindow::showsAgainAfterHiding()
{
    OmniBarFixture bar;
    QVERIFY(bar.open());
    bar.invoke("startClosing");
    QTRY_VERIFY(!bar.window()->isVisible());
    QCOMPARE(bar.property("windowFade").toDouble(), 0.0);
    bar.window()->show();
    QCOMPARE(bar.property("windowFade").toDouble(), 1.0);
    QCOMPARE(bar.window()->opacity(), 1.0);
    QVERIFY(QTest::qWaitForWindowActive(bar.window()));
    QVERIFY(bar.item("inputField")->hasActiveFocus());
    // Closing left the container a little smaller; it gets its size back.
    QTRY_COMPARE(bar.item("rootContainer")->scale(), 1.0);
}

void tst_OmniBarWindow::ignoresDeactivation()
{
    OmniBarFixture bar;
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    QWindow other;
    other.setGeometry(100, 100, 200, 200);
    other.show();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QVERIFY(bar.settle());
    QVERIFY(!bar.window()->isActive());
    QVERIFY(bar.window()->isVisible());
    QCOMPARE(bar.property("compactMode").toBool(), false);
    QTRY_COMPARE(bar.window()->geometry(), s_screen);
    QVERIFY(bar.window()->flags().testFlag(Qt::WindowStaysOnTopHint));
}

void tst_OmniBarWindow::escapeWithAModifierIsEscape()
{
    OmniBarFixture bar;
    QVERIFY(bar.open());
    bar.setProperty("slashMenuVisible", true);
    bar.key(Qt::Key_Escape, Qt::ShiftModifier);
    QCOMPARE(bar.property("slashMenuVisible").toBool(), false);
    QCOMPARE(bar.property("compactMode").toBool(), false);
    bar.key(Qt::Key_Escape, Qt::ShiftModifier);
    QCOMPARE(bar.property("compactMode").toBool(), true);
}

void tst_OmniBarWindow::focusSurvivesDeactivation()
{
    OmniBarFixture bar;
    QVERIFY(bar.open());
    bar.click("settingsBtn");
    QTRY_VERIFY(bar.item("lightSegment"));
    bar.evaluate("surface.screens = [{ 'width': 1280, 'height': 240 }]");
    QVERIFY(bar.settle());
    bar.focus(bar.item("lightSegment"));
    QVERIFY(bar.settle());
    // Nor does the sheet scroll back to the focus.
    QQuickItem *pane = bar.item("settingsScrollPane");
    const qreal end = pane->property("contentHeight").toReal() - pane->height();
    QVERIFY(pane->property("contentY").toReal() < end);
    pane->setProperty("contentY", end);
    {
        QWindow other;
        other.setGeometry(100, 100, 200, 200);
        other.show();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        QVERIFY(bar.settle());
        QVERIFY(!bar.window()->isActive());
    }
    bar.window()->requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(bar.window()));
    QVERIFY(bar.settle());
    QVERIFY(bar.item("lightSegment")->hasActiveFocus());
    QCOMPARE(pane->property("contentY").toReal(), end);
}

void tst_OmniBarWindow::escapeChain_data()
{
    // What Escape can close, nearest first. One Escape closes just the first that is open; last of all the window
    // collapses.
    QTest::addColumn<bool>("fromInput");

    QTest::newRow("key in the input") << true;
    QTest::newRow("function") << false;
}

void tst_OmniBarWindow::escapeChain()
{
    QFETCH(bool, fromInput);

    struct Step
    {
        const char *name;
        const char *begin; // JavaScript
        const char *isOn; // the same
        bool onlyInput; // only Escape in the input closes it
    };
    const QList<Step> steps = {
        {"slash menu", "slashMenuVisible = true", "slashMenuVisible", true},
        {"session popup", "slashSessionPopupVisible = true", "slashSessionPopupVisible", true},
        {"suggestion dialog", "workspaceSuggestionDialogOpen = true", "workspaceSuggestionDialogOpen", false},
        {"settings", "settingsPanelOpen = true", "settingsPanelOpen", false},
        {"voice confirmation", "voiceConfirmPending = true", "voiceConfirmPending", false},
        {"query", "planRequestInFlight = true", "planRequestInFlight", false},
    };
    const int dialog = 2;
    const int combinations = 1 << steps.size();

    OmniBarFixture bar;
    QVERIFY(bar.open());
    for (int combination = 0; combination < combinations; ++combination) {
        const auto isOpen = [&](int step) { return (combination & (1 << step)) != 0; };
        bar.setProperty("compactMode", false);
        QString open;
        int expected = -1;
        for (int i = 0; i < steps.size(); ++i) {
            if (!isOpen(i)) {
                continue;
            }
            bar.evaluate(steps.at(i).begin);
            open += QLatin1String(steps.at(i).name) + QStringLiteral(", ");
            if (expected < 0 && (fromInput || !steps.at(i).onlyInput)) {
                expected = i;
            }
        }
        if (isOpen(dialog)) {
            expected = dialog; // is modal, so that the input can't have the focus
        }
        if (fromInput) {
            if (!isOpen(dialog)) {
                bar.focus(bar.item("inputField"));
            }
            bar.key(Qt::Key_Escape);
        } else {
            bar.invoke("handleEscapeKey");
        }
        for (int i = 0; i < steps.size(); ++i) {
            const bool remains = isOpen(i) && i != expected;
            const QString what = open + QStringLiteral("-> ") + QLatin1String(steps.at(i).name);
            QVERIFY2(bar.evaluate(steps.at(i).isOn).toBool() == remains, qPrintable(what));
        }
        QVERIFY2(bar.property("compactMode").toBool() == (expected < 0), qPrintable(open));
        bar.evaluate("workspaceSuggestionDialogOpen = false, settingsPanelOpen = false, voiceConfirmPending = false,"
                     " planRequestInFlight = false, slashMenuVisible = false, slashSessionPopupVisible = false");
    }
}

void tst_OmniBarWindow::escapeOutsideTheInput()
{
    OmniBarFixture bar;
    QVERIFY(bar.open());
    // From a button Escape reaches the root container, which doesn't close the slash menu.
    bar.setProperty("slashMenuVisible", true);
    bar.setProperty("settingsPanelOpen", true);
    bar.focus(bar.item("settingsBtn"));
    QVERIFY(bar.item("settingsBtn")->hasActiveFocus());
    bar.key(Qt::Key_Escape);
    QCOMPARE(bar.property("slashMenuVisible").toBool(), true);
    QCOMPARE(bar.property("settingsPanelOpen").toBool(), false);
    QCOMPARE(bar.property("compactMode").toBool(), false);
    bar.key(Qt::Key_Escape);
    QCOMPARE(bar.property("compactMode").toBool(), true);
}

void tst_OmniBarWindow::blurIsOnlyAskedForWhenTranslucent()
{
    OmniBarFixture bar;
    QVERIFY(bar.open());
    // There is no compositor here, and this version of Plasma has no such function: the call must do no harm.
    bar.invoke("applyWindowBlurBehind");
    bar.evaluate("appearanceStore.translucentBackground = false");
    bar.invoke("applyWindowBlurBehind");
    QVERIFY(bar.settle());
    bar.screenshot("opaque");
    QCOMPARE(bar.takeWarnings(), QStringList());
}

REGISTER_TEST(tst_OmniBarWindow, QGuiApplication)

#include "tst_OmniBarWindow.moc"
