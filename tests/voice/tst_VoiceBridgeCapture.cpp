// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Endpointer.h"
#include "MessageLog.h"
#include "SignalLog.h"
#include "TestRegistry.h"
#include "TestSetup.h"
#include "VoiceRig.h"
#include "WhisperStandIn.h"

#include <QSettings>
#include <QSignalSpy>
#include <QTest>

using Afterwards = ScriptedMicrophone::Afterwards;

namespace
{

const QString s_start = QStringLiteral("START listening  mode=batch  backend=whisper-small-q5  silenceTimeout=200ms");
const QString s_noSpeech = QStringLiteral("No speech detected");

constexpr int s_silenceChunks = ListeningRig::SilenceChunks;

QString silenceAfter(int ms)
{
    return QStringLiteral("SILENCE  no speech detected after %1 ms").arg(ms);
}

//! All of an object's signals but the level's, whose number depends on the scheduler.
QStringList withoutLevel(const QStringList &entries)
{
    QStringList rest = entries;
    rest.removeAll(QStringLiteral("inputLevelChanged()"));
    return rest;
}

} // namespace

//! Listening, from the microphone to the engine.
class tst_VoiceBridgeCapture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void hearsASentence();
    void givesTheEngineWhatWasSaid();
    void startsOnlyWhenIdle();
    void stopEndsWithWhatWasHeard();
    void stopBeforeSpeech();
    void stopWhenIdleDoesNothing();
    void cutsAtTheLimit();
    void quietRoomEndsAtTheLimit();
    void oddTimeoutOfTheStoreEndsAfterOneChunk();
    void brokenMicrophoneEndsAsIfStopped();
    void brokenMicrophoneBeforeSpeech();
    void microphoneThatCannotBeOpened();
    void missingModel();
    void levelIsTold();
    void cancelsWhileListening();
    void cancelsWhileTranscribing();
    void cancelsWhenIdle();
    void startsAnewAfterACancelInTheSameTurn();
    void startsAnewWhenTheEndIsHeard();
    void cancelsWhenTheStartIsHeard();
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

