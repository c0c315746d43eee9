// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "TestRegistry.h"
#include "VoiceLog.h"

#include <QTest>

class tst_VoiceLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newestComesFirst();
    void oldestGoes();
    void hostileText();
};

void tst_VoiceLog::newestComesFirst()
{
    VoiceLog log;
    log.append(QTime(9, 5, 7, 30), QStringLiteral("first"));
    log.append(QTime(23, 59, 59, 999), QStringLiteral("second  entry"));
    QCOMPARE(log.lines(),
             (QStringList {QStringLiteral("[23:59:59.999] second  entry"), QStringLiteral("[09:05:07.030] first")}));
    log.clear();
    QCOMPARE(log.lines(), QStringList());
}

void tst_VoiceLog::oldestGoes()
{
    VoiceLog log;
    for (int i = 1; i <= 200; ++i) {
        log.append(QTime(0, 0), QString::number(i));
    }
    QCOMPARE(log.lines().size(), 200);
    QCOMPARE(log.lines().last(), QStringLiteral("[00:00:00.000] 1"));
    log.append(QTime(0, 0), QStringLiteral("201"));
    QCOMPARE(log.lines().size(), 200);
    QCOMPARE(log.lines().first(), QStringLiteral("[00:00:00.000] 201"));
    QCOMPARE(log.lines().last(), QStringLiteral("[00:00:00.000] 2"));
}

void tst_VoiceLog::hostileText()
{
    VoiceLog log;
    log.append(QTime(0, 0), QStringLiteral("100%1 <b>%2</b>"));
    QCOMPARE(log.lines(), QStringList {QStringLiteral("[00:00:00.000] 100%1 <b>%2</b>")});
}

REGISTER_TEST(tst_VoiceLog, QCoreApplication)

#include "tst_VoiceLog.moc"
