// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Files.h"
#include "SttRules.h"
#include "TestRegistry.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

using SttRules::alias;
using SttRules::name;
using SttRules::word;

namespace
{

const QByteArray s_plasma = SttRules::json({name("Plasma", {"plaza"})});
const QByteArray s_dolphin = SttRules::json({name("Dolphin", {"plaza"})});
const QString s_loadedOne = QStringLiteral("SttPostProcessor: loaded 1 product names, 0 aliases, 0 word replacements");

} // namespace

//! Loading the rules, and invalid rows.
class tst_SttRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesRows_data();
    void takesRows();
    void badJsonChangesNothing();
    void badJsonAtFirst();
    void newRulesReplaceOld();
    void resourceComesFirst();
    void fallbackServes();
    void missesBothFiles();
    void cannotOpenFallback();
    void fallbackIsNextToTheProgram();
};

void tst_SttRules::takesRows_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("counts");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("result");

    const auto row = [](const char *title, const QByteArray &json, const char *counts, const char *text,
                        const char *result) {
        QTest::newRow(title) << json << QString::fromLatin1(counts) << QString::fromLatin1(text)
                             << QString::fromLatin1(result);
    };
    row("no keys", "{}", "0 0 0", "plaza", "plaza");
    row("no object", "[1]", "0 0 0", "plaza", "plaza");
    row("names alone", R"({"product_names": [{"canonical": "Plasma", "variants": ["plaza"]}]})", "1 0 0", "plaza",
        "Plasma");
    row("aliases alone", R"({"command_aliases": [{"pattern": "a", "replacement": "b"}]})", "0 1 0", "a", "b");
    row("words alone", R"({"word_replacements": [{"from": "a", "to": "b"}]})", "0 0 1", "a", "b");
    row("lists that aren't", R"({"product_names": {}, "command_aliases": "a", "word_replacements": 3})", "0 0 0", "a",
        "a");
    row("rows that aren't", R"({"product_names": [1, "a", null], "command_aliases": [[]], "word_replacements": [2]})",
        "0 0 0", "a", "a");
    row("other keys", R"({"version": [], "description": 7, "word_replacements": [{"from": "a", "to": "b", "c": 1}]})",
        "0 0 1", "a", "b");
    row("a name without canonical", SttRules::json({name("", {"plaza"}), name("Plasma", {"plaza"})}), "1 0 0", "plaza",
        "Plasma");
    row("a name without variants", R"({"product_names": [{"canonical": "Plasma"}]})", "1 0 0", "plaza", "plaza");
    row("variants in any case", SttRules::json({name("Plasma", {"PLAza", "PLA ZA"})}), "1 0 0", "plaza pla za",
        "Plasma Plasma");
    row("variants that are no texts",
        R"({"product_names": [{"canonical": "Plasma", "variants": [1, null, {}, "plaza"]}]})", "1 0 0", "plaza 1",
        "Plasma 1");
    row("an empty variant", SttRules::json({name("Plasma", {""})}), "1 0 0", "a  b", "a  b");
    row("a variant that is a space", SttRules::json({name("-", {" "})}), "1 0 0", "a .b", "a-.b");
    row("a bad pattern", SttRules::json({}, {alias("(", "x"), alias("a", "y")}), "0 1 0", "a(", "y");
    row("an alias without replacement", SttRules::json({}, {alias("a", ""), alias("a", "y")}), "0 1 0", "a", "y");
    row("an alias without pattern fits all", R"({"command_aliases": [{"replacement": "b"}]})", "0 1 0", "a", "b");
    row("a pattern in capitals", SttRules::json({}, {alias("^A$", "b")}), "0 1 0", "a", "b");
    row("a word without from", SttRules::json({}, {}, {word("", "x"), word("a", "b")}), "0 0 1", "a", "b");
    row("a word without to", R"({"word_replacements": [{"from": "a"}]})", "0 0 1", "abc", "bc");
}

void tst_SttRules::takesRows()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, counts);
    QFETCH(QString, text);
    const MessageLog log;
    SttPostProcessor processor;
    QVERIFY(!processor.isLoaded());
    processor.loadRules(json);
    QVERIFY(processor.isLoaded());
    const QStringList count = counts.split(QLatin1Char(' '));
    QCOMPARE(log.lines().size(), 1);
    QCOMPARE(log.lines().constFirst().type, QtDebugMsg);
    QCOMPARE(log.lines().constFirst().text,
             QStringLiteral("SttPostProcessor: loaded %1 product names, %2 aliases, %3 word replacements")
                 .arg(count.at(0), count.at(1), count.at(2)));
    QTEST(processor.correctFinal(text), "result");
}

