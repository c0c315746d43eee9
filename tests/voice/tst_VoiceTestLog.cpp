// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Files.h"
#include "MessageLog.h"
#include "ScopedEnvironment.h"
#include "TestRegistry.h"
#include "VoiceTestLog.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using VoiceTestLog::Result;
using VoiceTestLog::Settings;

namespace
{

const QString s_tail = QStringLiteral("/loomra-bridge/logs/voice-test-feedback.log");
const QDateTime s_noon(QDate(2026, 3, 4), QTime(12, 0, 0, 7), Qt::UTC);

Result good()
{
    return {QStringLiteral("v07"),
            QStringLiteral("short"),
            QStringLiteral("undo that"),
            QStringLiteral("undo this"),
            0.5,
            420};
}

Settings settings()
{
    return {QStringLiteral("live"), QStringLiteral("manual"), QStringLiteral("moonshine"), true, 900};
}

} // namespace

Q_DECLARE_METATYPE(QString Result::*)

class tst_VoiceTestLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void choosesThePath_data();
    void choosesThePath();
    void followsTheEnvironment();
    void recordsEverything();
    void trims();
    void needsThreeTexts_data();
    void needsThreeTexts();
    void escapesHostileText();
    void appendsLines();
    void repeatsARecord();
    void warnsWhenItCannotOpen();
    void warnsWhenItCannotWrite();
    void submitsNow();
    void doesNotSubmitBlankText();
};

void tst_VoiceTestLog::choosesThePath_data()
{
    QTest::addColumn<QString>("stateHome"); // relative to the root
    QTest::addColumn<QString>("directory");
    QTest::newRow("default") << QString() << "/home/.local/state";
    QTest::newRow("other") << "/state"
                           << "/state";
    QTest::newRow("not clean") << "/a/../state//"
                               << "/state";
}

void tst_VoiceTestLog::choosesThePath()
{
    QFETCH(QString, stateHome);
    QFETCH(QString, directory);
    const QTemporaryDir root;
    const QString path = VoiceTestLog::path(stateHome.isEmpty() ? QString() : QString(root.path() + stateHome),
                                            root.filePath(QStringLiteral("home")));
    QCOMPARE(path, QString(root.path() + directory + s_tail));
    QVERIFY(QFileInfo(path).dir().exists());
    QVERIFY(!QFile::exists(path));
}

void tst_VoiceTestLog::followsTheEnvironment()
{
    const char *variable = "XDG_STATE_HOME";
    const QString inHome = QDir::homePath() + QLatin1String("/.local/state") + s_tail;
    const QTemporaryDir state;
    {
        const ScopedEnvironment unset(variable, QByteArray());
        QCOMPARE(VoiceTestLog::path(), inHome);
    }
    {
        const ScopedEnvironment empty(variable, "");
        QCOMPARE(VoiceTestLog::path(), inHome);
    }
    const ScopedEnvironment set(variable, QFile::encodeName(state.path()));
    QCOMPARE(VoiceTestLog::path(), QString(state.path() + s_tail));
}

void tst_VoiceTestLog::recordsEverything()
{
    const std::optional<QJsonObject> record = VoiceTestLog::record(good(), settings(), s_noon);
    QVERIFY(record);
    // Intentional: the time ends with two "Z".
    QCOMPARE(QJsonDocument(*record).toJson(QJsonDocument::Compact),
             QByteArray(R"({"accuracy":0.5,"category":"short","event":"voice.test.submitted",)"
                        R"("hypothesis":"undo this","latencyMs":420,"liveSttAvailable":true,)"
                        R"("reference":"undo that","sentenceId":"v07","silenceTimeoutMs":900,)"
                        R"("source":"settings_voice_test","sttBackend":"moonshine","sttInputMode":"live",)"
                        R"("timestamp":"2026-03-04T12:00:00.007ZZ","voiceSubmitMode":"manual"})"));
}

void tst_VoiceTestLog::trims()
{
    const Result result {QStringLiteral(" v07\n"),
                         QStringLiteral("\tshort "),
                         QStringLiteral(" undo that "),
                         QStringLiteral(" undo  this "),
                         1,
                         0};
    const std::optional<QJsonObject> record = VoiceTestLog::record(result, settings(), s_noon);
    QVERIFY(record);
    QCOMPARE(record->value(QLatin1String("sentenceId")).toString(), QStringLiteral("v07"));
    QCOMPARE(record->value(QLatin1String("category")).toString(), QStringLiteral("short"));
    QCOMPARE(record->value(QLatin1String("reference")).toString(), QStringLiteral("undo that"));
    QCOMPARE(record->value(QLatin1String("hypothesis")).toString(), QStringLiteral("undo  this"));
}

void tst_VoiceTestLog::needsThreeTexts_data()
{
    QTest::addColumn<QString Result::*>("field");
    QTest::addColumn<bool>("isNeeded");
    QTest::newRow("id") << &Result::sentenceId << true;
    QTest::newRow("category") << &Result::category << false;
    QTest::newRow("reference") << &Result::reference << true;
    QTest::newRow("hypothesis") << &Result::hypothesis << true;
}

