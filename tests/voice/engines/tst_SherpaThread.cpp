// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Files.h"
#include "SherpaWorkerFixture.h"
#include "TestRegistry.h"
#include "ThreadHandover.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QScopeGuard>
#include <QTest>
#include <QThread>

#include <sys/stat.h>

namespace
{

constexpr int s_timeout = 20000; // ms, as QTest takes it

} // namespace

//! Records the outcomes of transcriptions on another thread.
class Listener : public QObject
{
    Q_OBJECT

public:
    QStringList outcomes;
    QList<double> times; // ms

public Q_SLOTS:
    void onReady(const QString &text, double elapsedMs)
    {
        outcomes.append(QStringLiteral("ready: ") + text);
        times.append(elapsedMs);
    }
    void onFailed(const QString &error) { outcomes.append(QStringLiteral("failed: ") + error); }
};

//! A worker on its own thread, which deletes it, and a listener for its signals.
class RunningWorker
{
public:
    RunningWorker(std::unique_ptr<SherpaWorker> worker, std::optional<SherpaStandIn> &standIn)
        : m_worker(worker.release())
        , m_standIn(standIn)
    {
        m_worker->moveToThread(&thread);
        QObject::connect(&thread, &QThread::finished, m_worker, &QObject::deleteLater);
        ThreadHandover::connect(m_worker.data(), &SherpaWorker::transcriptionReady, &listener, &Listener::onReady);
        ThreadHandover::connect(m_worker.data(), &SherpaWorker::transcriptionFailed, &listener, &Listener::onFailed);
        thread.start();
    }
    ~RunningWorker()
    {
        m_standIn->releaseAll();
        thread.quit();
        thread.wait();
    }
    Q_DISABLE_COPY_MOVE(RunningWorker)

    SherpaWorker *operator->() const { return m_worker.data(); }
    bool isGone() const { return m_worker.isNull(); }
    void transcribe(const QByteArray &pcm16Data)
    {
        ThreadHandover::post(m_worker, [worker = m_worker.data(), pcm16Data] { worker->transcribe(pcm16Data); });
    }

    QThread thread;
    Listener listener;

private:
    const QPointer<SherpaWorker> m_worker;
    std::optional<SherpaStandIn> &m_standIn;
};

//! The worker on its own thread, as in the program.
class tst_SherpaThread : public SherpaWorkerFixture
{
    Q_OBJECT

private Q_SLOTS:
    void doesNotBlockOtherThreads_data() { EngineUnderTest::addRows(); }
    void doesNotBlockOtherThreads();
    void audioIsPrivate_data() { EngineUnderTest::addRows(); }
    void audioIsPrivate();
    void reportsFailures_data() { EngineUnderTest::addRows(); }
    void reportsFailures();
    void workInTurn_data() { EngineUnderTest::addRows(); }
    void workInTurn();
    void loadsWhileATranscriptionIsQueued_data() { EngineUnderTest::addRows(); }
    void loadsWhileATranscriptionIsQueued();
    void loadsAndTakesAtOnce_data() { EngineUnderTest::addRows(); }
    void loadsAndTakesAtOnce();
    void endsWithItsThread_data() { EngineUnderTest::addRows(); }
    void endsWithItsThread();
};

void tst_SherpaThread::doesNotBlockOtherThreads()
{
    QFETCH(const EngineUnderTest *, tested);
    RunningWorker worker(loaded(tested), m_standIn);
    m_standIn->says(QStringLiteral("open the file"));
    m_standIn->hold();

    QElapsedTimer sincePost;
    sincePost.start();
    worker.transcribe(s_audio);
    QTRY_COMPARE_WITH_TIMEOUT(m_standIn->runs(), 1, s_timeout);
    QElapsedTimer sinceRun;
    sinceRun.start();
    QCOMPARE(tempFiles().size(), 1);
    QCOMPARE(m_standIn->arguments().last(), m_temp->filePath(tempFiles().first()));
    QCOMPARE(m_standIn->wav().mid(44), s_audio);
    QCOMPARE(worker.listener.outcomes, QStringList());

    const double runTime = static_cast<double>(sinceRun.nsecsElapsed()) / 1e6;
    m_standIn->release();
    QTRY_COMPARE_WITH_TIMEOUT(worker.listener.outcomes, ready("open the file"), s_timeout);
    const double wholeTime = static_cast<double>(sincePost.nsecsElapsed()) / 1e6;
    // Only the run of the program counts.
    QVERIFY2(worker.listener.times.first() >= runTime && worker.listener.times.first() <= wholeTime,
             qPrintable(QStringLiteral("%1 %2 %3").arg(runTime).arg(worker.listener.times.first()).arg(wholeTime)));
    QCOMPARE(tempFiles(), QStringList());
}

