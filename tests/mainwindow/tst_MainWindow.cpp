// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Contrast.h"
#include "MainWindowFixture.h"
#include "TestRegistry.h"

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QPalette>
#include <QTemporaryDir>
#include <QTest>

using Request = ScriptedBridge::Request;

namespace
{

//! Set for a process of its own, see CMakeLists.txt.
const bool s_isDark = qEnvironmentVariableIsSet("TEST_DARK");

} // namespace

//! The main window with its real client and a scripted bridge. One long file: a test for each part of the window.
class tst_MainWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void layout();
    void withoutData();
    void promptAndReply();
    void replyTwice();
    void returnIsSwallowed();
    void streaming();
    void untrustedNames();
    void choosesModelAndAgent();
    void switchesSessions();
    void newSessionIsNamed();
    void renamesAndDeletes_data();
    void renamesAndDeletes();
    void longHistory();
    void clearedWhileScrolled();
    void files();
    void generatedCodeArrives();
    void asksBeforeClosing();
    void looks_data();
    void looks();
    void projectSettings();
    void about();
    void settingsPage();
    void everythingIsReachedByTab();
    void withoutObjects_data();
    void withoutObjects();
    void unreachableBridge();
};

void tst_MainWindow::initTestCase()
{
    if (s_isDark) {
        QGuiApplication::setPalette(QPalette(QColor(49, 54, 59), QColor(35, 38, 41)));
        QVERIFY(qGray(QGuiApplication::palette().color(QPalette::Text).rgb()) > 200);
    }
}

void tst_MainWindow::layout()
{
    MainWindowFixture window;
    QVERIFY(window.openReady());
    const int unit = window.evaluateInWindow(QStringLiteral("Kirigami.Units.gridUnit")).toInt();
    QVERIFY(unit > 0);
    QCOMPARE(window.window()->title(), QStringLiteral("Loomra KDE"));
    QCOMPARE(window.window()->size(), QSize(60, 40) * unit);
    QCOMPARE(window.window()->minimumSize(), QSize(40, 30) * unit);
    QCOMPARE(window.item("sessionSidebar")->width(), 280.0);
    QCOMPARE(window.property("globalDrawer.title").toString(), QStringLiteral("Loomra KDE"));
    QCOMPARE(window.property("globalDrawer.titleIcon").toString(), QStringLiteral("loomra-kde"));
    QStringList actions;
    for (int i = 0; i < 3; ++i) {
        actions.append(
            window.evaluateInWindow(QStringLiteral("mainWindow.globalDrawer.actions[%1].text").arg(i)).toString());
    }
    QCOMPARE(actions,
             (QStringList {QStringLiteral("Settings"), QStringLiteral("Project Settings"), QStringLiteral("About")}));
    QCOMPARE(window.item("modelButton")->width(), 200.0);
    QVERIFY(window.item("agentButton")->width() >= 150 && window.item("agentButton")->width() <= 300);
    QCOMPARE(window.of("chatInput", "placeholderText").toString(), QStringLiteral("Type your message..."));
    QCOMPARE(window.of("projectPathField", "placeholderText").toString(), QStringLiteral("Enter project path..."));

    window.window()->resize(window.window()->minimumSize());
    QTRY_COMPARE(window.window()->contentItem()->width(), 40.0 * unit);
    QTRY_VERIFY(window.item("sessionSidebar")->width() >= 250);
    QTRY_VERIFY(QRectF(QPointF(), QSizeF(window.window()->size())).contains(window.place(window.item("agentButton"))));
    QVERIFY(window.item("agentButton")->width() >= 150);
    window.screenshot("main-smallest");
}

void tst_MainWindow::withoutData()
{
    MainWindowFixture window;
    QVERIFY(window.openWindow());
    QCOMPARE(window.of("choiceCaption", "text").toString(), QStringLiteral("No free models available"));
    QVERIFY(!window.of("modelButton", "enabled").toBool());
    QVERIFY(!window.of("newSessionButton", "enabled").toBool());
    window.bridge.ready();
    QTRY_COMPARE(window.of("choiceCaption", "text").toString(), QStringLiteral("Loading free models..."));
    window.answer("listSessions", {{QStringLiteral("sessions"), QJsonArray()}});
    QVERIFY(window.isSeen(window.item("noSessions")));
    QCOMPARE(window.of("noSessions", "text").toString(), QStringLiteral("No sessions"));
    QVERIFY(window.item("chatInput")->hasActiveFocus());
    QVERIFY(!window.of("sendButton", "enabled").toBool());
    window.screenshot("main-empty");
}

