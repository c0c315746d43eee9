// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "TestedSherpa.h"
#include "support/MessageLog.h"

#include <QRegularExpression>
#include <QTest>

#include <sys/resource.h>

#include <cerrno>
#include <csignal>
#include <optional>

namespace
{

constexpr int s_tenthOfASecond = 3200; // bytes

const QByteArray s_audio(s_tenthOfASecond, '\x12');

//! While it lives no file of this process grows beyond some bytes: the rest of a write fails.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
        : m_handlerBefore(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit {bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handlerBefore);
    }
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

private:
    rlimit m_before {};
    void (*const m_handlerBefore)(int);
};

QStringList ready(const char *text)
{
    return {QStringLiteral("ready: ") + QString::fromUtf8(text)};
}

QStringList failed(const QString &error)
{
    return {QStringLiteral("failed: ") + error};
}

} // namespace

//! From the samples to the transcript or the error, in the thread of the test. Each test has a directory of its own for
//! temporary files, which must be empty in the end.
class tst_SherpaWorker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void wantsAModel_data() { TestedSherpa::addRows(); }
    void wantsAModel();
    void wantsATenthOfASecond_data() { TestedSherpa::addRows(); }
    void wantsATenthOfASecond();
    void handsOverTheAudio_data() { TestedSherpa::addRows(); }
    void handsOverTheAudio();
    void putsTheLibrariesFirst_data();
    void putsTheLibrariesFirst();
    void understands_data();
    void understands();
    void passesOverItsLog_data() { TestedSherpa::addRows(); }
    void passesOverItsLog();
    void showsTheOutputOfAFailure_data();
    void showsTheOutputOfAFailure();
    void toldWhenItCannotStart_data() { TestedSherpa::addRows(); }
    void toldWhenItCannotStart();
    void endsWhatTakesTooLong_data() { TestedSherpa::addRows(); }
    void endsWhatTakesTooLong();
    void toldWhenThereIsNoTempFile_data() { TestedSherpa::addRows(); }
    void toldWhenThereIsNoTempFile();
    void toldWhenTheDiskIsFull_data();
    void toldWhenTheDiskIsFull();
    void startsAProgramForEachUtterance_data() { TestedSherpa::addRows(); }
    void startsAProgramForEachUtterance();

private:
    QStringList tempFiles() const { return QDir(m_temp->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot); }
    //! Installs the engine, and loads its model.
    std::unique_ptr<SherpaWorker> loaded(const TestedSherpa *tested)
    {
        m_standIn.emplace(tested->engine);
        std::unique_ptr<SherpaWorker> worker = tested->worker();
        worker->load(m_standIn->modelDir());
        return worker;
    }

    std::optional<QTemporaryDir> m_temp;
    std::optional<ChangedVariable> m_tempVariable;
    std::optional<SherpaStandIn> m_standIn;
    std::optional<MessageLog> m_log;
};

void tst_SherpaWorker::initTestCase()
{
    QVERIFY(SherpaStandIn::systemHasNone());
}

void tst_SherpaWorker::init()
{
    m_temp.emplace(QDir::homePath() + QStringLiteral("/temp-XXXXXX"));
    m_tempVariable.emplace("TMPDIR", QFile::encodeName(m_temp->path()));
    m_log.emplace();
}

void tst_SherpaWorker::cleanup()
{
    m_tempVariable.reset();
    m_standIn.reset();
    QCOMPARE(tempFiles(), QStringList());
    QCOMPARE(m_log->warnings(), QStringList());
    m_log.reset();
    m_temp.reset();
}

void tst_SherpaWorker::wantsAModel()
{
    QFETCH(const TestedSherpa *, tested);
    const std::unique_ptr<SherpaWorker> worker = tested->worker();
    const QStringList notLoaded = failed(tested->name + QStringLiteral(" model not loaded"));
    QCOMPARE(outcomesOf(*worker, s_audio), notLoaded);
    QCOMPARE(outcomesOf(*worker, QByteArray()), notLoaded);
}

void tst_SherpaWorker::wantsATenthOfASecond()
{
    QFETCH(const TestedSherpa *, tested);
    const std::unique_ptr<SherpaWorker> worker = loaded(tested);
    m_standIn->says(QStringLiteral("open"));
    const QStringList tooShort = failed(QStringLiteral("Audio too short"));
    QCOMPARE(outcomesOf(*worker, QByteArray()), tooShort);
    QCOMPARE(outcomesOf(*worker, s_audio.left(3199)), tooShort);
    QCOMPARE(m_standIn->runs(), 0);
    QCOMPARE(outcomesOf(*worker, s_audio.left(3200)), ready("open"));
    QCOMPARE(m_standIn->runs(), 1);
}

