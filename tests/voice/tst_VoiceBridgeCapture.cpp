// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Endpointer.h"
#include "MessageLog.h"
#include "SignalLog.h"
#include "TestRegistry.h"
#include "TestSetup.h"
#include "VoiceFixture.h"
#include "WhisperStandIn.h"

#include <QSettings>
#include <QSignalSpy>
#include <QTest>

#include <utility>

using namespace std::chrono_literals;
using Afterwards = ScriptedMicrophone::Afterwards;

namespace
{

const QString s_start = QStringLiteral("START listening  mode=batch  backend=whisper-small-q5  silenceTimeout=200ms");
const QString s_noSpeech = QStringLiteral("No speech detected");

constexpr int s_silenceChunks = ListeningFixture::SilenceChunks;

QString silenceAfter(std::chrono::milliseconds audio)
{
    return QStringLiteral("SILENCE  no speech detected after %1 ms").arg(audio.count());
}

//! The entries without the level's signal, which occurs a varying number of times.
QStringList withoutLevel(const QStringList &entries)
{
    QStringList rest = entries;
    rest.removeAll(QStringLiteral("inputLevelChanged()"));
    return rest;
}

} // namespace

//! Captures, from the microphone to the engine.
class tst_VoiceBridgeCapture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void capturesASentence();
    void passesTheUtteranceToTheEngine();
    void startsOnlyWhenIdle();
    void stopKeepsTheSamples();
    void stopBeforeSpeech();
    void stopWhenIdleDoesNothing();
    void cutsAtTheLimit();
    void quietRoomEndsAtTheLimit();
    void storedTimeoutBelowMinimumIsOneChunk();
    void brokenMicrophoneEndsAsIfStopped();
    void brokenMicrophoneBeforeSpeech();
    void microphoneThatCannotBeOpened();
    void missingModel();
    void reportsTheLevel();
    void cancelsWhileListening();
    void cancelsWhileTranscribing();
    void cancelsWhenIdle();
    void restartsInTheSameEventLoopTurn();
    void failsToRestartInTheSameEventLoopTurn();
    void restartsInASlotOfTheEnd();
    void cancelsInASlotOfTheStart();
    void restartsInASlotOfTheStart();
};

void tst_VoiceBridgeCapture::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_VoiceBridgeCapture::init()
{
    TestSetup::clearSettings();
    WhisperStandIn::reset();
    WhisperStandIn::say({QByteArray("hello world")});
}

void tst_VoiceBridgeCapture::capturesASentence()
{
    ListeningFixture fixture;
    SignalLog emitted(fixture.voice.get());
    fixture.microphone.hear(3, ScriptedMicrophone::Quiet);
    fixture.hearSentence();
    fixture.voice->startListening();
    QVERIFY(fixture.voice->isListening());
    QVERIFY(fixture.voice->isModelLoaded());
    QTRY_COMPARE(fixture.voice->lastTranscript(), QStringLiteral("hello world"));

    QVERIFY(!fixture.voice->isListening());
    QVERIFY(!fixture.voice->isTranscribing());
    QCOMPARE(fixture.microphone.openStreams(), 0);
    // 3 quiet, 5 loud and 4 quiet chunks, the last of which isn't counted. The first three aren't stored.
    const QString samples = QString::number((5 + s_silenceChunks) * Pcm::ChunkSamples);
    const QStringList log = fixture.log();
    QCOMPARE(log.mid(0, 3),
             (QStringList {s_start, QStringLiteral("CAPTURE done  audio=550ms  samples=%1").arg(samples),
                           QStringLiteral("TRANSCRIBING (batch)  backend=whisper-small-q5")}));
    QCOMPARE(log.size(), 4);
    QVERIFY(log.constLast().startsWith(QStringLiteral("TRANSCRIPT \"hello world\"  latency=")));

    QStringList events = withoutLevel(emitted.entries());
    events.removeAll(QStringLiteral("voiceLogChanged()"));
    // Another test compares the audio.
    QCOMPARE(events.filter(QStringLiteral("requestTranscription(")).size(), 1);
    events = events.filter(QRegularExpression(QStringLiteral("^(?!requestTranscription)")));
    QCOMPARE(events,
             (QStringList {
                 QStringLiteral("modelLoadedChanged()"), // cleared
                 QStringLiteral("modelLoadedChanged()"),
                 QStringLiteral("listeningChanged()"),
                 QStringLiteral("listeningChanged()"),
                 QStringLiteral("transcribingChanged()"),
                 QStringLiteral("transcribingChanged()"),
                 QStringLiteral("partialTranscriptChanged()"),
                 QStringLiteral("transcriptReady(\"hello world\")"),
             }));
}

