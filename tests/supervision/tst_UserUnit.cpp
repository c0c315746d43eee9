// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BridgeUserService.h"
#include "FakePath.h"
#include "MessageLog.h"
#include "TestRegistry.h"

#include <QFile>
#include <QTest>

#include <csignal>

using BridgeUserService::Outcome;

Q_DECLARE_METATYPE(BridgeUserService::Outcome)

namespace
{

const QByteArray s_request = QByteArrayLiteral("--user start tovi-bridge.service\n");

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_BridgeUserService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void asksTheManager();
    void asksAnyManager_data();
    void asksAnyManager();
    void tellsThatThereIsNone_data();
    void tellsThatThereIsNone();
    void tellsThatItCantRun();
    void doesntWaitForTheEnd();
};

void tst_BridgeUserService::asksTheManager()
{
    const QString log = qEnvironmentVariable("TOVICTL_SYSTEMCTL_LOG");
    QVERIFY(!QFile::exists(log));
    QCOMPARE(BridgeUserService::requestStart(), Outcome::Started);
    QTRY_COMPARE(contentOf(log), s_request);
}

void tst_BridgeUserService::asksAnyManager_data()
{
    QTest::addColumn<QByteArray>("behaviour");
    QTest::newRow("fails") << QByteArray("exit 5");
    QTest::newRow("dies") << QByteArray("kill -KILL $$");
    QTest::newRow("prints junk") << QByteArray("echo junk; echo junk >&2");
}

void tst_BridgeUserService::asksAnyManager()
{
    QFETCH(QByteArray, behaviour);
    FakePath path;
    const QString log = path.filePath(QStringLiteral("log"));
    path.add(QStringLiteral("systemctl"), "echo \"$*\" >> '" + QFile::encodeName(log) + "'; " + behaviour);
    MessageLog messages;
    QCOMPARE(BridgeUserService::requestStart(), Outcome::Started);
    QTRY_COMPARE(contentOf(log), s_request);
    QVERIFY(messages.lines().isEmpty());
}

void tst_BridgeUserService::tellsThatThereIsNone_data()
{
    QTest::addColumn<bool>("isThere");
    QTest::newRow("absent") << false;
    QTest::newRow("not executable") << true;
}

void tst_BridgeUserService::tellsThatThereIsNone()
{
    QFETCH(bool, isThere);
    FakePath path(FakePath::Rest::Hidden);
    if (isThere) {
        QVERIFY(QFile::setPermissions(path.add(QStringLiteral("systemctl"), ""), QFile::ReadOwner));
    }
    MessageLog messages;
    QCOMPARE(BridgeUserService::requestStart(), Outcome::NoSystemctl);
    QVERIFY(messages.lines().isEmpty());
}

void tst_BridgeUserService::tellsThatItCantRun()
{
    FakePath path;
    path.add(QStringLiteral("systemctl"), "", "/nowhere/interpreter");
    MessageLog messages;
    QCOMPARE(BridgeUserService::requestStart(), Outcome::NotStarted);
    QVERIFY(messages.lines().isEmpty());
}

void tst_BridgeUserService::doesntWaitForTheEnd()
{
    FakePath path;
    const QString pidFile = path.filePath(QStringLiteral("pid"));
    path.add(QStringLiteral("systemctl"), "echo $$ > '" + QFile::encodeName(pidFile) + "'; exec sleep 1000");
    QCOMPARE(BridgeUserService::requestStart(), Outcome::Started);

    QTRY_VERIFY(contentOf(pidFile).endsWith('\n'));
    const int pid = contentOf(pidFile).trimmed().toInt();
    QVERIFY(pid > 0);
    QCOMPARE(::kill(pid, SIGKILL), 0); // it was still there
}

REGISTER_TEST(tst_BridgeUserService, QCoreApplication)
#include "tst_BridgeUserService.moc"
