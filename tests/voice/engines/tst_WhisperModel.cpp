// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "WhisperWorkerFixture.h"

#include "SignalLog.h"
#include "TestRegistry.h"

#include <QFile>
#include <QTest>

#include <atomic>
#include <functional>
#include <optional>
#include <thread>

#include <unistd.h>

namespace
{

//! Work on another thread that is expected to wait for a lock.
class Contender
{
public:
    explicit Contender(std::function<void()> work)
        : m_thread([this, work = std::move(work)] {
            m_id = gettid();
            work();
            m_isDone = true;
        })
    {
    }
    ~Contender() { m_thread.join(); }
    Q_DISABLE_COPY_MOVE(Contender)

    bool isDone() const { return m_isDone; }
    //! Whether waits() works on this system.
    static bool canBeWatched() { return QFile::exists(QStringLiteral("/proc/self/task")); }
    //! Whether the thread sleeps, as it does while it waits for a lock.
    bool waits() const
    {
        QFile stat(QStringLiteral("/proc/self/task/%1/stat").arg(m_id));
        if (m_id == 0 || !stat.open(QIODevice::ReadOnly)) {
            return false;
        }
        const QByteArray line = stat.readAll();
        return line.mid(line.lastIndexOf(')') + 2, 1) == "S";
    }

private:
    std::atomic<pid_t> m_id = 0;
    std::atomic<bool> m_isDone = false;
    std::thread m_thread;
};

} // namespace

//! Loading, replacing and locking the model.
class tst_WhisperModel : public WhisperWorkerFixture
{
    Q_OBJECT

private Q_SLOTS:
    void isNotLoadedByDefault();
    void loadsFiles();
    void loadsBackendsOnce();
    void replacesTheModel();
    void unloadsTheModelIfTheNextFails();
    void doesNotFreeWithoutAModel();
    void loadWaitsForATranscription();
    void releasesTheMutex();
    void endWaitsForATranscription();
};

void tst_WhisperModel::isNotLoadedByDefault()
{
    WhisperWorker worker;
    QCOMPARE(worker.parent(), nullptr);
    SignalLog log(&worker);
    worker.transcribe(silence());
    QCOMPARE(log.take(), QStringList {failed("Model not loaded")});
    // Checked before the length.
    worker.transcribe(QByteArray());
    QCOMPARE(log.take(), QStringList {failed("Model not loaded")});
    QCOMPARE(WhisperStandIn::calls(), QStringList());
}

void tst_WhisperModel::loadsFiles()
{
    WhisperWorker worker;
    // The path is passed as UTF-8 in every locale.
    const QString path = model(QStringLiteral("grün %1 語.bin"));
    QVERIFY(worker.loadModel(path));
    QCOMPARE(WhisperStandIn::calls().last(), QStringLiteral("init ") + path);
    QVERIFY(WhisperStandIn::contextParamsWereDefault());
    QCOMPARE(WhisperStandIn::livingContexts(), 1);

    WhisperWorker other;
    QVERIFY(!other.loadModel(QStringLiteral("/nowhere/model.bin")));
    QCOMPARE(WhisperStandIn::calls().last(), QStringLiteral("failed init /nowhere/model.bin"));
}

void tst_WhisperModel::loadsBackendsOnce()
{
    // An earlier test function may have loaded them already.
    const auto first = loaded();
    const auto second = loaded();
    QVERIFY(WhisperStandIn::calls().count(QStringLiteral("backends")) <= 1);
    WhisperStandIn::reset();
    const auto third = loaded();
    QCOMPARE(WhisperStandIn::calls(), QStringList {QStringLiteral("init ") + model()});
}

void tst_WhisperModel::replacesTheModel()
{
    const auto worker = loaded();
    WhisperStandIn::reset();
    const QString other = model(QStringLiteral("other.bin"));
    QVERIFY(worker->loadModel(other));
    // The old one is freed first, as there may not be enough memory for both.
    QCOMPARE(WhisperStandIn::calls(), (QStringList {QStringLiteral("free"), QStringLiteral("init ") + other}));
    SignalLog log(worker.get());
    worker->transcribe(silence());
    QVERIFY(log.take().value(0).startsWith(QLatin1String("transcriptionReady(")));
}

void tst_WhisperModel::unloadsTheModelIfTheNextFails()
{
    const auto worker = loaded();
    QVERIFY(!worker->loadModel(QStringLiteral("/nowhere")));
    QCOMPARE(WhisperStandIn::livingContexts(), 0);
    SignalLog log(worker.get());
    worker->transcribe(silence());
    QCOMPARE(log.take(), QStringList {failed("Model not loaded")});
    QVERIFY(worker->loadModel(model()));
    worker->transcribe(silence());
    QVERIFY(log.take().value(0).startsWith(QLatin1String("transcriptionReady(")));
}

void tst_WhisperModel::doesNotFreeWithoutAModel()
{
    std::make_unique<WhisperWorker>().reset();
    QCOMPARE(WhisperStandIn::calls(), QStringList());
    auto worker = loaded();
    WhisperStandIn::reset();
    worker.reset();
    QCOMPARE(WhisperStandIn::calls(), QStringList {QStringLiteral("free")});
}

void tst_WhisperModel::loadWaitsForATranscription()
{
    if (!Contender::canBeWatched()) {
        QSKIP("needs /proc");
    }
    const auto worker = loaded();
    const QString other = model(QStringLiteral("other.bin"));
    WhisperStandIn::reset();
    WhisperStandIn::hold();
    {
        const Contender transcription([&worker] { worker->transcribe(silence()); });
        WhisperStandIn::waitUntilHeld();
        const Contender load([&worker, &other] { worker->loadModel(other); });
        QTRY_VERIFY(load.waits() || load.isDone());
        const bool waited = !load.isDone();
        WhisperStandIn::letGo();
        QVERIFY(waited);
    }
    QCOMPARE(WhisperStandIn::calls(),
             (QStringList {QStringLiteral("full begins"), QStringLiteral("full ends"), QStringLiteral("free"),
                           QStringLiteral("init ") + other}));
}

void tst_WhisperModel::releasesTheMutex()
{
    // Every path releases the mutex.
    const auto worker = loaded();
    WhisperStandIn::failWith(1);
    worker->transcribe(silence());
    WhisperStandIn::failWith(0);
    WhisperStandIn::say({});
    worker->transcribe(silence());
    worker->transcribe(QByteArray());
    worker->loadModel(QStringLiteral("/nowhere"));
    worker->transcribe(silence());
    QVERIFY(worker->loadModel(model()));
}

void tst_WhisperModel::endWaitsForATranscription()
{
    if (!Contender::canBeWatched()) {
        QSKIP("needs /proc");
    }
    std::optional<WhisperWorker> worker;
    worker.emplace();
    QVERIFY(worker->loadModel(model()));
    WhisperStandIn::reset();
    WhisperStandIn::hold();
    {
        WhisperWorker *const busy = &*worker;
        const Contender transcription([busy] { busy->transcribe(silence()); });
        WhisperStandIn::waitUntilHeld();
        const Contender end([&worker] { worker.reset(); });
        QTRY_VERIFY(end.waits() || end.isDone());
        const bool waited = !end.isDone();
        WhisperStandIn::letGo();
        QVERIFY(waited);
    }
    QCOMPARE(WhisperStandIn::calls(),
             (QStringList {QStringLiteral("full begins"), QStringLiteral("full ends"), QStringLiteral("free")}));
}

REGISTER_TEST(tst_WhisperModel, QCoreApplication)
#include "tst_WhisperModel.moc"