void tst_VoiceBridgeCapture::passesTheUtteranceToTheEngine()
{
    ListeningFixture fixture;
    QSignalSpy requests(fixture.voice.get(), &VoiceBridge::requestTranscription);
    fixture.microphone.hear(2, 7); // below the threshold
    fixture.microphone.hear(1, 1000);
    fixture.microphone.hear(1, -2000);
    fixture.microphone.hear(s_silenceChunks, 9);
    fixture.voice->startListening();
    QTRY_COMPARE(requests.size(), 1);

    QByteArray expected;
    for (const qint16 sample : {1000, -2000, 9, 9, 9, 9}) {
        for (int i = 0; i < Pcm::ChunkSamples; ++i) {
            expected.append(char(sample & 0xff)).append(char((sample >> 8) & 0xff));
        }
    }
    QCOMPARE(requests.constFirst().constFirst().toByteArray(), expected);
    QTRY_VERIFY(!fixture.voice->isTranscribing());
}

void tst_VoiceBridgeCapture::startsOnlyWhenIdle()
{
    ListeningFixture fixture;
    fixture.voice->startListening();
    QVERIFY(fixture.voice->isListening());
    const auto doesNothing = [&fixture] {
        SignalLog emitted(fixture.voice.get());
        const QStringList log = fixture.log();
        fixture.voice->startListening();
        return emitted.entries().isEmpty() && fixture.log() == log && fixture.microphone.openStreams() <= 1;
    };
    QVERIFY(doesNothing());

    const WhisperStandIn::Held held;
    fixture.hearSentence();
    QTRY_VERIFY(fixture.voice->isTranscribing());
    QVERIFY(doesNothing());
    QCOMPARE(fixture.microphone.openStreams(), 0);
    WhisperStandIn::letGo();
    QTRY_VERIFY(!fixture.voice->isTranscribing());
    QCOMPARE(fixture.log().count(s_start), 1);
}

void tst_VoiceBridgeCapture::stopKeepsTheSamples()
{
    ListeningFixture fixture(Afterwards::Talks);
    fixture.microphone.hear(5, ScriptedMicrophone::Loud);
    fixture.voice->startListening();
    QTRY_VERIFY(fixture.microphone.chunksRead() >= 7);
    QVERIFY(fixture.voice->isListening());
    fixture.voice->stopListening();
    QVERIFY(fixture.voice->isListening()); // the capture ends asynchronously
    QTRY_COMPARE(fixture.voice->lastTranscript(), QStringLiteral("hello world"));
    const int chunks = fixture.microphone.chunksRead();
    QVERIFY(fixture.log().contains(QStringLiteral("CAPTURE done  audio=%1ms  samples=%2")
                                       .arg((chunks * Pcm::ChunkDuration).count())
                                       .arg(chunks * Pcm::ChunkSamples)));
}

void tst_VoiceBridgeCapture::stopBeforeSpeech()
{
    ListeningFixture fixture;
    fixture.voice->startListening();
    QTRY_VERIFY(fixture.microphone.chunksRead() >= 3);
    SignalLog emitted(fixture.voice.get());
    fixture.voice->stopListening();
    QTRY_VERIFY(!fixture.voice->isListening());
    QCOMPARE(fixture.log(),
             (QStringList {s_start, silenceAfter(fixture.microphone.chunksRead() * Pcm::ChunkDuration)}));
    QCOMPARE(
        withoutLevel(emitted.entries()),
        (QStringList {QStringLiteral("listeningChanged()"), QStringLiteral("partialTranscriptChanged()"),
                      QStringLiteral("voiceLogChanged()"), QStringLiteral("errorOccurred(\"No speech detected\")")}));
    QCOMPARE(fixture.voice->lastError(), QString());
    QVERIFY(!fixture.voice->isTranscribing());
}

void tst_VoiceBridgeCapture::stopWhenIdleDoesNothing()
{
    ListeningFixture fixture;
    SignalLog emitted(fixture.voice.get());
    fixture.voice->stopListening();
    QCoreApplication::processEvents();
    QCOMPARE(emitted.entries(), QStringList());
}

