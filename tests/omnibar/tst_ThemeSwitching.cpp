// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Looks.h"

#include "OmniBarFixture.h"
#include "TestRegistry.h"

#include <QGuiApplication>
#include <QTest>

//! The parts of the bar that look the same in both themes.
class tst_ThemeSwitching : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void looksTheSameInBothThemes();
    void scrim_data();
    void scrim();
};

void tst_ThemeSwitching::looksTheSameInBothThemes()
{
    OmniBarFixture bar;
    bar.drawShadows();
    QVERIFY(bar.open());
    bar.setProperty("settingsPanelOpen", true);
    QTRY_VERIFY(bar.item("settingsPanel"));
    QVERIFY(bar.settle());
    // Its lower half, beyond the shadow of the sheet.
    const QRect card = bar.place(bar.item("barCard")).toRect().adjusted(0, 28, 0, 0);
    bar.focus(bar.item("barCloseBtn")); // no blinking cursor
    const QImage dark = bar.window()->grabWindow();
    bar.evaluate("appearanceStore.lightChrome = true");
    QVERIFY(bar.settle());
    const QPoint inSheet = bar.place(bar.item("settingsPanel")).toRect().topLeft() + QPoint(60, 60);
    // The change of theme takes 350 ms.
    QTRY_VERIFY(bar.window()->grabWindow().pixelColor(inSheet).lightness()
                > dark.pixelColor(inSheet).lightness() + 100);
    const QImage light = bar.window()->grabWindow();
    QCOMPARE(light.copy(card), dark.copy(card));
    bar.screenshot("settings-light");
    // The left end of the gradient.
    const QColor left = dark.pixelColor(card.left() + 4, card.top());
    QVERIFY2(left.red() > 90 && left.red() < 130 && left.blue() < left.red(), qPrintable(left.name()));
}

void tst_ThemeSwitching::scrim_data()
{
    QTest::addColumn<bool>("light");
    QTest::addColumn<bool>("translucent");
    QTest::addColumn<QString>("colour");

    for (const bool light : {false, true}) {
        QTest::newRow(light ? "light, translucent" : "dark, translucent")
            << light << true << rgba(0.03, 0.01, 0.06, 0.72);
        QTest::newRow(light ? "light, opaque" : "dark, opaque") << light << false << rgba(0, 0, 0, 0.85);
    }
}

void tst_ThemeSwitching::scrim()
{
    QFETCH(bool, light);
    QFETCH(bool, translucent);
    QFETCH(QString, colour);

    OmniBarFixture bar;
    bar.store("lightChrome", light);
    bar.store("translucentBackground", translucent);
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    QCOMPARE(colourOf(bar.item("scrim")), colour);
    QCOMPARE(bar.place(bar.item("scrim")), QRectF(0, 0, 1280, 800));
}

REGISTER_TEST(tst_ThemeSwitching, QGuiApplication)

#include "tst_ThemeSwitching.moc"
