// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "LongTexts.h"
#include "MainWindowFixture.h"

#include "TestRegistry.h"

#include <QGuiApplication>
#include <QTest>

namespace
{

using Scene = void (*)(MainWindowFixture &);

void chat(MainWindowFixture &window)
{
    window.invoke("openAbout");
    window.key(Qt::Key_Escape);
}

void editor(MainWindowFixture &window)
{
    Q_EMIT window.sdk.codeGenerated(QStringLiteral("int x;"));
    window.evaluateInWindow(QStringLiteral("tabBar.currentIndex = 1"));
}

void unsaved(MainWindowFixture &window)
{
    editor(window);
    window.window()->close();
}

void about(MainWindowFixture &window)
{
    window.invoke("openAbout");
}

void projectSettings(MainWindowFixture &window)
{
    window.invoke("openProjectSettings");
}

} // namespace

Q_DECLARE_METATYPE(Scene)

//! The main window in a language whose texts are 1.4 times as long.
class tst_LongMainTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(LongTexts::use()); }
    void fit_data();
    void fit();
};

void tst_LongMainTexts::fit_data()
{
    QTest::addColumn<Scene>("scene");

    QTest::newRow("chat") << Scene(chat);
    QTest::newRow("editor") << Scene(editor);
    QTest::newRow("unsaved changes") << Scene(unsaved);
    QTest::newRow("about") << Scene(about);
    QTest::newRow("project settings") << Scene(projectSettings);
}

void tst_LongMainTexts::fit()
{
    QFETCH(Scene, scene);
    MainWindowFixture window;
    QVERIFY(window.openReady({MainWindowFixture::session("ses_1", "A session")}));
    scene(window);
    QVERIFY(window.settle());
    window.screenshot(QStringLiteral("long-main-") + QLatin1String(QTest::currentDataTag()));
    QCOMPARE(LongTexts::faults(window.window()), QString());

    const QSize smallest = window.window()->minimumSize();
    window.window()->resize(smallest);
    QTRY_COMPARE(window.window()->contentItem()->height(), qreal(smallest.height()));
    QVERIFY(window.settle());
    window.screenshot(QStringLiteral("long-main-smallest-") + QLatin1String(QTest::currentDataTag()));
    QCOMPARE(LongTexts::faults(window.window()), QString());
}

REGISTER_TEST(tst_LongMainTexts, QGuiApplication)

#include "tst_LongMainTexts.moc"
