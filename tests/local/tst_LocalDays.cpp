// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "LocalDays.h"
#include "ScopedEnvironment.h"
#include "TestRegistry.h"

#include <QDateTime>
#include <QTest>

#include <numeric>

//! The days of times around changes of the clock, in any order.
class tst_LocalDays : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void days_data();
    void days();
    void beyondTheCalendar();
    void beginOf1970();
};

void tst_LocalDays::days_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<int>("step");

    const auto add = [](const char *name, const char *zone) {
        for (const int step : {1, -1, 11, 50, 97}) {
            QTest::addRow("%s, step %d", name, step) << QByteArray(zone) << step;
        }
    };
    // The clocks change on Sunday, the 25th of October 2026.
    add("no change", "UTC0");
    add("back at night", "CET-1CEST,M3.5.0,M10.5.0/3");
    add("back at midnight", "<-04>4<-03>,M3.5.0/24,M10.5.0/0");
    // One minute of Sunday, the last hour of Saturday again, then the rest of Sunday.
    add("back just after midnight", "NST3:30NDT,M3.5.0/0:01,M10.5.0/0:01");
    add("forward at midnight", "<+03>-3<+04>,M10.5.0/0,M3.5.0/0");
    add("forward at night", "AEST-10AEDT,M10.5.0,M4.1.0/3");
}

void tst_LocalDays::days()
{
    QFETCH(QByteArray, zone);
    QFETCH(int, step);

    const ScopedEnvironment environment("TZ", zone);
    const QDateTime begin(QDate(2026, 10, 23), QTime(0, 0), Qt::UTC);
    constexpr int count = 4 * 24 * 60 + 1; // a minute each, for four days
    QCOMPARE(std::gcd(count, step), 1); // so all are visited
    LocalDays days;
    for (int i = 0; i < count; ++i) {
        const int minute = ((i * step) % count + count) % count;
        const QDateTime time = begin.addSecs(minute * 60);
        const QString day = days.dayOf(time.toMSecsSinceEpoch());
        QVERIFY2(day == time.toLocalTime().date().toString(Qt::ISODate), qPrintable(time.toString(Qt::ISODate)));
    }
}

void tst_LocalDays::beyondTheCalendar()
{
    LocalDays days;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    QVERIFY(!days.dayOf(now).isEmpty());
    QCOMPARE(days.dayOf(Q_INT64_C(1) << 53), QString());
    QVERIFY(!days.dayOf(now).isEmpty());
}

void tst_LocalDays::beginOf1970()
{
    const ScopedEnvironment environment("TZ", "UTC0");
    LocalDays days;
    QCOMPARE(days.dayOf(0), QStringLiteral("1970-01-01"));
}

REGISTER_TEST(tst_LocalDays, QCoreApplication)

#include "tst_LocalDays.moc"
