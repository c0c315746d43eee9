// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "OmniBarFixture.h"
#include "SharedWindow.h"
#include "TestRegistry.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTest>

#include <memory>
#include <vector>

namespace
{

//! The geometry of the window on a screen, in pixels. The strip below the bar is 20 high.
struct Layout
{
    QSize screen;
    int idleY; // of the bar: 58 above the middle
    int busyY; // 76 above the lower edge
    int budget; // the screen without 110, minimum 260
    int lowLimit; // 68 % of the screen, maximum 780 and the budget
    int tallLimit; // the budget, maximum 1200
    int lowPanel; // the limit, minimum 260
    int tallPanel;
};

constexpr Layout s_layouts[] = {
    {{1024, 300}, 92, 224, 260, 204, 260, 260, 260},
    {{1280, 720}, 302, 644, 610, 490, 610, 490, 610},
    {{1280, 800}, 342, 724, 690, 544, 690, 544, 690},
    {{3840, 2160}, 1022, 2084, 2050, 780, 1200, 780, 1200},
};

const Layout &layoutHere()
{
    const QSize size = QGuiApplication::primaryScreen()->size();
    const auto *found = std::find_if(std::begin(s_layouts), std::end(s_layouts),
                                     [&](const Layout &layout) { return layout.screen == size; });
    if (found == std::end(s_layouts)) {
        qFatal("no figures for a screen of %d x %d", size.width(), size.height());
    }
    return *found;
}

bool say(OmniBarFixture &bar, const char *words)
{
    bar.invoke("appendUserMessage", {QString::fromUtf8(words)});
    return QTest::qWaitFor([&] { return bar.item("chatPanel") != nullptr; }) && bar.settle();
}

} // namespace

//! Where everything is. Runs on displays of several sizes.
class tst_OmniBarGeometry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void windowAndLimits();
    void bubbleCorner();
    void barMovesWhenBusy();
    void barIsIdle_data();
    void barIsIdle();
    void chatPanelIsAboveTheBar();
    void chatPanelIsVisible_data();
    void chatPanelIsVisible();
    void chatPanelGrowsWhenExpanded();
    void chatPanelComesInSmoothly();
    void chatPanelIsThereAtOnce_data();
    void chatPanelIsThereAtOnce();
    void columnOfThePanel();
    void everyPartOfTheColumnCounts();
    void suggestionsOfALowPanelAreReached();
    void stripBelowTheBar_data();
    void stripBelowTheBar();
    void withoutAScreen();
    void tinyScreen();

private:
    SharedWindow<OmniBarFixture> m_window;
};

void tst_OmniBarGeometry::windowAndLimits()
{
    const Layout &layout = layoutHere();
    OmniBarFixture &bar = m_window.renew();
    QVERIFY(bar.open());
    QCOMPARE(bar.property("screenWidth").toDouble(), double(layout.screen.width()));
    QCOMPARE(bar.property("screenHeight").toDouble(), double(layout.screen.height()));
    QTRY_COMPARE(bar.window()->geometry(), QRect(QPoint(), layout.screen));
    QCOMPARE(bar.property("chatHeightBudget").toInt(), layout.budget);
    QCOMPARE(bar.property("chatMaxHeight").toInt(), layout.lowLimit);
    bar.setProperty("chatExpanded", true);
    QCOMPARE(bar.property("chatMaxHeight").toInt(), layout.tallLimit);
}

void tst_OmniBarGeometry::bubbleCorner()
{
    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    bar.invoke("shrinkToCompactBubble");
    QVERIFY(bar.settle());
    QTRY_COMPARE(bar.window()->geometry(), QRect(layoutHere().screen.width() - 76, 20, 56, 56));
    // It goes back after something moved it.
    bar.window()->setPosition(5, 5);
    bar.invoke("positionBubble");
    QCOMPARE(bar.window()->position(), QPoint(layoutHere().screen.width() - 76, 20));
}

void tst_OmniBarGeometry::barMovesWhenBusy()
{
    const Layout &layout = layoutHere();
    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    const int x = (layout.screen.width() - 720) / 2;
    QQuickItem *card = bar.item("barCard");
    QCOMPARE(bar.place(card), QRectF(x, layout.idleY, 720, 56));

    bar.invoke("appendUserMessage", {QStringLiteral("hello")});
    QVERIFY(bar.place(card).y() < layout.busyY);
    QCOMPARE(bar.behaviour(card, "y"), QStringLiteral("350 OutCubic"));
    QVERIFY(bar.settle());
    QCOMPARE(bar.place(card), QRectF(x, layout.busyY, 720, 56));
}

