// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Conversation.h"
#include "Looks.h"

#include "SharedWindow.h"
#include "TestRegistry.h"
#include "Timeouts.h"
#include "WaitUntil.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <sys/stat.h>

namespace
{

//! The commands that the menu shows, the current one in brackets; empty if it can't be seen.
QString menuOf(Conversation &bar)
{
    QStringList names;
    if (bar.isSeen(bar.item("slashMenu"))) {
        for (QQuickItem *row : bar.items("slashMenuRow")) {
            const QString name = row->property("label").toString();
            names.append(row->property("current").toBool() ? QLatin1Char('[') + name + QLatin1Char(']') : name);
        }
    }
    return names.join(QLatin1Char(' '));
}

QQuickItem *menuRow(Conversation &bar, const QString &name)
{
    const QList<QQuickItem *> rows = bar.items("slashMenuRow");
    const auto found = std::find_if(rows.cbegin(), rows.cend(),
                                    [&](QQuickItem *row) { return row->property("label").toString() == name; });
    return found == rows.cend() ? nullptr : *found;
}

QString promptOf(Conversation &bar)
{
    return bar.property("inputField.text").toString();
}

//! The file dialog's window; null if it isn't open.
QWindow *dialogWindow()
{
    const QWindowList windows = QGuiApplication::topLevelWindows();
    const auto found = std::find_if(windows.cbegin(), windows.cend(), [](const QWindow *window) {
        return window->isVisible() && window->title() == QLatin1String("Select a file to attach");
    });
    return found == windows.cend() ? nullptr : *found;
}

//! Warnings of Qt's dialog itself.
void expectDialogWarnings(Conversation &bar)
{
    bar.expectWarning("file:///usr/lib/");
    bar.expectWarning("QML ");
    // It asks for the frame's size while the window manager destroys the frame of the closed window.
    bar.expectWarning("QXcbConnection: XCB error: 3 (BadWindow)");
}

QString urlOf(const QString &path)
{
    return QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded());
}

} // namespace

//! Local commands, their menu and attached files in the real window. One long file, because the tests share the window
//! and the stand-ins for sessions and files.
class tst_SlashMenu : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void menuFollowsTheTyping();
    void menuLook();
    void menuRowLook();
    void menuIsInsideTheScreen();
    void keysChooseARow();
    void tabWithoutAMenuMovesTheFocus();
    void escapeHidesOnlyTheMenu();
    void menuCoversTheSettings();
    void clickRunsTheRow();
    void hoverMovesTheRow();
    void restingPointerDoesNotMoveTheRow();
    void clickBesideTheRowsDoesNothing();
    void commandIsNoPrompt();
    void sessionByNameHasNoMenu();

    void chips();
    void chipsCoverNoContent();
    void chipIsRemovedByMouse();
    void chipIsRemovedByKey();
    void hostileNameOfAChip();
    void attachmentsGoWithOnePrompt();

    void dialogAttachesAFile();
    void dialogIsCancelled();
    void thirdFileIsRefusedBeforeTheDialog();
    void filesThatCannotBeRead_data();
    void filesThatCannotBeRead();

private:
    void attach(Conversation &bar, const QStringList &names);

    SharedWindow<Conversation> m_window;
};

void tst_SlashMenu::attach(Conversation &bar, const QStringList &names)
{
    QVariantList files;
    for (const QString &name : names) {
        files.append(QVariantMap {{QStringLiteral("name"), name},
                                  {QStringLiteral("path"), QString(QStringLiteral("/home/me/") + name)},
                                  {QStringLiteral("content"), QStringLiteral("one")},
                                  {QStringLiteral("chars"), 3}});
    }
    bar.setProperty("slashAttachedFiles", files);
    QCOMPARE(bar.items("fileChip").size(), names.size());
    QVERIFY(bar.settle());
}

void tst_SlashMenu::menuFollowsTheTyping()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QTRY_COMPARE(menuOf(bar), QString());
    bar.type("/");
    QTRY_COMPARE(menuOf(bar), text("[/help] /new /clear /session /attach /detach /about"));
    bar.key(Qt::Key_Down);
    bar.type("a");
    QTRY_COMPARE(menuOf(bar), text("[/attach] /about"));
    bar.type("x");
    QTRY_COMPARE(menuOf(bar), QString());
    bar.key(Qt::Key_Backspace);
    QTRY_COMPARE(menuOf(bar), text("[/attach] /about"));
    bar.key(Qt::Key_Home);
    bar.type("x");
    QTRY_COMPARE(menuOf(bar), QString());
}