void tst_SherpaThread::audioIsPrivate()
{
    QFETCH(const EngineUnderTest *, tested);
    RunningWorker worker(loaded(tested), m_standIn);
    m_standIn->says(QStringLiteral("open"));
    m_standIn->hold();
    const mode_t umaskBefore = ::umask(0); // so that it can't make the file private
    const auto restore = qScopeGuard([umaskBefore] { ::umask(umaskBefore); });
    worker.transcribe(s_audio);
    QTRY_COMPARE_WITH_TIMEOUT(m_standIn->runs(), 1, s_timeout);
    QCOMPARE(tempFiles().size(), 1);
    QCOMPARE(modeOf(m_temp->filePath(tempFiles().first())), 0600);
    m_standIn->release();
    QTRY_COMPARE_WITH_TIMEOUT(worker.listener.outcomes, ready("open"), s_timeout);
    QCOMPARE(tempFiles(), QStringList());
}

void tst_SherpaThread::reportsFailures()
{
    QFETCH(const EngineUnderTest *, tested);
    RunningWorker worker(loaded(tested), m_standIn);
    m_standIn->prints("no model\n", QByteArray(), 1);
    worker.transcribe(s_audio);
    QTRY_COMPARE_WITH_TIMEOUT(worker.listener.outcomes, failed(tested->program + QStringLiteral(" failed: no model\n")),
                              s_timeout);
}

void tst_SherpaThread::workInTurn()
{
    QFETCH(const EngineUnderTest *, tested);
    RunningWorker worker(loaded(tested), m_standIn);
    m_standIn->says(QStringLiteral("open"));
    m_standIn->hold();
    worker.transcribe(s_audio);
    worker.transcribe(s_audio);
    QTRY_COMPARE_WITH_TIMEOUT(m_standIn->runs(), 1, s_timeout);
    QCOMPARE(tempFiles().size(), 1);
    m_standIn->release();
    QTRY_COMPARE_WITH_TIMEOUT(m_standIn->runs(), 2, s_timeout);
    QTRY_COMPARE_WITH_TIMEOUT(worker.listener.outcomes, ready("open"), s_timeout);
    m_standIn->release();
    QTRY_COMPARE_WITH_TIMEOUT(worker.listener.outcomes, ready("open") + ready("open"), s_timeout);
}

void tst_SherpaThread::loadsWhileATranscriptionIsQueued()
{
    QFETCH(const EngineUnderTest *, tested);
    RunningWorker worker(loaded(tested), m_standIn);
    m_standIn->says(QStringLiteral("open"));
    m_standIn->hold();
    worker.transcribe(s_audio);
    worker.transcribe(s_audio);
    QTRY_COMPARE_WITH_TIMEOUT(m_standIn->runs(), 1, s_timeout);
    // After a cancel a model may be loaded at once. The running program isn't affected, and the queued transcription
    // uses the new model.
    const QString other = m_standIn->modelDir() + QStringLiteral("-2");
    QVERIFY(QFile::rename(m_standIn->modelDir(), other));
    QVERIFY(worker->load(other, isolatedRoots()));
    QVERIFY(!m_standIn->arguments().first().contains(other));
    m_standIn->release();
    QTRY_COMPARE_WITH_TIMEOUT(m_standIn->runs(), 2, s_timeout);
    QVERIFY(m_standIn->arguments().first().contains(other));
    m_standIn->release();
    QTRY_COMPARE_WITH_TIMEOUT(worker.listener.outcomes, ready("open") + ready("open"), s_timeout);
    QVERIFY(QDir(other).removeRecursively());
}

void tst_SherpaThread::loadsAndTakesAtOnce()
{
    QFETCH(const EngineUnderTest *, tested);
    RunningWorker worker(loaded(tested), m_standIn);
    constexpr int times = 200;
    for (int i = 0; i < times; ++i) {
        // Too short to be transcribed, but the worker reads its model.
        worker.transcribe(QByteArray());
        QVERIFY(worker->load(m_standIn->modelDir(), isolatedRoots()));
    }
    QTRY_COMPARE_WITH_TIMEOUT(worker.listener.outcomes.size(), times, s_timeout);
    const QStringList possible =
        failed(QStringLiteral("Audio too short")) + failed(tested->name + QStringLiteral(" model not loaded"));
    for (const QString &outcome : qAsConst(worker.listener.outcomes)) {
        QVERIFY2(possible.contains(outcome), qPrintable(outcome));
    }
}

void tst_SherpaThread::endsWithItsThread()
{
    QFETCH(const EngineUnderTest *, tested);
    RunningWorker worker(loaded(tested), m_standIn);
    m_standIn->says(QStringLiteral("open"));
    m_standIn->hold();
    worker.transcribe(s_audio);
    QTRY_COMPARE_WITH_TIMEOUT(m_standIn->runs(), 1, s_timeout);
    // The thread waits for the running transcription.
    worker.thread.quit();
    m_standIn->release();
    QVERIFY(worker.thread.wait(s_timeout));
    QVERIFY(worker.isGone());
    QTRY_COMPARE_WITH_TIMEOUT(worker.listener.outcomes, ready("open"), s_timeout);
}

REGISTER_TEST(tst_SherpaThread, QCoreApplication)
#include "tst_SherpaThread.moc"
