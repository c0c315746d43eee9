// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Looks.h"
#include "OmniBarFixture.h"
#include "TestRegistry.h"
#include "TestSetup.h"

#include <QGuiApplication>
#include <QSettings>
#include <QTest>

namespace
{

const QStringList s_tabs = {text("Look"),     text("Models"), text("Assistant"),
                            text("Sessions"), text("Voice"),  text("System")};

//! The window with the settings sheet open.
class Settings : public OmniBarFixture
{
public:
    bool begin()
    {
        if (!open()) {
            return false;
        }
        click("settingsBtn");
        return QTest::qWaitFor([this] { return item("lookTab") != nullptr; }) && settle();
    }

    double opacity() const { return property("appearanceStore.windowOpacity").toDouble(); }
    QString percentage() const { return item("opacityValue")->property("text").toString(); }
};

//! The visible texts below an item, from top to bottom and left to right.
QStringList textsOf(QQuickItem *root)
{
    QList<QQuickItem *> found = OmniBarFixture::itemsWhere(
        root, [](QQuickItem *item) { return item->inherits("QQuickText") && OmniBarFixture::isSeen(item); });
    std::sort(found.begin(), found.end(), [](QQuickItem *a, QQuickItem *b) {
        const QPointF first = OmniBarFixture::place(a).center();
        const QPointF second = OmniBarFixture::place(b).center();
        return qAbs(first.y() - second.y()) > 8 ? first.y() < second.y() : first.x() < second.x();
    });
    QStringList texts;
    for (QQuickItem *item : found) {
        texts.append(item->property("text").toString());
    }
    return texts;
}

} // namespace

//! The settings sheet and its first tab. Each test has its own window: to close the sheet again would take longer.
class tst_OmniBarSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensAndClosesByClick();
    void opensAndClosesByKeys_data();
    void opensAndClosesByKeys();
    void geometry_data();
    void geometry();
    void comesInSmoothly();
    void words();
    void scrimClosesIt();
    void onlyAClickOutsideClosesIt();
    void hidesTheConversation();
    void firstTabIsOpen();

    void themeSegments_data();
    void themeSegments();
    void opacitySlider();
    void opacitySliderByMouse();
    void opacitySliderShowsWhatIsStored_data();
    void opacitySliderShowsWhatIsStored();
    void transparencySwitch_data();
    void transparencySwitch();
    void everythingIsReachedByTab();
    void focusScrollsTheSheet();
};

void tst_OmniBarSettings::opensAndClosesByClick()
{
    Settings bar;
    QVERIFY(bar.open());
    QVERIFY(!bar.item("settingsPanel"));
    bar.click("settingsBtn");
    QVERIFY(bar.settle());
    QVERIFY(bar.isSeen(bar.item("settingsPanel")));
    bar.screenshot("settings-dark");
    bar.click("settingsBtn");
    QVERIFY(bar.settle());
    QVERIFY(!bar.isSeen(bar.item("settingsPanel")));
    QCOMPARE(bar.property("compactMode").toBool(), false);
}

void tst_OmniBarSettings::opensAndClosesByKeys_data()
{
    QTest::addColumn<int>("key");

    QTest::newRow("space") << int(Qt::Key_Space);
    QTest::newRow("return") << int(Qt::Key_Return);
    QTest::newRow("enter") << int(Qt::Key_Enter);
}

void tst_OmniBarSettings::opensAndClosesByKeys()
{
    QFETCH(int, key);

    Settings bar;
    QVERIFY(bar.open());
    for (int i = 0; i < 20 && !bar.item("settingsBtn")->hasActiveFocus(); ++i) {
        bar.key(Qt::Key_Tab);
    }
    QVERIFY(bar.item("settingsBtn")->hasActiveFocus());
    bar.key(Qt::Key(key));
    QVERIFY(bar.settle());
    QVERIFY(bar.isSeen(bar.item("settingsPanel")));
    bar.key(Qt::Key_Escape);
    QVERIFY(bar.settle());
    QVERIFY(!bar.isSeen(bar.item("settingsPanel")));
    QCOMPARE(bar.property("compactMode").toBool(), false);
}

