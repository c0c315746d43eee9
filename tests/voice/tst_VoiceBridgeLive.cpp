// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Endpointer.h"
#include "MessageLog.h"
#include "MoonshineWorker.h"
#include "NemotronStreamingWorker.h"
#include "NemotronWorker.h"
#include "SignalLog.h"
#include "TestRegistry.h"
#include "TestSetup.h"
#include "VoiceFixture.h"
#include "WhisperStandIn.h"
#include "WhisperWorker.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>

#include <mutex>

namespace
{

const QString s_modelName = QStringLiteral("sherpa-onnx-nemotron-speech-streaming-en-0.6b-560ms-int8-2026-04-25");

//! A scripted live engine. Records its calls and returns the texts that a test sets.
class ScriptedStreaming : public NemotronStreamingWorker
{
public:
    bool loadModel(const QString &modelDir) override
    {
        const std::lock_guard lock(m_mutex);
        m_calls.append(QStringLiteral("load ") + QDir(modelDir).dirName());
        m_loaded = m_loads;
        m_modelName = m_loads ? QStringLiteral("streaming model") : QString();
        return m_loads;
    }

    void startSession() override { note("start"); }

    void feedChunk(const QByteArray &chunk) override
    {
        QString partial;
        {
            const std::lock_guard lock(m_mutex);
            m_fed += chunk;
            if (m_partials.isEmpty()) {
                return;
            }
            partial = m_partials.takeFirst();
        }
        Q_EMIT partialReady(partial);
    }

    void finalizeSession() override
    {
        note("finalize");
        if (m_fails) {
            Q_EMIT transcriptionFailed(QStringLiteral("engine gave up"));
        } else {
            Q_EMIT transcriptionReady(QStringLiteral("open the dolphine."), 12.5);
        }
    }

    void cancelSession() override { note("cancel"); }

    QStringList calls() const
    {
        const std::lock_guard lock(m_mutex);
        return m_calls;
    }
    QByteArray fed() const
    {
        const std::lock_guard lock(m_mutex);
        return m_fed;
    }

    // Must be set before the first use.
    bool m_loads = true;
    bool m_fails = false;
    QStringList m_partials;

private:
    void note(const char *call)
    {
        const std::lock_guard lock(m_mutex);
        m_calls.append(QLatin1String(call));
    }

    mutable std::mutex m_mutex;
    QStringList m_calls;
    QByteArray m_fed;
};

//! A VoiceBridge with a scripted live engine.
struct Fixture
{
    explicit Fixture(bool available = true)
    {
        auto worker = std::make_unique<ScriptedStreaming>();
        streaming = worker.get();
        VoiceParts parts = VoiceFixture::parts(microphone);
        parts.streaming = std::move(worker);
        parts.liveSttAvailable = available;
        voice = std::make_unique<VoiceBridge>(std::move(parts));
        voice->setSilenceTimeoutMs(200);
        voice->setVoiceLogEnabled(true);
    }

    void hearSentence()
    {
        microphone.hear(2, ScriptedMicrophone::Quiet);
        microphone.hear(5, ScriptedMicrophone::Loud);
        microphone.hear(4, ScriptedMicrophone::Quiet);
    }

    QStringList log() const { return VoiceFixture::logEntries(*voice); }

    MessageLog messages;
    ScriptedMicrophone microphone;
    ScriptedStreaming *streaming = nullptr;
    std::unique_ptr<VoiceBridge> voice;
};

//! The directory of the live model in the test's home.
class StreamingModel
{
public:
    StreamingModel() { QDir().mkpath(path()); }
    ~StreamingModel() { QDir().rmdir(path()); }

private:
    static QString path()
    {
        return QDir::homePath() + QStringLiteral("/.local/share/tovi-forkeldaos/models/") + s_modelName;
    }
};

} // namespace

