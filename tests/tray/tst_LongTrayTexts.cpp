// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "LongTexts.h"
#include "OmniBarFixture.h"

#include "TestRegistry.h"

#include <QGuiApplication>
#include <QTest>

//! The tray view in a language whose texts are 1.4 times as long.
class tst_LongTrayTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(LongTexts::use()); }
    void fit();
};

void tst_LongTrayTexts::fit()
{
    OmniBarFixture tray;
    QVERIFY(tray.open(QStringLiteral("TrayIcon.qml")));
    QVERIFY(tray.settle());
    tray.screenshot("long-tray");
    QCOMPARE(LongTexts::faults(tray.window()), QString());
}

REGISTER_TEST(tst_LongTrayTexts, QGuiApplication)

#include "tst_LongTrayTexts.moc"