void tst_OmniBarSettings::geometry_data()
{
    QTest::addColumn<int>("barWidth");
    QTest::addColumn<QString>("screen");
    QTest::addColumn<double>("width");

    QTest::newRow("as it is") << 720 << text("{ 'width': 1280, 'height': 800 }") << 704.0;
    QTest::newRow("narrow bar") << 500 << text("{ 'width': 1280, 'height': 800 }") << 560.0;
    QTest::newRow("narrow screen") << 720 << text("{ 'width': 600, 'height': 800 }") << 568.0;
}

void tst_OmniBarSettings::geometry()
{
    QFETCH(int, barWidth);
    QFETCH(QString, screen);
    QFETCH(double, width);

    Settings bar;
    QVERIFY(bar.begin());
    bar.setProperty("barWidth", barWidth);
    bar.evaluate(QStringLiteral("surface.screens = [%1]").arg(screen));
    QVERIFY(bar.settle());
    QQuickItem *panel = bar.item("settingsPanel");
    const QRectF card = bar.place(bar.item("barCard"));
    QCOMPARE(panel->width(), width);
    QCOMPARE(bar.place(panel).center().x(), card.center().x());
    QCOMPARE(bar.place(panel).bottom(), card.top() - 10);
    QCOMPARE(bar.evaluate("settingsPanelLoader.z").toDouble(), 10.0);
    // Higher than the tab's minimum height, because its content is.
    QVERIFY(panel->height() > 220 + 24);
    const qreal height = panel->height();

    // On a low screen it takes 78 % of the height, and scrolls.
    bar.evaluate("surface.screens = [{ 'width': 1280, 'height': 300 }]");
    QVERIFY(bar.settle());
    QCOMPARE(panel->height(), 234.0 + 24);
    QVERIFY(panel->height() < height);
    const auto flickables = bar.itemsWhere(panel, [](QQuickItem *item) {
        return item->inherits("QQuickFlickable") && item->property("interactive").toBool();
    });
    QCOMPARE(flickables.size(), 1);
    QVERIFY(flickables.first()->property("contentHeight").toDouble() > flickables.first()->height());
}

void tst_OmniBarSettings::comesInSmoothly()
{
    Settings bar;
    QVERIFY(bar.begin());
    QQuickItem *panel = bar.item("settingsPanel");
    QCOMPARE(panel->opacity(), 1.0);
    QCOMPARE(panel->scale(), 1.0);
    QCOMPARE(bar.behaviour(panel, "opacity"), text("250 OutCubic"));
    QCOMPARE(bar.behaviour(panel, "scale"), text("250 OutCubic"));
    bar.setProperty("settingsPanelOpen", false);
    QVERIFY(bar.settle());
    const qreal idleY = bar.item("barCard")->y();
    bar.setProperty("settingsPanelOpen", true);
    QVERIFY(panel->opacity() < 1.0);
    // It is in its place at once, and the bar passes in front of it on its way down.
    QQuickItem *loader = panel->parentItem();
    QCOMPARE(loader->y() + panel->height(), bar.item("barCard")->property("targetY").toReal() - 10);
    QCOMPARE(bar.item("barCard")->y(), idleY);
    QCOMPARE(loader->z(), 10.0);
    QVERIFY(bar.item("barCard")->z() > loader->z());
}

void tst_OmniBarSettings::words()
{
    Settings bar;
    QVERIFY(bar.begin());
    QCOMPARE(textsOf(bar.item("settingsPanel")),
             QStringList {text("Settings")} + s_tabs
                 + QStringList(
                     {text("OmniBar appearance"), text("Theme"), text("Dark"), text("Light"), text("Opacity"),
                      text("100%"), text("Background transparency"),
                      text("When off, the bar and chat use a solid background and blur behind the window is turned "
                           "off.")}));
    const auto heading = bar.itemsWhere(bar.item("settingsPanel"), [](QQuickItem *item) {
        return item->property("text").toString() == QStringLiteral("Settings");
    });
    QCOMPARE(heading.first()->property("font").value<QFont>().pointSize(), 12);
    QVERIFY(heading.first()->property("font").value<QFont>().bold());
}