void tst_SlashMenu::menuLook()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    for (const bool isLight : {false, true}) {
        bar.setLight(isLight);
        bar.property("inputField").value<QObject *>()->setProperty("text", QString());
        bar.type("/");
        QVERIFY(bar.settle());
        bar.screenshot(isLight ? "menu-light" : "menu");
        QQuickItem *menu = bar.item("slashMenu");
        QCOMPARE(colourOf(menu), rgba(0.12, 0.06, 0.20, 0.95));
        QCOMPARE(menu->property("radius").toInt(), 14);
        QCOMPARE(menu->width(), 640.0);
        QCOMPARE(menu->height(), 308.0);
        const QRectF place = bar.place(menu);
        const QRectF card = bar.place(bar.item("barCard"));
        QCOMPARE(place.bottom() + 8, card.top());
        QCOMPARE(place.center().x(), card.center().x());
        QVERIFY(Conversation::textsIn(menu).contains(QLatin1String("Commands")));
    }
}

void tst_SlashMenu::menuRowLook()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.type("/");
    QVERIFY(bar.settle());
    QQuickItem *current = menuRow(bar, QStringLiteral("/help"));
    QQuickItem *other = menuRow(bar, QStringLiteral("/new"));
    QCOMPARE(current->height(), 38.0);
    QCOMPARE(colourOf(backgroundOf(current)), rgba(1, 0.6, 0.3, 0.18));
    QCOMPARE(colourOf(backgroundOf(other)), rgba(0, 0, 0, 0));
    QCOMPARE(Conversation::textsIn(other), QStringList({text("/new"), text("Start a new chat session")}));
    QCOMPARE(iconsIn(other), QStringList {text("document-new")});
    QQuickItem *name = bar.textItem(QStringLiteral("/new"));
    QCOMPARE(name->width(), 70.0);
    QCOMPARE(name->property("font").value<QFont>().pixelSize(), 14);
}

void tst_SlashMenu::menuIsInsideTheScreen()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.spoil();
    // As on a low screen: the idle bar is in its middle.
    bar.type("/");
    bar.window()->setHeight(400);
    QTRY_COMPARE(bar.item("rootContainer")->height(), 400.0);
    QVERIFY(bar.settle());
    QVERIFY(bar.place(bar.item("slashMenu")).top() >= 8);
    for (int i = 0; i < 6; ++i) {
        bar.key(Qt::Key_Down);
    }
    QVERIFY(bar.settle());
    QQuickItem *last = menuRow(bar, QStringLiteral("/about"));
    QVERIFY(last && last->property("current").toBool());
    QTRY_VERIFY(bar.place(bar.item("slashMenuList")).contains(bar.place(last)));
    bar.screenshot("menu-low");
}

void tst_SlashMenu::keysChooseARow()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.type("/a");
    bar.key(Qt::Key_Up);
    QTRY_COMPARE(menuOf(bar), text("[/attach] /about"));
    bar.key(Qt::Key_Down);
    bar.key(Qt::Key_Down);
    QTRY_COMPARE(menuOf(bar), text("/attach [/about]"));
    bar.key(Qt::Key_Tab);
    QCOMPARE(promptOf(bar), text("/about"));
    QTRY_COMPARE(menuOf(bar), text("/attach [/about]"));
    QVERIFY(bar.item("inputField")->hasActiveFocus());
    bar.key(Qt::Key_Return);
    QCOMPARE(promptOf(bar), QString());
    QTRY_COMPARE(menuOf(bar), QString());
    QCOMPARE(bar.count(), 1);
    QVERIFY(bar.rows().first().startsWith(text("system: **Tovi for KeldaOS**\nVersion 0.3.2 · Loomra Meridan\n\n")));
    QVERIFY(bar.rows().first().contains(text("\n**Current model:** (default)\n**Bridge:** idle\n")));
}

void tst_SlashMenu::tabWithoutAMenuMovesTheFocus()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.type("/session abc");
    QTRY_COMPARE(menuOf(bar), QString());
    bar.key(Qt::Key_Tab);
    QVERIFY(!bar.item("inputField")->hasActiveFocus());
}

void tst_SlashMenu::escapeHidesOnlyTheMenu()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.type("/");
    bar.key(Qt::Key_Escape);
    QTRY_COMPARE(menuOf(bar), QString());
    QCOMPARE(promptOf(bar), text("/"));
    QVERIFY(!bar.property("compactMode").toBool());
    bar.type("n");
    QTRY_COMPARE(menuOf(bar), text("[/new]"));
}