void tst_MainWindow::promptAndReply()
{
    MainWindowFixture window;
    QVERIFY(window.openReady());
    window.type("  Hello <b>there</b> & ü ");
    window.key(Qt::Key_Return, Qt::ControlModifier);
    const Request chat = window.bridge.takeRequest(QStringLiteral("chat"));
    QCOMPARE(chat.params.value(QLatin1String("message")).toString(), QStringLiteral("Hello <b>there</b> & ü"));
    QCOMPARE(chat.params.value(QLatin1String("model")).toString(), QStringLiteral("demo/one"));
    QCOMPARE(chat.params.value(QLatin1String("agent")).toString(), QStringLiteral("build"));
    QCOMPARE(window.of("chatInput", "text").toString(), QString());
    const QString reply = QStringLiteral("<img src=\"http://127.0.0.1:9/x.png\"> **not bold** &amp;");
    window.bridge.reply(chat, QJsonObject {{QStringLiteral("response"), reply}});
    QTRY_COMPARE(window.texts("messageText"), (QStringList {QStringLiteral("Hello <b>there</b> & ü"), reply}));
    QCOMPARE(window.texts("messageAuthor"), (QStringList {QStringLiteral("You"), QStringLiteral("Assistant")}));
    QCOMPARE(window.texts("messageAgent").last(), QStringLiteral("(Build & <i>run</i>)"));
    QCOMPARE(window.of("messageText", "textFormat").toInt(), 0); // TextEdit.PlainText
    QVERIFY(window.of("messageText", "readOnly").toBool());
    QVERIFY(window.of("messageText", "selectByMouse").toBool());
    window.screenshot("main-chat");

    // The last row is the current one.
    window.focus(window.item("messageList"));
    window.key(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), reply);
    window.key(Qt::Key_Up);
    window.key(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("Hello <b>there</b> & ü"));

    // With the button.
    window.focus(window.item("chatInput"));
    window.type("again");
    window.click("sendButton");
    QCOMPARE(window.bridge.takeRequest(QStringLiteral("chat")).params.value(QLatin1String("message")).toString(),
             QStringLiteral("again"));
    QVERIFY(window.item("chatInput")->hasActiveFocus());
}

void tst_MainWindow::replyTwice()
{
    MainWindowFixture window;
    QVERIFY(window.openReady());
    const QJsonObject reply {{QStringLiteral("response"), QStringLiteral("The same")}};
    for (int i = 0; i < 2; ++i) {
        window.type("x");
        window.key(Qt::Key_Return, Qt::ControlModifier);
        window.answer("chat", reply);
        QTRY_VERIFY(!window.of("chatView", "isSendingMessage").toBool());
    }
    QCOMPARE(window.rowCount(), 3); // two prompts, one reply
}

void tst_MainWindow::returnIsSwallowed()
{
    MainWindowFixture window;
    QVERIFY(window.openReady());
    window.type("a");
    for (const Qt::KeyboardModifier modifier : {Qt::NoModifier, Qt::ShiftModifier, Qt::AltModifier}) {
        window.key(Qt::Key_Return, modifier);
        window.key(Qt::Key_Enter, modifier);
    }
    QCOMPARE(window.of("chatInput", "text").toString(), QStringLiteral("a"));
    QCOMPARE(window.rowCount(), 0);
    window.key(Qt::Key_Enter, Qt::ControlModifier);
    window.bridge.takeRequest(QStringLiteral("chat"));
}

void tst_MainWindow::streaming()
{
    MainWindowFixture window;
    QVERIFY(window.openReady());
    Q_EMIT window.sdk.chatStreamChunk(QStringLiteral("one "));
    Q_EMIT window.sdk.chatStreamChunk(QStringLiteral("two"));
    QTRY_COMPARE(window.texts("messageText"), QStringList(QStringLiteral("one two")));
    QVERIFY(window.isSeen(window.item("streamingIndicator")));
}