//! Live transcription, with a scripted engine because the program has none.
class tst_VoiceBridgeLive : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void workerWithoutAnEngine();
    void showsWordsWhileTheyAreSpoken();
    void loadsTheModelOnce();
    void takesUpALoadedModel();
    void failsInTheEngine();
    void failsToLoad();
    void missingModelIsSilent();
    void noSpeechCancelsTheSession();
    void cancels();
    void cancelsAfterSpeech();
    void cancelsBeforeTheSession();
    void batchIfForced();
    void batchIfChosen();
    void batchWithoutAnEngine();
    void laterBatchKeepsTheStreamingModel();
};

void tst_VoiceBridgeLive::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_VoiceBridgeLive::init()
{
    TestSetup::clearSettings();
    WhisperStandIn::reset();
}

void tst_VoiceBridgeLive::workerWithoutAnEngine()
{
    MessageLog messages;
    NemotronStreamingWorker worker;
    SignalLog emitted(&worker);
    QVERIFY(!worker.loadModel(QDir::homePath()));
    QVERIFY(!worker.isLoaded());
    QCOMPARE(worker.modelName(), QString());
    worker.startSession();
    worker.feedChunk(QByteArray(Pcm::ChunkBytes, 1));
    worker.finalizeSession();
    worker.cancelSession();
    QCOMPARE(emitted.entries(), QStringList());
    QCOMPARE(messages.warnings(),
             QStringList {QStringLiteral("NemotronStreamingWorker: built without HAVE_SHERPA_ONNX")});
}

void tst_VoiceBridgeLive::showsWordsWhileTheyAreSpoken()
{
    const StreamingModel model;
    Fixture fixture;
    fixture.streaming->m_partials =
        QStringList {QStringLiteral("open"), QStringLiteral("open"), QStringLiteral("open dolphine")};
    QVERIFY(fixture.voice->liveSttAvailable());
    QVERIFY(fixture.messages.has(QtDebugMsg, QStringLiteral("VoiceBridge: live STT available: true")));
    QSignalSpy partials(fixture.voice.get(), &VoiceBridge::partialTranscriptChanged);
    QStringList shown;
    connect(fixture.voice.get(), &VoiceBridge::partialTranscriptChanged, this,
            [&] { shown.append(fixture.voice->partialTranscript()); });
    fixture.hearSentence();
    fixture.voice->startListening();
    QTRY_COMPARE(fixture.voice->lastTranscript(), QStringLiteral("open the Dolphin"));

    // Cleared at the start and at the end. In between, corrected and only updated by changes.
    QCOMPARE(shown, (QStringList {QString(), QStringLiteral("open"), QStringLiteral("open Dolphin"), QString()}));
    QCOMPARE(fixture.voice->lastTranscriptionMs(), 12.5);
    QCOMPARE(
        fixture.streaming->calls(),
        (QStringList {QStringLiteral("load ") + s_modelName, QStringLiteral("start"), QStringLiteral("finalize")}));
    // All chunks, including silence.
    QCOMPARE(fixture.streaming->fed().size(), (2 + 5 + 4) * Pcm::ChunkBytes);
    const QStringList log = fixture.log();
    QCOMPARE(log.mid(0, 3),
             (QStringList {
                 QStringLiteral("START listening  mode=live  backend=whisper-small-q5  silenceTimeout=200ms"),
                 QStringLiteral("CAPTURE done  audio=500ms  samples=0"),
                 QStringLiteral("TRANSCRIBING (live finalize)"),
             }));
    QVERIFY(fixture.messages.has(
        QtDebugMsg, QStringLiteral("VoiceBridge: live Nemotron streaming model loaded \"streaming model\"")));
    QCOMPARE(fixture.voice->modelName(), QStringLiteral("streaming model"));
    QVERIFY(!fixture.voice->isTranscribing());
}

void tst_VoiceBridgeLive::loadsTheModelOnce()
{
    const StreamingModel model;
    Fixture fixture;
    QSignalSpy transcripts(fixture.voice.get(), &VoiceBridge::transcriptReady);
    for (int round = 1; round <= 2; ++round) {
        fixture.hearSentence();
        fixture.voice->startListening();
        QTRY_COMPARE(transcripts.size(), round);
    }
    QCOMPARE(fixture.streaming->calls().filter(QStringLiteral("load")).size(), 1);
    QCOMPARE(fixture.streaming->calls().count(QStringLiteral("start")), 2);
}

