// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "TestRegistry.h"
#include "TokenTotals.h"

#include <QTest>

#include <limits>

Q_DECLARE_METATYPE(QList<qint64>)

namespace
{

constexpr qint64 s_max = std::numeric_limits<qint64>::max();

QList<qint64> listed(const DayTotals &totals)
{
    return {totals.input, totals.output, totals.reasoning, totals.cacheRead, totals.cacheWrite, totals.messages};
}

} // namespace

//! What counts of a message file, which may contain anything.
class tst_TokenTotals : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parses_data();
    void parses();
    void skips_data();
    void skips();
    void sums();
    void sumsStayInRange();
};

void tst_TokenTotals::parses_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<qint64>("stamp");
    QTest::addColumn<QList<qint64>>("totals");

    const auto add = [](const char *name, const char *tokens, const char *time, qint64 stamp,
                        const QList<qint64> &totals) {
        QTest::newRow(name) << QByteArray(R"({"role":"assistant","tokens":)") + tokens + R"(,"time":)" + time + '}'
                            << stamp << totals;
    };
    add("all", R"({"input":1,"output":2,"reasoning":3,"cache":{"read":4,"write":5}})",
        R"({"created":100,"completed":200})", 200, {1, 2, 3, 4, 5, 1});
    add("missing numbers", R"({"output":2,"cache":{"write":5}})", R"({"completed":200})", 200, {0, 2, 0, 0, 5, 1});
    add("zeros", R"({"input":0})", R"({"completed":200})", 200, {0, 0, 0, 0, 0, 1});
    add("other types", R"({"input":"7","output":null,"reasoning":[3],"cache":4})", R"({"completed":200})", 200,
        {0, 0, 0, 0, 0, 1});
    add("fractions", R"({"input":1.99,"output":-1.99})", R"({"completed":200.9})", 200, {1, -1, 0, 0, 0, 1});
    add("not finished", R"({"input":1})", R"({"created":100})", 100, {1, 0, 0, 0, 0, 1});
    add("finished at 0", R"({"input":1})", R"({"created":100,"completed":0})", 100, {1, 0, 0, 0, 0, 1});
    add("finished before 1", R"({"input":1})", R"({"created":1,"completed":0.9})", 1, {1, 0, 0, 0, 0, 1});
    add("finished at no time", R"({"input":1})", R"({"created":100,"completed":"200"})", 100, {1, 0, 0, 0, 0, 1});
    add("huge", R"({"input":1e300,"output":-1e300})", R"({"completed":1e300})", Q_INT64_C(1) << 53,
        {Q_INT64_C(1) << 53, -(Q_INT64_C(1) << 53), 0, 0, 0, 1});
}

void tst_TokenTotals::parses()
{
    QFETCH(QByteArray, content);

    const auto tokens = parseMessageTokens(content);
    QVERIFY(tokens);
    QTEST(tokens->stamp, "stamp");
    QTEST(listed(tokens->totals), "totals");
}

void tst_TokenTotals::skips_data()
{
    QTest::addColumn<QByteArray>("content");

    const auto add = [](const char *name, const char *content) { QTest::newRow(name) << QByteArray(content); };
    add("nothing", "");
    add("broken", R"({"role":"assistant","tokens":{"input":1},"time":{"completed":200})");
    add("a list", R"([{"role":"assistant","tokens":{"input":1},"time":{"completed":200}}])");
    add("the user", R"({"role":"user","tokens":{"input":1},"time":{"completed":200}})");
    add("another role", R"({"role":"Assistant","tokens":{"input":1},"time":{"completed":200}})");
    add("no role", R"({"tokens":{"input":1},"time":{"completed":200}})");
    add("no tokens", R"({"role":"assistant","time":{"completed":200}})");
    add("empty tokens", R"({"role":"assistant","tokens":{},"time":{"completed":200}})");
    add("tokens are a number", R"({"role":"assistant","tokens":5,"time":{"completed":200}})");
    add("no time", R"({"role":"assistant","tokens":{"input":1}})");
    add("both times 0", R"({"role":"assistant","tokens":{"input":1},"time":{"created":0,"completed":0}})");
    add("both times negative", R"({"role":"assistant","tokens":{"input":1},"time":{"created":-1,"completed":-5}})");
    QTest::newRow("deep") << QByteArray(100000, '[');
    QTest::newRow("binary") << QByteArray("\x7f"
                                          "ELF\0\1\2",
                                          7);
}

void tst_TokenTotals::skips()
{
    QFETCH(QByteArray, content);

    QVERIFY(!parseMessageTokens(content));
}

void tst_TokenTotals::sums()
{
    DayTotals totals {1, 2, 3, 4, 5, 6};
    totals += DayTotals {10, 20, 30, 40, 50, 60};
    QCOMPARE(listed(totals), QList<qint64>({11, 22, 33, 44, 55, 66}));
    QCOMPARE(totals.total(), 165); // without the number of messages
}

void tst_TokenTotals::sumsStayInRange()
{
    DayTotals totals {s_max - 1, -s_max, 0, 0, 0, 0};
    totals += DayTotals {5, -5, 0, 0, 0, 0};
    QCOMPARE(listed(totals), QList<qint64>({s_max, std::numeric_limits<qint64>::min(), 0, 0, 0, 0}));
    QCOMPARE((DayTotals {s_max, 1, 1, 1, 1, 1}.total()), s_max);
}

REGISTER_TEST(tst_TokenTotals, QCoreApplication)

#include "tst_TokenTotals.moc"