void tst_VoiceBridgeCapture::hearsASentence()
{
    ListeningRig rig;
    SignalLog heard(rig.voice.get());
    rig.microphone.hear(3, ScriptedMicrophone::Quiet);
    rig.hearSentence();
    rig.voice->startListening();
    QVERIFY(rig.voice->isListening());
    QVERIFY(rig.voice->isModelLoaded());
    QTRY_COMPARE(rig.voice->lastTranscript(), QStringLiteral("hello world"));

    QVERIFY(!rig.voice->isListening());
    QVERIFY(!rig.voice->isTranscribing());
    QCOMPARE(rig.microphone.openStreams(), 0);
    // 3 quiet, 5 loud and 4 quiet chunks, the last of which isn't counted; the first three aren't kept.
    const QString samples = QString::number((5 + s_silenceChunks) * Pcm::ChunkSamples);
    const QStringList log = rig.log();
    QCOMPARE(log.mid(0, 3),
             (QStringList {s_start, QStringLiteral("CAPTURE done  audio=550ms  samples=%1").arg(samples),
                           QStringLiteral("TRANSCRIBING (batch)  backend=whisper-small-q5")}));
    QCOMPARE(log.size(), 4);
    QVERIFY(log.constLast().startsWith(QStringLiteral("TRANSCRIPT \"hello world\"  latency=")));

    QStringList events = withoutLevel(heard.entries());
    events.removeAll(QStringLiteral("voiceLogChanged()"));
    // The audio, which is no text, is another test's.
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

void tst_VoiceBridgeCapture::givesTheEngineWhatWasSaid()
{
    ListeningRig rig;
    QSignalSpy requests(rig.voice.get(), &VoiceBridge::requestTranscription);
    rig.microphone.hear(2, 7); // below the threshold
    rig.microphone.hear(1, 1000);
    rig.microphone.hear(1, -2000);
    rig.microphone.hear(s_silenceChunks, 9);
    rig.voice->startListening();
    QTRY_COMPARE(requests.size(), 1);

    QByteArray expected;
    for (const qint16 sample : {1000, -2000, 9, 9, 9, 9}) {
        for (int i = 0; i < Pcm::ChunkSamples; ++i) {
            expected.append(char(sample & 0xff)).append(char((sample >> 8) & 0xff));
        }
    }
    QCOMPARE(requests.constFirst().constFirst().toByteArray(), expected);
    QTRY_VERIFY(!rig.voice->isTranscribing());
}

void tst_VoiceBridgeCapture::startsOnlyWhenIdle()
{
    ListeningRig rig;
    rig.voice->startListening();
    QVERIFY(rig.voice->isListening());
    const auto doesNothing = [&rig] {
        SignalLog heard(rig.voice.get());
        const QStringList log = rig.log();
        rig.voice->startListening();
        return heard.entries().isEmpty() && rig.log() == log && rig.microphone.openStreams() <= 1;
    };
    QVERIFY(doesNothing());

    const WhisperStandIn::Held held;
    rig.hearSentence();
    QTRY_VERIFY(rig.voice->isTranscribing());
    QVERIFY(doesNothing());
    QCOMPARE(rig.microphone.openStreams(), 0);
    WhisperStandIn::letGo();
    QTRY_VERIFY(!rig.voice->isTranscribing());
    QCOMPARE(rig.log().count(s_start), 1);
}

void tst_VoiceBridgeCapture::stopEndsWithWhatWasHeard()
{
    ListeningRig rig(Afterwards::Talks);
    rig.microphone.hear(5, ScriptedMicrophone::Loud);
    rig.voice->startListening();
    QTRY_VERIFY(rig.microphone.chunksRead() >= 7);
    QVERIFY(rig.voice->isListening());
    rig.voice->stopListening();
    QVERIFY(rig.voice->isListening()); // the end comes later, by itself
    QTRY_COMPARE(rig.voice->lastTranscript(), QStringLiteral("hello world"));
    const int chunks = rig.microphone.chunksRead();
    QVERIFY(rig.log().contains(QStringLiteral("CAPTURE done  audio=%1ms  samples=%2")
                                   .arg(chunks * Pcm::ChunkMs)
                                   .arg(chunks * Pcm::ChunkSamples)));
}

void tst_VoiceBridgeCapture::stopBeforeSpeech()
{
    ListeningRig rig;
    rig.voice->startListening();
    QTRY_VERIFY(rig.microphone.chunksRead() >= 3);
    SignalLog heard(rig.voice.get());
    rig.voice->stopListening();
    QTRY_VERIFY(!rig.voice->isListening());
    QCOMPARE(rig.log(), (QStringList {s_start, silenceAfter(rig.microphone.chunksRead() * Pcm::ChunkMs)}));
    QCOMPARE(
        withoutLevel(heard.entries()),
        (QStringList {QStringLiteral("listeningChanged()"), QStringLiteral("partialTranscriptChanged()"),
                      QStringLiteral("voiceLogChanged()"), QStringLiteral("errorOccurred(\"No speech detected\")")}));
    QCOMPARE(rig.voice->lastError(), QString());
    QVERIFY(!rig.voice->isTranscribing());
}

void tst_VoiceBridgeCapture::stopWhenIdleDoesNothing()
{
    ListeningRig rig;
    SignalLog heard(rig.voice.get());
    rig.voice->stopListening();
    QCoreApplication::processEvents();
    QCOMPARE(heard.entries(), QStringList());
}

void tst_VoiceBridgeCapture::cutsAtTheLimit()
{
    ListeningRig rig;
    rig.microphone.hear(20, ScriptedMicrophone::Quiet);
    rig.microphone.hear(700, ScriptedMicrophone::Loud);
    rig.voice->startListening();
    QTRY_COMPARE(rig.voice->lastTranscript(), QStringLiteral("hello world"));
    QVERIFY(rig.log().contains(QStringLiteral("CAPTURE done  audio=30000ms  samples=%1").arg(580 * Pcm::ChunkSamples)));
    QCOMPARE(WhisperStandIn::lastTranscription().samples.size(), std::size_t(580 * Pcm::ChunkSamples));
}

void tst_VoiceBridgeCapture::quietRoomEndsAtTheLimit()
{
    ListeningRig rig;
    QSignalSpy errors(rig.voice.get(), &VoiceBridge::errorOccurred);
    rig.microphone.hear(600, ScriptedMicrophone::Quiet);
    rig.voice->startListening();
    QTRY_COMPARE(errors.size(), 1);
    QCOMPARE(errors.constFirst().constFirst().toString(), s_noSpeech);
    QCOMPARE(rig.log(), (QStringList {s_start, silenceAfter(30000)}));
}

void tst_VoiceBridgeCapture::oddTimeoutOfTheStoreEndsAfterOneChunk()
{
    QSettings().setValue(QStringLiteral("voice/silenceTimeoutMs"), 20);
    MessageLog messages;
    const WhisperModelFile model;
    ScriptedMicrophone microphone;
    VoiceBridge voice(VoiceRig::partsWith(microphone), nullptr);
    QSignalSpy requests(&voice, &VoiceBridge::requestTranscription);
    microphone.hear(2, ScriptedMicrophone::Loud);
    voice.startListening();
    QTRY_COMPARE(requests.size(), 1);
    QCOMPARE(requests.constFirst().constFirst().toByteArray().size(), 3 * Pcm::ChunkBytes);
    QTRY_VERIFY(!voice.isTranscribing());
}

void tst_VoiceBridgeCapture::brokenMicrophoneEndsAsIfStopped()
{
    ListeningRig rig;
    QSignalSpy errors(rig.voice.get(), &VoiceBridge::errorOccurred);
    rig.microphone.hear(6, ScriptedMicrophone::Loud);
    rig.microphone.breakDown();
    rig.voice->startListening();
    QTRY_COMPARE(rig.voice->lastTranscript(), QStringLiteral("hello world"));
    QVERIFY(rig.log().contains(QStringLiteral("CAPTURE done  audio=300ms  samples=4800")));
    QCOMPARE(errors.size(), 0);
}

void tst_VoiceBridgeCapture::brokenMicrophoneBeforeSpeech()
{
    ListeningRig rig;
    QSignalSpy errors(rig.voice.get(), &VoiceBridge::errorOccurred);
    rig.microphone.breakDown();
    rig.voice->startListening();
    QTRY_COMPARE(errors.size(), 1);
    QCOMPARE(rig.log(), (QStringList {s_start, silenceAfter(0)}));
    QVERIFY(!rig.voice->isListening());
}

void tst_VoiceBridgeCapture::microphoneThatCannotBeOpened()
{
    MessageLog messages;
    const WhisperModelFile model;
    int attempts = 0;
    VoiceParts parts;
    parts.openMicrophone = [&attempts](QString *reason) -> std::unique_ptr<Microphone> {
        ++attempts;
        *reason = QStringLiteral("Kein Gerät %1");
        return nullptr;
    };
    VoiceBridge voice(std::move(parts), nullptr);
    voice.setVoiceLogEnabled(true);
    QVERIFY(voice.loadModel());
    SignalLog heard(&voice);
    voice.startListening();
    QCOMPARE(heard.take(),
             (QStringList {QStringLiteral("voiceLogChanged()"), QStringLiteral("listeningChanged()"),
                           QStringLiteral("errorOccurred(\"Cannot open microphone: Kein Gerät %1\")")}));
    QCOMPARE(voice.lastError(), QString());

    // Nothing is tried again before the user has cancelled.
    QVERIFY(voice.isListening());
    voice.startListening();
    voice.stopListening();
    QCOMPARE(attempts, 1);
    QCOMPARE(heard.take(), QStringList());
    voice.cancelListening();
    QVERIFY(!voice.isListening());
    QCOMPARE(withoutLevel(heard.take()), QStringList {QStringLiteral("listeningChanged()")});
    voice.startListening();
    QCOMPARE(attempts, 2);
}

void tst_VoiceBridgeCapture::missingModel()
{
    MessageLog messages;
    ScriptedMicrophone microphone;
    VoiceBridge voice(VoiceRig::partsWith(microphone), nullptr);
    voice.setVoiceLogEnabled(true);
    SignalLog heard(&voice);
    voice.startListening();
    QVERIFY(!voice.isListening());
    QCOMPARE(microphone.openStreams(), 0);
    QCOMPARE(heard.entries(),
             (QStringList {QStringLiteral("voiceLogChanged()"), QStringLiteral("modelLoadedChanged()"),
                           QStringLiteral("errorOccurred(\"Whisper model not found. Download ggml-base.en.bin to "
                                          "~/.local/share/tovi-forkeldaos/models/\")")}));
    QCOMPARE(voice.voiceLog().size(), 1); // the start is told before
}

void tst_VoiceBridgeCapture::levelIsTold()
{
    ListeningRig rig(Afterwards::Blocks);
    QSignalSpy levels(rig.voice.get(), &VoiceBridge::inputLevelChanged);
    rig.microphone.hear(1, 16384);
    rig.voice->startListening();
    QTRY_COMPARE(levels.size(), 1);
    QCOMPARE(rig.voice->inputLevel(), 0.5);
    rig.microphone.hear(4, 8192); // numbers 1 to 4
    QTRY_COMPARE(rig.microphone.chunksRead(), 5);
    rig.microphone.hear(1, 4096);
    QTRY_COMPARE(levels.size(), 2);
    QCOMPARE(rig.voice->inputLevel(), 0.125);
    rig.microphone.breakDown();
    QTRY_VERIFY(!rig.voice->isListening());
    QCOMPARE(rig.voice->inputLevel(), 0.0);
    QCOMPARE(levels.size(), 3);
    QTRY_VERIFY(!rig.voice->isTranscribing());
}

void tst_VoiceBridgeCapture::cancelsWhileListening()
{
    ListeningRig rig(Afterwards::Talks);
    rig.microphone.hear(3, ScriptedMicrophone::Loud);
    rig.voice->startListening();
    QTRY_VERIFY(rig.microphone.chunksRead() >= 3);
    QVERIFY(rig.voice->isListening());
    SignalLog heard(rig.voice.get());
    QSignalSpy requests(rig.voice.get(), &VoiceBridge::requestTranscription);
    rig.voice->cancelListening();
    QVERIFY(!rig.voice->isListening());
    QCOMPARE(rig.microphone.openStreams(), 0);
    QCOMPARE(withoutLevel(heard.take()), QStringList {QStringLiteral("listeningChanged()")});

    // The thread's end still comes, and finds nothing left.
    QTRY_COMPARE(heard.entries().count(QStringLiteral("errorOccurred(\"No speech detected\")")), 1);
    QCOMPARE(heard.entries().count(QStringLiteral("listeningChanged()")), 1);
    QVERIFY(rig.log().constLast().startsWith(QStringLiteral("SILENCE  no speech detected after ")));
    QCOMPARE(requests.size(), 0);
    QVERIFY(!rig.voice->isTranscribing());
}

void tst_VoiceBridgeCapture::cancelsWhileTranscribing()
{
    ListeningRig rig;
    const WhisperStandIn::Held held;
    rig.hearSentence();
    rig.voice->startListening();
    QTRY_VERIFY(rig.voice->isTranscribing());
    WhisperStandIn::waitUntilHeld();
    SignalLog heard(rig.voice.get());
    rig.voice->cancelListening();
    QVERIFY(!rig.voice->isTranscribing());
    QCOMPARE(withoutLevel(heard.take()), QStringList {QStringLiteral("transcribingChanged()")});
    WhisperStandIn::letGo();
    QTRY_COMPARE(rig.voice->lastTranscript(), QStringLiteral("hello world"));
}

void tst_VoiceBridgeCapture::cancelsWhenIdle()
{
    ListeningRig rig;
    SignalLog heard(rig.voice.get());
    rig.voice->cancelListening();
    QCoreApplication::processEvents();
    // The level is told to be zero all the same.
    QCOMPARE(heard.entries(), QStringList {QStringLiteral("inputLevelChanged()")});
}

void tst_VoiceBridgeCapture::startsAnewAfterACancelInTheSameTurn()
{
    ListeningRig rig(Afterwards::Talks);
    QSignalSpy errors(rig.voice.get(), &VoiceBridge::errorOccurred);
    rig.microphone.hear(3, ScriptedMicrophone::Loud);
    rig.voice->startListening();
    QTRY_VERIFY(rig.microphone.chunksRead() >= 4);
    rig.voice->cancelListening();
    SignalLog heard(rig.voice.get());
    rig.voice->startListening();
    // Now the end of the first is delivered: it says its words, and the second goes on.
    QTRY_COMPARE(errors.size(), 1);
    QCOMPARE(errors.constFirst().constFirst().toString(), s_noSpeech);
    QVERIFY(rig.voice->isListening());
    QCOMPARE(rig.microphone.openStreams(), 1);
    QCOMPARE(heard.entries().count(QStringLiteral("listeningChanged()")), 1);
    const int chunks = rig.microphone.chunksRead();
    QTRY_VERIFY(rig.microphone.chunksRead() >= chunks + 2);
    rig.voice->stopListening();
    QTRY_COMPARE(rig.voice->lastTranscript(), QStringLiteral("hello world"));
    QCOMPARE(errors.size(), 1);
}

void tst_VoiceBridgeCapture::startsAnewWhenTheEndIsHeard()
{
    ListeningRig rig;
    QSignalSpy requests(rig.voice.get(), &VoiceBridge::requestTranscription);
    connect(rig.voice.get(), &VoiceBridge::listeningChanged, this, [&rig, isFirst = true]() mutable {
        if (isFirst && !rig.voice->isListening()) {
            isFirst = false;
            rig.voice->startListening();
        }
    });
    rig.hearSentence();
    rig.voice->startListening();
    QTRY_COMPARE(rig.voice->lastTranscript(), QStringLiteral("hello world"));
    // The next capture has not taken the utterance away.
    QCOMPARE(requests.constFirst().constFirst().toByteArray().size(), (5 + s_silenceChunks) * Pcm::ChunkBytes);
    QVERIFY(rig.voice->isListening());
}

void tst_VoiceBridgeCapture::cancelsWhenTheStartIsHeard()
{
    ListeningRig rig;
    connect(rig.voice.get(), &VoiceBridge::listeningChanged, this, [&rig] {
        if (rig.voice->isListening()) {
            rig.voice->cancelListening();
        }
    });
    rig.voice->startListening();
    QVERIFY(!rig.voice->isListening());
    QCOMPARE(rig.microphone.openStreams(), 0);
}

REGISTER_TEST(tst_VoiceBridgeCapture, QCoreApplication)

#include "tst_VoiceBridgeCapture.moc"
