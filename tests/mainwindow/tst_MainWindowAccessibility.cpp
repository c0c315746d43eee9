// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AccessibleWalk.h"
#include "Contrast.h"
#include "MainWindowFixture.h"

#include "TestRegistry.h"
#include "Timeouts.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QStyleHints>
#include <QTest>

namespace
{

using Scene = bool (*)(MainWindowFixture &);

bool shown(MainWindowFixture &window, const char *item)
{
    return QTest::qWaitFor([&] { return window.item(item) && OmniBarFixture::isSeen(window.item(item)); },
                           Timeouts::Default);
}

bool withoutSession(MainWindowFixture &window)
{
    return window.openReady();
}

bool conversation(MainWindowFixture &window)
{
    if (!window.openReady({MainWindowFixture::session("a", "Garden"), MainWindowFixture::session("b", "Kitchen")})) {
        return false;
    }
    window.answerSwitch(QStringLiteral("a"),
                        {MainWindowFixture::message("user", QStringLiteral("a question")),
                         MainWindowFixture::message("assistant", QStringLiteral("an answer"))});
    return QTest::qWaitFor([&] { return window.rowCount() == 2; }, Timeouts::Default);
}

bool typing(MainWindowFixture &window)
{
    if (!conversation(window)) {
        return false;
    }
    window.focus(window.item("chatInput"));
    window.type("half a sentence");
    return true;
}

bool renaming(MainWindowFixture &window)
{
    if (!conversation(window)) {
        return false;
    }
    window.focus(window.item("sessionRow"));
    window.key(Qt::Key_F2);
    return true;
}

bool choosingAModel(MainWindowFixture &window)
{
    if (!conversation(window)) {
        return false;
    }
    window.click("modelButton");
    return true;
}

bool editor(MainWindowFixture &window)
{
    if (!conversation(window)) {
        return false;
    }
    window.evaluateInWindow(QStringLiteral("tabBar.currentIndex = 1"));
    Q_EMIT window.sdk.codeGenerated(QStringLiteral("int x;\n").repeated(4));
    return true;
}

bool unsaved(MainWindowFixture &window)
{
    if (!editor(window) || !window.settle()) {
        return false;
    }
    window.window()->close();
    return shown(window, "unsavedDialog");
}

bool projectSettings(MainWindowFixture &window)
{
    if (!window.openReady()) {
        return false;
    }
    window.invoke("openProjectSettings");
    return shown(window, "apiKeyField");
}

bool about(MainWindowFixture &window)
{
    if (!window.openReady()) {
        return false;
    }
    window.invoke("openAbout");
    return shown(window, "aboutVersion");
}

bool settings(MainWindowFixture &window)
{
    if (!window.openReady()) {
        return false;
    }
    window.invoke("openSettings");
    // The page moves in.
    return QTest::qWaitFor(
        [&] {
            return window.item("settingsReload")
                && QRectF(QPointF(), QSizeF(window.window()->size()))
                       .contains(OmniBarFixture::place(window.item("settingsReload")));
        },
        Timeouts::Default);
}

} // namespace

Q_DECLARE_METATYPE(Scene)

//! The main window by keyboard and for assistive technology.
class tst_MainWindowAccessibility : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void walk_data();
    void walk();
};

void tst_MainWindowAccessibility::initTestCase()
{
    QAccessible::setActive(true);
    // A cursor that blinks would look like a focus that comes and goes.
    QGuiApplication::styleHints()->setCursorFlashTime(0);
}

void tst_MainWindowAccessibility::walk_data()
{
    QTest::addColumn<Scene>("scene");

    QTest::newRow("without a session") << Scene(withoutSession);
    QTest::newRow("conversation") << Scene(conversation);
    QTest::newRow("typing") << Scene(typing);
    QTest::newRow("renaming") << Scene(renaming);
    QTest::newRow("choosing a model") << Scene(choosingAModel);
    QTest::newRow("editor") << Scene(editor);
    QTest::newRow("unsaved text") << Scene(unsaved);
    QTest::newRow("project settings") << Scene(projectSettings);
    QTest::newRow("about") << Scene(about);
    QTest::newRow("settings") << Scene(settings);
}

void tst_MainWindowAccessibility::walk()
{
    QFETCH(Scene, scene);

    MainWindowFixture window;
    QVERIFY(scene(window));
    QVERIFY(window.settle());
    const QStringList wrong = Contrast::faintTexts(window.window())
        + AccessibleWalk::faults(window.window(),
                                 {{QStringLiteral("BackButton"), QStringLiteral("ForwardButton"),
                                   QStringLiteral("LinkButton")},
                                  {QStringLiteral("Open drawer")}});
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QStringLiteral("\n    "))));
}

REGISTER_TEST(tst_MainWindowAccessibility, QGuiApplication)

#include "tst_MainWindowAccessibility.moc"