void tst_VoiceBridgeCapture::cutsAtTheLimit()
{
    ListeningFixture fixture;
    fixture.microphone.hear(20, ScriptedMicrophone::Quiet);
    fixture.microphone.hear(700, ScriptedMicrophone::Loud);
    fixture.voice->startListening();
    QTRY_COMPARE(fixture.voice->lastTranscript(), QStringLiteral("hello world"));
    QVERIFY(
        fixture.log().contains(QStringLiteral("CAPTURE done  audio=30000ms  samples=%1").arg(580 * Pcm::ChunkSamples)));
    QCOMPARE(WhisperStandIn::lastTranscription().samples.size(), std::size_t(580 * Pcm::ChunkSamples));
}

void tst_VoiceBridgeCapture::quietRoomEndsAtTheLimit()
{
    ListeningFixture fixture;
    QSignalSpy errors(fixture.voice.get(), &VoiceBridge::errorOccurred);
    fixture.microphone.hear(600, ScriptedMicrophone::Quiet);
    fixture.voice->startListening();
    QTRY_COMPARE(errors.size(), 1);
    QCOMPARE(errors.constFirst().constFirst().toString(), s_noSpeech);
    QCOMPARE(fixture.log(), (QStringList {s_start, silenceAfter(30s)}));
}

void tst_VoiceBridgeCapture::storedTimeoutBelowMinimumIsOneChunk()
{
    QSettings().setValue(QStringLiteral("voice/silenceTimeoutMs"), 20);
    MessageLog messages;
    const WhisperModelFile model;
    ScriptedMicrophone microphone;
    VoiceBridge voice(VoiceFixture::parts(microphone));
    QSignalSpy requests(&voice, &VoiceBridge::requestTranscription);
    microphone.hear(2, ScriptedMicrophone::Loud);
    voice.startListening();
    QTRY_COMPARE(requests.size(), 1);
    QCOMPARE(requests.constFirst().constFirst().toByteArray().size(), 3 * Pcm::ChunkBytes);
    QTRY_VERIFY(!voice.isTranscribing());
}

void tst_VoiceBridgeCapture::brokenMicrophoneEndsAsIfStopped()
{
    ListeningFixture fixture;
    QSignalSpy errors(fixture.voice.get(), &VoiceBridge::errorOccurred);
    fixture.microphone.hear(6, ScriptedMicrophone::Loud);
    fixture.microphone.breakDown();
    fixture.voice->startListening();
    QTRY_COMPARE(fixture.voice->lastTranscript(), QStringLiteral("hello world"));
    QVERIFY(fixture.log().contains(QStringLiteral("CAPTURE done  audio=300ms  samples=4800")));
    QCOMPARE(errors.size(), 0);
}

void tst_VoiceBridgeCapture::brokenMicrophoneBeforeSpeech()
{
    ListeningFixture fixture;
    QSignalSpy errors(fixture.voice.get(), &VoiceBridge::errorOccurred);
    fixture.microphone.breakDown();
    fixture.voice->startListening();
    QTRY_COMPARE(errors.size(), 1);
    QCOMPARE(fixture.log(), (QStringList {s_start, silenceAfter(0s)}));
    QVERIFY(!fixture.voice->isListening());
}

void tst_VoiceBridgeCapture::microphoneThatCannotBeOpened()
{
    MessageLog messages;
    const WhisperModelFile model;
    int attempts = 0;
    VoiceParts parts = VoiceFixture::parts();
    parts.openMicrophone = [&attempts](QString *reason) -> std::unique_ptr<Microphone> {
        ++attempts;
        *reason = QStringLiteral("Kein Gerät %1");
        return nullptr;
    };
    VoiceBridge voice(std::move(parts));
    voice.setVoiceLogEnabled(true);
    QVERIFY(voice.loadModel());
    SignalLog emitted(&voice);
    voice.startListening();
    QCOMPARE(emitted.take(),
             (QStringList {QStringLiteral("voiceLogChanged()"), QStringLiteral("listeningChanged()"),
                           QStringLiteral("errorOccurred(\"Cannot open microphone: Kein Gerät %1\")")}));
    QCOMPARE(voice.lastError(), QString());

    // There is no second attempt until the user cancels.
    QVERIFY(voice.isListening());
    voice.startListening();
    voice.stopListening();
    QCOMPARE(attempts, 1);
    QCOMPARE(emitted.take(), QStringList());
    voice.cancelListening();
    QVERIFY(!voice.isListening());
    QCOMPARE(withoutLevel(emitted.take()), QStringList {QStringLiteral("listeningChanged()")});
    voice.startListening();
    QCOMPARE(attempts, 2);
}