void tst_OmniBarSettings::scrimClosesIt()
{
    Settings bar;
    QVERIFY(bar.begin());
    bar.type("half a prompt");
    bar.setProperty("userExpanded", true);
    bar.clickAt({40, 400});
    QCOMPARE(bar.property("settingsPanelOpen").toBool(), false);
    // And does nothing else.
    const auto isUntouched = [&] {
        return !bar.property("compactMode").toBool() && bar.property("userExpanded").toBool()
            && bar.window()->isVisible() && bar.property("inputField.text").toString() == text("half a prompt")
            && bar.item("inputField")->hasActiveFocus() && bar.property("chatModel.count").toInt() == 0;
    };
    QVERIFY(isUntouched());
    bar.clickAt({40, 400});
    QVERIFY(bar.settle());
    QCOMPARE(bar.property("settingsPanelOpen").toBool(), false);
    QVERIFY(isUntouched());
}

void tst_OmniBarSettings::onlyAClickOutsideClosesIt()
{
    Settings bar;
    QVERIFY(bar.begin());
    const QRectF panel = bar.place(bar.item("settingsPanel"));
    for (const QPointF place :
         {panel.topLeft() + QPointF(20, 4), panel.center(), panel.bottomRight() - QPointF(20, 4)}) {
        bar.clickAt(place.toPoint());
        QCOMPARE(bar.property("settingsPanelOpen").toBool(), true);
    }
    // Nor does a click on the bar, between its controls, reach the scrim.
    const QRectF card = bar.place(bar.item("barCard"));
    for (const QPointF place : {card.center(), card.topLeft() + QPointF(24, 28), card.topLeft() + QPointF(60, 28),
                                card.topLeft() + QPointF(300, 3), card.topRight() + QPointF(-50, 28)}) {
        bar.clickAt(place.toPoint());
        QCOMPARE(bar.property("settingsPanelOpen").toBool(), true);
    }
    bar.clickAt((panel.topLeft() - QPointF(3, -20)).toPoint());
    QCOMPARE(bar.property("settingsPanelOpen").toBool(), false);
}

void tst_OmniBarSettings::hidesTheConversation()
{
    Settings bar;
    QVERIFY(bar.open());
    bar.invoke("appendUserMessage", {text("hello")});
    QTRY_VERIFY(bar.item("chatPanel"));
    QVERIFY(bar.settle());
    QVERIFY(bar.isSeen(bar.item("chatPanel")));
    bar.click("settingsBtn");
    QVERIFY(bar.settle());
    QVERIFY(!bar.isSeen(bar.item("chatPanel")));
    bar.key(Qt::Key_Escape);
    QVERIFY(bar.settle());
    QVERIFY(bar.isSeen(bar.item("chatPanel")));
    QCOMPARE(bar.item("chatPanel")->opacity(), 1.0);
}

void tst_OmniBarSettings::firstTabIsOpen()
{
    Settings bar;
    QVERIFY(bar.begin());
    QQuickItem *strip = bar.item("settingsTabs");
    QCOMPARE(strip->property("currentIndex").toInt(), 0);
    const auto tabs = bar.itemsWhere(strip, [](QQuickItem *item) { return item->inherits("QQuickTabButton"); });
    QCOMPARE(tabs.size(), s_tabs.size());
    QCOMPARE(tabs.first()->height(), 32.0);
    QCOMPARE(tabs.first()->property("checked").toBool(), true);
    auto *background = tabs.first()->property("background").value<QQuickItem *>();
    QCOMPARE(background->property("color"), bar.evaluate("omniTheme.uiWellFillHi"));
    QCOMPARE(background->property("radius").toDouble(), 6.0);
    QVERIFY(bar.isSeen(bar.item("lookTab")));
}

void tst_OmniBarSettings::themeSegments_data()
{
    QTest::addColumn<bool>("byKeys");

    QTest::newRow("click") << false;
    QTest::newRow("keys") << true;
}

