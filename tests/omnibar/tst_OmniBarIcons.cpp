// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Looks.h"

#include "AgentBridge.h"
#include "IconTheme.h"
#include "OmniBarFixture.h"
#include "TestRegistry.h"

#include <QGuiApplication>
#include <QIcon>
#include <QTemporaryDir>
#include <QTest>

//! Icons that the theme lacks are replaced by a fallback.
class tst_OmniBarIcons : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void drawsWhatTheThemeHas_data();
    void drawsWhatTheThemeHas();
    void anotherNameIsTriedAnew();

private:
    QTemporaryDir m_themes;
};

void tst_OmniBarIcons::initTestCase()
{
    QVERIFY(m_themes.isValid());
    const QStringList others = {text("settings-configure"), text("audio-input-microphone"), text("edit-copy")};
    const QStringList first = {text("starred-symbolic"), text("view-restore"), text("view-fullscreen"), text("go-up"),
                               text("dialog-messages"),  text("checkmark")};
    const QStringList second = {text("draw-star"), text("window-restore"), text("window-maximize"),
                                text("arrow-up"),  text("chat"),           text("dialog-ok")};
    QVERIFY(IconTheme::write(m_themes.path(), text("full"), others + first + second));
    QVERIFY(IconTheme::write(m_themes.path(), text("poor"), others + second));
    QVERIFY(IconTheme::write(m_themes.path(), text("bare"), others));
    QVERIFY(IconTheme::write(m_themes.path(), text("mixed"), others + second + QStringList(text("view-restore"))));
    QIcon::setThemeSearchPaths({m_themes.path()});
    QIcon::setFallbackSearchPaths({});
}

void tst_OmniBarIcons::drawsWhatTheThemeHas_data()
{
    QTest::addColumn<QString>("theme");
    QTest::addColumn<bool>("fallback");

    QTest::newRow("all icons") << text("full") << false;
    QTest::newRow("only the second names") << text("poor") << true;
    // Nothing is shown, and the search for an icon ends.
    QTest::newRow("neither") << text("bare") << true;
}

void tst_OmniBarIcons::drawsWhatTheThemeHas()
{
    QFETCH(QString, theme);
    QFETCH(bool, fallback);

    const auto name = [&](const char *first, const char *second) { return text(fallback ? second : first); };
    const QString star = name("starred-symbolic", "draw-star");

    OmniBarFixture bar;
    QIcon::setThemeName(theme);
    QVERIFY(bar.open());
    // The fallback theme that Plasma's modules set isn't in the search path either.
    QCOMPARE(QIcon::themeName(), theme);
    QVERIFY(!QIcon::hasThemeIcon(text("starred-symbolic")) == fallback);

    bar.type("hello");
    QVERIFY(bar.settle());
    QCOMPARE(
        iconsIn(bar.item("barCard")),
        QStringList({star, text("settings-configure"), text("audio-input-microphone"), name("go-up", "arrow-up")}));

    bar.key(Qt::Key_Return);
    bar.bridge.reply(bar.bridge.takeRequest(text("chat")), QJsonObject {{text("response"), text("hi")}});
    QTRY_COMPARE(bar.items("messageRow").size(), 2);
    QVERIFY(bar.settle());
    // The header's star is the panel's first icon, and the reply has one as its avatar.
    QCOMPARE(iconsIn(bar.item("chatPanel")).value(0), star);
    QCOMPARE(iconsIn(bar.items("messageRow").at(1)).value(0), star);
    QTRY_COMPARE(iconsIn(bar.item("expandBtn")), QStringList(name("view-fullscreen", "window-maximize")));
    bar.click("expandBtn");
    QTRY_COMPARE(iconsIn(bar.item("expandBtn")), QStringList(name("view-restore", "window-restore")));
    bar.click("expandBtn");
    QTRY_COMPARE(iconsIn(bar.item("expandBtn")), QStringList(name("view-fullscreen", "window-maximize")));

    QVERIFY(bar.settle());
    QTRY_VERIFY(bar.item("copyBtn"));
    QTRY_COMPARE(iconsIn(bar.item("copyBtn")), QStringList(text("edit-copy")));
    bar.click("copyBtn");
    QTRY_COMPARE(iconsIn(bar.item("copyBtn")), QStringList(name("checkmark", "dialog-ok")));

    bar.invoke("shrinkToCompactBubble");
    QVERIFY(bar.settle());
    QCOMPARE(iconsIn(bar.item("compactBubble")), QStringList(name("dialog-messages", "chat")));
}

void tst_OmniBarIcons::anotherNameIsTriedAnew()
{
    OmniBarFixture bar;
    QIcon::setThemeName(text("mixed"));
    QVERIFY(bar.open());
    bar.invoke("appendUserMessage", {text("hello")});
    QTRY_VERIFY(bar.item("expandBtn"));
    QVERIFY(bar.settle());
    QTRY_COMPARE(iconsIn(bar.item("expandBtn")), QStringList(text("window-maximize")));
    bar.setProperty("chatExpanded", true);
    QVERIFY(bar.settle());
    QCOMPARE(iconsIn(bar.item("expandBtn")), QStringList(text("view-restore")));
}

REGISTER_TEST(tst_OmniBarIcons, QGuiApplication)

#include "tst_OmniBarIcons.moc"
