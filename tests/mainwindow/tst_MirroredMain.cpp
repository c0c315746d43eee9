// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "LongTexts.h"
#include "MainWindowFixture.h"
#include "Mirroring.h"

#include "Files.h"
#include "TestRegistry.h"
#include "Timeouts.h"

#include <QGuiApplication>
#include <QQmlProperty>
#include <QTemporaryDir>
#include <QTest>

namespace
{

//! Code isn't mirrored, and the paddings of the style's text area aren't the same on both sides.
const QStringList s_exceptions = {QStringLiteral("codeFrame"), QStringLiteral("chatInput")};

} // namespace

//! The main window in a language that is written from right to left.
class tst_MirroredMain : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(Mirroring::use()); }
    void mirrored();
    void arrowKeys();

private:
    //! What is wrong with what the window shows.
    QString faults(MainWindowFixture &window, const QString &scene);
};

QString tst_MirroredMain::faults(MainWindowFixture &window, const QString &scene)
{
    if (!window.settle()) {
        return QStringLiteral("the window doesn't come to rest");
    }
    window.screenshot(QStringLiteral("mirrored-main-") + scene);
    const QString clipped = LongTexts::faults(window.window());
    return clipped.isEmpty() ? Mirroring::faults(window, s_exceptions) : clipped;
}

// All scenes in one window, because opening one takes longer than most scenes.
void tst_MirroredMain::mirrored()
{
    const QTemporaryDir project;
    QVERIFY(project.isValid() && writeFile(project.filePath(QStringLiteral("notes.txt")), "x")
            && writeFile(project.filePath(QStringLiteral("صورة")), "x"));
    const QString config = QDir::homePath() + QStringLiteral("/.config/loomra/loomra.json");
    QVERIFY(writeFile(config,
                      R"({"agent":{"helper":{"options":{"one":"two"}}},"tools":{"mine":true},)"
                      R"("permission":{"bash":{"git *":"ask"}},"mcp":{"files":{"type":"local"}},)"
                      R"("provider":{"local":{"name":"Local"}}})"));
    MainWindowFixture window;
    window.expectWarning("TokenUsageService: message storage not found");
    QVERIFY(window.openReady({MainWindowFixture::session("a", "Garden"), MainWindowFixture::session("b", "حديقة")}));
    window.answerSwitch(QStringLiteral("a"),
                        {MainWindowFixture::message("user", QStringLiteral("سؤال")),
                         MainWindowFixture::message("assistant", QStringLiteral("an answer"))});
    QTRY_COMPARE_WITH_TIMEOUT(window.rowCount(), 2, Timeouts::Default);
    window.evaluateInWindow(QStringLiteral("projectModel.rootPath = '%1'").arg(project.path()));
    QTRY_COMPARE_WITH_TIMEOUT(window.items("fileRow").size(), 2, Timeouts::Default);
    QString found = faults(window, QStringLiteral("chat"));
    QVERIFY2(found.isEmpty(), qPrintable(found));

    window.invoke("openProjectSettings");
    QTRY_VERIFY_WITH_TIMEOUT(OmniBarFixture::isSeen(window.item("apiKeyField")), Timeouts::Default);
    found = faults(window, QStringLiteral("project"));
    window.key(Qt::Key_Escape);
    QVERIFY2(found.isEmpty(), qPrintable(found));

    Q_EMIT window.sdk.codeGenerated(QStringLiteral("// تعليق\nint x;\n"));
    window.evaluateInWindow(QStringLiteral("tabBar.currentIndex = 1"));
    found = faults(window, QStringLiteral("editor"));
    QVERIFY2(found.isEmpty(), qPrintable(found));

    window.invoke("openSettings");
    QTRY_VERIFY_WITH_TIMEOUT(window.item("settingsTabs"), Timeouts::Default);
    QVERIFY(window.settle());
    // It is beside the settings, out of sight.
    window.item("mainPage")->setVisible(false);
    QCOMPARE(QQmlProperty::read(window.item("settingsBack"), QStringLiteral("icon.name")).toString(),
             QStringLiteral("go-next"));
    for (int tab = 0; tab < 6; ++tab) {
        window.item("settingsTabs")->setProperty("currentIndex", tab);
        found = faults(window, QStringLiteral("settings-%1").arg(tab));
        QVERIFY2(found.isEmpty(), qPrintable(found));
    }
    QVERIFY(QFile::remove(config));
}

void tst_MirroredMain::arrowKeys()
{
    MainWindowFixture window;
    QVERIFY(window.openReady());
    QVERIFY(window.settle());
    QQuickItem *tabs = window.item("tabBar");
    window.focus(tabs->property("currentItem").value<QQuickItem *>());
    window.key(Qt::Key_Left);
    QCOMPARE(tabs->property("currentIndex").toInt(), 1);
    window.key(Qt::Key_Right);
    QCOMPARE(tabs->property("currentIndex").toInt(), 0);
}

REGISTER_TEST(tst_MirroredMain, QGuiApplication)

#include "tst_MirroredMain.moc"