void tst_VoiceBridgeLive::takesUpALoadedModel()
{
    const StreamingModel model;
    Fixture fixture;
    fixture.hearSentence();
    fixture.voice->startListening();
    QTRY_VERIFY(!fixture.voice->lastTranscript().isEmpty());
    QVERIFY(!fixture.voice->loadModel()); // no whisper model is installed
    QVERIFY(!fixture.voice->isModelLoaded());
    fixture.voice->startListening();
    QVERIFY(fixture.voice->isModelLoaded());
    QCOMPARE(fixture.voice->modelName(), QStringLiteral("streaming model"));
    QCOMPARE(fixture.streaming->calls().filter(QStringLiteral("load")).size(), 1);
}

void tst_VoiceBridgeLive::failsInTheEngine()
{
    const StreamingModel model;
    Fixture fixture;
    fixture.streaming->m_fails = true;
    fixture.hearSentence();
    fixture.voice->startListening();
    QTRY_COMPARE(fixture.voice->lastError(), QStringLiteral("engine gave up"));
    QVERIFY(!fixture.voice->isTranscribing());
    QCOMPARE(fixture.log().constLast(), QStringLiteral("ERROR engine gave up"));
}

void tst_VoiceBridgeLive::failsToLoad()
{
    const StreamingModel model;
    Fixture fixture;
    fixture.streaming->m_loads = false;
    QSignalSpy errors(fixture.voice.get(), &VoiceBridge::errorOccurred);
    fixture.voice->startListening();
    QCOMPARE(errors.size(), 1);
    QCOMPARE(errors.constFirst().constFirst().toString(), QStringLiteral("Failed to load Nemotron streaming model"));
    QVERIFY(!fixture.voice->isListening());
    QCOMPARE(fixture.microphone.openStreams(), 0);
}

void tst_VoiceBridgeLive::missingModelIsSilent()
{
    Fixture fixture;
    SignalLog emitted(fixture.voice.get());
    fixture.voice->startListening();
    QCOMPARE(emitted.entries(), QStringList {QStringLiteral("voiceLogChanged()")}); // START
    QVERIFY(!fixture.voice->isListening());
    QCOMPARE(fixture.streaming->calls(), QStringList());
}

void tst_VoiceBridgeLive::noSpeechCancelsTheSession()
{
    const StreamingModel model;
    Fixture fixture;
    QSignalSpy errors(fixture.voice.get(), &VoiceBridge::errorOccurred);
    fixture.voice->startListening();
    QTRY_VERIFY(fixture.microphone.chunksRead() >= 2);
    fixture.voice->stopListening();
    QTRY_COMPARE(errors.size(), 1);
    QTRY_COMPARE(fixture.streaming->calls().constLast(), QStringLiteral("cancel"));
    QVERIFY(!fixture.voice->isTranscribing());
}

void tst_VoiceBridgeLive::cancels()
{
    const StreamingModel model;
    Fixture fixture;
    fixture.streaming->m_partials = QStringList {QStringLiteral("open")};
    fixture.voice->startListening();
    QTRY_COMPARE(fixture.voice->partialTranscript(), QStringLiteral("open"));
    SignalLog emitted(fixture.voice.get());
    fixture.voice->cancelListening();
    QCOMPARE(emitted.entries(),
             (QStringList {QStringLiteral("inputLevelChanged()"), QStringLiteral("partialTranscriptChanged()"),
                           QStringLiteral("listeningChanged()")}));
    QCOMPARE(fixture.voice->partialTranscript(), QString());
    QTRY_COMPARE(fixture.streaming->calls().constLast(), QStringLiteral("cancel"));
}

