// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SherpaOutput.h"
#include "TestRegistry.h"

#include <QTest>

class tst_SherpaOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsTheTextField_data();
    void findsTheTextField();
    void takesTheLastPlainLine_data();
    void takesTheLastPlainLine();
    void ignoresOnlyItsOwnLogWord();
};

void tst_SherpaOutput::findsTheTextField_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("transcript");

    const auto row = [](const char *name, const char *output, const char *transcript) {
        QTest::newRow(name) << QString::fromUtf8(output) << QString::fromUtf8(transcript);
    };
    row("alone", R"({"text": "open the file"})", "open the file");
    row("no whitespace", R"({"text":"open"})", "open");
    row("whitespace around the colon", "{\"text\" \t\n : \r\n \"open\"}", "open");
    row("behind other fields", R"({"lang": "en", "text": "open", "tokens": ["o", "pen"]})", "open");
    row("not JSON around it", R"(x "text": "open" y)", "open");
    row("between lines of the log", "Started\n{\"text\": \"open\"}\nDone in 3 s", "open");
    row("the first of two", "{\"text\": \"one\"}\n{\"text\": \"two\"}", "one");
    row("the first, even when it is empty", "{\"text\": \"\"}\n{\"text\": \"two\"}", "");
    row("empty: the lines don't count", "plain\n{\"text\": \"\"}\nplain", "");
    row("blank: the lines don't count", "plain\n{\"text\": \" \\n \"}\nplain", "");
    row("trimmed", "{\"text\": \"  open the file\t \"}", "open the file");
    row("trimmed of escaped line feeds", R"({"text": "\n open\n"})", "open");
    row("escaped quote", R"({"text": "say \"hello\" now"})", R"(say "hello" now)");
    row("nothing but escaped quotes", R"({"text": "\"\""})", R"("")");
    row("escaped line feed", R"({"text": "one\ntwo"})", "one\ntwo");
    row("escaped backslash stays", R"({"text": "a\\b"})", R"(a\\b)");
    row("escaped backslash at the end", R"({"text": "a\\", "more": "b"})", R"(a\\)");
    row("escaped backslash before a quote", R"({"text": "a\\\"b"})", R"(a\\"b)");
    row("escaped backslash before an n", R"({"text": "a\\nb"})", "a\\\nb");
    row("other escapes stay", R"({"text": "a\tb\/c\u00e9\r"})", R"(a\tb\/c\u00e9\r)");
    row("a quote doesn't make a line feed", R"({"text": "a\"n"})", R"(a"n)");
    row("words of other alphabets", R"({"text": "Öffne Καλά 日本 🙂"})", "Öffne Καλά 日本 🙂");
    row("markers stay", "{\"text\": \"[noise] open (music)\"}", "[noise] open (music)");
    row("placeholders stay", R"({"text": "%1 %2 100%"})", "%1 %2 100%");
    row("line feed in the text", "{\"text\": \"one\ntwo\"}", "one\ntwo");
    row("brackets in the text", R"({"text": "{\"text\": \"x\"}"})", R"({"text": "x"})");

    row("other case is no such field", "{\"Text\": \"x\"}\nplain", "plain");
    row("longer name is no such field", "{\"subtext\": \"x\"}\nplain", "plain");
    row("number is no such field", "{\"text\": 5}\nplain", "plain");
    row("without its end it is no such field", "plain\n{\"text\": \"x", "plain");
    row("escape without its end", "plain\n{\"text\": \"x\\", "plain");
    row("one that has its end behind one that hasn't", R"({"text": x {"text": "two"})", "two");
    const auto longText = [](const char *name, const QString &repeated) {
        const QString text = repeated.repeated(500000);
        QTest::newRow(name) << QString(QLatin1String("{\"text\": \"") + text + QLatin1String("\"}")) << text;
    };
    longText("long", QStringLiteral("x"));
    longText("long, of escapes", QStringLiteral("x\\t"));
}

void tst_SherpaOutput::findsTheTextField()
{
    QFETCH(QString, output);
    QTEST(SherpaOutput::transcriptIn(output, QStringLiteral("OfflineRecognizer")), "transcript");
}

void tst_SherpaOutput::takesTheLastPlainLine_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("transcript");

    const auto row = [](const char *name, const char *output, const char *transcript) {
        QTest::newRow(name) << QString::fromUtf8(output) << QString::fromUtf8(transcript);
    };
    row("nothing", "", "");
    row("line feeds", "\n\n\n", "");
    row("whitespace", "  \n\t\r\n ", "");
    row("one", "open the file", "open the file");
    row("trimmed", " \topen the file \r\n", "open the file");
    row("the last", "one\ntwo\nthree\n", "three");
    row("the last before empty ones", "one\ntwo\n\n \n", "two");
    row("behind the log", "Loading\nStarted\nopen the file", "open the file");
    row("before JSON", "open\n{\"a\": 1}\n  {\n", "open");
    row("before JSON that follows whitespace", "open\n \t{\"a\": 1}", "open");
    row("a bracket within is no JSON", "one\nopen {x}", "open {x}");
    row("before a line with the word of the log", "open\nOfflineRecognizerConfig(x)\n: OfflineRecognizer y", "open");
    row("the word of the log in other case", "one\nofflinerecognizer", "offlinerecognizer");
    row("nothing but JSON and log", "{}\nOfflineRecognizer\n{", "");
    row("quotes and escapes stay", "say \\\"x\\n\\\\", "say \\\"x\\n\\\\");
    row("a carriage return is no end of line", "one\rtwo", "one\rtwo");
}

void tst_SherpaOutput::takesTheLastPlainLine()
{
    QFETCH(QString, output);
    QTEST(SherpaOutput::transcriptIn(output, QStringLiteral("OfflineRecognizer")), "transcript");
}

void tst_SherpaOutput::ignoresOnlyItsOwnLogWord()
{
    const QString output = QStringLiteral("plain\nOnlineRecognizer\n");
    QCOMPARE(SherpaOutput::transcriptIn(output, QStringLiteral("OnlineRecognizer")), QStringLiteral("plain"));
    QCOMPARE(SherpaOutput::transcriptIn(output, QStringLiteral("OfflineRecognizer")),
             QStringLiteral("OnlineRecognizer"));
}

REGISTER_TEST(tst_SherpaOutput, QCoreApplication)
#include "tst_SherpaOutput.moc"
