// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Looks.h"

#include "AgentBridge.h"
#include "OmniBarFixture.h"
#include "SharedWindow.h"
#include "TestRegistry.h"

#include <QGuiApplication>
#include <QTest>
#include <QtMath>

#include <cmath>

namespace
{

//! A stand-in for the bridge client that records its calls.
const char *s_sdk = R"(FakeSdk {
    workspaceIntelAvailable: true
    aiRuntimeAvailable: true
})";

} // namespace

//! The usage ring and the buttons at the end of the bar.
class tst_OmniBarButtons : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void usageRing();
    void buttonsGrowIntoTheInput();
    void sendButton();
    void closeButton();
    void settingsButton();
    void settingsButtonWhileConnecting();

private:
    SharedWindow<OmniBarFixture> m_window;
};

void tst_OmniBarButtons::usageRing()
{
    OmniBarFixture &bar = m_window.renew();
    QVERIFY(bar.open());
    QVERIFY(!bar.item("usageRing"));
    Q_EMIT bar.agent()->usageReported(10000, 0);
    QVERIFY(bar.settle());
    QQuickItem *ring = bar.item("usageRing");
    QVERIFY(bar.isSeen(ring));
    Q_EMIT bar.agent()->usageReported(0, 2500);
    QCOMPARE(ring->property("tip").toString(), text("Input: 10000 · Output: 2500 · Total: 12500"));
    QCOMPARE(ring->property("progress").toDouble(), 0.25);

    // A quarter is used, so three quarters are drawn: clockwise from the bottom.
    const QPointF centre = bar.place(ring).center();
    const auto isMagenta = [&](double degrees) {
        const double angle = qDegreesToRadians(degrees);
        const double radius = (26 - 2.5) / 2;
        const QPoint point = (centre + radius * QPointF(std::cos(angle), std::sin(angle))).toPoint();
        const QImage around = bar.window()->grabWindow().copy(QRect(point - QPoint(1, 1), QSize(3, 3)));
        for (int i = 0; i < 9; ++i) {
            const QColor pixel = around.pixelColor(i % 3, i / 3);
            if (pixel.red() > 200 && pixel.green() < 100 && pixel.blue() > 200) {
                return true;
            }
        }
        return false;
    };
    QTRY_VERIFY(!isMagenta(45)); // lower right
    bar.screenshot("ring-quarter");
    QVERIFY(isMagenta(135));
    QVERIFY(isMagenta(225));
    QVERIFY(isMagenta(315));
    Q_EMIT bar.agent()->usageReported(0, 12500);
    QTRY_VERIFY(!isMagenta(315)); // half of it
    QVERIFY(isMagenta(135));

    // Beyond the budget the ring stays full.
    Q_EMIT bar.agent()->usageReported(100000, 0);
    QCOMPARE(ring->property("progress").toDouble(), 1.0);
    bar.hover(ring);
    QTRY_COMPARE(tipsOf(bar), QStringList(text("Input: 110000 · Output: 15000 · Total: 125000")));
    // The sum outlives the conversation.
    bar.invoke("clearConversation");
    QVERIFY(bar.isSeen(bar.item("usageRing")));
}

void tst_OmniBarButtons::buttonsGrowIntoTheInput()
{
    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    QVERIFY(bar.settle()); // the entrance scales
    const auto row = [&] { return bar.place(bar.item("settingsBtn")->parentItem()); };
    const auto isInPlace = [&] {
        return row().right() == bar.place(bar.item("barCard")).right() - 10
            && bar.place(bar.item("inputField")).right() == row().left() - 10
            && bar.place(bar.item("barCloseBtn")).right() == row().right();
    };
    QVERIFY(isInPlace());
    const qreal width = row().width();
    bar.type("hello");
    QTRY_COMPARE(row().width(), width + 46); // the send button
    QVERIFY(isInPlace());
    Q_EMIT bar.agent()->usageReported(100, 100);
    QTRY_COMPARE(row().width(), width + 46 + 38); // and the ring
    QVERIFY(isInPlace());
    bar.screenshot("all-buttons");
}

