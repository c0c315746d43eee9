// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Conversation.h"
#include "Looks.h"
#include "Presses.h"
#include "ScriptedSdk.h"
#include "SharedWindow.h"
#include "TestRegistry.h"
#include "TestSetup.h"

#include <QGuiApplication>
#include <QTest>

namespace
{

const char *s_two = "sessionsListed([{ id: 'ses_a', name: 'Garden' }, { id: 'ses_b', name: 'Kitchen' }])";

} // namespace

//! The tab that manages the sessions in the settings sheet.
class tst_SessionsTab : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void enteringLoadsTheList();
    void words();
    void look();
    void height_data();
    void height();
    void buttons_data();
    void buttons();
    void rename_data();
    void rename();
    void escapeLeavesTheField();
    void focusAfterRenaming_data();
    void focusAfterRenaming();
    void listUnderTheOpenField();
    void deletingByKeys();
    void deletingAll();
    void allByKeyboard();
    void hostileTexts();

private:
    //! Opens the tab with a list of sessions.
    bool begin(Conversation &bar, const QString &signal = QString::fromUtf8(s_two));
    void send(Conversation &bar, const QString &signal) { bar.evaluate(text("sdk.") + signal); }
    //! A control in a row.
    QQuickItem *inRow(Conversation &bar, int index, const char *name) const;
    QString textIn(Conversation &bar, const char *name) const { return bar.item(name)->property("text").toString(); }

    std::unique_ptr<ScriptedSdk> m_sdk;
    SharedWindow<Conversation> m_window {[this](Conversation &bar) { m_sdk = std::make_unique<ScriptedSdk>(bar); }};
};

bool tst_SessionsTab::begin(Conversation &bar, const QString &signal)
{
    if (!bar.begin()) {
        return false;
    }
    bar.click("settingsBtn");
    const bool isOpen = bar.openTab(text("Sessions"));
    send(bar, signal);
    m_sdk->takeCalls();
    return isOpen && bar.settle();
}

QQuickItem *tst_SessionsTab::inRow(Conversation &bar, int index, const char *name) const
{
    const QList<QQuickItem *> rows = bar.items("managedSession");
    const auto found = std::find_if(rows.cbegin(), rows.cend(),
                                    [index](QQuickItem *row) { return row->property("index").toInt() == index; });
    return found == rows.cend() ? nullptr : bar.itemIn(*found, text(name));
}

void tst_SessionsTab::enteringLoadsTheList()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.click("settingsBtn");
    QVERIFY(bar.settle());
    m_sdk->takeCalls();
    QVERIFY(bar.openTab(text("Sessions")));
    QCOMPARE(m_sdk->takeCalls(), QStringList {text("listSessions()")});
    QVERIFY(bar.isSeen(bar.item("sessionsLoading")));
    send(bar, text(s_two));
    QVERIFY(!bar.isSeen(bar.item("sessionsLoading")));
    QTRY_COMPARE(bar.items("managedSession").size(), 2);
}

void tst_SessionsTab::words()
{
    Conversation &bar = m_window.take();
    QVERIFY(begin(bar));
    bar.evaluate("sdk.currentSessionId = 'ses_a'");
    bar.setProperty("sessionDeleteStatusMessage", text("All sessions deleted."));
    QCOMPARE(Conversation::textsIn(bar.item("sessionsTab")),
             QStringList({text("Session manager"), text("Create, switch, rename, or delete conversation sessions."),
                          text("Active: ses_a"), text("New session"), text("Refresh"), text("Garden"), text("active"),
                          text("ses_a"), text("Rename"), text("Delete"), text("Kitchen"), text("ses_b"), text("Switch"),
                          text("Rename"), text("Delete"), text("Delete all sessions"), text("2 session(s)"),
                          text("All sessions deleted.")}));
    bar.evaluate("sdk.currentSessionId = ''");
    QCOMPARE(textIn(bar, "activeSession"), text("No active session"));
    send(bar, text("sessionsListed([])"));
    QCOMPARE(textIn(bar, "noSessions"), text("No sessions. Tap Refresh to load or New session to start."));
    QVERIFY(bar.isSeen(bar.item("noSessions")));
    QCOMPARE(textIn(bar, "sessionsStatus"), text("No sessions found."));
    QVERIFY(bar.settle());
    bar.screenshot("sheet-sessions-empty");
}