void tst_OmniBarGeometry::barIsIdle_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<bool>("isIdle");

    QTest::newRow("nothing") << QString() << true;
    QTest::newRow("typing") << QStringLiteral("inputField.text = 'hello'") << true;
    QTest::newRow("tall panel, not shown") << QStringLiteral("chatExpanded = true") << true;
    QTest::newRow("a row") << QStringLiteral("appendSystemMessage('hello')") << false;
    QTest::newRow("settings") << QStringLiteral("settingsPanelOpen = true") << false;
    QTest::newRow("thinking without a row") << QStringLiteral("bridge.sendIntent('hello')") << false;
}

void tst_OmniBarGeometry::barIsIdle()
{
    QFETCH(QString, what);
    QFETCH(bool, isIdle);

    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    if (!what.isEmpty()) {
        bar.evaluate(what);
    }
    QVERIFY(bar.settle());
    QCOMPARE(bar.item("barCard")->y(), qreal(isIdle ? layoutHere().idleY : layoutHere().busyY));
}

void tst_OmniBarGeometry::chatPanelIsAboveTheBar()
{
    const Layout &layout = layoutHere();
    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    QVERIFY(say(bar, "hello"));
    const QRectF panel = bar.place(bar.item("chatPanel"));
    QCOMPARE(panel.left(), (layout.screen.width() - 720) / 2.0);
    QCOMPARE(panel.width(), 720.0);
    QCOMPARE(panel.bottom(), layout.busyY - 10.0);
    QCOMPARE(panel.height(), qreal(layout.lowPanel));
    bar.screenshot(QStringLiteral("chat-%1").arg(layout.screen.height()));
}

void tst_OmniBarGeometry::chatPanelIsVisible_data()
{
    QTest::addColumn<bool>("row");
    QTest::addColumn<bool>("thinking");
    QTest::addColumn<bool>("settings");
    QTest::addColumn<bool>("visible");

    QTest::newRow("nothing") << false << false << false << false;
    QTest::newRow("row") << true << false << false << true;
    QTest::newRow("thinking") << false << true << false << true;
    QTest::newRow("row, thinking") << true << true << false << true;
    QTest::newRow("settings") << false << false << true << false;
    QTest::newRow("row, settings") << true << false << true << false;
    QTest::newRow("row, thinking, settings") << true << true << true << false;
}

void tst_OmniBarGeometry::chatPanelIsVisible()
{
    QFETCH(bool, row);
    QFETCH(bool, thinking);
    QFETCH(bool, settings);
    QFETCH(bool, visible);

    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    if (thinking) {
        bar.evaluate("bridge.sendIntent('hello')");
    }
    if (row) {
        bar.invoke("appendUserMessage", {QStringLiteral("hello")});
    }
    bar.setProperty("settingsPanelOpen", settings);
    QTRY_VERIFY(bar.item("chatPanel"));
    QVERIFY(bar.settle());
    QCOMPARE(bar.isSeen(bar.item("chatPanel")), visible);
    QCOMPARE(bar.isSeen(bar.item("settingsPanel")), settings);
}

void tst_OmniBarGeometry::chatPanelGrowsWhenExpanded()
{
    const Layout &layout = layoutHere();
    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    QVERIFY(say(bar, "hello"));
    QQuickItem *panel = bar.item("chatPanel");
    bar.setProperty("chatExpanded", true);
    QCOMPARE(panel->height(), qreal(layout.lowPanel));
    QVERIFY(bar.settle());
    if (layout.tallPanel != layout.lowPanel) {
        QCOMPARE(bar.behaviour(panel, "height"), QStringLiteral("250 OutCubic"));
    }
    QCOMPARE(panel->height(), qreal(layout.tallPanel));
    QCOMPARE(bar.place(panel).bottom(), layout.busyY - 10.0);
    bar.screenshot(QStringLiteral("chat-tall-%1").arg(layout.screen.height()));
    bar.setProperty("chatExpanded", false);
    QVERIFY(bar.settle());
    QCOMPARE(panel->height(), qreal(layout.lowPanel));
}

void tst_OmniBarGeometry::chatPanelComesInSmoothly()
{
    OmniBarFixture &bar = m_window.renew();
    QVERIFY(bar.open());
    QTRY_VERIFY(bar.item("chatPanel"));
    QQuickItem *panel = bar.item("chatPanel");
    QCOMPARE(panel->opacity(), 0.0);
    QCOMPARE(panel->scale(), 0.97);
    QCOMPARE(panel->transformOrigin(), QQuickItem::Bottom);
    bar.invoke("appendUserMessage", {QStringLiteral("hello")});
    QVERIFY(panel->isVisible());
    QVERIFY(panel->opacity() < 1.0);
    // It is in its place at once, while the bar still moves down.
    QQuickItem *loader = panel->parentItem();
    QCOMPARE(loader->y() + panel->height(), layoutHere().busyY - 10.0);
    QVERIFY(bar.item("barCard")->y() < layoutHere().busyY);
    QVERIFY(bar.settle());
    QCOMPARE(bar.behaviour(panel, "opacity"), QStringLiteral("250 OutCubic"));
    QCOMPARE(bar.behaviour(panel, "scale"), QStringLiteral("250 OutCubic"));
    QCOMPARE(panel->opacity(), 1.0);
    QCOMPARE(panel->scale(), 1.0);
}

