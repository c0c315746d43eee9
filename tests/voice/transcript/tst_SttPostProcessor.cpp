// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SttRules.h"
#include "TestRegistry.h"

#include <QTest>

using SttRules::alias;
using SttRules::processor;
using SttRules::textColumns;
using SttRules::word;

class tst_SttPostProcessor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void correctsFinals_data();
    void correctsFinals();
    void correctsPartials_data();
    void correctsPartials();
    void replacesWords_data();
    void replacesWords();
    void everyCharacterKeepsItsPlace();
    void longText_data();
    void longText();
    void changesNothingWithoutRules();
};

void tst_SttPostProcessor::correctsFinals_data()
{
    textColumns();
    const QByteArray json =
        SttRules::json({SttRules::name("Dolphin", {"dolphin"})},
                       {alias("^i did that[.!]?$", "undo that"), alias("did", "second"), alias("^same$", "same"),
                        alias("^same$", "never"), alias("^find dolphin$", "find dolphin dot mode"),
                        alias("^a.c$", "dotted"), alias("^dot mode$", "dot mode"), alias("(?-i)^low$", "lower")},
                       {word("dot mode", "dark mode"), word("dolfin", "dolphin")});
    const auto row = [&](const char *name, const char *text, const char *result) {
        QTest::newRow(name) << json << QString::fromUtf8(text) << QString::fromUtf8(result);
    };
    row("empty", "", "");
    row("nothing to do", "hello there", "hello there");
    row("closing full stop", "hello.", "hello");
    row("all closing signs", "hello?!.?!", "hello");
    row("other closing signs stay", "hello,", "hello,");
    row("signs inside stay", "a. b! c? d", "a. b! c? d");
    row("surrounding whitespace", " \t hello \n", "hello");
    row("whitespace before punctuation", "hello .", "hello");
    row("punctuation after whitespace is removed once", "hello . .", "hello .");
    row("inner spaces stay", "hello   there.", "hello   there");
    row("signs alone stay as they came", " ?! ", " ?! ");
    row("full stops alone", "...", "...");
    row("only whitespace is unchanged", "  ", "  ");
    row("alias", "i did that", "undo that");
    row("alias in another case", "I Did THAT!", "undo that");
    row("the first alias that matches", "he did", "second");
    row("an alias matches anywhere unless it says otherwise", "i did that and more", "second");
    row("an alias ends the work", "find dolphin", "find dolphin dot mode");
    row("an alias that changes nothing hides the later ones", "same", "same");
    row("its case counts", "Same", "same");
    row("and leaves the rest to the others", "dot mode.", "dark mode");
    row("aliases see lower case", "LOW", "lower");
    row("a dot of a pattern", "abc", "dotted");
    row("words, then names", "the dolfin in dot mode.", "the Dolphin in dark mode");
}

void tst_SttPostProcessor::correctsFinals()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, text);
    QTEST(processor(json).correctFinal(text), "result");
}

void tst_SttPostProcessor::correctsPartials_data()
{
    textColumns();
    const QByteArray json = SttRules::json({SttRules::name("Dolphin", {"dolphin"})},
                                           {alias("^i did that$", "undo that")}, {word("dolfin", "dolphin")});
    const auto row = [&](const char *name, const char *text, const char *result) {
        QTest::newRow(name) << json << QString::fromUtf8(text) << QString::fromUtf8(result);
    };
    row("empty", "", "");
    row("whitespace stays", "  ", "  ");
    row("punctuation stays", " hello. ", " hello. ");
    row("no alias", "i did that", "i did that");
    row("words, then names", "dolfin.", "Dolphin.");
}

void tst_SttPostProcessor::correctsPartials()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, text);
    QTEST(processor(json).correctPartial(text), "result");
}