void tst_VoiceTestLog::needsThreeTexts()
{
    QFETCH(QString Result::*, field);
    QFETCH(bool, isNeeded);
    for (const char *text : {"", " \n\t"}) {
        Result result = good();
        result.*field = QString::fromLatin1(text);
        QCOMPARE(VoiceTestLog::record(result, settings(), s_noon).has_value(), !isNeeded);
    }
}

void tst_VoiceTestLog::escapesHostileText()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("log"));
    Result result = good();
    result.hypothesis = QStringLiteral("a\n\"b\" %1 ü😀\\");
    const std::optional<QJsonObject> record = VoiceTestLog::record(result, settings(), s_noon);
    QVERIFY(record);
    const MessageLog log;
    VoiceTestLog::append(path, *record);
    const QByteArray line = contentOf(path);
    QCOMPARE(line.count('\n'), 1);
    QCOMPARE(QJsonDocument::fromJson(line).object().value(QLatin1String("hypothesis")).toString(), result.hypothesis);
}

void tst_VoiceTestLog::appendsLines()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("log"));
    const MessageLog log;
    const mode_t umaskBefore = ::umask(0); // so that it can't make the file private
    VoiceTestLog::append(path, {{QStringLiteral("sentenceId"), QStringLiteral("v01")}});
    ::umask(umaskBefore);
    QCOMPARE(modeOf(path), 0600);
    VoiceTestLog::append(path, {{QStringLiteral("sentenceId"), QStringLiteral("v02")}});
    QCOMPARE(contentOf(path), QByteArray("{\"sentenceId\":\"v01\"}\n{\"sentenceId\":\"v02\"}\n"));
    QCOMPARE(log.lines().size(), 2);
    QCOMPARE(log.lines().constLast().type, QtDebugMsg);
    QCOMPARE(log.lines().constLast().text,
             QStringLiteral("VoiceBridge: voice test feedback logged \"v02\" -> \"%1\"").arg(path));
}

void tst_VoiceTestLog::repeatsARecord()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("log"));
    const MessageLog log;
    for (int i = 0; i < 2; ++i) {
        VoiceTestLog::append(path, *VoiceTestLog::record(good(), settings(), s_noon));
    }
    QCOMPARE(contentOf(path).count('\n'), 2);
}

void tst_VoiceTestLog::warnsWhenItCannotOpen()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("no/such/log"));
    const MessageLog log;
    VoiceTestLog::append(path, *VoiceTestLog::record(good(), settings(), s_noon));
    QCOMPARE(log.lines().size(), 1);
    QCOMPARE(log.warnings(),
             QStringList {QStringLiteral("VoiceBridge: cannot append voice test log: \"%1\"").arg(path)});
}

void tst_VoiceTestLog::warnsWhenItCannotWrite()
{
    const QString path = QStringLiteral("/dev/full");
    const MessageLog log;
    VoiceTestLog::append(path, *VoiceTestLog::record(good(), settings(), s_noon));
    // Qt logs a warning about the device, too.
    QCOMPARE(log.lines().constLast().type, QtWarningMsg);
    QCOMPARE(log.lines().constLast().text,
             QStringLiteral("VoiceBridge: cannot append voice test log: \"%1\"").arg(path));
}

void tst_VoiceTestLog::submitsNow()
{
    const QTemporaryDir state;
    const ScopedEnvironment stateHome("XDG_STATE_HOME", QFile::encodeName(state.path()));
    const MessageLog log;
    const QDateTime before = QDateTime::currentDateTimeUtc();
    VoiceTestLog::append(good(), settings());
    const QDateTime after = QDateTime::currentDateTimeUtc();
    const QByteArray line = contentOf(state.path() + s_tail);
    QString time = QJsonDocument::fromJson(line).object().value(QLatin1String("timestamp")).toString();
    const QRegularExpression form(QStringLiteral("^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}ZZ$"));
    QVERIFY2(form.match(time).hasMatch(), qPrintable(time));
    time.chop(1);
    const QDateTime written = QDateTime::fromString(time, Qt::ISODateWithMs);
    QVERIFY(before <= written && written <= after);
}

void tst_VoiceTestLog::doesNotSubmitBlankText()
{
    const QTemporaryDir state;
    const ScopedEnvironment stateHome("XDG_STATE_HOME", QFile::encodeName(state.path()));
    const MessageLog log;
    Result result = good();
    result.hypothesis.clear();
    VoiceTestLog::append(result, settings());
    QCOMPARE(log.lines().size(), 0);
    QVERIFY(QDir(state.path()).isEmpty());
}

REGISTER_TEST(tst_VoiceTestLog, TestRegistry::NoApplication)
#include "tst_VoiceTestLog.moc"
