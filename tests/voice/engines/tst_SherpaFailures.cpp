// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SherpaWorkerFixture.h"
#include "TestRegistry.h"

#include <QFile>
#include <QTest>

#include <sys/resource.h>

#include <cerrno>
#include <csignal>

using namespace std::chrono_literals;

namespace
{

//! Limits the size of all files that this process writes. Writes beyond the limit fail.
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

} // namespace

//! Every failure of a transcription except "no speech".
class tst_SherpaFailures : public SherpaWorkerFixture
{
    Q_OBJECT

private Q_SLOTS:
    void needsAModel_data() { EngineUnderTest::addRows(); }
    void needsAModel();
    void needsATenthOfASecond_data() { EngineUnderTest::addRows(); }
    void needsATenthOfASecond();
    void failsWithoutATempFile_data() { EngineUnderTest::addRows(); }
    void failsWithoutATempFile();
    void failsIfTheDiskIsFull_data();
    void failsIfTheDiskIsFull();
    void failsIfTheProgramCannotStart_data() { EngineUnderTest::addRows(); }
    void failsIfTheProgramCannotStart();
    void killsTheProgramAfterTheTimeout_data() { EngineUnderTest::addRows(); }
    void killsTheProgramAfterTheTimeout();
    void endsWhenAborted_data() { EngineUnderTest::addRows(); }
    void endsWhenAborted();
    void killsAProgramThatPrintsWithoutEnd_data() { EngineUnderTest::addRows(); }
    void killsAProgramThatPrintsWithoutEnd();
    void showsTheOutputOfAFailure_data();
    void showsTheOutputOfAFailure();
};

void tst_SherpaFailures::needsAModel()
{
    QFETCH(const EngineUnderTest *, tested);
    const std::unique_ptr<SherpaWorker> worker = tested->worker();
    const QStringList notLoaded = failed(tested->name + QStringLiteral(" model not loaded"));
    QCOMPARE(outcomesOf(*worker, s_audio), notLoaded);
    QCOMPARE(outcomesOf(*worker, QByteArray()), notLoaded);
}

void tst_SherpaFailures::needsATenthOfASecond()
{
    QFETCH(const EngineUnderTest *, tested);
    const std::unique_ptr<SherpaWorker> worker = loaded(tested);
    m_standIn->says(QStringLiteral("open"));
    const QStringList tooShort = failed(QStringLiteral("Audio too short"));
    QCOMPARE(outcomesOf(*worker, QByteArray()), tooShort);
    QCOMPARE(outcomesOf(*worker, s_audio.left(3199)), tooShort);
    QCOMPARE(m_standIn->runs(), 0);
    QCOMPARE(outcomesOf(*worker, s_audio.left(3200)), ready("open"));
    QCOMPARE(m_standIn->runs(), 1);
}

void tst_SherpaFailures::failsWithoutATempFile()
{
    QFETCH(const EngineUnderTest *, tested);
    const std::unique_ptr<SherpaWorker> worker = loaded(tested);
    m_standIn->says(QStringLiteral("open"));
    // Not even root can create a file there.
    const ScopedEnvironment temp("TMPDIR", "/dev/null");
    QCOMPARE(outcomesOf(*worker, s_audio), failed(QStringLiteral("Cannot create temp WAV file")));
    QCOMPARE(m_standIn->runs(), 0);
}

void tst_SherpaFailures::failsIfTheDiskIsFull_data()
{
    QTest::addColumn<const EngineUnderTest *>("tested");
    QTest::addColumn<int>("size");
    for (const EngineUnderTest *tested : EngineUnderTest::both()) {
        // A small file stays in Qt's buffer, and the error is detected later.
        QTest::addRow("%s: small", qPrintable(tested->name)) << tested << s_minimumBytes;
        QTest::addRow("%s: big", qPrintable(tested->name)) << tested << 960000;
    }
}

void tst_SherpaFailures::failsIfTheDiskIsFull()
{
    QFETCH(const EngineUnderTest *, tested);
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

void tst_SherpaFailures::failsIfTheProgramCannotStart()
{
    QFETCH(const EngineUnderTest *, tested);
    const std::unique_ptr<SherpaWorker> worker = loaded(tested);
    const QStringList notStarted = failed(QStringLiteral("Failed to start ") + tested->program);
    m_standIn->cannotStart();
    QCOMPARE(outcomesOf(*worker, s_audio), notStarted);
    QVERIFY(QFile::remove(m_standIn->program()));
    QCOMPARE(outcomesOf(*worker, s_audio), notStarted);
    // The program is found when it is back.
    m_standIn->says(QStringLiteral("open"));
    QCOMPARE(outcomesOf(*worker, s_audio), ready("open"));
}

void tst_SherpaFailures::killsTheProgramAfterTheTimeout()
{
    QFETCH(const EngineUnderTest *, tested);
    m_standIn.emplace(tested->engine);
    m_standIn->hangs();
    const std::unique_ptr<SherpaWorker> worker = tested->worker(500ms);
    QVERIFY(worker->load(m_standIn->modelDir(), isolatedRoots()));
    QCOMPARE(outcomesOf(*worker, s_audio), failed(tested->program + QStringLiteral(" timed out")));
    // The list is empty if the busy machine didn't start the script in time.
    for (const qint64 pid : m_standIn->processIds()) {
        QCOMPARE(::kill(static_cast<pid_t>(pid), 0), -1);
        QCOMPARE(errno, ESRCH);
    }
}

void tst_SherpaFailures::endsWhenAborted()
{
    QFETCH(const EngineUnderTest *, tested);
    const std::unique_ptr<SherpaWorker> worker = loaded(tested);
    m_standIn->hangs();
    worker->abort();
    QCOMPARE(outcomesOf(*worker, s_audio), failed(tested->program + QStringLiteral(" timed out")));
}

void tst_SherpaFailures::killsAProgramThatPrintsWithoutEnd()
{
    QFETCH(const EngineUnderTest *, tested);
    const std::unique_ptr<SherpaWorker> worker = loaded(tested);
    const QStringList expected =
        failed(tested->program + QStringLiteral(" failed: ") + QStringLiteral("y\n").repeated(150));
    for (const char *script : {"exec yes", "exec yes >&2"}) {
        m_standIn->behaves(script);
        QCOMPARE(outcomesOf(*worker, s_audio), expected);
        QCOMPARE(::kill(static_cast<pid_t>(m_standIn->processIds().constLast()), 0), -1);
    }
}

void tst_SherpaFailures::showsTheOutputOfAFailure_data()
{
    QTest::addColumn<const EngineUnderTest *>("tested");
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<QByteArray>("errors");
    QTest::addColumn<int>("exitCode"); // -1: crash
    QTest::addColumn<QString>("shown");
    for (const EngineUnderTest *tested : EngineUnderTest::both()) {
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
        // Intentional: the limit may split a surrogate pair.
        row("a pair is cut", QByteArray(299, 'x') + "🙂", "", 1, times(299, 'x') + QString::fromUtf8("🙂").at(0));
        row("placeholders", "%1 %2", "%3", 1, QStringLiteral("%1 %2%3"));
        row("crash", "half\n", "", -1, QStringLiteral("half\n"));
    }
}

void tst_SherpaFailures::showsTheOutputOfAFailure()
{
    QFETCH(const EngineUnderTest *, tested);
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

REGISTER_TEST(tst_SherpaFailures, QCoreApplication)
#include "tst_SherpaFailures.moc"
