// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SherpaWorkerFixture.h"
#include "TestRegistry.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

//! Successful runs of the program: its input, and the transcript in its output.
class tst_SherpaWorker : public SherpaWorkerFixture
{
    Q_OBJECT

private Q_SLOTS:
    void passesTheAudio_data() { EngineUnderTest::addRows(); }
    void passesTheAudio();
    void putsTheLibrariesFirst_data();
    void putsTheLibrariesFirst();
    void understands_data();
    void understands();
    void ignoresItsLog_data() { EngineUnderTest::addRows(); }
    void ignoresItsLog();
    void startsAProgramForEachUtterance_data() { EngineUnderTest::addRows(); }
    void startsAProgramForEachUtterance();
};

void tst_SherpaWorker::passesTheAudio()
{
    QFETCH(const EngineUnderTest *, tested);
    const std::unique_ptr<SherpaWorker> worker = loaded(tested);
    m_standIn->says(QStringLiteral("open"));
    QByteArray samples;
    for (int i = 0; i < 20000; ++i) {
        samples.append(static_cast<char>(i * 7));
    }
    QCOMPARE(outcomesOf(*worker, samples), ready("open"));

    QCOMPARE(m_standIn->wav().left(44).toHex(),
             QByteArray("52494646444e000057415645666d7420100000000100010"
                        "0803e0000007d00000200100064617461204e0000"));
    QCOMPARE(m_standIn->wav().mid(44), samples);

    const QString model = m_standIn->modelDir() + QLatin1Char('/');
    QStringList arguments = m_standIn->arguments();
    const QString wavPath = arguments.takeLast();
    if (tested->engine == SherpaStandIn::Engine::Moonshine) {
        QCOMPARE(arguments,
                 (QStringList {QStringLiteral("--moonshine-encoder=") + model + QStringLiteral("encoder_model.ort"),
                               QStringLiteral("--moonshine-merged-decoder=") + model
                                   + QStringLiteral("decoder_model_merged.ort"),
                               QStringLiteral("--tokens=") + model + QStringLiteral("tokens.txt")}));
    } else {
        QCOMPARE(arguments,
                 (QStringList {QStringLiteral("--encoder=") + model + QStringLiteral("encoder.int8.onnx"),
                               QStringLiteral("--decoder=") + model + QStringLiteral("decoder.int8.onnx"),
                               QStringLiteral("--joiner=") + model + QStringLiteral("joiner.int8.onnx"),
                               QStringLiteral("--tokens=") + model + QStringLiteral("tokens.txt")}));
    }
    const QRegularExpression pattern(QStringLiteral("^%1/tovi-%2-\\w{6}\\.wav$")
                                         .arg(QRegularExpression::escape(m_temp->path()), tested->name.toLower()));
    QVERIFY2(pattern.match(wavPath).hasMatch(), qPrintable(wavPath));
}

void tst_SherpaWorker::putsTheLibrariesFirst_data()
{
    QTest::addColumn<const EngineUnderTest *>("tested");
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("behind");
    for (const EngineUnderTest *tested : EngineUnderTest::both()) {
        const auto row = [&](const char *name, const QByteArray &before, const QByteArray &behind) {
            QTest::addRow("%s: %s", qPrintable(tested->name), name) << tested << before << behind;
        };
        row("unset", QByteArray(), QByteArray());
        row("empty", QByteArray(""), QByteArray());
        row("one", QByteArray("/a"), QByteArray(":/a"));
        row("several", QByteArray("/a b:/c:"), QByteArray(":/a b:/c:"));
    }
}

void tst_SherpaWorker::putsTheLibrariesFirst()
{
    QFETCH(const EngineUnderTest *, tested);
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, behind);
    const ScopedEnvironment libraries("LD_LIBRARY_PATH", before);
    const std::unique_ptr<SherpaWorker> worker = loaded(tested);
    m_standIn->says(QStringLiteral("open"));
    QCOMPARE(outcomesOf(*worker, s_audio), ready("open"));
    QCOMPARE(m_standIn->libraryPath(), QByteArray(QFile::encodeName(m_standIn->libDir()) + behind));
    QCOMPARE(qgetenv("LD_LIBRARY_PATH"), before);
}

