// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "MessageLog.h"
#include "SherpaStandIn.h"
#include "SignalLog.h"
#include "TestRegistry.h"
#include "TestSetup.h"
#include "VoiceFixture.h"
#include "WhisperStandIn.h"

#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>

namespace
{

//! Half a second of sound.
QByteArray utterance()
{
    return QByteArray(16000, 1);
}

} // namespace

//! Finished utterances: which engine gets them, and how its transcript or error is handled.
class tst_VoiceBridgeTranscripts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void dispatchesToTheChosenEngine();
    void correctsTranscripts();
    void correctTranscriptHasNoCorrection();
    void failureOfTheEngine();
    void hostileTranscript();
    void choosesAnotherEngineWhileOneWorks();
};

void tst_VoiceBridgeTranscripts::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_VoiceBridgeTranscripts::init()
{
    TestSetup::clearSettings();
    WhisperStandIn::reset();
}

void tst_VoiceBridgeTranscripts::dispatchesToTheChosenEngine()
{
    SherpaStandIn moonshine(SherpaStandIn::Engine::Moonshine);
    SherpaStandIn nemotron(SherpaStandIn::Engine::Nemotron);
    const WhisperModelFile base(QStringLiteral("ggml-base.en.bin"));
    moonshine.says(QStringLiteral("from moonshine"));
    nemotron.says(QStringLiteral("from nemotron"));
    WhisperStandIn::say({QByteArray("from whisper")});
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    for (const char *backend : {"moonshine", "nemotron", "whisper"}) {
        voice.setSttBackend(QString::fromLatin1(backend));
        Q_EMIT voice.requestTranscription(utterance());
        QTRY_COMPARE(voice.lastTranscript(), QStringLiteral("from ") + QString::fromLatin1(backend));
        QVERIFY(voice.lastTranscriptionMs() > 0);
    }
    QCOMPARE(moonshine.runs(), 1);
    QCOMPARE(nemotron.runs(), 1);
}

void tst_VoiceBridgeTranscripts::correctsTranscripts()
{
    const WhisperModelFile q5;
    WhisperStandIn::say({QByteArray(" Open the dolphine. ")});
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    voice.setVoiceLogEnabled(true);
    QVERIFY(voice.loadModel());
    SignalLog emitted(&voice);
    Q_EMIT voice.requestTranscription(utterance());
    QTRY_COMPARE(voice.lastTranscript(), QStringLiteral("Open the Dolphin"));
    const QStringList log = VoiceFixture::logEntries(voice);
    QCOMPARE(log.size(), 2);
    QCOMPARE(log.first(), QStringLiteral("CORRECTED \"Open the dolphine.\" -> \"Open the Dolphin\""));
    const QString latency = QString::number(voice.lastTranscriptionMs(), 'f', 0);
    QCOMPARE(log.last(), QStringLiteral("TRANSCRIPT \"Open the Dolphin\"  latency=%1ms").arg(latency));
    QVERIFY(
        messages.has(QtDebugMsg, QStringLiteral("SttPostProcessor: \"Open the dolphine.\" -> \"Open the Dolphin\"")));
    QCOMPARE(messages.count(QStringLiteral("VoiceBridge: transcribed in ")), 1);
    QVERIFY(messages.lines().constLast().text.endsWith(QStringLiteral(" ms: \"Open the Dolphin\"")));
    QCOMPARE(emitted.entries().constLast(), QStringLiteral("transcriptReady(\"Open the Dolphin\")"));
}

void tst_VoiceBridgeTranscripts::correctTranscriptHasNoCorrection()
{
    const WhisperModelFile q5;
    WhisperStandIn::say({QByteArray("what time is it")});
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    voice.setVoiceLogEnabled(true);
    QVERIFY(voice.loadModel());
    Q_EMIT voice.requestTranscription(utterance());
    QTRY_COMPARE(voice.lastTranscript(), QStringLiteral("what time is it"));
    QCOMPARE(VoiceFixture::logEntries(voice).size(), 1);
    QCOMPARE(messages.count(QStringLiteral("SttPostProcessor: \"")), 0);
}

