// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FakePath.h"
#include "Files.h"
#include "MessageLog.h"
#include "TestRegistry.h"
#include "UserUnit.h"

#include <QFile>
#include <QTest>

#include <csignal>

using UserUnit::Outcome;

Q_DECLARE_METATYPE(UserUnit::Outcome)

namespace
{

const QString s_unit = QStringLiteral("tovi-test.service");
const QByteArray s_request = QByteArrayLiteral("--user start tovi-test.service\n");

} // namespace

class tst_UserUnit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void asksTheManager();
    void stopsAUnit();
    void asksAnyManager_data();
    void asksAnyManager();
    void tellsThatThereIsNone_data();
    void tellsThatThereIsNone();
    void tellsThatItCantRun();
    void doesntWaitForTheEnd();
};

void tst_UserUnit::asksTheManager()
{
    const QString log = qEnvironmentVariable("TOVICTL_SYSTEMCTL_LOG");
    QVERIFY(!QFile::exists(log));
    QCOMPARE(UserUnit::start(s_unit), Outcome::Started);
    QTRY_COMPARE(contentOf(log), s_request);
}

void tst_UserUnit::stopsAUnit()
{
    FakePath path;
    const QString log = path.filePath(QStringLiteral("log"));
    path.add(QStringLiteral("systemctl"), "echo \"$*\" >> '" + QFile::encodeName(log) + '\'');
    QCOMPARE(UserUnit::stop(s_unit), Outcome::Started);
    QTRY_COMPARE(contentOf(log), QByteArray("--user stop tovi-test.service\n"));
}

void tst_UserUnit::asksAnyManager_data()
{
    QTest::addColumn<QByteArray>("behaviour");
    QTest::newRow("fails") << QByteArray("exit 5");
    QTest::newRow("dies") << QByteArray("kill -KILL $$");
    QTest::newRow("prints junk") << QByteArray("echo junk; echo junk >&2");
}

void tst_UserUnit::asksAnyManager()
{
    QFETCH(QByteArray, behaviour);
    FakePath path;
    const QString log = path.filePath(QStringLiteral("log"));
    path.add(QStringLiteral("systemctl"), "echo \"$*\" >> '" + QFile::encodeName(log) + "'; " + behaviour);
    MessageLog messages;
    QCOMPARE(UserUnit::start(s_unit), Outcome::Started);
    QTRY_COMPARE(contentOf(log), s_request);
    QVERIFY(messages.lines().isEmpty());
}

void tst_UserUnit::tellsThatThereIsNone_data()
{
    QTest::addColumn<bool>("isThere");
    QTest::newRow("absent") << false;
    QTest::newRow("not executable") << true;
}

void tst_UserUnit::tellsThatThereIsNone()
{
    QFETCH(bool, isThere);
    FakePath path(FakePath::Rest::Hidden);
    if (isThere) {
        QVERIFY(QFile::setPermissions(path.add(QStringLiteral("systemctl"), ""), QFile::ReadOwner));
    }
    MessageLog messages;
    QCOMPARE(UserUnit::start(s_unit), Outcome::NoSystemctl);
    QVERIFY(messages.lines().isEmpty());
}

void tst_UserUnit::tellsThatItCantRun()
{
    FakePath path;
    path.add(QStringLiteral("systemctl"), "", "/nowhere/interpreter");
    MessageLog messages;
    QCOMPARE(UserUnit::start(s_unit), Outcome::NotStarted);
    QVERIFY(messages.lines().isEmpty());
}

void tst_UserUnit::doesntWaitForTheEnd()
{
    FakePath path;
    const QString pidFile = path.filePath(QStringLiteral("pid"));
    path.add(QStringLiteral("systemctl"), "echo $$ > '" + QFile::encodeName(pidFile) + "'; exec sleep 1000");
    QCOMPARE(UserUnit::start(s_unit), Outcome::Started);

    QTRY_VERIFY(contentOf(pidFile).endsWith('\n'));
    const int pid = contentOf(pidFile).trimmed().toInt();
    QVERIFY(pid > 0);
    QCOMPARE(::kill(pid, SIGKILL), 0); // it was still there
}

REGISTER_TEST(tst_UserUnit, QCoreApplication)
#include "tst_UserUnit.moc"