void tst_VoiceBridgeCapture::missingModel()
{
    MessageLog messages;
    ScriptedMicrophone microphone;
    VoiceBridge voice(VoiceFixture::parts(microphone));
    voice.setVoiceLogEnabled(true);
    SignalLog emitted(&voice);
    voice.startListening();
    QVERIFY(!voice.isListening());
    QCOMPARE(microphone.openStreams(), 0);
    QCOMPARE(emitted.entries(),
             (QStringList {QStringLiteral("voiceLogChanged()"), QStringLiteral("modelLoadedChanged()"),
                           QStringLiteral("errorOccurred(\"Whisper model not found. Download ggml-base.en.bin to "
                                          "~/.local/share/tovi-forkeldaos/models/\")")}));
    QCOMPARE(voice.voiceLog().size(), 1); // the start was logged before
}

void tst_VoiceBridgeCapture::reportsTheLevel()
{
    ListeningFixture fixture(Afterwards::Blocks);
    QSignalSpy levels(fixture.voice.get(), &VoiceBridge::inputLevelChanged);
    fixture.microphone.hear(1, 16384);
    fixture.voice->startListening();
    QTRY_COMPARE(levels.size(), 1);
    QCOMPARE(fixture.voice->inputLevel(), 0.5);
    fixture.microphone.hear(4, 8192); // indexes 1 to 4
    QTRY_COMPARE(fixture.microphone.chunksRead(), 5);
    fixture.microphone.hear(1, 4096);
    QTRY_COMPARE(levels.size(), 2);
    QCOMPARE(fixture.voice->inputLevel(), 0.125);
    fixture.microphone.breakDown();
    QTRY_VERIFY(!fixture.voice->isListening());
    QCOMPARE(fixture.voice->inputLevel(), 0.0);
    QCOMPARE(levels.size(), 3);
    QTRY_VERIFY(!fixture.voice->isTranscribing());
}

void tst_VoiceBridgeCapture::cancelsWhileListening()
{
    ListeningFixture fixture(Afterwards::Talks);
    fixture.microphone.hear(3, ScriptedMicrophone::Loud);
    fixture.voice->startListening();
    QTRY_VERIFY(fixture.microphone.chunksRead() >= 3);
    QVERIFY(fixture.voice->isListening());
    SignalLog emitted(fixture.voice.get());
    QSignalSpy requests(fixture.voice.get(), &VoiceBridge::requestTranscription);
    fixture.voice->cancelListening();
    QVERIFY(!fixture.voice->isListening());
    QCOMPARE(fixture.microphone.openStreams(), 0);
    QCOMPARE(withoutLevel(emitted.take()), QStringList {QStringLiteral("listeningChanged()")});

    // The end of the thread is still delivered, and finds no samples.
    QTRY_COMPARE(emitted.entries().count(QStringLiteral("errorOccurred(\"No speech detected\")")), 1);
    QCOMPARE(emitted.entries().count(QStringLiteral("listeningChanged()")), 1);
    QVERIFY(fixture.log().constLast().startsWith(QStringLiteral("SILENCE  no speech detected after ")));
    QCOMPARE(requests.size(), 0);
    QVERIFY(!fixture.voice->isTranscribing());
}

void tst_VoiceBridgeCapture::cancelsWhileTranscribing()
{
    ListeningFixture fixture;
    const WhisperStandIn::Held held;
    fixture.hearSentence();
    fixture.voice->startListening();
    QTRY_VERIFY(fixture.voice->isTranscribing());
    WhisperStandIn::waitUntilHeld();
    SignalLog emitted(fixture.voice.get());
    fixture.voice->cancelListening();
    QVERIFY(!fixture.voice->isTranscribing());
    QCOMPARE(withoutLevel(emitted.take()), QStringList {QStringLiteral("transcribingChanged()")});
    WhisperStandIn::letGo();
    QTRY_COMPARE(fixture.voice->lastTranscript(), QStringLiteral("hello world"));
}

void tst_VoiceBridgeCapture::cancelsWhenIdle()
{
    ListeningFixture fixture;
    SignalLog emitted(fixture.voice.get());
    fixture.voice->cancelListening();
    QCoreApplication::processEvents();
    // Intentional: the level is reset anyway.
    QCOMPARE(emitted.entries(), QStringList {QStringLiteral("inputLevelChanged()")});
}

