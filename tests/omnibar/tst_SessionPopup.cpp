// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Conversation.h"
#include "Looks.h"
#include "Presses.h"

#include "SharedWindow.h"
#include "TestRegistry.h"

#include <QAccessible>
#include <QDateTime>
#include <QGuiApplication>
#include <QTest>

namespace
{

//! A stand-in for the bridge client with sessions, which it lists at once.
const char *s_sdk = R"(FakeSdk {
    property var sessions: []
    function listModels() {}
    function listSessions() { note("listSessions", []); sessionsListed(sessions) }
})";

QVariantMap session(const QString &id, const QString &name)
{
    return {{QStringLiteral("id"), id}, {QStringLiteral("name"), name}, {QStringLiteral("createdAt"), 1700000000}};
}

QVariantList numberedSessions(int count)
{
    QVariantList list;
    for (int i = 1; i <= count; ++i) {
        list.append(session(QStringLiteral("ses_%1").arg(i, 12, 10, QLatin1Char('0')), text("Session %1").arg(i)));
    }
    return list;
}

} // namespace

//! The command /session in the real window.
class tst_SessionPopup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void look();
    void oneSession();
    void manySessionsScroll();
    void hostileNames();
    void rowSwitches_data();
    void rowSwitches();
    void buttonDeletes_data();
    void buttonDeletes();
    void deletesByKeyOneByOne();
    void deletesAll_data();
    void deletesAll();
    void closes_data();
    void closes();
    void escapeTouchesNothingElse();
    void clickBesideTheRowsDoesNothing();
    void emptyListIsARow();

private:
    //! Opens the popup by the command.
    void openWith(Conversation &bar, const QVariantList &sessions);
    QQuickItem *rowAt(Conversation &bar, int index) const;
    QStringList takeCalls();
    bool isOpen(Conversation &bar) const { return bar.isSeen(bar.item("sessionPopup")); }

    QObject *m_sdk = nullptr;
    SharedWindow<Conversation> m_window {[this](Conversation &bar) {
        m_sdk = bar.fake(s_sdk);
        bar.provide("loomraSDK", m_sdk);
    }};
};

void tst_SessionPopup::openWith(Conversation &bar, const QVariantList &sessions)
{
    m_sdk->setProperty("sessions", sessions);
    bar.type("/session");
    bar.key(Qt::Key_Return);
    QCOMPARE(takeCalls(), QStringList {text("listSessions()")});
    QCOMPARE(isOpen(bar), !sessions.isEmpty());
    QVERIFY(bar.settle());
}

QQuickItem *tst_SessionPopup::rowAt(Conversation &bar, int index) const
{
    const QList<QQuickItem *> rows = bar.items("sessionRow");
    const auto found = std::find_if(rows.cbegin(), rows.cend(),
                                    [index](QQuickItem *row) { return row->property("index").toInt() == index; });
    return found == rows.cend() ? nullptr : *found;
}

QStringList tst_SessionPopup::takeCalls()
{
    const QStringList calls = m_sdk->property("calls").toStringList();
    m_sdk->setProperty("calls", QStringList());
    return calls;
}

void tst_SessionPopup::look()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    openWith(bar, numberedSessions(3));
    for (const bool isLight : {false, true}) {
        bar.setLight(isLight);
        QVERIFY(bar.settle());
        bar.screenshot(isLight ? "sessions-3-light" : "sessions-3");
        QQuickItem *popup = bar.item("sessionPopup");
        QCOMPARE(colourOf(popup), rgba(0.10, 0.06, 0.18, 0.95));
        QCOMPARE(popup->property("radius").toInt(), 14);
        QCOMPARE(popup->width(), 660.0);
        QCOMPARE(popup->height(), 36.0 + 6 + 3 * 52 + 16);
        QCOMPARE(bar.place(popup).bottom() + 8, bar.place(bar.item("barCard")).top());
        QVERIFY(Conversation::textsIn(popup).contains(text("Sessions (3)")));
        QVERIFY(Conversation::textsIn(popup).contains(text("Delete All")));
    }
    QQuickItem *row = rowAt(bar, 1);
    QCOMPARE(row->height(), 52.0);
    const QDateTime created = QDateTime::fromSecsSinceEpoch(1700000000);
    QCOMPARE(Conversation::textsIn(row).mid(0, 2),
             QStringList({text("Session 2"),
                          QLocale::c().toString(created, QStringLiteral("MMM d, h:mm AP")) + text(" · ses_0000…")}));
    QCOMPARE(bar.textItem(text("Session 2"))->property("font").value<QFont>().pixelSize(), 13);
    QCOMPARE(iconsIn(row).first(), text("view-history"));
    QCOMPARE(bar.itemIn(row, text("deleteSessionBtn"))->width(), 28.0);
    QCOMPARE(bar.itemIn(row, text("deleteSessionBtn"))->height(), 28.0);
}