void tst_SlashMenu::menuCoversTheSettings()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.setProperty("settingsPanelOpen", true);
    bar.type("/he");
    QVERIFY(bar.settle());
    bar.screenshot("menu-over-settings");
    bar.click(menuRow(bar, QStringLiteral("/help")));
    QCOMPARE(bar.count(), 1);
    bar.type("/");
    bar.key(Qt::Key_Escape);
    QTRY_COMPARE(menuOf(bar), QString());
    QVERIFY(bar.property("settingsPanelOpen").toBool());
}

void tst_SlashMenu::clickRunsTheRow()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.type("/");
    QVERIFY(bar.settle());
    bar.click(menuRow(bar, QStringLiteral("/detach")));
    QCOMPARE(bar.rows(), QStringList {text("system: No files attached.")});
    QCOMPARE(promptOf(bar), QString());
    QTRY_COMPARE(menuOf(bar), QString());
    QVERIFY(bar.item("inputField")->hasActiveFocus());
}

void tst_SlashMenu::hoverMovesTheRow()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.type("/");
    QVERIFY(bar.settle());
    bar.hover(menuRow(bar, QStringLiteral("/session")));
    QTRY_COMPARE(menuOf(bar), text("/help /new /clear [/session] /attach /detach /about"));
    bar.key(Qt::Key_Down);
    QTRY_COMPARE(menuOf(bar), text("/help /new /clear /session [/attach] /detach /about"));
}

void tst_SlashMenu::restingPointerDoesNotMoveTheRow()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.type("/");
    QVERIFY(bar.settle());
    const QPoint place = bar.place(menuRow(bar, QStringLiteral("/about"))).center().toPoint();
    bar.key(Qt::Key_Backspace);
    QTest::mouseMove(bar.window(), {5, 5});
    QTest::mouseMove(bar.window(), place);
    QVERIFY(bar.settle());
    bar.type("/");
    QVERIFY(bar.settle());
    QTRY_COMPARE(menuOf(bar), text("[/help] /new /clear /session /attach /detach /about"));
    // Other rows, of which the last one is created below the pointer.
    bar.type("a");
    QVERIFY(bar.settle());
    QVERIFY(bar.place(menuRow(bar, QStringLiteral("/about"))).contains(place));
    QCOMPARE(menuOf(bar), text("[/attach] /about"));
}

void tst_SlashMenu::clickBesideTheRowsDoesNothing()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.setProperty("settingsPanelOpen", true);
    bar.type("/");
    QVERIFY(bar.settle());
    bar.clickAt(bar.place(bar.item("slashMenu")).topLeft().toPoint() + QPoint(30, 12));
    QVERIFY(bar.property("settingsPanelOpen").toBool());
    QVERIFY(bar.isSeen(bar.item("slashMenu")));
}

void tst_SlashMenu::commandIsNoPrompt()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.type("/HELP");
    bar.key(Qt::Key_Return);
    QCOMPARE(bar.count(), 1);
    QVERIFY(bar.rows().first().startsWith(text("system: **Available commands:**\n**/help** — Show all")));
    bar.exchange(QStringLiteral("hello"), QStringLiteral("hi"));
    bar.type("/clear");
    bar.key(Qt::Key_Return);
    QCOMPARE(bar.count(), 0);
    QVERIFY(bar.bridge.isAllTaken());
}

void tst_SlashMenu::sessionByNameHasNoMenu()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.type("/session abc");
    QVERIFY(bar.property("slashMenuVisible").toBool());
    QTRY_COMPARE(menuOf(bar), QString());
    bar.key(Qt::Key_Return);
    QCOMPARE(bar.rows(), QStringList {text("system: No session found matching \"abc\". Use `/session` to list all.")});
}

void tst_SlashMenu::chips()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    attach(bar, {QStringLiteral("notes.txt"), QStringLiteral("a-rather-long-name-of-a-file-that-does-not-fit.cpp")});
    bar.screenshot("chips-idle");
    QCOMPARE(Conversation::textsIn(bar.items("fileChip").at(0)).first(), text("notes.txt"));
    QVERIFY(bar.items("fileChip").at(1)->width() < 240);
    QCOMPARE(bar.property("inputField.placeholderText").toString(),
             text("notes.txt, a-rather-long-name-of-a-file-that-does-not-fit.cpp attached — ask your question…"));
    bar.invoke("detachFiles");
    QCOMPARE(bar.items("fileChip").size(), 0);
    QVERIFY(!bar.isSeen(bar.item("attachedFiles")));
}

