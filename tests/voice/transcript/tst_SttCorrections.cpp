// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Files.h"
#include "MessageLog.h"
#include "SttPostProcessor.h"
#include "TestRegistry.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

namespace
{

//! The rows for the names of the assistant and the tool come first.
constexpr int s_ownRows = 2;

QJsonObject resource(const QString &name)
{
    return QJsonDocument::fromJson(contentOf(QStringLiteral(":/org/kde/loomra/voice/") + name)).object();
}

QJsonObject rules()
{
    return resource(QStringLiteral("stt-corrections.json"));
}

QStringList sentences()
{
    QStringList result;
    for (const char *suite : {"stt-sentence-suite.json", "stt-live-validation-suite.json"}) {
        const QJsonArray rows = resource(QString::fromLatin1(suite)).value(QLatin1String("sentences")).toArray();
        for (const QJsonValue &row : rows) {
            result.append(row[QLatin1String("text")].toString());
        }
    }
    return result;
}

//! Common English words that are used in commands, one per line.
QStringList everydayWords()
{
    const QByteArray all = contentOf(qEnvironmentVariable("TOVICTL_SOURCE_DIR")
                                     + QStringLiteral("/tests/voice/transcript/data/everyday-words.txt"));
    return QString::fromUtf8(all).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

//! With the rules of the program.
SttPostProcessor installed()
{
    const MessageLog log;
    SttPostProcessor result;
    result.loadInstalledRules();
    return result;
}

//! With only the rows for the own names.
SttPostProcessor ownRows()
{
    QJsonArray rows;
    const QJsonArray all = rules().value(QLatin1String("product_names")).toArray();
    for (int i = 0; i < s_ownRows; ++i) {
        rows.append(all.at(i));
    }
    const MessageLog log;
    SttPostProcessor result;
    result.loadRules(QJsonDocument(QJsonObject {{QStringLiteral("product_names"), rows}}).toJson());
    return result;
}

QStringList texts(std::initializer_list<const char *> list)
{
    QStringList result;
    for (const char *text : list) {
        result.append(QString::fromLatin1(text));
    }
    return result;
}

//! The rows of a list as texts: the values of these keys joined by bars, and lists joined by commas.
QStringList rowsOf(const QString &list, std::initializer_list<const char *> keys)
{
    QStringList result;
    const QJsonArray rows = rules().value(list).toArray();
    for (const QJsonValue &row : rows) {
        QStringList values;
        for (const char *key : keys) {
            const QJsonValue value = row[QLatin1String(key)];
            values.append(value.isArray() ? value.toVariant().toStringList().join(QLatin1String(", "))
                                          : value.toString());
        }
        result.append(values.join(QLatin1String(" | ")));
    }
    return result;
}

} // namespace

//! The rules in the program's resources.
class tst_SttCorrections : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void holdsTheProductNames();
    void holdsTheCommandAliases();
    void holdsTheWordReplacements();
    void isLoadedWhole();
    void corrects_data();
    void corrects();
    void findsTheOwnNames();
    void ownVariantsKeepSentences();
    void ownVariantsKeepEverydayWords();
    void everydayWordsThatChange();
};

void tst_SttCorrections::holdsTheProductNames()
{
    const QStringList rows = rowsOf(QStringLiteral("product_names"), {"canonical", "variants"});
    const QStringList expected =
        texts({"OmniBar | omni bar, omnibar, on the bar, omni part, arm the bar", "KDE | kde, kd, k d e, katie, katy",
               "Plasma | plasma, plaza, plazma", "Dolphin | dolphin, dolphine, dolphen",
               "Konsole | console, konsole, kon soul, consul", "Kirigami | kirigami, origami, kiri gami, carry gummy"});
    QCOMPARE(rows.mid(s_ownRows), expected);
    QVERIFY(rows.at(0).startsWith(QLatin1String("Tovi | ")));
    QVERIFY(rows.at(1).startsWith(QLatin1String("Loomra | ")));
    for (int i = 0; i < s_ownRows; ++i) {
        const QString list = rows.at(i).section(QLatin1String(" | "), 1);
        QStringList variants = list.split(QLatin1String(", "));
        QCOMPARE(list, list.toLower());
        QCOMPARE(variants.removeDuplicates(), 0);
        QCOMPARE(variants.size(), 11);
    }
}

void tst_SttCorrections::holdsTheCommandAliases()
{
    const QStringList expected =
        texts({"^i did that[.!]?$ | undo that", "^i'm duped[.!]?$ | undo that", "^and do that[.!]?$ | undo that",
               "^under[.!]?$ | undo that", "^i will do that[.!]?$ | undo that", "^cancel now[.!]?$ | cancel that",
               "^we're back[.!]?$ | go back", "^we are back[.!]?$ | go back", "^trucking[.!]?$ | try again",
               "^consultant[.!]?$ | cancel that"});
    QCOMPARE(rowsOf(QStringLiteral("command_aliases"), {"pattern", "replacement"}), expected);
}

void tst_SttCorrections::holdsTheWordReplacements()
{
    const QStringList expected =
        texts({"dot mode | dark mode", "dude mode | dark mode", "dark moot | dark mode", "doc mode | dark mode",
               "sadbing | settings", "sapping | settings", "said things | settings", "refractor | refactor",
               "three-factor | refactor", "re factor | refactor"});
    QCOMPARE(rowsOf(QStringLiteral("word_replacements"), {"from", "to"}), expected);
}