void tst_SessionPopup::oneSession()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    openWith(bar, {session(text("ses_1"), text("ses_1"))});
    bar.screenshot("sessions-1");
    QCOMPARE(bar.items("sessionRow").size(), 1);
    QVERIFY(Conversation::textsIn(rowAt(bar, 0)).first().startsWith(text("Chat · Nov ")));
}

void tst_SessionPopup::manySessionsScroll()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.emitReply(QStringLiteral("so that the bar is at the bottom"));
    QVERIFY(bar.settle());
    openWith(bar, numberedSessions(20));
    bar.screenshot("sessions-20");
    QCOMPARE(bar.item("sessionPopup")->height(), 400.0);
    QQuickItem *list = bar.item("sessionList");
    turnWheel(bar, list, -2);
    QTRY_VERIFY(list->property("contentY").toReal() > 0);
    for (int step = 0; step < 20 && !list->hasActiveFocus() && !bar.item("sessionRow")->hasActiveFocus(); ++step) {
        bar.key(Qt::Key_Backtab, Qt::ShiftModifier);
    }
    for (int step = 0; step < 15; ++step) {
        bar.key(Qt::Key_Down);
    }
    QCOMPARE(list->property("currentIndex").toInt(), 15);
    QVERIFY(bar.settle());
    QVERIFY(rowAt(bar, 15) && rowAt(bar, 15)->hasActiveFocus());
    QVERIFY(bar.place(list).contains(bar.place(rowAt(bar, 15))));
    bar.screenshot("sessions-20-focus");
    bar.key(Qt::Key_Return);
    QCOMPARE(takeCalls(),
             QStringList({text("switchSession(ses_000000000016)"), text("loadMessages(ses_000000000016)")}));
}

void tst_SessionPopup::hostileNames()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    openWith(bar,
             {session(text("a\nb"), QString(500, QLatin1Char('W'))),
              session(text("2"), text("<b>bold</b> **stars** `code`\nsecond line")),
              session(text("3"), text("שלום עולם, מה נשמע")), session(text("4"), text("👩\u200d💻 emoji 🎉 & R&D"))});
    bar.screenshot("sessions-hostile");
    for (QQuickItem *row : bar.items("sessionRow")) {
        QCOMPARE(row->height(), 52.0);
    }
    QCOMPARE(Conversation::textsIn(rowAt(bar, 1)).first(), text("<b>bold</b> **stars** `code`\uFFFDsecond line"));
    bar.click(rowAt(bar, 1));
    QVERIFY(bar.settle());
    bar.screenshot("switched-hostile");
    QCOMPARE(bar.count(), 1);
}

void tst_SessionPopup::rowSwitches_data()
{
    QTest::addColumn<By>("by");
    for (const auto &way : waysToPress) {
        QTest::newRow(way.name) << way.by;
    }
}

void tst_SessionPopup::rowSwitches()
{
    QFETCH(const By, by);
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.emitReply(QStringLiteral("of another session"));
    openWith(bar, numberedSessions(3));
    press(bar, rowAt(bar, 1), by);
    QVERIFY(!isOpen(bar));
    QCOMPARE(takeCalls(),
             QStringList({text("switchSession(ses_000000000002)"), text("loadMessages(ses_000000000002)")}));
    QCOMPARE(bar.rows(), QStringList {text("system: Switched to **Session 2**")});
    QTRY_VERIFY(bar.item("inputField")->hasActiveFocus());
}

