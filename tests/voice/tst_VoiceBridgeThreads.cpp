// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Endpointer.h"
#include "MessageLog.h"
#include "TestRegistry.h"
#include "TestSetup.h"
#include "Timeouts.h"
#include "VoiceFixture.h"
#include "WhisperStandIn.h"

#include <QDeadlineTimer>
#include <QSignalSpy>
#include <QTest>

#include <thread>

using Afterwards = ScriptedMicrophone::Afterwards;

//! The level, which threads share, and threads that outlive their purpose: a frozen microphone, and a VoiceBridge that
//! is deleted during an utterance.
class tst_VoiceBridgeThreads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void levelIsReadDuringACapture();
    void frozenMicrophone();
    void endsWhileListening();
    void endsWhileTranscribing();
    void endsWhileFrozen();
};

void tst_VoiceBridgeThreads::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_VoiceBridgeThreads::init()
{
    TestSetup::clearSettings();
    WhisperStandIn::reset();
    WhisperStandIn::say({QByteArray("hello world")});
}

void tst_VoiceBridgeThreads::levelIsReadDuringACapture()
{
    ListeningFixture fixture(Afterwards::Talks);
    fixture.voice->startListening();
    // Without the event loop nothing orders the two threads, so ThreadSanitizer notices a level that isn't atomic.
    const QDeadlineTimer deadline(Timeouts::Default);
    while (fixture.voice->inputLevel() == 0 && !deadline.hasExpired()) {
        std::this_thread::yield();
    }
    QVERIFY(fixture.voice->inputLevel() > Endpointer::SpeechThreshold);
}

void tst_VoiceBridgeThreads::frozenMicrophone()
{
    auto frozen = std::make_unique<ScriptedMicrophone>(Afterwards::Blocks);
    ScriptedMicrophone sound;
    OpenMicrophone open = frozen->opener();
    MessageLog messages;
    const WhisperModelFile model;
    VoiceParts parts = VoiceFixture::parts();
    parts.openMicrophone = [&open](QString *reason) { return open(reason); };
    VoiceBridge voice(std::move(parts));
    voice.setSilenceTimeoutMs(200);
    QSignalSpy errors(&voice, &VoiceBridge::errorOccurred);

    voice.startListening();
    QTRY_VERIFY(frozen->isAwaited());
    voice.cancelListening(); // blocks for three seconds
    QVERIFY(!voice.isListening());
    QCOMPARE(frozen->openStreams(), 1);
    QCOMPARE(errors.size(), 0);

    // Another capture can run at the same time.
    open = sound.opener();
    voice.startListening();
    QTRY_VERIFY(sound.chunksRead() > 0);
    frozen->hear(1, ScriptedMicrophone::Loud);
    QTRY_COMPARE(errors.size(), 1); // the late end is reported
    QTRY_COMPARE(frozen->openStreams(), 0);
    QVERIFY(voice.isListening());
    sound.hear(5, ScriptedMicrophone::Loud);
    QTRY_COMPARE(voice.lastTranscript(), QStringLiteral("hello world"));
    QCOMPARE(errors.size(), 1);
}

void tst_VoiceBridgeThreads::endsWhileListening()
{
    ListeningFixture fixture;
    fixture.voice->startListening();
    QTRY_VERIFY(fixture.microphone.chunksRead() > 0);
    fixture.voice.reset();
    QCOMPARE(fixture.microphone.openStreams(), 0);
    QCOMPARE(WhisperStandIn::livingContexts(), 0);
}

void tst_VoiceBridgeThreads::endsWhileTranscribing()
{
    ListeningFixture fixture;
    const WhisperStandIn::Held held;
    fixture.hearSentence();
    fixture.voice->startListening();
    QTRY_VERIFY(fixture.voice->isTranscribing());
    WhisperStandIn::waitUntilHeld();
    // The destructor waits for the engine, which another thread releases meanwhile.
    std::thread release([] { WhisperStandIn::letGo(); });
    fixture.voice.reset();
    release.join();
    QCOMPARE(WhisperStandIn::livingContexts(), 0);
    QVERIFY(WhisperStandIn::calls().contains(QStringLiteral("full ends")));
}

void tst_VoiceBridgeThreads::endsWhileFrozen()
{
    ListeningFixture fixture(Afterwards::Blocks);
    fixture.voice->startListening();
    QTRY_VERIFY(fixture.microphone.isAwaited());
    fixture.voice.reset();
    // The thread ends after VoiceBridge was deleted. It reports to nobody, and closes the stream.
    fixture.microphone.hear(1, ScriptedMicrophone::Loud);
    QTRY_COMPARE(fixture.microphone.openStreams(), 0);
}

REGISTER_TEST(tst_VoiceBridgeThreads, QCoreApplication)

#include "tst_VoiceBridgeThreads.moc"
