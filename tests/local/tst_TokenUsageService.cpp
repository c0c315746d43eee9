// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "TestRegistry.h"
#include "TokenUsageService.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QMetaProperty>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

#include <limits>
#include <unistd.h>

namespace
{

//! Noon, so that a day more or less in ms is a calendar day too, in spite of daylight saving time.
const QDateTime s_now(QDate(2026, 11, 22), QTime(12, 0));

qint64 daysAgo(int days)
{
    return s_now.addDays(-days).toMSecsSinceEpoch();
}

} // namespace

//! The sums per day of message files on the disk, with a clock that the tests move.
class tst_TokenUsageService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void members();
    void days_data();
    void days();
    void limitsTheDays();
    void sums();
    void whichFiles();
    void unreadableFiles();
    void manyFiles();
    void freshness();
    void withoutAStorage();
    void storageIsGone();
    void today();

private:
    QString path(const QString &name) const { return m_storage + QLatin1Char('/') + name; }
    void write(const QString &name, const QByteArray &content) const;
    //! A message of the assistant that was finished some days ago.
    void writeMessage(const QString &name, qint64 input, int days = 0) const;
    TokenUsageService::Clock clock()
    {
        return [this] { return m_now; };
    }

    QString m_storage;
    qint64 m_now = 0;
};

void tst_TokenUsageService::init()
{
    m_now = s_now.toMSecsSinceEpoch();
    m_storage = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + QStringLiteral("/loomra/storage/message");
    QVERIFY(QDir(m_storage).removeRecursively());
    QVERIFY(QDir().mkpath(m_storage));
}

