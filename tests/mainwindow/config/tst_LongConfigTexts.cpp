// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConfigWindow.h"
#include "I18nHelper.h"
#include "LongTexts.h"

#include "TestRegistry.h"

#include <QGuiApplication>
#include <QTest>

//! The configuration pages in a language whose texts are 1.4 times as long.
class tst_LongConfigTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(LongTexts::use()); }
    void fit_data();
    void fit();
};

void tst_LongConfigTexts::fit_data()
{
    QTest::addColumn<int>("tab");
    QTest::newRow("agents") << 0;
    QTest::newRow("tools") << 1;
    QTest::newRow("permissions") << 2;
    QTest::newRow("servers") << 3;
    QTest::newRow("providers") << 4;
    QTest::newRow("usage") << 5;
}

void tst_LongConfigTexts::fit()
{
    QFETCH(int, tab);
    I18nHelper i18n;
    ConfigWindow window;
    window.provide(QStringLiteral("i18n"), &i18n);
    QVERIFY(ConfigWindow::write(R"({"agent":{"helper":{"options":{"one":"two"}}},"tools":{"mine":true},)"
                                R"("permission":{"bash":{"git *":"ask"}},"mcp":{"files":{"type":"local"}},)"
                                R"("provider":{"local":{"name":"Local"}}})"));
    QVERIFY(window.open(tab));
    window.screenshot(QStringLiteral("long-config-") + QLatin1String(QTest::currentDataTag()));
    // The page may still be moving.
    QTRY_COMPARE(LongTexts::faults(window.window()), QString());
}

REGISTER_TEST(tst_LongConfigTexts, QGuiApplication)

#include "tst_LongConfigTexts.moc"