void tst_OmniBarSettings::themeSegments()
{
    QFETCH(bool, byKeys);

    Settings bar;
    QVERIFY(bar.begin());
    QQuickItem *dark = bar.item("darkSegment");
    QQuickItem *light = bar.item("lightSegment");
    const auto choose = [&](QQuickItem *segment) {
        if (byKeys) {
            bar.focus(segment);
            bar.key(Qt::Key_Space);
        } else {
            bar.click(segment);
        }
    };
    const auto look = [&](QQuickItem *segment) {
        return segment->property("background").value<QQuickItem *>()->property("color");
    };
    QCOMPARE(bar.item("darkSegment")->property("chosen").toBool(), true);
    choose(light);
    QCOMPARE(bar.property("appearanceStore.lightChrome").toBool(), true);
    QCOMPARE(bar.evaluate("omniTheme.uiLight").toBool(), true);
    QCOMPARE(look(light), bar.evaluate("omniTheme.uiSegLightOn"));
    QCOMPARE(look(dark), bar.evaluate("omniTheme.uiWellFill"));
    // The focus stays where it was.
    QCOMPARE(bar.item("lightSegment"), light);
    QVERIFY(!byKeys || light->hasActiveFocus());
    QCOMPARE(bar.item("darkSegment")->property("chosen").toBool(), false);
    QCOMPARE(bar.item("lightSegment")->property("chosen").toBool(), true);
    choose(light); // not a toggle
    QCOMPARE(bar.property("appearanceStore.lightChrome").toBool(), true);
    choose(dark);
    QCOMPARE(bar.property("appearanceStore.lightChrome").toBool(), false);
    QCOMPARE(bar.evaluate("omniTheme.uiLight").toBool(), false);
    QCOMPARE(look(dark), bar.evaluate("omniTheme.uiSegDarkOn"));
    // It follows other changes of the store.
    bar.evaluate("appearanceStore.lightChrome = true");
    QCOMPARE(bar.item("lightSegment")->property("chosen").toBool(), true);
}

void tst_OmniBarSettings::opacitySlider()
{
    Settings bar;
    QVERIFY(bar.begin());
    QQuickItem *slider = bar.item("opacitySlider");
    QCOMPARE(slider->property("from").toDouble(), 0.65);
    QCOMPARE(slider->property("to").toDouble(), 1.0);
    QCOMPARE(slider->property("stepSize").toDouble(), 0.05);
    bar.focus(slider);
    const QStringList down = {text("95%"), text("90%"), text("85%"), text("80%"),
                              text("75%"), text("70%"), text("65%"), text("65%")};
    for (const QString &expected : down) {
        bar.key(Qt::Key_Left);
        QCOMPARE(bar.percentage(), expected);
        QCOMPARE(qRound(bar.opacity() * 100), expected.chopped(1).toInt());
        QTRY_COMPARE(bar.window()->opacity(), bar.opacity());
    }
    bar.key(Qt::Key_Right);
    QCOMPARE(bar.percentage(), text("70%"));
    for (int i = 0; i < 8; ++i) {
        bar.key(Qt::Key_Right);
    }
    QCOMPARE(bar.percentage(), text("100%"));
    QCOMPARE(bar.opacity(), 1.0);
    bar.key(Qt::Key_Left);
    // The value is in the file.
    QTRY_COMPARE(
        QSettings(TestSetup::settingsFile(), QSettings::IniFormat).value(text("appearance/windowOpacity")).toDouble(),
        0.95);
}

void tst_OmniBarSettings::opacitySliderByMouse()
{
    Settings bar;
    QVERIFY(bar.begin());
    const QRectF slider = bar.place(bar.item("opacitySlider"));
    const auto at = [&](qreal share) {
        return QPointF(slider.left() + share * slider.width(), slider.center().y()).toPoint();
    };
    QTest::mousePress(bar.window(), Qt::LeftButton, {}, at(0.96));
    for (qreal share = 0.9; share > 0.45; share -= 0.05) {
        QTest::mouseMove(bar.window(), at(share));
    }
    // It changes during the drag already, in steps.
    QVERIFY(bar.opacity() > 0.75 && bar.opacity() < 0.9);
    QCOMPARE(bar.opacity(), qRound(bar.opacity() * 20) / 20.0);
    QTest::mouseMove(bar.window(), at(-0.5));
    QTest::mouseRelease(bar.window(), Qt::LeftButton, {}, at(-0.5));
    QCOMPARE(bar.opacity(), 0.65);
    QCOMPARE(bar.property("settingsPanelOpen").toBool(), true);
    // After that it still follows the store.
    bar.evaluate("appearanceStore.windowOpacity = 0.9");
    QCOMPARE(bar.item("opacitySlider")->property("value").toDouble(), 0.9);
    QCOMPARE(bar.percentage(), text("90%"));
}