void tst_SlashMenu::chipsCoverNoContent()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.emitReply(QStringLiteral("an answer"));
    attach(bar, {QStringLiteral("notes.txt")});
    for (const bool isLight : {false, true}) {
        bar.setLight(isLight);
        QVERIFY(bar.settle());
        bar.screenshot(isLight ? "chips-chat-light" : "chips-chat");
        const QRectF chip = bar.place(bar.item("fileChip"));
        QVERIFY(chip.bottom() <= bar.place(bar.item("barCard")).top());
        const QRectF disclaimer =
            bar.place(bar.textItem(QStringLiteral("Tovi can make mistakes. Verify important information.")));
        QVERIFY(chip.top() >= disclaimer.bottom());
    }
}

void tst_SlashMenu::chipIsRemovedByMouse()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    attach(bar, {QStringLiteral("a.txt"), QStringLiteral("b.txt")});
    bar.click(bar.items("removeFileBtn").at(0));
    QCOMPARE(bar.items("fileChip").size(), 1);
    QCOMPARE(Conversation::textsIn(bar.item("fileChip")).first(), text("b.txt"));
    bar.click(bar.item("fileChip"));
    QCOMPARE(bar.items("fileChip").size(), 1);
    QCOMPARE(bar.count(), 0);
}

void tst_SlashMenu::chipIsRemovedByKey()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    attach(bar, {QStringLiteral("a.txt"), QStringLiteral("b.txt")});
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Delete}) {
        bar.key(Qt::Key_Backtab, Qt::ShiftModifier);
        QQuickItem *button = bar.window()->activeFocusItem();
        QVERIFY(button && button->objectName() == QLatin1String("removeFileBtn"));
        QVERIFY(button->property("label").toString().startsWith(QLatin1String("Remove ")));
        bar.key(key);
        QTRY_VERIFY(bar.item("inputField")->hasActiveFocus());
    }
    QCOMPARE(bar.property("slashAttachedFiles").toList().size(), 0);
}

void tst_SlashMenu::hostileNameOfAChip()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    attach(bar, {text("שלום עולם\n<b>x</b>😀.txt"), QString(250, QLatin1Char('W'))});
    bar.screenshot("chips-hostile");
    QVERIFY(
        bar.property("inputField.placeholderText").toString().startsWith(text("שלום עולם\uFFFD<b>x</b>😀.txt, WWW")));
    for (QQuickItem *chip : bar.items("fileChip")) {
        QCOMPARE(chip->height(), 20.0);
        QVERIFY(chip->width() < 240);
    }
    QCOMPARE(Conversation::textsIn(bar.items("fileChip").at(0)).first(), text("שלום עולם\uFFFD<b>x</b>😀.txt"));
}

void tst_SlashMenu::attachmentsGoWithOnePrompt()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    attach(bar, {QStringLiteral("a.txt")});
    const ScriptedBridge::Request request = bar.ask(QStringLiteral("what?"));
    QCOMPARE(request.params.value(QStringLiteral("message")).toString(),
             text("--- File: a.txt (path: /home/me/a.txt) ---\n```\none\n```\n\nUser question: what?"));
    QCOMPARE(bar.rows(), QStringList {text("user: what?")});
    QCOMPARE(bar.items("fileChip").size(), 0);
}

