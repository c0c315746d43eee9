// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "DebugEventLog.h"
#include "Files.h"
#include "Json.h"
#include "MessageLog.h"
#include "TestRegistry.h"
#include "TestSetup.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/stat.h>

namespace
{

constexpr char s_variable[] = "LOOMRA_DEBUG";

//! Determined without QStandardPaths.
QString directoryPath()
{
    return QDir::homePath() + QStringLiteral("/.local/share/loomra-kde");
}

QString filePath()
{
    return directoryPath() + QStringLiteral("/loomra-debug.log");
}

//! Empty if there is nothing in the file.
QList<QByteArray> writtenLines()
{
    const QByteArray content = contentOf(filePath());
    return content.isEmpty() ? QList<QByteArray>() : content.split('\n');
}

} // namespace

class tst_DebugEventLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void anyValueTurnsItOn_data();
    void anyValueTurnsItOn();
    void composesLines_data();
    void composesLines();
    void escapesTexts_data();
    void escapesTexts();
    void escapedTextsRoundTrip();
    void writesOneLinePerEvent();
    void writesBrokenDataAllTheSame();
    void writesBeyondAscii();
    void isPrivate_data();
    void isPrivate();
    void ignoresWriteErrors_data();
    void ignoresWriteErrors();
};

void tst_DebugEventLog::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_DebugEventLog::init()
{
    qunsetenv(s_variable);
    QFile::remove(directoryPath());
    QDir(directoryPath()).removeRecursively();
}

void tst_DebugEventLog::anyValueTurnsItOn_data()
{
    QTest::addColumn<QByteArray>("value"); // null means unset
    QTest::addColumn<bool>("isOn");

    QTest::newRow("unset") << QByteArray() << false;
    QTest::newRow("empty") << QByteArray("") << false;
    QTest::newRow("0") << QByteArray("0") << true;
    QTest::newRow("1") << QByteArray("1") << true;
    QTest::newRow("false") << QByteArray("false") << true;
    QTest::newRow("whitespace") << QByteArray(" ") << true;
}

void tst_DebugEventLog::anyValueTurnsItOn()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, isOn);
    if (!value.isNull()) {
        qputenv(s_variable, value);
    }
    QCOMPARE(DebugEventLog::isOn(), isOn);
    DebugEventLog::write(QStringLiteral("l"), QStringLiteral("m"), QStringLiteral("{}"));
    QCOMPARE(QFile::exists(filePath()), isOn);
}

void tst_DebugEventLog::composesLines_data()
{
    QTest::addColumn<QString>("location");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("data");
    QTest::addColumn<QByteArray>("line");

    QTest::newRow("plain") << "LoomraSDK:initialize"
                           << "initialize called"
                           << "{}"
                           << QByteArray(
                                  R"({"location":"LoomraSDK:initialize","message":"initialize called","data":{},)"
                                  R"("timestamp":1700000000000})");
    QTest::newRow("quotes") << R"(a"b")"
                            << R"("c")"
                            << R"({"d":1})"
                            << QByteArray(R"({"location":"a\"b\"","message":"\"c\"","data":{"d":1},)"
                                          R"("timestamp":1700000000000})");
    QTest::newRow("backslash stays") << R"(a\b)"
                                     << R"(\)"
                                     << "1"
                                     << QByteArray(R"({"location":"a\b","message":"\","data":1,)"
                                                   R"("timestamp":1700000000000})");
    QTest::newRow("raw quote in data") << "l"
                                       << "m"
                                       << R"({"d":"a"b"})"
                                       << QByteArray(R"({"location":"l","message":"m","data":{"d":"a"b"},)"
                                                     R"("timestamp":1700000000000})");
    QTest::newRow("placeholders stay") << "%2"
                                       << "%3"
                                       << "%1"
                                       << QByteArray(R"({"location":"%2","message":"%3","data":%1,)"
                                                     R"("timestamp":1700000000000})");
    QTest::newRow("empty") << QString() << QString() << QString()
                           << QByteArray(R"({"location":"","message":"","data":,"timestamp":1700000000000})");
}

void tst_DebugEventLog::composesLines()
{
    QFETCH(QString, location);
    QFETCH(QString, message);
    QFETCH(QString, data);
    QFETCH(QByteArray, line);
    QCOMPARE(DebugEventLog::line(location, message, data, 1700000000000), line + '\n');
}

void tst_DebugEventLog::escapesTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("escaped");
    QTest::addColumn<QString>("escapedLines");

    QTest::newRow("plain") << "/a/ü"
                           << "/a/ü"
                           << "/a/ü";
    QTest::newRow("quote") << R"(a"b)"
                           << R"(a\"b)"
                           << R"(a\"b)";
    QTest::newRow("backslash") << R"(a\b)"
                               << R"(a\\b)"
                               << R"(a\\b)";
    QTest::newRow("backslash before quote") << R"(\")"
                                            << R"(\\\")"
                                            << R"(\\\")";
    QTest::newRow("newline") << "a\nb"
                             << "a\nb"
                             << R"(a\nb)";
    QTest::newRow("an escape of its own") << R"(\n)"
                                          << R"(\\n)"
                                          << R"(\\n)";
    QTest::newRow("empty") << QString() << QString() << QString();
}

void tst_DebugEventLog::escapesTexts()
{
    QFETCH(QString, text);
    QTEST(DebugEventLog::escaped(text), "escaped");
    QTEST(DebugEventLog::escapedLines(text), "escapedLines");
}