void tst_OmniBarGeometry::chatPanelIsThereAtOnce_data()
{
    QTest::addColumn<bool>("isBeingBuilt");

    QTest::newRow("before the first frame") << false;
    QTest::newRow("while it is built ahead") << true;
}

void tst_OmniBarGeometry::chatPanelIsThereAtOnce()
{
    QFETCH(bool, isBeingBuilt);

    OmniBarFixture &bar = m_window.renew();
    auto *window = qobject_cast<QQuickWindow *>(bar.load(QStringLiteral("OmniBar.qml")));
    QVERIFY(window);
    if (isBeingBuilt) {
        // One turn of the event loop at a time, to catch the moment.
        while (!window->property("firstFrameShown").toBool()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }
    const auto panel = [&] { return OmniBarFixture::itemIn(window->contentItem(), QStringLiteral("chatPanel")); };
    QVERIFY(!panel());
    bar.invoke("appendUserMessage", {QStringLiteral("hello")});
    QVERIFY(panel());
    QVERIFY(panel()->isVisible());
    QTRY_COMPARE(panel()->opacity(), 1.0);
    QCOMPARE(
        OmniBarFixture::itemsWhere(window->contentItem(),
                                   [](QQuickItem *item) { return item->objectName() == QStringLiteral("chatPanel"); })
            .size(),
        1);
}

void tst_OmniBarGeometry::columnOfThePanel()
{
    const Layout &layout = layoutHere();
    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    // Without cards, then with them.
    bar.evaluate("responseSuggestionsModel.clear()");
    QVERIFY(say(bar, "hello"));
    QQuickItem *panel = bar.item("chatPanel");
    QQuickItem *area = bar.item("chatArea");
    const QPointF corner = bar.place(panel).topLeft();
    QCOMPARE(bar.place(area).topLeft() - corner, QPointF(12, 12 + 64 + 10));
    QCOMPARE(area->width(), 720.0 - 24);
    QCOMPARE(area->height(), qMax(140.0, layout.lowPanel - 64.0 - 70));
    QVERIFY(!bar.isSeen(bar.item("suggestionCards")));

    bar.invoke("initResponseSuggestions");
    QVERIFY(bar.settle());
    QQuickItem *cards = bar.item("suggestionCards");
    QVERIFY(bar.isSeen(cards));
    QCOMPARE(area->height(), qMax(140.0, layout.lowPanel - 64.0 - cards->height() - 70));
    QCOMPARE(bar.place(cards).top(), bar.place(area).bottom() + 10);
    const QList<QQuickItem *> texts = bar.itemsWhere(panel, [](QQuickItem *item) {
        return item->property("text").toString()
            == QStringLiteral("Tovi can make mistakes. Verify important information.");
    });
    QCOMPARE(texts.size(), 1);
    QCOMPARE(texts.first()->property("font").value<QFont>().pixelSize(), 11);
    if (layout.lowPanel > 300) {
        QVERIFY(bar.place(panel).contains(bar.place(texts.first())));
        QVERIFY(bar.place(texts.first()).top() >= bar.place(cards).bottom());
    }
}

void tst_OmniBarGeometry::everyPartOfTheColumnCounts()
{
    const Layout &layout = layoutHere();
    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    QVERIFY(say(bar, "hello"));
    QQuickItem *panel = bar.item("chatPanel");
    QQuickItem *area = bar.item("chatArea");
    QQuickItem *cards = bar.item("suggestionCards");
    QQuickItem *pane = bar.item("chatScrollPane");
    const qreal alone = area->height();
    QCOMPARE(pane->property("interactive").toBool(), layout.lowPanel < 300);

    // Two more parts, such as bars, unknown to the panel.
    std::vector<std::unique_ptr<QQuickItem>> parts;
    for (const qreal height : {48.0, 36.0}) {
        parts.push_back(std::make_unique<QQuickItem>());
        parts.back()->setWidth(area->width());
        parts.back()->setHeight(height);
        parts.back()->setParentItem(area->parentItem());
    }
    QVERIFY(bar.settle());
    const qreal withParts = layout.lowPanel - 64.0 - 70 - cards->height() - 48 - 36 - 2 * 10;
    QCOMPARE(area->height(), qMax(140.0, withParts));
    QCOMPARE(pane->property("interactive").toBool(), withParts < 140);
    if (withParts >= 140) {
        for (const auto &part : parts) {
            QVERIFY(bar.place(panel).adjusted(0, 0, 0, -12).contains(bar.place(part.get())));
        }
    }

    // A part that has not grown yet takes no room.
    parts.push_back(std::make_unique<QQuickItem>());
    parts.back()->setParentItem(area->parentItem());
    QVERIFY(bar.settle());
    QCOMPARE(area->height(), qMax(140.0, withParts));

    parts.front()->setVisible(false);
    QVERIFY(bar.settle());
    QCOMPARE(area->height(), qMax(140.0, withParts + 48 + 10));
    parts.clear();
    QVERIFY(bar.settle());
    QCOMPARE(area->height(), alone);
}

void tst_OmniBarGeometry::suggestionsOfALowPanelAreReached()
{
    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    bar.evaluate("surface.screens = [{ 'width': 1280, 'height': 360 }]");
    QVERIFY(say(bar, "hello"));
    QQuickItem *panel = bar.item("chatPanel");
    QCOMPARE(panel->height(), 260.0);
    QQuickItem *last = bar.items("suggestionCard").constLast();
    QVERIFY(!bar.place(panel).contains(bar.place(last)));
    bar.focus(last);
    QTRY_VERIFY(bar.place(panel).contains(bar.place(last)));
    bar.screenshot("chat-lowest");
    bar.evaluate("surface.screens = Qt.application.screens");
}

void tst_OmniBarGeometry::stripBelowTheBar_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("confirming");
    QTest::addColumn<int>("height");

    QTest::newRow("hint alone") << QString() << false << 20;
    QTest::newRow("line") << QStringLiteral("a suggestion") << false << 36;
    QTest::newRow("confirmation") << QString() << true << 62;
    QTest::newRow("both") << QStringLiteral("a suggestion") << true << 78;
}