void tst_OmniBarSettings::opacitySliderShowsWhatIsStored_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QString>("percentage");

    QTest::newRow("a step") << QVariant(0.8) << text("80%");
    QTest::newRow("between two") << QVariant(0.83) << text("83%");
    QTest::newRow("too faint") << QVariant(0.2) << text("65%");
    QTest::newRow("too much") << QVariant(1.5) << text("100%");
    QTest::newRow("words") << QVariant(text("a lot")) << text("100%");
}

void tst_OmniBarSettings::opacitySliderShowsWhatIsStored()
{
    QFETCH(QVariant, stored);
    QFETCH(QString, percentage);

    Settings bar;
    bar.store("windowOpacity", stored);
    QVERIFY(bar.begin());
    QCOMPARE(bar.percentage(), percentage);
    QCOMPARE(qRound(bar.item("opacitySlider")->property("value").toDouble() * 100), percentage.chopped(1).toInt());
    // Showing a number doesn't change the stored value.
    if (stored.type() == QVariant::Double) {
        QCOMPARE(QSettings().value(text("appearance/windowOpacity")).toString(), stored.toString());
    }
}

void tst_OmniBarSettings::transparencySwitch_data()
{
    QTest::addColumn<int>("key"); // 0: a click

    QTest::newRow("click") << 0;
    QTest::newRow("space") << int(Qt::Key_Space);
    QTest::newRow("return") << int(Qt::Key_Return);
}

void tst_OmniBarSettings::transparencySwitch()
{
    QFETCH(int, key);

    Settings bar;
    QVERIFY(bar.begin());
    QQuickItem *control = bar.item("transparencySwitch");
    const auto toggle = [&] {
        if (key) {
            bar.focus(control);
            bar.key(Qt::Key(key));
        } else {
            bar.click(control);
        }
    };
    QCOMPARE(control->property("checked").toBool(), true);
    toggle();
    QCOMPARE(bar.property("appearanceStore.translucentBackground").toBool(), false);
    QCOMPARE(control->property("checked").toBool(), false);
    QCOMPARE(bar.evaluate("omniTheme.uiPanelBase").value<QColor>().alphaF(), 1.0);
    QCOMPARE(bar.item("scrim")->property("color").value<QColor>(), QColor::fromRgbF(0, 0, 0, 0.85));
    bar.screenshot("settings-opaque");
    toggle();
    QCOMPARE(bar.property("appearanceStore.translucentBackground").toBool(), true);
    QCOMPARE(control->property("checked").toBool(), true);
    QVERIFY(bar.evaluate("omniTheme.uiPanelBase").value<QColor>().alphaF() < 1.0);
    // It follows other changes of the store, even after clicks.
    bar.evaluate("appearanceStore.translucentBackground = false");
    QCOMPARE(control->property("checked").toBool(), false);
}

void tst_OmniBarSettings::everythingIsReachedByTab()
{
    Settings bar;
    QVERIFY(bar.begin());
    QStringList order;
    for (int i = 0; i < 30; ++i) {
        bar.key(Qt::Key_Tab);
        if (QQuickItem *focused = bar.window()->activeFocusItem()) {
            order.append(focused->objectName());
        }
    }
    for (const char *name : {"darkSegment", "lightSegment", "opacitySlider", "transparencySwitch", "settingsBtn",
                             "micBtn", "barCloseBtn", "inputField"}) {
        QVERIFY2(order.contains(text(name)), name);
    }
    const QStringList look = {text("darkSegment"), text("lightSegment"), text("opacitySlider"),
                              text("transparencySwitch")};
    QCOMPARE(order.mid(order.indexOf(look.first()), look.size()), look);
}

void tst_OmniBarSettings::focusScrollsTheSheet()
{
    Settings bar;
    QVERIFY(bar.begin());
    bar.evaluate("surface.screens = [{ 'width': 1280, 'height': 240 }]");
    QVERIFY(bar.settle());
    QQuickItem *pane = bar.item("settingsScrollPane");
    QVERIFY(!bar.place(pane).contains(bar.place(bar.item("transparencySwitch"))));
    for (const char *name : {"transparencySwitch", "opacitySlider", "darkSegment"}) {
        bar.focus(bar.item(name));
        QTRY_VERIFY2(bar.place(pane).contains(bar.place(bar.item(name))), name);
    }
}

REGISTER_TEST(tst_OmniBarSettings, QGuiApplication)

#include "tst_OmniBarSettings.moc"