void tst_MainWindow::untrustedNames()
{
    const char *name = "A & <b>B</b> <img src=x>";
    MainWindowFixture window;
    QVERIFY(window.openReady({MainWindowFixture::session("a", name)}));
    window.answerSwitch(QStringLiteral("a"), {});
    QCOMPARE(window.texts("sessionName"), QStringList(QString::fromLatin1(name)));
    QCOMPARE(window.of("sessionName", "textFormat").toInt(), int(Qt::PlainText));
    QCOMPARE(window.texts("choiceCaption"),
             (QStringList {QStringLiteral("One & <b>only</b>"), QStringLiteral("Build & <i>run</i>")}));
}

void tst_MainWindow::choosesModelAndAgent()
{
    MainWindowFixture window;
    QVERIFY(window.openReady());
    QCOMPARE(window.sdk.currentModel(), QStringLiteral("demo/one"));
    QCOMPARE(window.sdk.currentAgent(), QStringLiteral("build"));
    // By keyboard.
    window.focus(window.item("modelButton"));
    window.key(Qt::Key_Space);
    QTRY_COMPARE(window.texts("choiceName"),
                 (QStringList {QStringLiteral("One & <b>only</b>"), QStringLiteral("demo/two")}));
    QCOMPARE(window.item("choiceList")->parentItem()->width(), 350.0);
    QTRY_VERIFY(window.item("choiceList")->hasActiveFocus());
    window.screenshot("main-models");
    window.key(Qt::Key_Down);
    window.key(Qt::Key_Return);
    QCOMPARE(window.sdk.currentModel(), QStringLiteral("demo/two"));
    QTRY_VERIFY(window.item("modelButton")->hasActiveFocus());
    // By mouse.
    window.click("agentButton");
    QTRY_VERIFY(window.texts("choiceName").contains(QStringLiteral("Planner")));
    QTRY_VERIFY(window.place(window.items("choiceRow").last()).height() > 0);
    QTest::qWait(0);
    window.click(window.items("choiceRow").last());
    QTRY_COMPARE(window.sdk.currentAgent(), QStringLiteral("plan"));
    QCOMPARE(window.texts("choiceCaption").last(), QStringLiteral("Planner"));
}

void tst_MainWindow::switchesSessions()
{
    MainWindowFixture window;
    QVERIFY(window.openReady({MainWindowFixture::session("a", "Garden"), MainWindowFixture::session("b", "Kitchen")}));
    window.answerSwitch(QStringLiteral("a"),
                        {MainWindowFixture::message("user", QStringLiteral("q")),
                         MainWindowFixture::message("assistant", QStringLiteral("r"))});
    QTRY_COMPARE(window.texts("messageText"), (QStringList {QStringLiteral("q"), QStringLiteral("r")}));
    QCOMPARE(window.of("sessionSidebar", "selectedSessionId").toString(), QStringLiteral("a"));

    window.click(window.items("sessionRow").at(1));
    window.answerSwitch(QStringLiteral("b"), {MainWindowFixture::message("user", QStringLiteral("s"))});
    QTRY_COMPARE(window.texts("messageText"), QStringList(QStringLiteral("s")));

    window.focus(window.item("sessionList"));
    window.key(Qt::Key_Up);
    window.screenshot("main-sessions");
    window.key(Qt::Key_Return);
    window.answerSwitch(QStringLiteral("a"), {});
    QTRY_COMPARE(window.rowCount(), 0);
}