void tst_VoiceBridgeTranscripts::failureOfTheEngine()
{
    const WhisperModelFile q5;
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    voice.setVoiceLogEnabled(true);
    QVERIFY(voice.loadModel());
    SignalLog emitted(&voice);
    Q_EMIT voice.requestTranscription(QByteArray(3199, 1));
    QTRY_COMPARE(voice.lastError(), QStringLiteral("Audio too short"));
    QCOMPARE(emitted.entries().mid(1),
             (QStringList {QStringLiteral("transcribingChanged()"), QStringLiteral("partialTranscriptChanged()"),
                           QStringLiteral("voiceLogChanged()"), QStringLiteral("errorOccurred(\"Audio too short\")")}));
    QCOMPARE(VoiceFixture::logEntries(voice), QStringList {QStringLiteral("ERROR Audio too short")});

    // The next transcript and the next load clear it.
    Q_EMIT voice.requestTranscription(utterance());
    QTRY_COMPARE(voice.lastTranscript(), QStringLiteral("stand-in"));
    QCOMPARE(voice.lastError(), QString());
    Q_EMIT voice.requestTranscription(QByteArray(3199, 1));
    QTRY_VERIFY(!voice.lastError().isEmpty());
    QVERIFY(voice.loadModel());
    QCOMPARE(voice.lastError(), QString());
}

void tst_VoiceBridgeTranscripts::hostileTranscript()
{
    const WhisperModelFile q5;
    WhisperStandIn::say({QByteArray("%1 <img src=x> %2.")});
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    voice.setVoiceLogEnabled(true);
    QVERIFY(voice.loadModel());
    Q_EMIT voice.requestTranscription(utterance());
    QTRY_COMPARE(voice.lastTranscript(), QStringLiteral("%1 <img src=x> %2"));
    QCOMPARE(VoiceFixture::logEntries(voice).first(),
             QStringLiteral("CORRECTED \"%1 <img src=x> %2.\" -> \"%1 <img src=x> %2\""));
    QVERIFY(VoiceFixture::logEntries(voice).last().startsWith(
        QStringLiteral("TRANSCRIPT \"%1 <img src=x> %2\"  latency=")));
}

void tst_VoiceBridgeTranscripts::choosesAnotherEngineWhileOneWorks()
{
    SherpaStandIn moonshine(SherpaStandIn::Engine::Moonshine);
    SherpaStandIn nemotron(SherpaStandIn::Engine::Nemotron);
    moonshine.says(QStringLiteral("late words"));
    moonshine.hold();
    nemotron.says(QStringLiteral("new words"));
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    const auto letGo = qScopeGuard([&moonshine] { moonshine.releaseAll(); }); // VoiceBridge waits for its engine
    voice.setSttBackend(QStringLiteral("moonshine"));
    Q_EMIT voice.requestTranscription(utterance());
    QTRY_COMPARE(moonshine.runs(), 1);
    voice.setSttBackend(QStringLiteral("nemotron"));
    QVERIFY(voice.isModelLoaded());
    Q_EMIT voice.requestTranscription(utterance());
    // The running engine isn't stopped, and the next one waits for it.
    QSignalSpy transcripts(&voice, &VoiceBridge::transcriptReady);
    QCOMPARE(nemotron.runs(), 0);
    moonshine.release();
    QTRY_COMPARE(transcripts.size(), 2);
    QCOMPARE(transcripts.at(0).constFirst().toString(), QStringLiteral("late words"));
    QCOMPARE(transcripts.at(1).constFirst().toString(), QStringLiteral("new words"));
}

REGISTER_TEST(tst_VoiceBridgeTranscripts, QCoreApplication)

#include "tst_VoiceBridgeTranscripts.moc"
