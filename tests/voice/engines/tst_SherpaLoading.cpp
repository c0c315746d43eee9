// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SherpaWorkerFixture.h"
#include "TestRegistry.h"

#include <QFile>
#include <QTest>

using namespace std::chrono_literals;

//! Finding and loading the program and the model, and the messages about that.
class tst_SherpaLoading : public SherpaWorkerFixture
{
    Q_OBJECT

private Q_SLOTS:
    void reportsAvailability_data() { EngineUnderTest::addRows(); }
    void reportsAvailability();
    void searchesTheModel_data() { EngineUnderTest::addRows(); }
    void searchesTheModel();
    void loads_data() { EngineUnderTest::addRows(); }
    void loads();
    void loadsFromAnywhere_data() { EngineUnderTest::addRows(); }
    void loadsFromAnywhere();
    void needsTheProgram_data() { EngineUnderTest::addRows(); }
    void needsTheProgram();
    void needsTheDirectory_data() { EngineUnderTest::addRows(); }
    void needsTheDirectory();
    void needsEachFile_data();
    void needsEachFile();
    void unloadsTheOldModel_data() { EngineUnderTest::addRows(); }
    void unloadsTheOldModel();
    void textsForTheUser();
    void timeouts();

private:
    //! The name of the worker in the log.
    static QString worker(const EngineUnderTest *tested) { return tested->name + QStringLiteral("Worker"); }
};

void tst_SherpaLoading::reportsAvailability()
{
    QFETCH(const EngineUnderTest *, tested);
    const std::unique_ptr<SherpaWorker> worker = tested->worker();
    const auto shown = [&] {
        const SherpaWorker::Availability there = worker->availability(isolatedRoots());
        return QList<bool> {there.program, there.model, there.available()};
    };
    QCOMPARE(shown(), (QList<bool> {false, false, false}));
    m_standIn.emplace(tested->engine);
    QCOMPARE(shown(), (QList<bool> {true, true, true}));
    // Only the directory counts, not its content.
    QVERIFY(QFile::remove(m_standIn->modelDir() + QLatin1Char('/') + m_standIn->modelFiles().first()));
    QCOMPARE(shown(), (QList<bool> {true, true, true}));
    QVERIFY(QDir(m_standIn->modelDir()).removeRecursively());
    QCOMPARE(shown(), (QList<bool> {true, false, false}));
    QVERIFY(QDir().mkpath(m_standIn->modelDir()));
    QVERIFY(QDir(m_standIn->libDir()).removeRecursively());
    QCOMPARE(shown(), (QList<bool> {false, true, false}));
    QVERIFY(QDir().mkpath(m_standIn->libDir()));
    QVERIFY(QFile::setPermissions(m_standIn->program(), QFile::ReadOwner | QFile::WriteOwner));
    QCOMPARE(shown(), (QList<bool> {false, true, false}));
}

void tst_SherpaLoading::searchesTheModel()
{
    QFETCH(const EngineUnderTest *, tested);
    m_standIn.emplace(tested->engine);
    const std::unique_ptr<SherpaWorker> worker = tested->worker();
    QCOMPARE(worker->resolveModelDir(QString(), isolatedRoots()), m_standIn->modelDir());
    QCOMPARE(worker->resolveModelDir(m_standIn->libDir(), isolatedRoots()), m_standIn->libDir());
    QCOMPARE(worker->resolveModelDir(m_standIn->program(), isolatedRoots()), m_standIn->modelDir());
}

void tst_SherpaLoading::loads()
{
    QFETCH(const EngineUnderTest *, tested);
    m_standIn.emplace(tested->engine);
    const std::unique_ptr<SherpaWorker> worker = tested->worker();
    QVERIFY(!worker->isLoaded());
    QCOMPARE(worker->modelName(), QString());

    QVERIFY(worker->load(m_standIn->modelDir(), isolatedRoots()));
    QVERIFY(worker->isLoaded());
    QCOMPARE(worker->modelName(), m_standIn->modelDir().section(QLatin1Char('/'), -1));
    QVERIFY(m_log->has(QtDebugMsg,
                       QStringLiteral("%1: loaded \"%2\" sherpa: \"%3\"")
                           .arg(this->worker(tested), worker->modelName(), m_standIn->program())));
    // Loading doesn't run the program.
    QCOMPARE(m_standIn->runs(), 0);
}

void tst_SherpaLoading::loadsFromAnywhere()
{
    QFETCH(const EngineUnderTest *, tested);
    m_standIn.emplace(tested->engine);
    m_standIn->says(QStringLiteral("open"));
    const QTemporaryDir home(QDir::homePath() + QStringLiteral("/XXXXXX"));
    const QString mine = home.filePath(QStringLiteral("my %1 'model'"));
    QVERIFY(QFile::rename(m_standIn->modelDir(), mine));
    const std::unique_ptr<SherpaWorker> worker = tested->worker();
    QVERIFY(worker->load(mine + QLatin1Char('/'), isolatedRoots()));
    QCOMPARE(worker->modelName(), QStringLiteral("my %1 'model'"));
    QCOMPARE(outcomesOf(*worker, s_audio), ready("open"));
    QVERIFY(m_standIn->arguments().at(2).endsWith(QLatin1Char('=') + mine + QLatin1Char('/')
                                                  + m_standIn->modelFiles().at(2)));
}