void tst_OmniBarGeometry::stripBelowTheBar()
{
    QFETCH(QString, line);
    QFETCH(bool, confirming);
    QFETCH(int, height);

    const Layout &layout = layoutHere();
    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    bar.setProperty("wiNotifyBarLine", line);
    bar.setProperty("voiceConfirmPending", confirming);
    QVERIFY(say(bar, "hello"));
    QCOMPARE(bar.property("shortcutHintHeight").toInt(), height);
    QCOMPARE(bar.item("barCard")->y(), qreal(layout.busyY + 20 - height));
    QCOMPARE(bar.property("chatHeightBudget").toInt(), qMax(260, layout.screen.height() - 90 - height));
    QCOMPARE(bar.place(bar.item("chatPanel")).bottom(), layout.busyY + 10.0 - height);

    // A panel that is already there moves along with the bar.
    QQuickItem *panel = bar.item("chatPanel");
    const auto gap = [&] { return bar.place(bar.item("barCard")).top() - bar.place(panel).bottom(); };
    bar.setProperty("wiNotifyBarLine", line.isEmpty() ? QStringLiteral("another") : QString());
    QCOMPARE(gap(), 10.0);
    QVERIFY(bar.settle());
    QCOMPARE(gap(), 10.0);
    QVERIFY(bar.property("shortcutHintHeight").toInt() != height);
}

void tst_OmniBarGeometry::withoutAScreen()
{
    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    bar.evaluate("surface.screens = []");
    QCOMPARE(bar.property("screenWidth").toDouble(), 1920.0);
    QCOMPARE(bar.property("screenHeight").toDouble(), 1080.0);
    QVERIFY(bar.settle());
    QCOMPARE(bar.window()->size(), QSize(1920, 1080));
    QCOMPARE(bar.property("chatHeightBudget").toInt(), 970);

    bar.window()->setPosition(31, 17);
    bar.invoke("centerOnScreen");
    QCOMPARE(bar.window()->position(), QPoint(31, 17));
    bar.setProperty("compactMode", true);
    bar.window()->setPosition(32, 18);
    bar.invoke("positionBubble");
    QCOMPARE(bar.window()->position(), QPoint(32, 18));
}

void tst_OmniBarGeometry::tinyScreen()
{
    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    bar.evaluate("surface.screens = [{ 'width': 60, 'height': 60 }, { 'width': 1280, 'height': 800 }]");
    // Always the first one, and never beyond its left edge.
    QCOMPARE(bar.property("screenWidth").toDouble(), 60.0);
    QCOMPARE(bar.property("chatHeightBudget").toInt(), 260);
    bar.setProperty("compactMode", true);
    QCOMPARE(bar.window()->position(), QPoint(0, 20));
}

REGISTER_TEST(tst_OmniBarGeometry, QGuiApplication)

#include "tst_OmniBarGeometry.moc"