void tst_SherpaWorker::handsOverTheAudio()
{
    QFETCH(const TestedSherpa *, tested);
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
    QTest::addColumn<const TestedSherpa *>("tested");
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("behind");
    for (const TestedSherpa *tested : TestedSherpa::both()) {
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
    QFETCH(const TestedSherpa *, tested);
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, behind);
    const std::unique_ptr<SherpaWorker> worker = loaded(tested);
    m_standIn->says(QStringLiteral("open"));
    const ChangedVariable libraries("LD_LIBRARY_PATH", before);
    QCOMPARE(outcomesOf(*worker, s_audio), ready("open"));
    QCOMPARE(m_standIn->libraryPath(), QByteArray(QFile::encodeName(m_standIn->libDir()) + behind));
    QCOMPARE(qgetenv("LD_LIBRARY_PATH"), before);
}

void tst_SherpaWorker::understands_data()
{
    QTest::addColumn<const TestedSherpa *>("tested");
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<QByteArray>("errors");
    QTest::addColumn<QStringList>("outcomes");
    const QStringList noSpeech = failed(QStringLiteral("No speech detected in audio"));
    for (const TestedSherpa *tested : TestedSherpa::both()) {
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
        // A line of the log that doesn't hold the word for it is taken for the transcript.
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
    QFETCH(const TestedSherpa *, tested);
    QFETCH(QByteArray, output);
    QFETCH(QByteArray, errors);
    const std::unique_ptr<SherpaWorker> worker = loaded(tested);
    m_standIn->prints(output, errors);
    QTEST(outcomesOf(*worker, s_audio), "outcomes");
}

void tst_SherpaWorker::passesOverItsLog()
{
    QFETCH(const TestedSherpa *, tested);
    const std::unique_ptr<SherpaWorker> worker = loaded(tested);
    m_standIn->prints("plain\nOnlineRecognizerConfig()\n");
    const bool isMoonshine = tested->engine == SherpaStandIn::Engine::Moonshine;
    QCOMPARE(outcomesOf(*worker, s_audio), ready(isMoonshine ? "OnlineRecognizerConfig()" : "plain"));
    m_standIn->prints("plain\nOfflineRecognizerConfig()\n");
    QCOMPARE(outcomesOf(*worker, s_audio), ready(isMoonshine ? "plain" : "OfflineRecognizerConfig()"));
}

void tst_SherpaWorker::showsTheOutputOfAFailure_data()
{
    QTest::addColumn<const TestedSherpa *>("tested");
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<QByteArray>("errors");
    QTest::addColumn<int>("exitCode"); // -1: a crash
    QTest::addColumn<QString>("shown");
    for (const TestedSherpa *tested : TestedSherpa::both()) {
        const auto row = [&](const char *name, const QByteArray &output, const QByteArray &errors, int exitCode,
                             const QString &shown) {
            QTest::addRow("%s: %s", qPrintable(tested->name), name) << tested << output << errors << exitCode << shown;
        };
        const auto times = [](int count, char letter) { return QString(count, QLatin1Char(letter)); };
        row("no output", "", "", 1, QString());
        row("output, then errors", "one\n", "two\n", 255, QStringLiteral("one\ntwo\n"));
        row("a transcript doesn't count", "{\"text\": \"open\"}", "", 2, QStringLiteral("{\"text\": \"open\"}"));
        row("300 characters", QByteArray(300, 'x'), "", 1, times(300, 'x'));
        row("no more than 300 characters", QByteArray(200, 'x'), QByteArray(200, 'y'), 1,
            times(200, 'x') + times(100, 'y'));
        row("characters, not bytes", QByteArray("ü").repeated(301), "", 1, QString::fromUtf8("ü").repeated(300));
        // The number is fixed, whatever it cuts through.
        row("a pair is cut", QByteArray(299, 'x') + "🙂", "", 1, times(299, 'x') + QString::fromUtf8("🙂").at(0));
        row("placeholders", "%1 %2", "%3", 1, QStringLiteral("%1 %2%3"));
        row("crash", "half\n", "", -1, QStringLiteral("half\n"));
    }
}

void tst_SherpaWorker::showsTheOutputOfAFailure()
{
    QFETCH(const TestedSherpa *, tested);
    QFETCH(QByteArray, output);
    QFETCH(QByteArray, errors);
    QFETCH(int, exitCode);
    QFETCH(QString, shown);
    const std::unique_ptr<SherpaWorker> worker = loaded(tested);
    if (exitCode < 0) {
        m_standIn->crashes(output);
    } else {
        m_standIn->prints(output, errors, exitCode);
    }
    QCOMPARE(outcomesOf(*worker, s_audio), failed(tested->program + QStringLiteral(" failed: ") + shown));
}

void tst_SherpaWorker::toldWhenItCannotStart()
{
    QFETCH(const TestedSherpa *, tested);
    const std::unique_ptr<SherpaWorker> worker = loaded(tested);
    const QStringList notStarted = failed(QStringLiteral("Failed to start ") + tested->program);
    m_standIn->cannotStart();
    QCOMPARE(outcomesOf(*worker, s_audio), notStarted);
    QVERIFY(QFile::remove(m_standIn->program()));
    QCOMPARE(outcomesOf(*worker, s_audio), notStarted);
    // What is there again is found again.
    m_standIn->says(QStringLiteral("open"));
    QCOMPARE(outcomesOf(*worker, s_audio), ready("open"));
}

void tst_SherpaWorker::endsWhatTakesTooLong()
{
    QFETCH(const TestedSherpa *, tested);
    m_standIn.emplace(tested->engine);
    m_standIn->hangs();
    const std::unique_ptr<SherpaWorker> worker = tested->worker(500);
    QVERIFY(worker->load(m_standIn->modelDir()));
    QCOMPARE(outcomesOf(*worker, s_audio), failed(tested->program + QStringLiteral(" timed out")));
    // None, where the machine was so busy that the program didn't get as far.
    for (const qint64 pid : m_standIn->processIds()) {
        QCOMPARE(::kill(static_cast<pid_t>(pid), 0), -1);
        QCOMPARE(errno, ESRCH);
    }
}

void tst_SherpaWorker::toldWhenThereIsNoTempFile()
{
    QFETCH(const TestedSherpa *, tested);
    const std::unique_ptr<SherpaWorker> worker = loaded(tested);
    m_standIn->says(QStringLiteral("open"));
    // There, not even the superuser can make a file.
    const ChangedVariable temp("TMPDIR", "/proc");
    QCOMPARE(outcomesOf(*worker, s_audio), failed(QStringLiteral("Cannot create temp WAV file")));
    QCOMPARE(m_standIn->runs(), 0);
}

void tst_SherpaWorker::toldWhenTheDiskIsFull_data()
{
    QTest::addColumn<const TestedSherpa *>("tested");
    QTest::addColumn<int>("size");
    for (const TestedSherpa *tested : TestedSherpa::both()) {
        // Qt keeps the small one in a buffer for a while, and finds out later.
        QTest::addRow("%s: small", qPrintable(tested->name)) << tested << s_tenthOfASecond;
        QTest::addRow("%s: big", qPrintable(tested->name)) << tested << 960000;
    }
}

void tst_SherpaWorker::toldWhenTheDiskIsFull()
{
    QFETCH(const TestedSherpa *, tested);
    QFETCH(int, size);
    const std::unique_ptr<SherpaWorker> worker = loaded(tested);
    m_standIn->says(QStringLiteral("open"));
    QStringList outcomes;
    {
        const FileSizeLimit limit(3000);
        outcomes = outcomesOf(*worker, QByteArray(size, 'x'));
    }
    QCOMPARE(outcomes, failed(QStringLiteral("Failed to write temp WAV")));
    QCOMPARE(m_standIn->runs(), 0);
}

void tst_SherpaWorker::startsAProgramForEachUtterance()
{
    QFETCH(const TestedSherpa *, tested);
    const std::unique_ptr<SherpaWorker> worker = loaded(tested);
    m_standIn->says(QStringLiteral("one"));
    QCOMPARE(outcomesOf(*worker, s_audio), ready("one"));
    m_standIn->crashes();
    QCOMPARE(outcomesOf(*worker, s_audio).size(), 1);
    m_standIn->says(QStringLiteral("two"));
    QCOMPARE(outcomesOf(*worker, s_audio), ready("two"));
    QCOMPARE(m_standIn->runs(), 3);
}

QTEST_GUILESS_MAIN(tst_SherpaWorker)
#include "tst_SherpaWorker.moc"