void tst_VoiceBridgeLive::cancelsAfterSpeech()
{
    const StreamingModel model;
    Fixture fixture;
    fixture.microphone.hear(3, ScriptedMicrophone::Loud);
    fixture.voice->setSilenceTimeoutMs(5000);
    fixture.voice->startListening();
    QTRY_VERIFY(fixture.microphone.chunksRead() >= 4);
    fixture.voice->cancelListening();
    QVERIFY(!fixture.voice->isListening());
    // The end of the capture was already queued. It starts a transcription, which the engine ends.
    QTRY_COMPARE(fixture.voice->lastTranscript(), QStringLiteral("open the Dolphin"));
    QCOMPARE(fixture.streaming->calls().mid(2), (QStringList {QStringLiteral("cancel"), QStringLiteral("finalize")}));
    QVERIFY(!fixture.voice->isTranscribing());
}

void tst_VoiceBridgeLive::cancelsBeforeTheSession()
{
    const StreamingModel model;
    Fixture fixture;
    connect(fixture.voice.get(), &VoiceBridge::partialTranscriptChanged, fixture.voice.get(),
            &VoiceBridge::cancelListening);
    fixture.voice->startListening();
    QVERIFY(!fixture.voice->isListening());
    QCOMPARE(fixture.microphone.openStreams(), 0);
    QTRY_COMPARE(fixture.streaming->calls().constLast(), QStringLiteral("cancel"));
    QVERIFY(!fixture.streaming->calls().contains(QStringLiteral("start")));
}

void tst_VoiceBridgeLive::batchIfForced()
{
    const StreamingModel model;
    const WhisperModelFile whisper;
    Fixture fixture;
    fixture.voice->setBatchSttMode(true);
    fixture.hearSentence();
    fixture.voice->startListening();
    QTRY_COMPARE(fixture.voice->lastTranscript(), QStringLiteral("stand-in"));
    QVERIFY(fixture.log().constFirst().contains(QStringLiteral("mode=batch")));
    QCOMPARE(fixture.streaming->calls(), QStringList());
    QCOMPARE(fixture.streaming->fed(), QByteArray());
}

void tst_VoiceBridgeLive::batchIfChosen()
{
    const StreamingModel model;
    const WhisperModelFile whisper;
    Fixture fixture;
    fixture.voice->setSttInputMode(QStringLiteral("batch"));
    fixture.hearSentence();
    fixture.voice->startListening();
    QTRY_COMPARE(fixture.voice->lastTranscript(), QStringLiteral("stand-in"));
    QCOMPARE(fixture.streaming->calls(), QStringList());
}

void tst_VoiceBridgeLive::batchWithoutAnEngine()
{
    const StreamingModel model;
    const WhisperModelFile whisper;
    Fixture fixture(false);
    QCOMPARE(fixture.voice->sttInputMode(), QStringLiteral("live"));
    fixture.voice->startListening();
    QVERIFY(fixture.log().constLast().contains(QStringLiteral("mode=batch")));
    // Intentional: cancels the session of a batch capture, too, although there is none.
    fixture.voice->cancelListening();
    QTRY_COMPARE(fixture.streaming->calls(), QStringList {QStringLiteral("cancel")});
}

void tst_VoiceBridgeLive::laterBatchKeepsTheStreamingModel()
{
    const StreamingModel model;
    const WhisperModelFile whisper;
    Fixture fixture;
    fixture.hearSentence();
    fixture.voice->startListening();
    QTRY_VERIFY(!fixture.voice->lastTranscript().isEmpty());
    fixture.voice->setSttInputMode(QStringLiteral("batch"));
    fixture.hearSentence();
    fixture.voice->startListening();
    // Intentional: the streaming model counts as loaded, so that no whisper model is loaded.
    QTRY_COMPARE(fixture.voice->lastError(), QStringLiteral("Model not loaded"));
    QVERIFY(!WhisperStandIn::calls().contains(QStringLiteral("init ") + whisper.path()));
}

REGISTER_TEST(tst_VoiceBridgeLive, QCoreApplication)

#include "tst_VoiceBridgeLive.moc"