void tst_SherpaWorker::understands_data()
{
    QTest::addColumn<const EngineUnderTest *>("tested");
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<QByteArray>("errors");
    QTest::addColumn<QStringList>("outcomes");
    const QStringList noSpeech = failed(QStringLiteral("No speech detected in audio"));
    for (const EngineUnderTest *tested : EngineUnderTest::both()) {
        const auto row = [&](const char *name, const QByteArray &output, const QByteArray &errors,
                             const QStringList &outcomes) {
            QTest::addRow("%s: %s", qPrintable(tested->name), name) << tested << output << errors << outcomes;
        };
        row("JSON", "{\"text\": \" open the file\"}\n", "Done!\n", ready("open the file"));
        row("JSON on the standard error", "Loading\n", "{\"text\": \"open\"}\nDone!\n", ready("open"));
        row("the standard output's JSON first", "{\"text\": \"one\"}", "{\"text\": \"two\"}", ready("one"));
        row("escapes", R"({"text": "say \"hi\" to C:\\temp"})", "", ready(R"(say "hi" to C:\\temp)"));
        row("lines of the log, then a plain one", "Loading\nStarted\nopen the file\n", "", ready("open the file"));
        row("a plain line on the standard error", "Started\n", "open\n", ready("open"));
        // Intentional: a log line without the log word is taken for the transcript.
        row("the standard error comes last", "open\n", "Done!\n", ready("Done!"));
        row("plain lines of the two don't get mixed up", "one", "two", ready("onetwo"));
        row("nothing", "", "", noSpeech);
        row("line feeds", "\n\n", "\n", noSpeech);
        row("an empty text, whatever the other lines are", "plain\n{\"text\": \"\"}\nplain\n", "plain\n", noSpeech);
        row("another alphabet", "{\"text\": \"Öffne die Übersicht 🙂\"}", "", ready("Öffne die Übersicht 🙂"));
        row("not UTF-8", "a\xff z", "", ready("a\xef\xbf\xbd z"));
        row("placeholders", "{\"text\": \"%1 %2\"}", "", ready("%1 %2"));
        row("more than a pipe holds", QByteArray("a line\n").repeated(100000) + "{\"text\": \"open\"}",
            QByteArray("a line\n").repeated(100000), ready("open"));
    }
}

void tst_SherpaWorker::understands()
{
    QFETCH(const EngineUnderTest *, tested);
    QFETCH(QByteArray, output);
    QFETCH(QByteArray, errors);
    const std::unique_ptr<SherpaWorker> worker = loaded(tested);
    m_standIn->prints(output, errors);
    QTEST(outcomesOf(*worker, s_audio), "outcomes");
}

void tst_SherpaWorker::ignoresItsLog()
{
    QFETCH(const EngineUnderTest *, tested);
    const std::unique_ptr<SherpaWorker> worker = loaded(tested);
    m_standIn->prints("plain\nOnlineRecognizerConfig()\n");
    const bool isMoonshine = tested->engine == SherpaStandIn::Engine::Moonshine;
    QCOMPARE(outcomesOf(*worker, s_audio), ready(isMoonshine ? "OnlineRecognizerConfig()" : "plain"));
    m_standIn->prints("plain\nOfflineRecognizerConfig()\n");
    QCOMPARE(outcomesOf(*worker, s_audio), ready(isMoonshine ? "plain" : "OfflineRecognizerConfig()"));
}

void tst_SherpaWorker::startsAProgramForEachUtterance()
{
    QFETCH(const EngineUnderTest *, tested);
    const std::unique_ptr<SherpaWorker> worker = loaded(tested);
    m_standIn->says(QStringLiteral("one"));
    QCOMPARE(outcomesOf(*worker, s_audio), ready("one"));
    m_standIn->crashes();
    QCOMPARE(outcomesOf(*worker, s_audio).size(), 1);
    m_standIn->says(QStringLiteral("two"));
    QCOMPARE(outcomesOf(*worker, s_audio), ready("two"));
    QCOMPARE(m_standIn->runs(), 3);
}

REGISTER_TEST(tst_SherpaWorker, QCoreApplication)
#include "tst_SherpaWorker.moc"