void tst_OmniBarButtons::sendButton()
{
    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    QQuickItem *send = bar.item("sendBtn");
    QVERIFY(!bar.isSeen(send));
    bar.type("   ");
    QVERIFY(!bar.isSeen(send));
    bar.type("hello ");
    QVERIFY(bar.isSeen(send));
    QVERIFY(bar.settle());
    bar.hover(send);
    QTRY_COMPARE(send->scale(), 1.08);
    QCOMPARE(bar.behaviour(send, "scale"), text("120 Linear"));
    bar.click(send);
    QCOMPARE(bar.bridge.takeRequest(text("chat")).params.value(text("message")).toString(), text("hello"));
    QCOMPARE(bar.property("inputField.text").toString(), QString());
    QVERIFY(!bar.isSeen(send));
    QVERIFY(bar.item("inputField")->hasActiveFocus());
}

void tst_OmniBarButtons::closeButton()
{
    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    QQuickItem *close = bar.item("barCloseBtn");
    QCOMPARE(close->property("glyph").toString(), QString(QChar(0x2715)));
    QCOMPARE(close->property("glyphSize").toInt(), 13);
    auto *fill = close->property("background").value<QQuickItem *>();
    QTRY_COMPARE(colourOf(fill), rgba(1, 1, 1, 0.06));
    bar.hover(close);
    QTRY_COMPARE(colourOf(fill), rgba(0.95, 0.2, 0.2, 0.35));
    QCOMPARE(colourOf(close, "iconColor"), rgb(text("#ff6b6b")));
    QTRY_COMPARE(tipsOf(bar), QStringList(text("Close Tovi")));
}

void tst_OmniBarButtons::settingsButton()
{
    OmniBarFixture &bar = m_window.renew();
    QObject *sdk = bar.fake(s_sdk);
    bar.provide("loomraSDK", sdk);
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    const auto calls = [&] { return sdk->property("calls").toStringList(); };
    const auto forget = [&] { bar.evaluate("sdk.calls = []"); };

    QQuickItem *button = bar.item("settingsBtn");
    auto *fill = button->property("background").value<QQuickItem *>();
    QCOMPARE(bar.behaviour(fill, "color").isEmpty(), true); // not hovered yet
    bar.hover(button);
    QTRY_COMPARE(colourOf(fill), rgba(1, 1, 1, 0.15));
    QCOMPARE(bar.behaviour(fill, "color"), text("120 Linear"));

    forget();
    bar.invoke("toggleSettings"); // processes no events
    QCOMPARE(bar.property("settingsPanelOpen").toBool(), true);
    // This one is called at once, the rest from the event loop.
    QCOMPARE(calls(), QStringList(text("listModels()")));
    QTRY_COMPARE(
        calls(),
        QStringList({text("listModels()"), text("refreshWorkspaceTemplates()"), text("refreshWorkspaceIntelPanel()"),
                     text("refreshAiRuntimePanel()"), text("refreshRuntimeHealth()"), text("refreshRuntimeJobs()"),
                     text("refreshPowerProfile()"), text("reminderList()")}));
    QCOMPARE(bar.property("modelsLoading").toBool(), true);
    QVERIFY(bar.settle());

    forget();
    bar.click(button);
    QCOMPARE(bar.property("settingsPanelOpen").toBool(), false);
    QVERIFY(bar.settle());
    QCOMPARE(calls(), QStringList());

    // Without the two features that a bridge may lack.
    sdk->setProperty("workspaceIntelAvailable", false);
    sdk->setProperty("aiRuntimeAvailable", false);
    bar.click(button);
    QTRY_COMPARE(calls(),
                 QStringList({text("listModels()"), text("refreshRuntimeHealth()"), text("refreshRuntimeJobs()"),
                              text("refreshPowerProfile()"), text("reminderList()")}));
    QVERIFY(bar.item("inputField")->hasActiveFocus()); // a click leaves the cursor where it is
}

void tst_OmniBarButtons::settingsButtonWhileConnecting()
{
    OmniBarFixture &bar = m_window.renew();
    QObject *sdk = bar.fake(s_sdk);
    sdk->setProperty("ready", false);
    bar.provide("loomraSDK", sdk);
    QVERIFY(bar.open());
    bar.click("settingsBtn");
    QVERIFY(bar.settle());
    QCOMPARE(bar.property("settingsPanelOpen").toBool(), true);
    QCOMPARE(bar.property("modelsStatusMessage").toString(), text("SDK is connecting..."));
    QCOMPARE(bar.property("modelsLoading").toBool(), false);
    QCOMPARE(sdk->property("calls").toStringList(), QStringList());
}

REGISTER_TEST(tst_OmniBarButtons, QGuiApplication)

#include "tst_OmniBarButtons.moc"