void tst_TokenUsageService::write(const QString &name, const QByteArray &content) const
{
    QVERIFY(QDir().mkpath(QFileInfo(path(name)).path()));
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

void tst_TokenUsageService::writeMessage(const QString &name, qint64 input, int days) const
{
    write(name,
          QByteArray(R"({"role":"assistant","tokens":{"input":)") + QByteArray::number(input)
              + R"(},"time":{"completed":)" + QByteArray::number(daysAgo(days)) + "}}");
}

void tst_TokenUsageService::members()
{
    const TokenUsageService service;
    QCOMPARE(service.storagePath(), m_storage);
    QCOMPARE(service.lastScanMs(), 0);
    const QMetaObject &type = TokenUsageService::staticMetaObject;
    QVERIFY(type.property(type.indexOfProperty("storagePath")).isConstant());
    const QMetaProperty lastScan = type.property(type.indexOfProperty("lastScanMs"));
    QCOMPARE(lastScan.typeName(), "qlonglong");
    QCOMPARE(lastScan.notifySignal().methodSignature(), QByteArray("scanned()"));
    QVERIFY(type.indexOfMethod("dailyUsage()") >= 0);
    QVERIFY(type.indexOfMethod("dailyUsage(int)") >= 0);
    QVERIFY(type.indexOfMethod("refresh()") >= 0);
}

void tst_TokenUsageService::days_data()
{
    QTest::addColumn<int>("days");
    QTest::addColumn<int>("count");

    QTest::newRow("a week") << 7 << 7;
    QTest::newRow("one") << 1 << 1;
    QTest::newRow("none") << 0 << 30;
    QTest::newRow("negative") << -3 << 30;
}

void tst_TokenUsageService::days()
{
    QFETCH(int, days);
    QFETCH(int, count);

    writeMessage(QStringLiteral("msg_1.json"), 5, count - 1);
    writeMessage(QStringLiteral("msg_2.json"), 7, count); // the day before the first
    TokenUsageService service(clock());
    const QVariantList usage = service.dailyUsage(days);
    QCOMPARE(usage.size(), count);
    for (int age = 0; age < count; ++age) {
        const QVariantMap day = usage.at(age).toMap();
        QCOMPARE(day.value(QStringLiteral("date")).toString(), s_now.date().addDays(-age).toString(Qt::ISODate));
        QCOMPARE(day.value(QStringLiteral("input")).toLongLong(), age == count - 1 ? 5 : 0);
        QCOMPARE(day.size(), 8);
    }
    // The next window comes from the same scan.
    QCOMPARE(service.dailyUsage(count + 1).at(count).toMap().value(QStringLiteral("input")).toLongLong(), 7);
}

//! Any number comes from QML, such as the conversion of 1e10.
void tst_TokenUsageService::limitsTheDays()
{
    QCOMPARE(TokenUsageService::MaximumDays, 36525);
    TokenUsageService service(clock());
    const QVariantList usage = service.dailyUsage(std::numeric_limits<int>::max());
    QCOMPARE(usage.size(), TokenUsageService::MaximumDays);
    QCOMPARE(usage.constLast().toMap().value(QStringLiteral("date")).toString(),
             s_now.date().addDays(1 - TokenUsageService::MaximumDays).toString(Qt::ISODate));
}

void tst_TokenUsageService::sums()
{
    const QByteArray time = R"("time":{"completed":)" + QByteArray::number(daysAgo(0)) + "}}";
    write(QStringLiteral("msg_a.json"),
          R"({"role":"assistant","tokens":{"input":1,"output":2,"reasoning":3,"cache":{"read":4,"write":5}},)" + time);
    write(QStringLiteral("ses_1/msg_b.json"),
          R"({"role":"assistant","tokens":{"input":10,"output":20,"reasoning":30,"cache":{"read":40,"write":50}},)"
              + time);
    write(QStringLiteral("ses_1/deeper/msg_c.json"), R"({"role":"assistant","tokens":{"input":0},)" + time);
    write(QStringLiteral("msg_user.json"), R"({"role":"user","tokens":{"input":1000},)" + time);
    TokenUsageService service(clock());
    const QVariantMap expected = {
        {QStringLiteral("date"), QStringLiteral("2026-11-22")},
        {QStringLiteral("input"), 11},
        {QStringLiteral("output"), 22},
        {QStringLiteral("reasoning"), 33},
        {QStringLiteral("cacheRead"), 44},
        {QStringLiteral("cacheWrite"), 55},
        {QStringLiteral("messages"), 3},
        {QStringLiteral("total"), 165},
    };
    const QVariantMap today = service.dailyUsage().first().toMap();
    QCOMPARE(today, expected);
    QCOMPARE(today.value(QStringLiteral("total")).type(), QVariant::LongLong);
}

void tst_TokenUsageService::whichFiles()
{
    writeMessage(QStringLiteral("msg_1.json"), 1);
    writeMessage(QStringLiteral("a/b/c/msg_2.json"), 2);
    writeMessage(QStringLiteral("a/msg_.json"), 4);
    writeMessage(QStringLiteral("message_1.json"), 100);
    writeMessage(QStringLiteral("msg_1.json.bak"), 200);
    writeMessage(QStringLiteral("msg_1.jsonl"), 400);
    writeMessage(QStringLiteral("MSG_1.json"), 800);
    writeMessage(QStringLiteral(".hidden/msg_4.json"), 8);
    QVERIFY(QFile::link(path(QStringLiteral("msg_1.json")), path(QStringLiteral("msg_link.json"))));
    QVERIFY(QFile::link(m_storage, path(QStringLiteral("a/loop"))));
    QVERIFY(QDir().mkpath(path(QStringLiteral("msg_directory.json"))));
    // A name that is no UTF-8.
    const QByteArray name = QFile::encodeName(m_storage) + "/msg_\xff\xfe.json";
    QCOMPARE(::link(QFile::encodeName(path(QStringLiteral("msg_1.json"))).constData(), name.constData()), 0);
    TokenUsageService service(clock());
    // Qt can't open that file, so it is skipped.
    QCOMPARE(service.dailyUsage().first().toMap().value(QStringLiteral("input")).toLongLong(), 15);
    QCOMPARE(::unlink(name.constData()), 0); // nor delete it
}

void tst_TokenUsageService::unreadableFiles()
{
    writeMessage(QStringLiteral("msg_1.json"), 1);
    write(QStringLiteral("msg_broken.json"), "{");
    write(QStringLiteral("msg_empty.json"), {});
    write(QStringLiteral("msg_binary.json"), QByteArray(100000, '\0'));
    QFile huge(path(QStringLiteral("msg_huge.json")));
    QVERIFY(huge.open(QIODevice::WriteOnly));
    QVERIFY(huge.resize(Q_INT64_C(1) << 33)); // sparse
    writeMessage(QStringLiteral("locked/msg_2.json"), 0);
    QVERIFY(QFile::setPermissions(path(QStringLiteral("locked/msg_2.json")), {}));
    QVERIFY(QFile::setPermissions(path(QStringLiteral("locked")), {}));
    TokenUsageService service(clock());
    QCOMPARE(service.dailyUsage().first().toMap().value(QStringLiteral("input")).toLongLong(), 1);
    QVERIFY(
        QFile::setPermissions(path(QStringLiteral("locked")), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

//! More than both threads take at once.
void tst_TokenUsageService::manyFiles()
{
    constexpr int count = 1500;
    for (int i = 0; i < count; ++i) {
        writeMessage(QStringLiteral("ses_%1/msg_%2.json").arg(i % 10).arg(i), i, i % 3);
    }
    TokenUsageService service(clock());
    const QVariantList usage = service.dailyUsage();
    QCOMPARE(usage.size(), 30);
    qint64 input = 0;
    for (int age = 0; age < 3; ++age) {
        QCOMPARE(usage.at(age).toMap().value(QStringLiteral("messages")).toInt(), count / 3);
        input += usage.at(age).toMap().value(QStringLiteral("input")).toLongLong();
    }
    QCOMPARE(input, count * (count - 1) / 2);
}

void tst_TokenUsageService::freshness()
{
    writeMessage(QStringLiteral("msg_1.json"), 1);
    TokenUsageService service(clock());
    QSignalSpy scanned(&service, &TokenUsageService::scanned);
    const auto input = [&service] {
        return service.dailyUsage(7).first().toMap().value(QStringLiteral("input")).toLongLong();
    };
    QCOMPARE(input(), 1);
    QCOMPARE(scanned.count(), 1);
    QCOMPARE(service.lastScanMs(), m_now);
    writeMessage(QStringLiteral("msg_2.json"), 2);
    m_now += 5000;
    QCOMPARE(input(), 1);
    QCOMPARE(scanned.count(), 1);
    m_now += 1;
    QCOMPARE(input(), 3);
    QCOMPARE(scanned.count(), 2);
    QCOMPARE(service.lastScanMs(), m_now);
    // The clock was set back.
    m_now -= 1;
    QCOMPARE(input(), 3);
    QCOMPARE(scanned.count(), 3);

    writeMessage(QStringLiteral("msg_3.json"), 4);
    service.refresh();
    QCOMPARE(service.lastScanMs(), 0);
    QCOMPARE(scanned.count(), 3);
    QCOMPARE(input(), 7);
    // Each scan starts from nothing.
    QVERIFY(QFile::remove(path(QStringLiteral("msg_1.json"))));
    service.refresh();
    QCOMPARE(input(), 6);
    QCOMPARE(scanned.count(), 5);
}

void tst_TokenUsageService::withoutAStorage()
{
    QVERIFY(QDir(m_storage).removeRecursively());
    TokenUsageService service(clock());
    const QSignalSpy scanned(&service, &TokenUsageService::scanned);
    const QString warning = QStringLiteral("TokenUsageService: message storage not found at \"%1\"").arg(m_storage);
    for (int time = 0; time < 2; ++time) {
        QTest::ignoreMessage(QtWarningMsg, qPrintable(warning));
        const QVariantList usage = service.dailyUsage(7);
        QCOMPARE(usage.size(), 7);
        QCOMPARE(usage.first().toMap().value(QStringLiteral("total")).toLongLong(), 0);
        QCOMPARE(service.lastScanMs(), 0);
    }
    QCOMPARE(scanned.count(), 0);
    QVERIFY(!QFileInfo::exists(m_storage));
}

void tst_TokenUsageService::storageIsGone()
{
    writeMessage(QStringLiteral("msg_1.json"), 1);
    TokenUsageService service(clock());
    service.dailyUsage();
    const qint64 scan = service.lastScanMs();
    QVERIFY(QDir(m_storage).removeRecursively());
    m_now += 6000;
    QTest::ignoreMessage(
        QtWarningMsg,
        qPrintable(QStringLiteral("TokenUsageService: message storage not found at \"%1\"").arg(m_storage)));
    QCOMPARE(service.dailyUsage().first().toMap().value(QStringLiteral("input")).toLongLong(), 0);
    QCOMPARE(service.lastScanMs(), scan);
}

//! With the clock of the system.
void tst_TokenUsageService::today()
{
    TokenUsageService service;
    const QDate before = QDate::currentDate();
    const QDate date =
        QDate::fromString(service.dailyUsage(1).first().toMap().value(QStringLiteral("date")).toString(), Qt::ISODate);
    QVERIFY(date >= before && date <= QDate::currentDate());
    QVERIFY(service.lastScanMs() > s_now.addYears(-1).toMSecsSinceEpoch());
}

REGISTER_TEST(tst_TokenUsageService, QCoreApplication)

#include "tst_TokenUsageService.moc"