void tst_SttPostProcessor::replacesWords_data()
{
    textColumns();
    const auto row = [](const char *name, const QJsonArray &words, const char *text, const char *result) {
        QTest::newRow(name) << SttRules::json({}, {}, words) << QString::fromUtf8(text) << QString::fromUtf8(result);
    };
    const QJsonArray mode {word("Dot Mode", "dark mode")};
    row("empty", mode, "", "");
    row("whole", mode, "dot mode", "dark mode");
    row("inside a longer word", mode, "anecdot modern", "anecdark modern");
    row("twice", mode, "dot mode, dot mode", "dark mode, dark mode");
    row("case of the other words", mode, "Use DOT Mode NOW", "Use dark mode NOW");
    row("the replacement's own case", {word("kde", "KDE")}, "kde", "KDE");
    row("two spaces don't match one", mode, "dot  mode", "dot  mode");
    row("not its own output", {word("a", "aa")}, "a-a", "aa-aa");
    row("not output and what follows", {word("ab", "a")}, "abb", "ab");
    row("the next row on the output", {word("one", "two"), word("two", "three")}, "one", "three");
    row("not the row before", {word("two", "three"), word("one", "two")}, "one", "two");
    row("hits don't overlap", {word("aa", "b")}, "aaa", "ba");
    row("taken out", {word("um ", "")}, "um well um yes", "well yes");
    row("taken out, and nothing is left", {word("um", "")}, "umum", "");
    row("a removal's sides aren't joined for a hit", {word("ab", "")}, "aabb", "ab");
    row("placeholders", {word("x", "%1 %2")}, "x %1", "%1 %2 %1");
    row("beyond ASCII", {word("ÄÖ", "ae")}, "äö ÄÖ", "ae ae");
    row("dotted capital I before", mode, "İ dot mode", "İ dark mode");
    row("many of them", {word("x", "yy")}, "İİİx", "İİİyy");
    row("behind them nothing is left", {word("x", "")}, "İİİx", "İİİ");
    row("it is an i", {word("in", "out")}, "İn", "out");
    row("and stays one in the rules", {word("İn", "out")}, "in", "out");
    row("surrogate pairs before", mode, "😀𐐀 dot mode", "😀𐐀 dark mode");
    row("surrogate pairs in another case", {word("𐐀", "x")}, "𐐀𐐨", "xx");
}

void tst_SttPostProcessor::replacesWords()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, text);
    QTEST(processor(json).applyWordReplacements(text), "result");
}

void tst_SttPostProcessor::everyCharacterKeepsItsPlace()
{
    const SttPostProcessor words = processor(SttRules::json({}, {}, {word("~~", "")}));
    QString before;
    QString after;
    for (uint code = 1; code <= QChar::LastValidCodePoint; ++code) {
        if (code == '~') {
            continue; // part of the rule
        }
        for (QString *text : {&before, &after}) {
            if (QChar::requiresSurrogates(code)) {
                text->append(QChar(QChar::highSurrogate(code))).append(QChar(QChar::lowSurrogate(code)));
            } else {
                text->append(QChar(code));
            }
        }
        before.append(QLatin1String("~~"));
    }
    QVERIFY(words.applyWordReplacements(before) == after);
}

void tst_SttPostProcessor::longText_data()
{
    QTest::addColumn<QString>("part");
    QTest::addColumn<QString>("result");

    constexpr int parts = 5000; // enough for an expression that backtracks to run for minutes
    const auto row = [](const char *name, const char *part, const char *result) {
        const auto repeated = [](const char *text) { return QString::fromUtf8(text).repeated(parts).trimmed(); };
        QTest::newRow(name) << repeated(part) << repeated(result);
    };
    row("hits of words", "dot mode", "dot dot mode");
    row("hits of phrases", "omni bar,", "OmniBar,");
    row("refused hits", "omni bars", "omni bars");
    row("names", "kirigamo ", "Kirigami ");
    row("whitespace", "a   ", "a   ");
    row("signs", "...", "...");
    row("one word", "a", "a");
    row("growing letters", "İ", "İ");
}

void tst_SttPostProcessor::longText()
{
    QFETCH(QString, part);
    const SttPostProcessor all =
        processor(SttRules::json({SttRules::name("OmniBar", {"omni bar"}), SttRules::name("Kirigami", {"kirigami"})},
                                 {alias("^i did that$", "x")}, {word("dot mode", "dot dot mode")}));
    QTEST(all.correctFinal(part), "result");
    QTEST(all.correctPartial(part), "result");
}

void tst_SttPostProcessor::changesNothingWithoutRules()
{
    const SttPostProcessor none;
    QVERIFY(!none.isLoaded());
    QCOMPARE(none.correctPartial(QStringLiteral(" plaza. ")), QStringLiteral(" plaza. "));
}

REGISTER_TEST(tst_SttPostProcessor, TestRegistry::NoApplication)
#include "tst_SttPostProcessor.moc"