void tst_MainWindow::newSessionIsNamed()
{
    MainWindowFixture window;
    QVERIFY(window.openReady());
    window.click("newSessionButton");
    window.answer("createSession", {{QStringLiteral("sessionId"), QStringLiteral("new")}});
    window.answer("listSessions", {{QStringLiteral("sessions"), QJsonArray {MainWindowFixture::session("new", "")}}});
    window.answerSwitch(QStringLiteral("new"), {});
    QTRY_VERIFY(!window.of("chatView", "isLoadingHistory").toBool());
    window.focus(window.item("chatInput"));
    const QString prompt = QStringLiteral("abcdefghij").repeated(5) + QLatin1Char('k');
    window.type(prompt);
    window.key(Qt::Key_Return, Qt::ControlModifier);
    const Request rename = window.bridge.takeRequest(QStringLiteral("renameSession"));
    QCOMPARE(rename.params.value(QLatin1String("sessionId")).toString(), QStringLiteral("new"));
    QCOMPARE(rename.params.value(QLatin1String("newName")).toString(),
             QString(prompt.left(47) + QStringLiteral("...")));
    window.bridge.reply(rename,
                        QJsonObject {{QStringLiteral("sessionId"), QStringLiteral("new")},
                                     {QStringLiteral("newName"), QStringLiteral("Named")}});
    QTRY_COMPARE(window.texts("sessionName"), QStringList(QStringLiteral("Named")));
}

void tst_MainWindow::renamesAndDeletes_data()
{
    QTest::addColumn<bool>("byKeyboard");
    QTest::newRow("mouse") << false;
    QTest::newRow("keyboard") << true;
}

void tst_MainWindow::renamesAndDeletes()
{
    QFETCH(bool, byKeyboard);
    MainWindowFixture window;
    QVERIFY(window.openReady({MainWindowFixture::session("a", "Garden")}));
    window.answerSwitch(QStringLiteral("a"), {});
    const auto edit = [&] {
        if (byKeyboard) {
            window.focus(window.item("sessionList"));
            window.key(Qt::Key_F2);
        } else {
            QTest::mouseDClick(window.window(), Qt::LeftButton, {},
                               window.place(window.item("sessionRow")).center().toPoint());
        }
        return QTest::qWaitFor(
            [&] { return window.item("sessionNameField") && window.item("sessionNameField")->hasActiveFocus(); });
    };
    QVERIFY(edit());
    QCOMPARE(window.of("sessionNameField", "text").toString(), QStringLiteral("Garden"));
    window.type("Orchard");
    window.screenshot("main-rename");
    window.key(Qt::Key_Escape);
    QTRY_VERIFY(!window.item("sessionNameField"));
    QVERIFY(edit());
    window.type("Orchard");
    window.key(Qt::Key_Return);
    const Request rename = window.bridge.takeRequest(QStringLiteral("renameSession"));
    QCOMPARE(rename.params.value(QLatin1String("newName")).toString(), QStringLiteral("Orchard"));
    QTRY_VERIFY(!window.item("sessionNameField"));
    QVERIFY(window.item("sessionList")->hasActiveFocus());

    // Leaving the field discards the name.
    QVERIFY(edit());
    window.type("Not this");
    window.focus(window.item("chatInput"));
    QTRY_VERIFY(!window.item("sessionNameField"));

    if (byKeyboard) {
        window.focus(window.item("sessionList"));
        window.key(Qt::Key_Menu);
        QTRY_VERIFY(window.isSeen(window.item("deleteSessionItem")));
        window.screenshot("main-menu");
        window.key(Qt::Key_Escape);
        QTRY_VERIFY(!window.isSeen(window.item("deleteSessionItem")));
        window.focus(window.item("sessionList"));
        window.key(Qt::Key_Delete);
    } else {
        window.click(window.item("sessionRow"), Qt::RightButton);
        QTRY_VERIFY(window.isSeen(window.item("deleteSessionItem")));
        QCOMPARE(window.of("renameSessionItem", "text").toString(), QStringLiteral("Rename"));
        QCOMPARE(window.of("deleteSessionItem", "text").toString(), QStringLiteral("Delete"));
        window.click("deleteSessionItem");
    }
    const Request deletion = window.bridge.takeRequest(QStringLiteral("deleteSession"));
    QCOMPARE(deletion.params.value(QLatin1String("sessionId")).toString(), QStringLiteral("a"));
    window.bridge.reply(deletion, QJsonObject {{QStringLiteral("sessionId"), QStringLiteral("a")}});
    QTRY_COMPARE(window.of("sessionSidebar", "selectedSessionId").toString(), QString());
    window.answer("listSessions", {{QStringLiteral("sessions"), QJsonArray()}});
    QTRY_VERIFY(window.isSeen(window.item("noSessions")));
}