void tst_SessionsTab::look()
{
    Conversation &bar = m_window.take();
    QVERIFY(begin(bar));
    bar.evaluate("sdk.currentSessionId = 'ses_b'");
    bar.invoke("startRenaming", {text("ses_a"), text("Garden")});
    for (const bool isLight : {false, true}) {
        bar.setLight(isLight);
        QVERIFY(bar.settle());
        bar.screenshot(isLight ? "sheet-sessions-light" : "sheet-sessions");
        QQuickItem *active = bar.items("managedSession").at(1)->childItems().first();
        QCOMPARE(active->property("color"), bar.evaluate("omniTheme.uiAccentDim"));
        QCOMPARE(active->property("border").value<QObject *>()->property("color"),
                 bar.evaluate("omniTheme.uiAccentBorder"));
        QQuickItem *other = bar.items("managedSession").at(0)->childItems().first();
        QCOMPARE(colourOf(other), rgba(0, 0, 0, 0));
        QVERIFY(!bar.isSeen(inRow(bar, 1, "switchSessionBtn")));
        QVERIFY(bar.isSeen(inRow(bar, 1, "activeBadge")));
        QVERIFY(bar.isSeen(inRow(bar, 0, "switchSessionBtn")));
        QCOMPARE(inRow(bar, 0, "renameSessionBtn")->property("label").toString(), text("Save"));
        QCOMPARE(inRow(bar, 1, "renameSessionBtn")->property("label").toString(), text("Rename"));
    }
}

void tst_SessionsTab::height_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<qreal>("height");

    QTest::newRow("none") << 0 << 48.0;
    QTest::newRow("one") << 1 << 54.0;
    QTest::newRow("six") << 6 << 304.0;
    QTest::newRow("many") << 3000 << 320.0;
}

void tst_SessionsTab::height()
{
    QFETCH(int, count);
    QFETCH(qreal, height);

    Conversation &bar = m_window.take();
    QVERIFY(
        begin(bar,
              text("sessionsListed(Array.from({ length: %1 }, (_, i) => ({ id: 'ses_' + i, name: 'Session ' + i })))")
                  .arg(count)));
    QCOMPARE(bar.item("sessionManagerList")->height(), height);
    QVERIFY(bar.items("managedSession").size() < 30);
    if (count > 6) {
        bar.screenshot("sheet-sessions-many");
    }
}

void tst_SessionsTab::buttons_data()
{
    QTest::addColumn<By>("by");
    for (const auto &way : waysToPress) {
        QTest::newRow(way.name) << way.by;
    }
}

void tst_SessionsTab::buttons()
{
    QFETCH(By, by);

    Conversation &bar = m_window.take();
    QVERIFY(begin(bar));
    const struct
    {
        QQuickItem *button;
        QString call;
    } steps[] = {
        {bar.item("newSessionBtn"), text("createSession()")},
        {bar.item("refreshSessionsBtn"), text("listSessions()")},
        {inRow(bar, 1, "switchSessionBtn"), text("switchSession(ses_b)")},
        {inRow(bar, 1, "removeSessionBtn"), text("deleteSession(ses_b)")},
        {bar.item("deleteEverySessionBtn"), text("listSessions()")},
    };
    for (const auto &step : steps) {
        press(bar, step.button, by);
        QCOMPARE(m_sdk->takeCalls(), QStringList {step.call});
    }
}

void tst_SessionsTab::rename_data()
{
    QTest::addColumn<bool>("byEnter");
    QTest::newRow("Enter") << true;
    QTest::newRow("button") << false;
}

void tst_SessionsTab::rename()
{
    QFETCH(bool, byEnter);

    Conversation &bar = m_window.take();
    QVERIFY(begin(bar));
    bar.click(inRow(bar, 1, "renameSessionBtn"));
    QQuickItem *field = inRow(bar, 1, "sessionNameField");
    QVERIFY(field);
    QVERIFY(field->hasActiveFocus());
    QCOMPARE(field->property("selectedText").toString(), text("Kitchen"));
    const auto save = [&] {
        if (byEnter) {
            bar.key(Qt::Key_Return);
        } else {
            bar.click(inRow(bar, 1, "renameSessionBtn"));
        }
    };
    bar.type(" ");
    save();
    QCOMPARE(m_sdk->takeCalls(), QStringList());
    bar.type(" Pantry ");
    save();
    QCOMPARE(m_sdk->takeCalls(), QStringList {text("renameSession(ses_b, Pantry)")});
    QVERIFY(inRow(bar, 1, "sessionNameField"));
    send(bar, text("sessionRenamed('ses_b', 'Pantry')"));
    QCOMPARE(textIn(bar, "sessionsStatus"), text("Renamed to Pantry"));
    QTRY_VERIFY(!inRow(bar, 1, "sessionNameField"));
}

