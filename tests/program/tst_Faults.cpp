// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FaultRun.h"

#include "PrivateNetwork.h"
#include "Timeouts.h"

#include <QTest>

class tst_Faults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void machine_data();
    void machine();
};

void tst_Faults::machine_data()
{
    QTest::addColumn<FaultRun::Window>("window");
    QTest::newRow("bar") << FaultRun::Window::OmniBar;
    QTest::newRow("main") << FaultRun::Window::Main;
}

void tst_Faults::machine()
{
    QFETCH(FaultRun::Window, window);
    FaultRun run(window);
    QVERIFY2(run.start(), run.program().errors().constData());
    QVERIFY2(run.converse("abc"), qPrintable(run.lastMessage()));
    QCOMPARE(run.end(), QString());
    QCOMPARE(run.program().unexpectedWords(), QString());
}

Q_DECLARE_METATYPE(FaultRun::Window)
REGISTER_PRIVATE_NETWORK_TEST(tst_Faults, QCoreApplication)

#include "tst_Faults.moc"