void tst_MainWindow::longHistory()
{
    MainWindowFixture window;
    QVERIFY(window.openReady({MainWindowFixture::session("a", "Long")}));
    QJsonArray messages;
    for (int i = 0; i < 2000; ++i) {
        messages.append(
            MainWindowFixture::message(i % 2 ? "assistant" : "user", QStringLiteral("message %1\nsecond line").arg(i)));
    }
    window.answerSwitch(QStringLiteral("a"), messages);
    QTRY_COMPARE(window.rowCount(), 2000);
    QTRY_VERIFY(window.texts("messageText").contains(QStringLiteral("message 1999\nsecond line")));
    QQuickItem *list = window.item("messageList");
    QTRY_VERIFY(list->property("atYEnd").toBool());
    // Only what can be seen exists.
    QVERIFY2(window.items("chatMessage").size() < 40, qPrintable(QString::number(window.items("chatMessage").size())));
    window.screenshot("main-long");
}

void tst_MainWindow::clearedWhileScrolled()
{
    MainWindowFixture window;
    QVERIFY(window.openReady());
    auto *model = window.property("chatModel").value<QObject *>();
    for (int i = 0; i < 100; ++i) {
        QMetaObject::invokeMethod(model, "addUserMessage", Q_ARG(QString, QString::number(i)));
    }
    QTRY_VERIFY(window.texts("messageText").contains(QStringLiteral("99")));
    QMetaObject::invokeMethod(model, "clear");
    QTRY_VERIFY(window.items("chatMessage").isEmpty());
}

