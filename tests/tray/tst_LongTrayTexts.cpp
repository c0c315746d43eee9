// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "LongTexts.h"
#include "Mirroring.h"
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
    void mirrored();
};

void tst_LongTrayTexts::fit()
{
    OmniBarFixture tray;
    QVERIFY(tray.open(QStringLiteral("TrayIcon.qml")));
    QVERIFY(tray.settle());
    tray.screenshot("long-tray");
    QCOMPARE(LongTexts::faults(tray.window()), QString());
}

//! In a language that is written from right to left.
void tst_LongTrayTexts::mirrored()
{
    QVERIFY(Mirroring::use());
    OmniBarFixture tray;
    QVERIFY(tray.open(QStringLiteral("TrayIcon.qml")));
    QVERIFY(tray.settle());
    QCOMPARE(LongTexts::faults(tray.window()), QString());
    const QString faults = Mirroring::faults(tray);
    QVERIFY2(faults.isEmpty(), qPrintable(faults));
}

REGISTER_TEST(tst_LongTrayTexts, QGuiApplication)

#include "tst_LongTrayTexts.moc"