void tst_SttRules::badJsonChangesNothing()
{
    SttPostProcessor processor = SttRules::processor(s_plasma);
    MessageLog log;
    processor.loadRules(R"({"product_names": [}, })");
    QCOMPARE(log.lines().size(), 1);
    QCOMPARE(log.warnings(),
             QStringList {QStringLiteral("SttPostProcessor: JSON parse error: \"object is missing after a comma\"")});
    QVERIFY(processor.isLoaded());
    QCOMPARE(processor.correctFinal(QStringLiteral("plaza")), QStringLiteral("Plasma"));
}

void tst_SttRules::badJsonAtFirst()
{
    SttPostProcessor processor;
    const MessageLog log;
    processor.loadRules({});
    QCOMPARE(log.warnings(), QStringList {QStringLiteral("SttPostProcessor: JSON parse error: \"illegal value\"")});
    QVERIFY(!processor.isLoaded());
}

void tst_SttRules::newRulesReplaceOld()
{
    SttPostProcessor processor =
        SttRules::processor(SttRules::json({name("Plasma", {"plaza"})}, {alias("^a$", "x")}, {word("b", "y")}));
    const MessageLog log;
    processor.loadRules("{}");
    for (const char *text : {"plaza", "a", "b"}) {
        QCOMPARE(processor.correctFinal(QString::fromLatin1(text)), QString::fromLatin1(text));
    }
}

void tst_SttRules::resourceComesFirst()
{
    const QTemporaryDir folder;
    QVERIFY(writeFile(folder.filePath(QStringLiteral("a")), s_plasma));
    QVERIFY(writeFile(folder.filePath(QStringLiteral("b")), s_dolphin));
    const MessageLog log;
    SttPostProcessor processor;
    processor.loadRulesFrom(folder.filePath(QStringLiteral("a")), folder.filePath(QStringLiteral("b")));
    QCOMPARE(log.lines().size(), 1);
    QVERIFY(log.has(QtDebugMsg, s_loadedOne));
    QCOMPARE(processor.correctFinal(QStringLiteral("plaza")), QStringLiteral("Plasma"));
}

void tst_SttRules::fallbackServes()
{
    const QTemporaryDir folder;
    QVERIFY(writeFile(folder.filePath(QStringLiteral("b")), s_dolphin));
    const MessageLog log;
    SttPostProcessor processor;
    processor.loadRulesFrom(QStringLiteral(":/no/such/file"), folder.filePath(QStringLiteral("b")));
    QCOMPARE(log.lines().size(), 1);
    QVERIFY(log.has(QtDebugMsg, s_loadedOne));
    QCOMPARE(processor.correctFinal(QStringLiteral("plaza")), QStringLiteral("Dolphin"));
}

void tst_SttRules::missesBothFiles()
{
    const QTemporaryDir folder;
    const MessageLog log;
    SttPostProcessor processor;
    processor.loadRulesFrom(QStringLiteral(":/no/such/file"), folder.filePath(QStringLiteral("b")));
    QCOMPARE(log.lines().size(), 1);
    QCOMPARE(log.warnings(), QStringList {QStringLiteral("SttPostProcessor: no corrections file found")});
    QVERIFY(!processor.isLoaded());
}

void tst_SttRules::cannotOpenFallback()
{
    const QTemporaryDir folder;
    const MessageLog log;
    SttPostProcessor processor;
    // A directory exists, but not even root can open it as a file.
    processor.loadRulesFrom(QStringLiteral(":/no/such/file"), folder.path());
    QCOMPARE(log.lines().size(), 1);
    QCOMPARE(log.warnings(), QStringList {QStringLiteral("SttPostProcessor: cannot open \"%1\"").arg(folder.path())});
    QVERIFY(!processor.isLoaded());
}

void tst_SttRules::fallbackIsNextToTheProgram()
{
    // This test has no resources, and is built in the same directory as tovictl.
    const QString path = QCoreApplication::applicationDirPath() + QStringLiteral("/../src/voice/stt-corrections.json");
    QVERIFY(!QFile::exists(path));
    QVERIFY(writeFile(path, s_dolphin));
    const auto cleanUp = qScopeGuard([&path] { QFile::remove(path); });
    const MessageLog log;
    SttPostProcessor processor;
    processor.loadInstalledRules();
    QVERIFY(processor.isLoaded());
    QCOMPARE(processor.correctFinal(QStringLiteral("plaza")), QStringLiteral("Dolphin"));
}

REGISTER_TEST(tst_SttRules, QCoreApplication)
#include "tst_SttRules.moc"