void tst_MainWindow::files()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("sub")));
    QFile file(folder.filePath(QStringLiteral("sub/a & <b>.txt")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    MainWindowFixture window;
    QVERIFY(window.openReady());
    window.focus(window.item("projectPathField"));
    window.type(folder.path());
    window.key(Qt::Key_Return);
    QTRY_COMPARE(window.texts("fileName"), QStringList(QStringLiteral("sub")));
    window.screenshot("main-files");

    window.click("fileRow");
    QTRY_COMPARE(window.texts("fileName"), QStringList(QStringLiteral("a & <b>.txt")));
    QCOMPARE(window.of("projectPathField", "text").toString(), folder.filePath(QStringLiteral("sub")));
    QCOMPARE(window.property("currentFilePath").toString(), folder.filePath(QStringLiteral("sub")));

    QFile second(folder.filePath(QStringLiteral("sub/b.txt")));
    QVERIFY(second.open(QIODevice::WriteOnly));
    window.click("refreshFilesButton");
    QTRY_COMPARE(window.texts("fileName").size(), 2);
    window.focus(window.item("fileList"));
    window.key(Qt::Key_Home);
    window.key(Qt::Key_Return);
    QCOMPARE(window.property("currentFilePath").toString(), file.fileName());
    QCOMPARE(window.of("tabBar", "currentIndex").toInt(), 1);
    QCOMPARE(window.property("codeEditor.filePath").toString(), file.fileName());
}

void tst_MainWindow::generatedCodeArrives()
{
    MainWindowFixture window;
    QVERIFY(window.openReady());
    Q_EMIT window.sdk.codeGenerated(QStringLiteral("int x;"));
    // Intentional: the editor and the window both insert it.
    QCOMPARE(window.property("codeEditor.fileContent").toString(), QStringLiteral("int x;int x;"));
}

void tst_MainWindow::asksBeforeClosing()
{
    MainWindowFixture window;
    QVERIFY(window.openReady());
    Q_EMIT window.sdk.codeGenerated(QStringLiteral("int x;"));
    QVERIFY(!window.window()->close());
    QVERIFY(window.window()->isVisible());
    QCOMPARE(window.property("codeEditor.modified").toBool(), true);
    QTRY_VERIFY(window.isSeen(window.item("unsavedDialog")));
    window.key(Qt::Key_Escape);
    QTRY_VERIFY(!window.isSeen(window.item("unsavedDialog")));
    QVERIFY(window.window()->isVisible());
    QVERIFY(!window.window()->close());
    QTRY_VERIFY(window.isSeen(window.item("unsavedDialog")));
    window.key(Qt::Key_Return); // "Discard", because the text has no path
    QTRY_VERIFY(!window.window()->isVisible());
}

void tst_MainWindow::looks_data()
{
    QTest::addColumn<bool>("hasLongNames");

    QTest::newRow("names") << false;
    QTest::newRow("long names") << true;
}

//! Texts can be read and stay in the window; screenshots on request. Also run with a dark colour scheme, in its own
//! process, because Kirigami reads the colours once.
void tst_MainWindow::looks()
{
    QFETCH(bool, hasLongNames);

    const QByteArray title = hasLongNames ? QByteArray("Refactoring_of_everything ").repeated(12) : "Refactoring";
    MainWindowFixture window;
    QVERIFY(window.openReady({MainWindowFixture::session("ses_1", title.constData()),
                              MainWindowFixture::session("ses_2", "Holiday plans")}));
    window.answerSwitch(QStringLiteral("ses_1"),
                        {MainWindowFixture::message("user", QString::fromUtf8(title)),
                         MainWindowFixture::message("assistant", QString::fromUtf8(title.repeated(3)))});
    QTRY_COMPARE(window.rowCount(), 2);
    QVERIFY(window.settle());
    QTRY_COMPARE(window.of("messageText", "color").value<QColor>(), QGuiApplication::palette().color(QPalette::Text));
    for (const char *item : {"messageText", "sendButton", "sessionSidebar"}) {
        QVERIFY2(QRectF(QPointF(), window.window()->size()).contains(OmniBarFixture::place(window.item(item))), item);
    }
    const QString name =
        QString::fromUtf8(QTest::currentDataTag()) + (s_isDark ? QStringLiteral("-dark") : QStringLiteral("-light"));
    QCOMPARE(Contrast::faintTexts(window.window()), QStringList());
    window.screenshot(QStringLiteral("main-looks-") + name);
    window.evaluateInWindow(QStringLiteral("tabBar.currentIndex = 1"));
    Q_EMIT window.sdk.codeGenerated(QStringLiteral("int x;\n").repeated(4));
    QVERIFY(window.settle());
    QCOMPARE(Contrast::faintTexts(window.window()), QStringList());
    window.screenshot(QStringLiteral("main-looks-editor-") + name);
}

void tst_MainWindow::projectSettings()
{
    MainWindowFixture window;
    QObject *config = window.fake("QtObject { property string apiKey: 'old'; property int saves: 0;"
                                  " function save() { saves += 1 } function getAgents() { return ({}) } }");
    window.provide("configManager", config);
    QVERIFY(window.openReady());
    window.invoke("openProjectSettings");
    QObject *sheet = window.item("projectSettingsSheet");
    QVERIFY(sheet);
    QTRY_VERIFY(window.item("apiKeyField")->hasActiveFocus());
    QCOMPARE(sheet->property("title").toString(), QStringLiteral("Project Settings"));
    QCOMPARE(window.of("apiKeyField", "text").toString(), QStringLiteral("old"));
    QCOMPARE(window.of("apiKeyField", "echoMode").toInt(), 2); // TextInput.Password
    window.screenshot("main-project-settings");
    window.type("x");
    QCOMPARE(config->property("apiKey").toString(), QStringLiteral("oldx"));
    config->setProperty("apiKey", QStringLiteral("new"));
    QCOMPARE(window.of("apiKeyField", "text").toString(), QStringLiteral("new"));
    window.click("saveProjectButton");
    QCOMPARE(config->property("saves").toInt(), 1);
    QVERIFY(!sheet->property("visible").toBool());
}

void tst_MainWindow::about()
{
    MainWindowFixture window;
    QVERIFY(window.openReady());
    window.invoke("openAbout");
    QObject *sheet = window.item("aboutSheet");
    QVERIFY(sheet);
    QCOMPARE(sheet->property("title").toString(), QStringLiteral("About Loomra KDE"));
    QCOMPARE(window.of("aboutVersion", "text").toString(), QStringLiteral("Version 0.2.0"));
    window.settle();
    window.screenshot("main-about");
    window.key(Qt::Key_Escape);
    QVERIFY(!sheet->property("visible").toBool());
}

void tst_MainWindow::settingsPage()
{
    MainWindowFixture window;
    QVERIFY(window.openReady());
    window.type("kept");
    window.invoke("openSettings");
    QTRY_COMPARE(window.property("pageStack.depth").toInt(), 2);
    window.invoke("openSettings");
    QCOMPARE(window.property("pageStack.depth").toInt(), 2);
    QTRY_COMPARE(window.property("pageStack.currentItem.title").toString(), QStringLiteral("Loomra Settings"));
    window.evaluateInWindow(QStringLiteral("mainWindow.pageStack.pop()"));
    QCOMPARE(window.property("pageStack.depth").toInt(), 1);
    QCOMPARE(window.of("chatInput", "text").toString(), QStringLiteral("kept"));
}

void tst_MainWindow::everythingIsReachedByTab()
{
    MainWindowFixture window;
    QVERIFY(window.openReady({MainWindowFixture::session("a", "Garden")}));
    window.answerSwitch(QStringLiteral("a"), {MainWindowFixture::message("user", QStringLiteral("q"))});
    QTRY_COMPARE(window.rowCount(), 1);
    window.focus(window.item("chatInput"));
    window.type("x");
    QStringList missing = {QStringLiteral("chatInput"),          QStringLiteral("sendButton"),
                           QStringLiteral("newSessionButton"),   QStringLiteral("sessionRow"),
                           QStringLiteral("refreshFilesButton"), QStringLiteral("projectPathField"),
                           QStringLiteral("fileList"),           QStringLiteral("modelButton"),
                           QStringLiteral("agentButton"),        QStringLiteral("chatMessage")};
    QStringList visited;
    for (int i = 0; i < 30 && !missing.isEmpty(); ++i) {
        const QString name = window.window()->activeFocusItem()->objectName();
        visited.append(name);
        missing.removeAll(name);
        window.key(Qt::Key_Tab);
    }
    QVERIFY2(missing.isEmpty(),
             qPrintable(missing.join(QLatin1Char(' ')) + QStringLiteral(" / ") + visited.join(QLatin1Char(' '))));
}

void tst_MainWindow::withoutObjects_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("all") << QString();
    const QStringList names = OmniBarFixture::contextNames();
    for (const QString &name : names) {
        QTest::newRow(qPrintable(name)) << name;
    }
}