void tst_SessionsTab::escapeLeavesTheField()
{
    Conversation &bar = m_window.take();
    QVERIFY(begin(bar));
    bar.click(inRow(bar, 0, "renameSessionBtn"));
    bar.type("Flowers");
    bar.key(Qt::Key_Escape);
    QTRY_VERIFY(!inRow(bar, 0, "sessionNameField"));
    QCOMPARE(m_sdk->takeCalls(), QStringList());
    QVERIFY(bar.property("settingsPanelOpen").toBool());
    QCOMPARE(inRow(bar, 0, "sessionName")->property("text").toString(), text("Garden"));
    bar.key(Qt::Key_Escape);
    QVERIFY(!bar.property("settingsPanelOpen").toBool());
}

void tst_SessionsTab::focusAfterRenaming_data()
{
    QTest::addColumn<bool>("byKeys");
    QTest::addColumn<bool>("isSaved");
    QTest::newRow("keys, saved") << true << true;
    QTest::newRow("keys, left") << true << false;
    QTest::newRow("mouse, saved") << false << true;
    QTest::newRow("mouse, left") << false << false;
}

void tst_SessionsTab::focusAfterRenaming()
{
    QFETCH(bool, byKeys);
    QFETCH(bool, isSaved);

    Conversation &bar = m_window.take();
    QVERIFY(begin(bar));
    QQuickItem *button = inRow(bar, 1, "renameSessionBtn");
    if (byKeys) {
        bar.focus(button);
        bar.key(Qt::Key_Space);
    } else {
        bar.click(button);
    }
    bar.type("Pantry");
    bar.key(isSaved ? Qt::Key_Return : Qt::Key_Escape);
    if (isSaved) {
        send(bar, text("sessionRenamed('ses_b', 'Pantry')"));
        send(bar, text("sessionsListed([{ id: 'ses_a', name: 'Garden' }, { id: 'ses_b', name: 'Pantry' }])"));
    }
    QTRY_VERIFY(!inRow(bar, 1, "sessionNameField"));
    QVERIFY(bar.settle());
    QQuickItem *const expected = byKeys ? button : bar.item("inputField");
    QTRY_VERIFY(expected->hasActiveFocus());
    QCOMPARE(button->property("visualFocus").toBool(), byKeys);
}

void tst_SessionsTab::listUnderTheOpenField()
{
    Conversation &bar = m_window.take();
    QVERIFY(begin(bar));
    bar.click(inRow(bar, 1, "renameSessionBtn"));
    bar.type("Pan");
    QQuickItem *field = inRow(bar, 1, "sessionNameField");
    // Another window has created one session, deleted one and renamed this one.
    send(bar, text("sessionsListed([{ id: 'ses_new', name: 'New' }, { id: 'ses_b', name: 'Cellar' }])"));
    QCOMPARE(inRow(bar, 1, "sessionNameField"), field);
    QVERIFY(field->hasActiveFocus());
    bar.type("try");
    QCOMPARE(field->property("text").toString(), text("Pantry"));
    // It has deleted this one too.
    send(bar, text("sessionsListed([{ id: 'ses_new', name: 'New' }])"));
    QCOMPARE(bar.items("sessionNameField").size(), 0);
    QTRY_VERIFY(bar.item("inputField")->hasActiveFocus());
    bar.type("still here");
    QCOMPARE(bar.item("inputField")->property("text").toString(), text("still here"));
}

void tst_SessionsTab::deletingByKeys()
{
    Conversation &bar = m_window.take();
    QVERIFY(begin(bar, text("sessionsListed(['a', 'b', 'c'].map(id => ({ id: id, name: 'Session ' + id })))")));
    bar.focus(inRow(bar, 1, "removeSessionBtn"));
    const auto isInRow = [&](const char *id) {
        QQuickItem *item = bar.window()->activeFocusItem();
        return item && item->objectName() == text("removeSessionBtn")
            && item->property("label").toString() == text("Delete")
            && item->parentItem()->parentItem()->property("sid").toString() == text(id);
    };
    bar.key(Qt::Key_Return);
    send(bar, text("sessionDeleted('b')"));
    QTRY_VERIFY(isInRow("c"));
    bar.key(Qt::Key_Return);
    send(bar, text("sessionDeleted('c')"));
    QTRY_VERIFY(isInRow("a"));
    bar.key(Qt::Key_Return);
    send(bar, text("sessionDeleted('a')"));
    QTRY_VERIFY(bar.item("inputField")->hasActiveFocus());
}