void tst_VoiceBridgeCapture::restartsInTheSameEventLoopTurn()
{
    ListeningFixture fixture(Afterwards::Talks);
    QSignalSpy errors(fixture.voice.get(), &VoiceBridge::errorOccurred);
    fixture.microphone.hear(3, ScriptedMicrophone::Loud);
    fixture.voice->startListening();
    QTRY_VERIFY(fixture.microphone.chunksRead() >= 4);
    fixture.voice->cancelListening();
    SignalLog emitted(fixture.voice.get());
    fixture.voice->startListening();
    // Now the end of the first capture is delivered. It reports its error, and the second capture continues.
    QTRY_COMPARE(errors.size(), 1);
    QCOMPARE(errors.constFirst().constFirst().toString(), s_noSpeech);
    QVERIFY(fixture.voice->isListening());
    QCOMPARE(fixture.microphone.openStreams(), 1);
    QCOMPARE(emitted.entries().count(QStringLiteral("listeningChanged()")), 1);
    const int chunks = fixture.microphone.chunksRead();
    QTRY_VERIFY(fixture.microphone.chunksRead() >= chunks + 2);
    fixture.voice->stopListening();
    QTRY_COMPARE(fixture.voice->lastTranscript(), QStringLiteral("hello world"));
    QCOMPARE(errors.size(), 1);
}

void tst_VoiceBridgeCapture::failsToRestartInTheSameEventLoopTurn()
{
    MessageLog messages;
    const WhisperModelFile model;
    ScriptedMicrophone microphone(Afterwards::Talks);
    VoiceParts parts = VoiceFixture::parts();
    bool pluggedIn = true;
    parts.openMicrophone = [&pluggedIn, open = microphone.opener()](QString *reason) {
        return pluggedIn ? open(reason) : nullptr;
    };
    VoiceBridge voice(std::move(parts));
    voice.startListening();
    QTRY_VERIFY(microphone.chunksRead() >= 3);
    pluggedIn = false;
    voice.cancelListening();
    QSignalSpy errors(&voice, &VoiceBridge::errorOccurred);
    voice.startListening();
    QCOMPARE(errors.size(), 1);
    SignalLog emitted(&voice);
    // Now the end of the first capture is delivered. It reports its error and leaves the failed start alone.
    QTRY_COMPARE(errors.size(), 2);
    QCOMPARE(errors.constLast().constFirst().toString(), s_noSpeech);
    QCOMPARE(withoutLevel(emitted.take()), QStringList {QStringLiteral("errorOccurred(\"No speech detected\")")});
    QVERIFY(voice.isListening());
    voice.cancelListening();
    QVERIFY(!voice.isListening());
}

void tst_VoiceBridgeCapture::restartsInASlotOfTheEnd()
{
    ListeningFixture fixture;
    QSignalSpy requests(fixture.voice.get(), &VoiceBridge::requestTranscription);
    connect(fixture.voice.get(), &VoiceBridge::listeningChanged, this, [&fixture, isFirst = true]() mutable {
        if (isFirst && !fixture.voice->isListening()) {
            isFirst = false;
            fixture.voice->startListening();
        }
    });
    fixture.hearSentence();
    fixture.voice->startListening();
    QTRY_COMPARE(fixture.voice->lastTranscript(), QStringLiteral("hello world"));
    // The next capture has not discarded the utterance.
    QCOMPARE(requests.constFirst().constFirst().toByteArray().size(), (5 + s_silenceChunks) * Pcm::ChunkBytes);
    QVERIFY(fixture.voice->isListening());
}

void tst_VoiceBridgeCapture::cancelsInASlotOfTheStart()
{
    ListeningFixture fixture;
    connect(fixture.voice.get(), &VoiceBridge::listeningChanged, this, [&fixture] {
        if (fixture.voice->isListening()) {
            fixture.voice->cancelListening();
        }
    });
    fixture.voice->startListening();
    QVERIFY(!fixture.voice->isListening());
    QCOMPARE(fixture.microphone.openStreams(), 0);
}

void tst_VoiceBridgeCapture::restartsInASlotOfTheStart()
{
    ListeningFixture fixture(Afterwards::Talks);
    QSignalSpy errors(fixture.voice.get(), &VoiceBridge::errorOccurred);
    connect(fixture.voice.get(), &VoiceBridge::listeningChanged, this, [&fixture, isFirst = true]() mutable {
        if (std::exchange(isFirst, false)) {
            fixture.voice->cancelListening();
            fixture.voice->startListening();
        }
    });
    fixture.voice->startListening();
    QVERIFY(fixture.voice->isListening());
    // The first start has left the microphone to the second.
    QTRY_VERIFY(fixture.microphone.chunksRead() >= 3);
    fixture.voice->stopListening();
    QTRY_COMPARE(fixture.voice->lastTranscript(), QStringLiteral("hello world"));
    QCOMPARE(errors.size(), 0);
}

REGISTER_TEST(tst_VoiceBridgeCapture, QCoreApplication)

#include "tst_VoiceBridgeCapture.moc"