void tst_DebugEventLog::escapedTextsRoundTrip()
{
    const QString text = QStringLiteral("{\"path\":\"C:\\\\n\"}\n\n\"");
    const QString data = QStringLiteral(R"({"t":"%1"})").arg(DebugEventLog::escapedLines(text));
    const QByteArray line = DebugEventLog::line(QStringLiteral("l"), QStringLiteral("m"), data, 1);
    const QJsonObject read = json(line);
    QCOMPARE(read.value(QLatin1String("data")).toObject().value(QLatin1String("t")).toString(), text);
}

void tst_DebugEventLog::writesOneLinePerEvent()
{
    qputenv(s_variable, "1");
    const qint64 before = QDateTime::currentMSecsSinceEpoch();
    DebugEventLog::write(QStringLiteral("LoomraSDK:listModels"), QStringLiteral("listModels called"),
                         QStringLiteral(R"({"ready":1,"connected":0})"));
    DebugEventLog::write(QStringLiteral("LoomraSDK:initialize"), QStringLiteral("initialize called"),
                         QStringLiteral("{}"));
    const qint64 after = QDateTime::currentMSecsSinceEpoch();

    const QList<QByteArray> lines = writtenLines();
    QCOMPARE(lines.size(), 3);
    QCOMPARE(lines.last(), QByteArray());
    const QJsonObject first = json(lines.at(0));
    QCOMPARE(first.value(QLatin1String("location")), QJsonValue(QStringLiteral("LoomraSDK:listModels")));
    QCOMPARE(first.value(QLatin1String("message")), QJsonValue(QStringLiteral("listModels called")));
    QCOMPARE(first.value(QLatin1String("data")),
             QJsonValue(QJsonObject {{QStringLiteral("ready"), 1}, {QStringLiteral("connected"), 0}}));
    const double written = first.value(QLatin1String("timestamp")).toDouble();
    QVERIFY(written >= before && written <= after);
    QCOMPARE(json(lines.at(1)).value(QLatin1String("message")), QJsonValue(QStringLiteral("initialize called")));
}

void tst_DebugEventLog::writesBrokenDataAllTheSame()
{
    qputenv(s_variable, "0");
    DebugEventLog::write(QStringLiteral("l"), QStringLiteral("m"), QStringLiteral(R"({"d":"a"b"})"));
    QCOMPARE(writtenLines().size(), 2);
    QVERIFY(writtenLines().first().startsWith(R"({"location":"l","message":"m","data":{"d":"a"b"},"timestamp":)"));
    QVERIFY(QJsonDocument::fromJson(writtenLines().first()).isNull());
}

void tst_DebugEventLog::writesBeyondAscii()
{
    qputenv(s_variable, "1");
    DebugEventLog::write(QStringLiteral("l"), QStringLiteral("m"), QStringLiteral("\"ü 🙂\""));
    const QJsonObject read = json(writtenLines().value(0));
    QCOMPARE(read.value(QLatin1String("data")), QJsonValue(QStringLiteral("ü 🙂")));
}

void tst_DebugEventLog::isPrivate_data()
{
    QTest::addColumn<int>("directoryBefore"); // modes; -1 means that it doesn't exist
    QTest::addColumn<int>("fileBefore");
    QTest::addColumn<int>("directoryMode");

    QTest::newRow("new") << -1 << -1 << 0700;
    QTest::newRow("existing directory") << 0755 << -1 << 0755;
    QTest::newRow("existing file") << 0750 << 0644 << 0750;
    QTest::newRow("open to everyone") << 0777 << 0666 << 0777;
    QTest::newRow("private file") << 0700 << 0600 << 0700;
}

void tst_DebugEventLog::isPrivate()
{
    QFETCH(int, directoryBefore);
    QFETCH(int, fileBefore);
    if (directoryBefore >= 0) {
        QVERIFY(QDir().mkpath(directoryPath()));
        QCOMPARE(::chmod(QFile::encodeName(directoryPath()).constData(), static_cast<mode_t>(directoryBefore)), 0);
    }
    if (fileBefore >= 0) {
        QVERIFY(writeFile(filePath(), "{}\n"));
        QCOMPARE(::chmod(QFile::encodeName(filePath()).constData(), static_cast<mode_t>(fileBefore)), 0);
    }
    qputenv(s_variable, "1");
    const mode_t umaskBefore = ::umask(0); // so that it can't make the file private
    DebugEventLog::write(QStringLiteral("l"), QStringLiteral("m"), QStringLiteral("{}"));
    ::umask(umaskBefore);

    QCOMPARE(modeOf(filePath()), 0600);
    QTEST(modeOf(directoryPath()), "directoryMode");
    QCOMPARE(writtenLines().size(), fileBefore >= 0 ? 3 : 2); // appended
}

void tst_DebugEventLog::ignoresWriteErrors_data()
{
    QTest::addColumn<bool>("directoryExists");
    QTest::newRow("a file in place of the directory") << false;
    QTest::newRow("a directory in place of the file") << true;
}

void tst_DebugEventLog::ignoresWriteErrors()
{
    QFETCH(bool, directoryExists);
    if (directoryExists) {
        QVERIFY(QDir().mkpath(filePath()));
    } else {
        QVERIFY(writeFile(directoryPath()));
    }
    qputenv(s_variable, "1");
    const MessageLog log;
    DebugEventLog::write(QStringLiteral("l"), QStringLiteral("m"), QStringLiteral("{}"));
    QCOMPARE(log.warnings(), QStringList());
    QVERIFY(writtenLines().isEmpty());
}

REGISTER_TEST(tst_DebugEventLog, QCoreApplication)
#include "tst_DebugEventLog.moc"