void tst_SlashMenu::dialogAttachesAFile()
{
    Conversation &bar = m_window.renew();
    QVERIFY(bar.begin());
    expectDialogWarnings(bar);
    const QTemporaryDir folder;
    const QString name = text("50% of #1 ü_ü.txt");
    QFile file(folder.filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("content");
    file.close();
    bar.type("/attach");
    bar.key(Qt::Key_Return);
    QVERIFY(bar.rows().value(0).startsWith(text("system: **Accepted:** Plain-text files — .txt, ")));
    QTRY_VERIFY(dialogWindow());
    auto *window = qobject_cast<QQuickWindow *>(dialogWindow());
    QVERIFY(window);
    QVERIFY(QTest::qWaitForWindowActive(window, Timeouts::Default));
    QCOMPARE(window->transientParent(), bar.window());
    const QObject *dialog = bar.object(text("fileDialog"));
    QVERIFY(dialog);
    QCOMPARE(dialog->property("folder").toUrl(), QUrl::fromLocalFile(QDir::homePath()));
    QVERIFY(dialog->property("selectExisting").toBool());
    QVERIFY(!dialog->property("selectMultiple").toBool());
    QVERIFY(!dialog->property("selectFolder").toBool());
    QCOMPARE(dialog->property("nameFilters").toStringList().size(), 2);
    // The only text field of the dialog takes a path.
    const auto fields = bar.itemsWhere(window->contentItem(), [](QQuickItem *item) {
        return item->inherits("QQuickTextInput") && OmniBarFixture::isSeen(item);
    });
    QVERIFY(!fields.isEmpty());
    fields.first()->forceActiveFocus();
    fields.first()->setProperty("text", file.fileName());
    QTest::keyClick(window, Qt::Key_Return);
    QTRY_COMPARE(bar.property("slashAttachedFiles").toList().size(), 1);
    QTRY_VERIFY(!dialogWindow());
    QVERIFY(!bar.property("fileDialogOpen").toBool());
    const QVariantMap entry = bar.property("slashAttachedFiles").toList().first().toMap();
    QCOMPARE(entry.value(QStringLiteral("name")).toString(), name);
    QCOMPARE(entry.value(QStringLiteral("path")).toString(), file.fileName());
    QCOMPARE(entry.value(QStringLiteral("content")).toString(), text("content"));
    QCOMPARE(bar.field(1, "text").toString().remove(QChar(0xfeff)),
             text("Attached **") + name + text("** (7 chars). Now type your question."));
    QTRY_VERIFY(bar.window()->isActive());
    QVERIFY(bar.item("inputField")->hasActiveFocus());
}

void tst_SlashMenu::dialogIsCancelled()
{
    Conversation &bar = m_window.renew();
    QVERIFY(bar.begin());
    expectDialogWarnings(bar);
    for (int time = 0; time < 2; ++time) {
        bar.type("/attach");
        bar.key(Qt::Key_Return);
        QTRY_VERIFY(dialogWindow());
        QWindow *window = dialogWindow();
        QVERIFY(QTest::qWaitForWindowActive(window, Timeouts::Default));
        // Qt's dialog ignores keys until its content has the focus, which may be later than the window is active.
        QVERIFY(QTest::qWaitFor([window] {
            if (window->isVisible()) {
                QTest::keyClick(window, Qt::Key_Escape);
            }
            return !dialogWindow();
        }));
        QCOMPARE(bar.count(), time + 1); // it opens again, and adds no row
        QTRY_VERIFY(bar.window()->isActive());
    }
}

void tst_SlashMenu::thirdFileIsRefusedBeforeTheDialog()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    attach(bar, {QStringLiteral("a.txt"), QStringLiteral("b.txt")});
    bar.type("/attach");
    bar.key(Qt::Key_Return);
    QCOMPARE(bar.rows(),
             QStringList {text("system: Maximum 2 files allowed. Use `/detach` to clear, then attach again.")});
    QVERIFY(bar.settle());
    QVERIFY(!bar.property("fileDialogOpen").toBool());
    QVERIFY(!dialogWindow());
    QCOMPARE(bar.items("fileChip").size(), 2);
}

void tst_SlashMenu::filesThatCannotBeRead_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("row");
    QTest::newRow("missing") << "missing" << text("Could not read **a.txt**: the file no longer exists.");
    QTest::newRow("folder") << "folder" << text("Could not read **a.txt**: it is a folder.");
    QTest::newRow("FIFO") << "fifo" << text("Could not read **a.txt**: it is not a regular file.");
    QTest::newRow("2 GB") << "huge" << text("Could not read **a.txt**: it is larger than 10 MB.");
    QTest::newRow("empty") << "empty" << text("**a.txt** appears to be empty.");
}

void tst_SlashMenu::filesThatCannotBeRead()
{
    QFETCH(const QString, kind);
    QFETCH(const QString, row);
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.txt"));
    if (kind == QLatin1String("folder")) {
        QVERIFY(QDir().mkdir(path));
    } else if (kind == QLatin1String("fifo")) {
        QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    } else if (kind != QLatin1String("missing")) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.resize(kind == QLatin1String("huge") ? Q_INT64_C(2) << 30 : 0));
    }
    QObject *check = bar.fake("import org.kde.loomra 1.0 as Loomra; Loomra.FileCheck {}");
    QVERIFY(check);
    bar.invoke("attachFile", {urlOf(path), QVariant::fromValue(check)});
    QCOMPARE(bar.rows(), QStringList {QStringLiteral("system: ") + row});
}

REGISTER_TEST(tst_SlashMenu, QGuiApplication)

#include "tst_SlashMenu.moc"