void tst_SessionPopup::buttonDeletes_data()
{
    rowSwitches_data();
}

void tst_SessionPopup::buttonDeletes()
{
    QFETCH(const By, by);
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    openWith(bar, numberedSessions(2));
    press(bar, bar.itemIn(rowAt(bar, 1), text("deleteSessionBtn")), by);
    QVERIFY(isOpen(bar));
    QCOMPARE(takeCalls(), QStringList {text("deleteSession(ses_000000000002)")});
    QCOMPARE(bar.rows(), QStringList {text("system: Deleted session **Session 2**.")});
    QVERIFY(bar.settle());
    QVERIFY(Conversation::textsIn(bar.item("sessionPopup")).contains(text("Sessions (1)")));
    press(bar, bar.itemIn(rowAt(bar, 0), text("deleteSessionBtn")), by);
    QVERIFY(!isOpen(bar));
    QTRY_VERIFY(bar.item("inputField")->hasActiveFocus());
}

void tst_SessionPopup::deletesByKeyOneByOne()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    openWith(bar, numberedSessions(3));
    bar.focus(bar.itemIn(rowAt(bar, 0), text("deleteSessionBtn")));
    bar.key(Qt::Key_Return);
    // The keyboard stays in the list.
    QVERIFY(bar.settle());
    QVERIFY(bar.item("sessionList")->property("activeFocus").toBool());
    bar.key(Qt::Key_Down);
    QVERIFY(rowAt(bar, 1)->hasActiveFocus());
}

void tst_SessionPopup::deletesAll_data()
{
    rowSwitches_data();
}

void tst_SessionPopup::deletesAll()
{
    QFETCH(const By, by);
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    openWith(bar, numberedSessions(2));
    press(bar, bar.item("deleteAllSessionsBtn"), by);
    QVERIFY(!isOpen(bar));
    QCOMPARE(takeCalls(),
             QStringList({text("deleteSession(ses_000000000001)"), text("deleteSession(ses_000000000002)")}));
    QCOMPARE(bar.rows(), QStringList {text("system: Deleted all 2 session(s).")});
    QTRY_VERIFY(bar.item("inputField")->hasActiveFocus());
}

void tst_SessionPopup::closes_data()
{
    rowSwitches_data();
}

void tst_SessionPopup::closes()
{
    QFETCH(const By, by);
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    openWith(bar, numberedSessions(2));
    press(bar, bar.item("closeSessionsBtn"), by);
    QVERIFY(!isOpen(bar));
    QCOMPARE(takeCalls(), QStringList());
    QCOMPARE(bar.count(), 0);
    QTRY_VERIFY(bar.item("inputField")->hasActiveFocus());
}

void tst_SessionPopup::escapeTouchesNothingElse()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    openWith(bar, numberedSessions(2));
    bar.setProperty("settingsPanelOpen", true);
    bar.type("/");
    bar.key(Qt::Key_Escape); // the menu is above the popup
    QVERIFY(isOpen(bar));
    bar.key(Qt::Key_Escape);
    QVERIFY(!isOpen(bar));
    QVERIFY(bar.property("settingsPanelOpen").toBool());
    QVERIFY(!bar.property("compactMode").toBool());
}

void tst_SessionPopup::clickBesideTheRowsDoesNothing()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    openWith(bar, numberedSessions(2));
    bar.setProperty("settingsPanelOpen", true);
    bar.clickAt(bar.place(bar.item("sessionPopup")).topLeft().toPoint() + QPoint(200, 20));
    QVERIFY(bar.property("settingsPanelOpen").toBool());
    QVERIFY(isOpen(bar));
    QCOMPARE(takeCalls(), QStringList());
}

void tst_SessionPopup::emptyListIsARow()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    openWith(bar, {});
    QCOMPARE(bar.rows(), QStringList {text("system: No sessions found. Use `/new` to create one.")});
}

REGISTER_TEST(tst_SessionPopup, QGuiApplication)

#include "tst_SessionPopup.moc"