void tst_SessionsTab::deletingAll()
{
    Conversation &bar = m_window.take();
    QVERIFY(begin(bar));
    QQuickItem *button = bar.item("deleteEverySessionBtn");
    bar.click(button);
    QCOMPARE(button->property("label").toString(), text("Deleting sessions..."));
    QVERIFY(!button->isEnabled());
    send(bar, text(s_two));
    QCOMPARE(textIn(bar, "sessionDeleteStatus"), text("Deleting 2 session(s)..."));
    send(bar, text("sessionDeleted('ses_a')"));
    QTRY_COMPARE(bar.items("managedSession").size(), 1);
    QCOMPARE(textIn(bar, "sessionDeleteStatus"), text("Deleting... 1 remaining."));
    send(bar, text("sessionDeleted('ses_b')"));
    QCOMPARE(textIn(bar, "sessionDeleteStatus"), text("All sessions deleted."));
    QVERIFY(button->isEnabled());
}

void tst_SessionsTab::allByKeyboard()
{
    Conversation &bar = m_window.take();
    QVERIFY(begin(bar, text("sessionsListed(Array.from({ length: 12 }, (_, i) => ({ id: 'ses_' + i })))")));
    bar.focus(bar.item("newSessionBtn"));
    QSet<QString> reached;
    QQuickItem *list = bar.item("sessionManagerList");
    for (int i = 0; i < 60 && !bar.item("deleteEverySessionBtn")->hasActiveFocus(); ++i) {
        bar.key(Qt::Key_Tab);
        QQuickItem *item = bar.window()->activeFocusItem();
        reached.insert(item->objectName() + item->parentItem()->parentItem()->property("index").toString());
        if (list->isAncestorOf(item)) {
            QTRY_VERIFY2(bar.place(list).contains(bar.place(item)), qPrintable(item->objectName()));
        }
    }
    for (int i = 0; i < 12; ++i) {
        for (const char *name : {"switchSessionBtn", "renameSessionBtn", "removeSessionBtn"}) {
            QVERIFY2(reached.contains(text(name) + QString::number(i)), qPrintable(text(name) + QString::number(i)));
        }
    }
}

void tst_SessionsTab::hostileTexts()
{
    Conversation &bar = m_window.take();
    const QString hostile = text("<img src='http://127.0.0.1:9/x'>&R&D\\u202e\\n") + text("x").repeated(5000);
    QVERIFY(begin(bar, text("sessionsListed([{ id: \"%1\", name: \"%1\" }, { id: \"b%1\" }])").arg(hostile)));
    bar.evaluate(text("sdk.currentSessionId = \"%1\"").arg(hostile));
    send(bar, text("sessionCreated(\"%1\")").arg(hostile));
    bar.click("newSessionBtn");
    bar.click("deleteEverySessionBtn");
    send(bar, text("error(\"%1\")").arg(hostile));
    QVERIFY(bar.settle());
    bar.screenshot("sheet-sessions-hostile");
    // Cut on the tab, whole in the tooltip.
    for (const char *name : {"activeSession", "sessionName", "sessionId"}) {
        QVERIFY2(bar.item(name)->property("whole").toString().size() > 999, name);
        QVERIFY2(bar.item(name)->property("text").toString().size() < 300, name);
    }
    // An error's text is the bridge's too.
    for (const char *name : {"sessionsStatus", "sessionDeleteStatus"}) {
        const QQuickItem *const status = bar.item(name);
        QVERIFY2(status->isVisible(), name);
        QVERIFY2(status->height() < 100, name);
        QVERIFY2(!status->property("text").toString().contains(QLatin1Char('\n')), name);
        QVERIFY2(!status->property("text").toString().contains(QChar(0x202e)), name);
    }
    QCOMPARE(Conversation::looseTexts(bar.item("sessionsTab")), QStringList());
}

REGISTER_TEST(tst_SessionsTab, QGuiApplication)

#include "tst_SessionsTab.moc"
