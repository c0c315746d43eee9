// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "DataDirectories.h"
#include "ScopedEnvironment.h"
#include "TestRegistry.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

namespace
{

constexpr const char *s_variable = "XDG_DATA_DIRS";

} // namespace

class tst_DataDirectories : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void joins_data();
    void joins();
    void prefersShareBesideTheExecutable();
    void leavesTheVariableAloneWithoutShare();
};

void tst_DataDirectories::joins_data()
{
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QByteArray>("old");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("before the others") << QStringLiteral("/opt/share") << QByteArray("/a:/b")
                                       << QByteArray("/opt/share:/a:/b");
    QTest::newRow("alone, with its colon") << QStringLiteral("/opt/share") << QByteArray() << QByteArray("/opt/share:");
    QTest::newRow("beyond ASCII") << QStringLiteral("/höme/share") << QByteArray("/a")
                                  << QStringLiteral("/höme/share:/a").toUtf8();
}

void tst_DataDirectories::joins()
{
    QFETCH(QString, directory);
    QFETCH(QByteArray, old);

    QTEST(dataDirectoriesWith(directory, old), "expected");
}

void tst_DataDirectories::prefersShareBesideTheExecutable()
{
    const QTemporaryDir executables;
    QVERIFY(QDir(executables.path()).mkdir(QStringLiteral("share")));
    const ScopedEnvironment environment(s_variable, "/a:/b");
    preferDataBesideExecutable(executables.path());
    QCOMPARE(qgetenv(s_variable), executables.filePath(QStringLiteral("share")).toUtf8() + ":/a:/b");
}

void tst_DataDirectories::leavesTheVariableAloneWithoutShare()
{
    const QTemporaryDir executables;
    const ScopedEnvironment environment(s_variable, "/a:/b");
    preferDataBesideExecutable(executables.path());
    QCOMPARE(qgetenv(s_variable), QByteArray("/a:/b"));
}

REGISTER_TEST(tst_DataDirectories, QCoreApplication)
#include "tst_DataDirectories.moc"