void tst_SttCorrections::isLoadedWhole()
{
    QCOMPARE(rules().value(QLatin1String("version")).toInt(), 2);
    QCOMPARE(rules().value(QLatin1String("description")).toString(),
             QStringLiteral("STT post-processing corrections for Loomra Meridan / Tovi desktop assistant"));
    QCOMPARE(rules().size(), 5);
    const MessageLog log;
    SttPostProcessor processor;
    processor.loadInstalledRules();
    QVERIFY(processor.isLoaded());
    QCOMPARE(log.lines().size(), 1);
    QVERIFY(log.has(QtDebugMsg,
                    QStringLiteral("SttPostProcessor: loaded 8 product names, 10 aliases, 10 word replacements")));
}

void tst_SttCorrections::corrects_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("result");

    const auto row = [](const char *text, const char *result) {
        QTest::newRow(text) << QString::fromUtf8(text) << QString::fromUtf8(result);
    };
    row("undo that.", "undo that");
    row("i did that", "undo that");
    row("Trucking!", "try again");
    row("...", "...");
    row("open the dolphine.", "open the Dolphin");
    row("open dolphins", "open Dolphin");
    row("plaza, please", "Plasma, please");
    row("plaza,", "Plasma,");
    row("kd", "KDE");
    row("kdx", "kdx");
    row("kat", "kat");
    row("kiri gami", "Kirigami");
    row("kiri gamis", "kiri gamis");
    row("Plasma", "Plasma");
    row("plasma", "Plasma");
    row("turn on dot mode", "turn on dark mode");
    row("Turn on dude mode?", "Turn on dark mode");
    row("said things", "settings");
    row("ask loom raw to three-factor this", "ask Loomra to refactor this");
    row("hey toe vee, arm the bar!", "hey Tovi, OmniBar");
    row("open a consul on katie", "open a Konsole on KDE");
    row("carry gummy", "Kirigami");
}

void tst_SttCorrections::corrects()
{
    QFETCH(QString, text);
    QTEST(installed().correctFinal(text), "result");
}

void tst_SttCorrections::findsTheOwnNames()
{
    const SttPostProcessor processor = installed();
    const QJsonArray rows = rules().value(QLatin1String("product_names")).toArray();
    for (const QJsonValue &row : rows) {
        const QStringList variants = row[QLatin1String("variants")].toVariant().toStringList();
        for (const QString &variant : variants) {
            QCOMPARE(
                processor.correctFinal(QString(QLatin1String("hey ") + variant + QLatin1String(", go on"))),
                QString(QLatin1String("hey ") + row[QLatin1String("canonical")].toString() + QLatin1String(", go on")));
        }
    }
}

void tst_SttCorrections::ownVariantsKeepSentences()
{
    const SttPostProcessor processor = ownRows();
    const QStringList suites = sentences();
    QCOMPARE(suites.size(), 28);
    for (const QString &text : suites) {
        QCOMPARE(processor.correctPartial(text), text);
        QCOMPARE(installed().correctFinal(text), text);
    }
    // Words that other rows correct or produce.
    for (const char *text :
         {"undo that",     "i did that",   "i'm duped",   "and do that", "under",      "i will do that",
          "cancel now",    "we're back",   "we are back", "trucking",    "consultant", "open the dolphine",
          "open dolphins", "plaza",        "kdx",         "kiri gami",   "kiri gamis", "carry gummy",
          "on the bar",    "omni part",    "arm the bar", "k d e",       "kon soul",   "dot mode",
          "dude mode",     "dark moot",    "doc mode",    "sadbing",     "sapping",    "said things",
          "refractor",     "three-factor", "re factor",   "settings",    "refactor",   "dark mode",
          "try again",     "cancel that",  "go back",     "Plasma",      "Konsole",    "Kirigami",
          "OmniBar",       "KDE",          "Dolphin",     "Tovi",        "Loomra"}) {
        QCOMPARE(processor.correctPartial(QString::fromLatin1(text)), QString::fromLatin1(text));
    }
}

void tst_SttCorrections::ownVariantsKeepEverydayWords()
{
    const SttPostProcessor processor = ownRows();
    const QStringList words = everydayWords();
    QVERIFY(words.size() >= 3000);
    QStringList changed;
    for (const QString &word : words) {
        if (processor.correctPartial(word) != word) {
            changed.append(word);
        }
    }
    QCOMPARE(changed, QStringList());
}

void tst_SttCorrections::everydayWordsThatChange()
{
    // Intentional: side effects of the given rows.
    const QStringList expected =
        texts({"console > Konsole", "consoles > Konsole", "consul > Konsole", "consult > Konsole",
               "consultant > cancel that", "dolphin > Dolphin", "dolphins > Dolphin", "kate > KDE", "katie > KDE",
               "katy > KDE", "origami > Kirigami", "plasma > Plasma", "plaza > Plasma", "refractor > refactor",
               "sapping > settings", "trucking > try again", "under > undo that"});
    const SttPostProcessor processor = installed();
    QStringList changed;
    const QStringList words = everydayWords();
    for (const QString &word : words) {
        const QString result = processor.correctFinal(word);
        if (result != word) {
            changed.append(QString(word + QLatin1String(" > ") + result));
        }
    }
    QCOMPARE(changed, expected);
}

REGISTER_TEST(tst_SttCorrections, QCoreApplication)
#include "tst_SttCorrections.moc"