void tst_SherpaLoading::needsTheProgram()
{
    QFETCH(const EngineUnderTest *, tested);
    m_standIn.emplace(tested->engine);
    QVERIFY(QFile::remove(m_standIn->program()));
    const std::unique_ptr<SherpaWorker> worker = tested->worker();
    QVERIFY(!worker->load(m_standIn->modelDir(), isolatedRoots()));
    QVERIFY(!worker->isLoaded());
    const QStringList warning {QStringLiteral("%1: %2 not found").arg(this->worker(tested), tested->program)};
    QCOMPARE(m_log->takeWarnings(), warning);
    // The program is checked first.
    QVERIFY(!worker->load(QStringLiteral("/nonexistent"), isolatedRoots()));
    QCOMPARE(m_log->takeWarnings(), warning);
}

void tst_SherpaLoading::needsTheDirectory()
{
    QFETCH(const EngineUnderTest *, tested);
    m_standIn.emplace(tested->engine);
    const std::unique_ptr<SherpaWorker> worker = tested->worker();
    for (const QString &dir : {QStringLiteral("/nonexistent/model"), m_standIn->program(), QString()}) {
        QVERIFY(!worker->load(dir, isolatedRoots()));
        QVERIFY(!worker->isLoaded());
        QCOMPARE(m_log->takeWarnings(),
                 QStringList {QStringLiteral("%1: model dir missing: \"%2\"").arg(this->worker(tested), dir)});
    }
}

void tst_SherpaLoading::needsEachFile_data()
{
    QTest::addColumn<const EngineUnderTest *>("tested");
    QTest::addColumn<QString>("file");
    for (const EngineUnderTest *tested : EngineUnderTest::both()) {
        for (const QString &file : SherpaStandIn(tested->engine).modelFiles()) {
            QTest::addRow("%s: %s", qPrintable(tested->name), qPrintable(file)) << tested << file;
        }
    }
}

void tst_SherpaLoading::needsEachFile()
{
    QFETCH(const EngineUnderTest *, tested);
    QFETCH(QString, file);
    m_standIn.emplace(tested->engine);
    const std::unique_ptr<SherpaWorker> worker = tested->worker();
    QVERIFY(QFile::remove(m_standIn->modelDir() + QLatin1Char('/') + file));
    QVERIFY(!worker->load(m_standIn->modelDir(), isolatedRoots()));
    QVERIFY(!worker->isLoaded());
    QCOMPARE(worker->modelName(), QString());
    QCOMPARE(m_log->takeWarnings(),
             QStringList {
                 QStringLiteral("%1: incomplete model in \"%2\"").arg(this->worker(tested), m_standIn->modelDir())});
}

void tst_SherpaLoading::unloadsTheOldModel()
{
    QFETCH(const EngineUnderTest *, tested);
    const std::unique_ptr<SherpaWorker> worker = loaded(tested);
    QVERIFY(worker->isLoaded());
    QVERIFY(!worker->load(QStringLiteral("/nonexistent"), isolatedRoots()));
    QCOMPARE(m_log->takeWarnings().size(), 1);
    QVERIFY(!worker->isLoaded());
    QCOMPARE(worker->modelName(), QString());
    QCOMPARE(outcomesOf(*worker, s_audio), failed(tested->name + QStringLiteral(" model not loaded")));
}

void tst_SherpaLoading::textsForTheUser()
{
    const SherpaEngine &moonshine = SherpaEngine::moonshine();
    QCOMPARE(QString(moonshine.unavailable),
             QStringLiteral("Moonshine unavailable. Install sherpa-onnx-offline and download the tiny-en model (see "
                            "~/experiments/whisper-voice-test/setup-moonshine.sh)"));
    QCOMPARE(QString(moonshine.dirNotFound), QStringLiteral("Moonshine model dir not found"));
    QCOMPARE(QString(moonshine.loadFailed), QStringLiteral("Failed to load Moonshine model: "));
    QCOMPARE(moonshine.loading, "VoiceBridge: loading moonshine model");
    QCOMPARE(moonshine.available, "VoiceBridge: moonshine available:");

    const SherpaEngine &nemotron = SherpaEngine::nemotron();
    QCOMPARE(QString(nemotron.unavailable),
             QStringLiteral("Nemotron unavailable. Install sherpa-onnx and download the 560ms INT8 model (see "
                            "~/experiments/whisper-voice-test/setup-nemotron.sh)"));
    QCOMPARE(QString(nemotron.dirNotFound), QStringLiteral("Nemotron model dir not found"));
    QCOMPARE(QString(nemotron.loadFailed), QStringLiteral("Failed to load Nemotron model: "));
    QCOMPARE(nemotron.loading, "VoiceBridge: loading nemotron model");
    QCOMPARE(nemotron.available, "VoiceBridge: nemotron available:");
}

void tst_SherpaLoading::timeouts()
{
    QVERIFY(SherpaWorker::StartTimeout == 5s);
    QVERIFY(SherpaWorker::KillTimeout == 10s);
    QVERIFY(SherpaEngine::moonshine().runTimeout == 120s);
    QVERIFY(SherpaEngine::nemotron().runTimeout == 180s);
    QCOMPARE(&EngineUnderTest::moonshine().worker()->engine(), &SherpaEngine::moonshine());
    QCOMPARE(&EngineUnderTest::nemotron().worker()->engine(), &SherpaEngine::nemotron());
}

REGISTER_TEST(tst_SherpaLoading, QCoreApplication)
#include "tst_SherpaLoading.moc"
