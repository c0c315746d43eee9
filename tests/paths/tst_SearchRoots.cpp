// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ScopedEnvironment.h"
#include "SearchRoots.h"
#include "TestRegistry.h"

#include <QTest>

class tst_SearchRoots : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fixedValues();
    void followsHome();
};

void tst_SearchRoots::fixedValues()
{
    const SearchRoots roots {QStringLiteral("/home/anna"), QStringLiteral("/root")};
    QCOMPARE(roots.packagedModels(), QStringLiteral("/root/usr/share/tovi-forkeldaos/models"));
    QCOMPARE(roots.userModels(), QStringLiteral("/home/anna/.local/share/tovi-forkeldaos/models"));
}

void tst_SearchRoots::followsHome()
{
    const ScopedEnvironment home("HOME", "/home/anna");
    const SearchRoots roots = SearchRoots::ofThisProcess();
    QCOMPARE(roots.home, QStringLiteral("/home/anna"));
    QCOMPARE(roots.system, QString());
}

REGISTER_TEST(tst_SearchRoots, QCoreApplication)
#include "tst_SearchRoots.moc"
