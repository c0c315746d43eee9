// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SpeechText.h"
#include "TestRegistry.h"

#include <QTest>

class tst_SpeechText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleans_data();
    void cleans();
    void says_data();
    void says();
    void cutsInsideOfAPair();
    void longText_data();
    void longText();
};

void tst_SpeechText::cleans_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *name, const char *reply, const char *text) {
        QTest::newRow(name) << QString::fromUtf8(reply) << QString::fromUtf8(text);
    };
    row("empty", "", "");
    row("plain", "Hello there. It's 3 * 4 = 12!", "Hello there. It's 3 * 4 = 12!");
    row("whitespace stays", "  a \n b  ", "  a \n b  ");

    row("code block", "a\n```cpp\nint x;\n```\nb", "a\n\nb");
    row("code block in a line", "a ```x``` b", "a  b");
    row("two code blocks", "```a``` b ```c```", " b ");
    row("code block with ticks in it", "a ```x `y` z``` b", "a  b");
    row("code block with nothing in it", "a `````` b", "a  b");
    row("code block without its end", "a ```x\ny", "a ```x\ny");
    row("code block between four ticks", "a ````x```` b", "a ` b");

    row("inline code", "run `ls -l` now", "run  now");
    row("inline code over lines", "a `b\nc` d", "a  d");
    row("two of inline code", "`a` and `b`", " and ");
    row("two ticks", "a `` b", "a `` b");
    row("one tick", "don`t", "don`t");

    row("heading at the very start", "# Title\ntext", "Title\ntext");
    row("heading of six", "###### Title", "Title");
    row("heading of seven", "####### Title", "####### Title");
    row("heading and much whitespace", "##  \t Title", "Title");
    row("heading and empty lines", "#\n\nTitle", "Title");
    row("# without a space", "#Title", "#Title");
    row("heading after a space", " # Title", " # Title");
    row("heading on a later line", "text\n## Part", "text\n## Part");
    row("the first alone", "# A\n# B", "A\n# B");
    row("heading behind code", "`x`# Title", "Title");

    row("bold", "a **bold** word", "a bold word");
    row("italic", "a *fine* word", "a fine word");
    row("both", "a ***strong*** word", "a strong word");
    row("more marks", "****a****", "*a*");
    row("uneven marks", "*a*** b", "a b");
    row("over lines", "**a\nb**", "a\nb");
    row("marks alone", "****", "****");
    row("a list's marks are taken for emphasis", "* a\n* b", " a\n b");
    row("one mark", "2 * 3", "2 * 3");
    row("a back reference in the text", "**\\1 \\2 $1 %1**", "\\1 \\2 $1 %1");
    row("underscores stay", "_a_ __b__", "_a_ __b__");

    row("link", "see [label](target) now", "see label now");
    row("two links", "[a](b)[c](d)", "ac");
    row("link over lines", "[a\nb](c\nd)", "a\nb");
    row("link without label", "[](target)", "[](target)");
    row("link without target", "[label]()", "[label]()");
    row("label alone", "[label] (target)", "[label] (target)");
    row("brackets in the target", "[a](b(c)d)", "ad)");
    row("bold link", "**[a](b)**", "a");

    row("image keeps the mark and its text", "![alt](a.png)", "!alt");
    row("image without text", "a![](a.png)b", "ab");

    row("two line feeds", "a\n\nb", "a\n\nb");
    row("three line feeds", "a\n\n\nb", "a\n\nb");
    row("many line feeds", "a\n\n\n\n\n\n\nb\n\n\nc", "a\n\nb\n\nc");
    row("line feeds that code left", "a\n\n```x```\n\nb", "a\n\nb");
    row("spaces between line feeds", "a\n \n \nb", "a\n \n \nb");
    row("beyond ASCII", "**Grüße** 😀 `ü`", "Grüße 😀 ");
}

void tst_SpeechText::cleans()
{
    QFETCH(QString, reply);
    QTEST(SpeechText::cleanForSpeech(reply), "text");
}

void tst_SpeechText::says_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("text");

    const QString longest(1000, QLatin1Char('x'));
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("blank") << " \n\t " << QString();
    QTest::newRow("code alone") << "```\nx\n```" << QString();
    QTest::newRow("code and whitespace") << " `x` \n" << QString();
    QTest::newRow("trimmed") << " `x` a \n"
                             << "a";
    // Intentional: trimmed last, so that a heading after whitespace keeps its "#".
    QTest::newRow("heading after whitespace") << "\n# Title"
                                              << "# Title";
    QTest::newRow("1000 characters") << longest << longest;
    QTest::newRow("1000 and whitespace") << QString(QLatin1Char(' ') + longest + QLatin1Char('\n')) << longest;
    QTest::newRow("1000 and markdown") << QString(QLatin1String("**") + longest + QLatin1String("**")) << longest;
    QTest::newRow("1001 characters") << QString(longest + QLatin1Char('y')) << QString(longest + QLatin1String("..."));
    QTest::newRow("many more") << longest.repeated(1000) << QString(longest + QLatin1String("..."));
    QTest::newRow("a space at the cut stays")
        << QString(longest.left(999) + QLatin1String(" yes")) << QString(longest.left(999) + QLatin1String(" ..."));
}

void tst_SpeechText::says()
{
    QFETCH(QString, reply);
    QTEST(SpeechText::spoken(reply), "text");
}

void tst_SpeechText::cutsInsideOfAPair()
{
    const QString face = QStringLiteral("😀");
    QCOMPARE(face.size(), 2);
    const QString text = SpeechText::spoken(QString(999, QLatin1Char('x')) + face);
    QCOMPARE(text.size(), 1003);
    QCOMPARE(text.at(999), face.at(0));
    QVERIFY(text.endsWith(QLatin1String("...")));
}

void tst_SpeechText::longText_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("text");

    constexpr int parts = 20000; // enough for an expression that backtracks to run for minutes
    const auto repeated = [](const char *part) { return QString::fromLatin1(part).repeated(parts); };
    const auto isShort = [repeated](const char *part, const char *text) {
        QTest::newRow(part) << repeated(part) << QString::fromLatin1(text);
    };
    const auto isCut = [repeated](const char *part, const char *spokenPart) {
        QTest::newRow(part) << repeated(part) << QString(repeated(spokenPart).left(1000) + QLatin1String("..."));
    };
    isShort("`", "``"); // the rest of 3333 empty blocks of code
    isShort("``` ", "");
    isShort("\n", "");
    isCut("`a", "a");
    isCut("*", "*");
    isCut("*a", "a");
    isCut("**a ", "a ");
    isCut("[", "[");
    isCut("[a](", "[a](");
    isCut("![", "![");
    isCut("[a](b)", "a");
    isCut("# ", "# ");
    isCut("a", "a");
    QTest::newRow("an open block of code")
        << QString(QLatin1String("```") + repeated("a"))
        << QString(QLatin1String("```") + repeated("a").left(997) + QLatin1String("..."));
}

void tst_SpeechText::longText()
{
    QFETCH(QString, reply);
    QTEST(SpeechText::spoken(reply), "text");
}

REGISTER_TEST(tst_SpeechText, TestRegistry::NoApplication)
#include "tst_SpeechText.moc"
