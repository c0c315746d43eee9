// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AccessibleWalk.h"
#include "ConfigWindow.h"
#include "Contrast.h"

#include "TestRegistry.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QImage>
#include <QTest>

#include <utility>

namespace
{

//! Waits until the page and what it shows have stopped moving.
bool isAtRest(const ConfigWindow &window)
{
    QImage last;
    return QTest::qWaitFor([&] {
        const QImage picture = window.window()->grabWindow();
        return picture == std::exchange(last, picture);
    });
}

} // namespace

//! The configuration pages and their dialogs by keyboard and for assistive technology.
class tst_ConfigAccessibility : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void walk_data();
    void walk();
};

void tst_ConfigAccessibility::walk_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<QByteArray>("button");

    QTest::newRow("agents") << 0 << QByteArray();
    QTest::newRow("agents as JSON") << 0 << QByteArray("jsonEditor");
    QTest::newRow("new agent") << 0 << QByteArray("addAgent");
    QTest::newRow("new option") << 0 << QByteArray("addOption");
    QTest::newRow("tools") << 1 << QByteArray();
    QTest::newRow("new tool") << 1 << QByteArray("addTool");
    QTest::newRow("permissions") << 2 << QByteArray();
    QTest::newRow("new path") << 2 << QByteArray("addPath");
    QTest::newRow("servers") << 3 << QByteArray();
    QTest::newRow("new server") << 3 << QByteArray("addServer");
    QTest::newRow("providers") << 4 << QByteArray();
    QTest::newRow("new provider") << 4 << QByteArray("addProvider");
    QTest::newRow("usage") << 5 << QByteArray();
}

void tst_ConfigAccessibility::walk()
{
    QFETCH(int, tab);
    QFETCH(QByteArray, button);

    ConfigWindow window;
    QVERIFY(ConfigWindow::write(R"({"agent":{"helper":{"options":{"one":"two"}}},"tools":{"mine":true},)"
                                R"("permission":{"bash":{"git *":"ask"}},"mcp":{"files":{"type":"local"}},)"
                                R"("provider":{"local":{"name":"Local"}}})"));
    QVERIFY(window.open(tab));
    QVERIFY(isAtRest(window));
    window.item("settingsTabs")->forceActiveFocus(Qt::TabFocusReason);
    if (!button.isEmpty()) {
        window.click(button.constData());
        QVERIFY(isAtRest(window));
    }
    const AccessibleWalk::Toolkit toolkit {{QStringLiteral("LinkButton")}, {}};
    const QStringList wrong = Contrast::faintTexts(window.window()) + AccessibleWalk::faults(window.window(), toolkit);
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QStringLiteral("\n    "))));
}

REGISTER_TEST(tst_ConfigAccessibility, QGuiApplication)

#include "tst_ConfigAccessibility.moc"