void tst_MainWindow::withoutObjects()
{
    QFETCH(QString, name);
    OmniBarFixture window;
    window.expectWarning("Failed to find a Kirigami platform plugin");
    window.expectWarning("Failed to open file: \"/nowhere\"");
    window.omit("agentBridge");
    window.omit("loomraSDK"); // it would start a bridge
    window.omit(name);
    QVERIFY(window.open(QStringLiteral("../../MainWindow.qml")));
    QTRY_VERIFY(window.property("codeEditor").value<QObject *>());
    window.type("x");
    window.key(Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(window.property("chatModel.count").toInt(), 0);
    QVERIFY(!window.item("sendButton")->isEnabled());
    window.invoke("openPath", {QStringLiteral("/nowhere")});
    window.invoke("openProjectSettings");
    window.type("key");
    window.click("saveProjectButton");
}

void tst_MainWindow::unreachableBridge()
{
    MainWindowFixture window;
    window.expectWarning("WebSocket error:");
    window.expectWarning("[AgentBridge] WebSocket error:");
    QVERIFY(window.openReady());
    window.bridge.close();
    QTRY_VERIFY(!window.sdk.isReady());
    window.type("x");
    QVERIFY(!window.item("sendButton")->isEnabled());
    QVERIFY(!window.item("newSessionButton")->isEnabled());
    Q_EMIT window.sdk.error(QStringLiteral("WebSocket error: 0"));
    QVERIFY(window.log.has(QtDebugMsg, QStringLiteral("[MainWindow] WebSocket error: 0")));
}

REGISTER_TEST(tst_MainWindow, QGuiApplication)

#include "tst_MainWindow.moc"
