// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "StaleBridges.h"
#include "TestRegistry.h"

#include <QTest>

using StaleBridges::Verdict;

Q_DECLARE_METATYPE(StaleBridges::Verdict)
Q_DECLARE_METATYPE(std::optional<QString>)

class tst_StaleBridges : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fixedValues();
    void parsesPids_data();
    void parsesPids();
    void decides_data();
    void decides();
};

void tst_StaleBridges::parsesPids_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QVector<qint64>>("pids");

    QTest::newRow("nothing") << QString() << QVector<qint64> {};
    QTest::newRow("one") << "17" << QVector<qint64> {17};
    QTest::newRow("one with its newline") << "17\n" << QVector<qint64> {17};
    QTest::newRow("in their order") << "30\n4\n17\n" << QVector<qint64> {30, 4, 17};
    QTest::newRow("empty lines") << "\n\n4\n\n17\n\n" << QVector<qint64> {4, 17};
    QTest::newRow("a line of whitespace") << "4\n  \n17" << QVector<qint64> {4, 17};
    QTest::newRow("zero would be our process group") << "0\n4" << QVector<qint64> {4};
    QTest::newRow("-1 would be everything") << "-1\n-17\n4" << QVector<qint64> {4};
    QTest::newRow("words") << "COMMAND\nnode\n4" << QVector<qint64> {4};
    QTest::newRow("number and word") << "4 node\n4x\nx4" << QVector<qint64> {};
    QTest::newRow("two in a line") << "4 17" << QVector<qint64> {};
    QTest::newRow("not decimal") << "0x11\n1e3\n4.0\n4,000" << QVector<qint64> {};
    QTest::newRow("beyond 32 bits") << "4294967297" << QVector<qint64> {4294967297};
    QTest::newRow("beyond 64 bits") << "18446744073709551617\n4" << QVector<qint64> {4};
}

void tst_StaleBridges::parsesPids()
{
    QFETCH(QString, output);
    QTEST(StaleBridges::pidsIn(output), "pids");
}

void tst_StaleBridges::decides_data()
{
    QTest::addColumn<qint64>("pid");
    QTest::addColumn<std::optional<QString>>("comm");
    QTest::addColumn<Verdict>("verdict");

    const auto row = [](const char *name, qint64 pid, const std::optional<QString> &comm, Verdict verdict) {
        QTest::newRow(name) << pid << comm << verdict;
    };
    row("node", 17, QStringLiteral("node"), Verdict::Kill);
    row("no name to be had", 17, std::nullopt, Verdict::Kill);
    row("empty name", 17, QString(), Verdict::SkipOther);
    row("other name", 17, QStringLiteral("tovictl"), Verdict::SkipOther);
    row("begins like it", 17, QStringLiteral("nodejs"), Verdict::SkipOther);
    row("ends like it", 17, QStringLiteral("mynode"), Verdict::SkipOther);
    row("other case", 17, QStringLiteral("Node"), Verdict::SkipOther);
    row("a path", 17, QStringLiteral("/usr/bin/node"), Verdict::SkipOther);
    row("ourselves", 5, QStringLiteral("tovictl"), Verdict::SkipOwn);
    row("ourselves, named node", 5, QStringLiteral("node"), Verdict::SkipOwn);
    row("ourselves without a name", 5, std::nullopt, Verdict::SkipOwn);
}

void tst_StaleBridges::decides()
{
    QFETCH(qint64, pid);
    QFETCH(std::optional<QString>, comm);
    QTEST(StaleBridges::verdictOn(pid, 5, comm), "verdict");
}

void tst_StaleBridges::fixedValues()
{
    QCOMPARE(StaleBridges::LsofTimeout, std::chrono::milliseconds(2000));
    QCOMPARE(StaleBridges::KillTimeout, std::chrono::milliseconds(1000));
    QCOMPARE(StaleBridges::EndTimeout, std::chrono::milliseconds(500));
    QCOMPARE(StaleBridges::PortReleaseDelay, std::chrono::milliseconds(1000));
}

REGISTER_TEST(tst_StaleBridges, QCoreApplication)
#include "tst_StaleBridges.moc"
