// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "PiperStandIn.h"
#include "support/MessageLog.h"
#include "support/SignalLog.h"
#include "support/TestSetup.h"
#include "voice/VoiceBridge.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTest>

//! What VoiceBridge adds to the parts that speak and that keep the voice test's log.
class tst_VoiceBridgeSpeech : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void speaks();
    void isSilentWhenItIsOff();
    void isSilentWithoutAVoice();
    void isSilentForBlanks();
    void codeAloneStopsWhatPlays();
    void stops();
    void endsWhileSpeaking();
    void keepsTheVoiceTestsLog();
};

void tst_VoiceBridgeSpeech::initTestCase()
{
    TestSetup::setAboutData();
    QVERIFY2(PiperStandIn::systemHasNone(), "a voice of the system would be found");
}

void tst_VoiceBridgeSpeech::init()
{
    TestSetup::clearSettings();
}

void tst_VoiceBridgeSpeech::speaks()
{
    PiperStandIn piper;
    const PaplayStandIn paplay;
    MessageLog messages;
    VoiceBridge voice;
    QVERIFY(voice.ttsAvailable());
    voice.setTtsEnabled(true);
    SignalLog heard(&voice);
    voice.speak(QStringLiteral("Say **this** to `nobody`"));
    QVERIFY(voice.isSpeaking());
    QTRY_VERIFY(!voice.isSpeaking());
    QCOMPARE(piper.text(), QStringLiteral("Say this to"));
    QCOMPARE(heard.entries(),
             (QStringList {QStringLiteral("speakingChanged()"), QStringLiteral("speakingChanged()"),
                           QStringLiteral("speakingFinished()")}));
}

void tst_VoiceBridgeSpeech::isSilentWhenItIsOff()
{
    PiperStandIn piper;
    const PaplayStandIn paplay;
    MessageLog messages;
    VoiceBridge voice;
    SignalLog heard(&voice);
    voice.speak(QStringLiteral("hello"));
    QCOMPARE(heard.entries(), QStringList());
    QVERIFY(!voice.isSpeaking());
    QCOMPARE(piper.runs(), 0);
}

void tst_VoiceBridgeSpeech::isSilentWithoutAVoice()
{
    MessageLog messages;
    VoiceBridge voice;
    QVERIFY(!voice.ttsAvailable());
    voice.setTtsEnabled(true);
    SignalLog heard(&voice);
    voice.speak(QStringLiteral("hello"));
    QCOMPARE(heard.entries(), QStringList());
}

void tst_VoiceBridgeSpeech::isSilentForBlanks()
{
    PiperStandIn piper;
    piper.hangs();
    const PaplayStandIn paplay;
    MessageLog messages;
    VoiceBridge voice;
    voice.setTtsEnabled(true);
    voice.speak(QStringLiteral("hello"));
    QVERIFY(voice.isSpeaking());
    SignalLog heard(&voice);
    voice.speak(QStringLiteral(" \n\t")); // not even what plays is stopped
    QCOMPARE(heard.entries(), QStringList());
    QVERIFY(voice.isSpeaking());
}

void tst_VoiceBridgeSpeech::codeAloneStopsWhatPlays()
{
    PiperStandIn piper;
    piper.hangs();
    const PaplayStandIn paplay;
    MessageLog messages;
    VoiceBridge voice;
    voice.setTtsEnabled(true);
    voice.speak(QStringLiteral("hello"));
    QTRY_COMPARE(piper.runs(), 1);
    QSignalSpy finished(&voice, &VoiceBridge::speakingFinished);
    voice.speak(QStringLiteral("```\nrm -rf /\n```"));
    QVERIFY(!voice.isSpeaking());
    QCOMPARE(finished.size(), 1);
    QCOMPARE(piper.runs(), 1);
}

void tst_VoiceBridgeSpeech::stops()
{
    PiperStandIn piper;
    piper.hangs();
    const PaplayStandIn paplay;
    MessageLog messages;
    VoiceBridge voice;
    voice.setTtsEnabled(true);
    voice.speak(QStringLiteral("hello"));
    QSignalSpy finished(&voice, &VoiceBridge::speakingFinished);
    voice.stopSpeaking();
    QVERIFY(!voice.isSpeaking());
    QCOMPARE(finished.size(), 1);
}

void tst_VoiceBridgeSpeech::endsWhileSpeaking()
{
    PiperStandIn piper;
    piper.hangs();
    const PaplayStandIn paplay;
    MessageLog messages;
    {
        VoiceBridge voice;
        voice.setTtsEnabled(true);
        voice.speak(QStringLiteral("hello"));
        QTRY_COMPARE(piper.runs(), 1);
    }
    // The kill counts as a crash; Qt has nothing to add about a process that still runs.
    QCOMPARE(messages.warnings(),
             QStringList {QStringLiteral("VoiceBridge: piper process error: \"Process crashed\"")});
}

void tst_VoiceBridgeSpeech::keepsTheVoiceTestsLog()
{
    MessageLog messages;
    VoiceBridge voice;
    voice.setSttInputMode(QStringLiteral("batch"));
    voice.setVoiceSubmitMode(QStringLiteral("manual"));
    voice.setSilenceTimeoutMs(900);
    const QString path = voice.voiceTestLogPath();
    QCOMPARE(path, QDir::homePath() + QStringLiteral("/.local/state/loomra-bridge/logs/voice-test-feedback.log"));

    voice.appendVoiceTestFeedback(QStringLiteral(" v01 "), QStringLiteral("command"), QStringLiteral("open it"),
                                  QStringLiteral("open %1 \"it\"\n"), 0.75, 1234);
    voice.appendVoiceTestFeedback(QStringLiteral("v02"), QString(), QStringLiteral("open it"), QStringLiteral("  "), 0,
                                  1);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArrayList lines = file.readAll().split('\n');
    QCOMPARE(lines.size(), 2); // one record, and its line feed
    QJsonObject record = QJsonDocument::fromJson(lines.constFirst()).object();
    QVERIFY(record.take(QStringLiteral("timestamp")).toString().endsWith(QStringLiteral("ZZ")));
    const QJsonObject expected {
        {QStringLiteral("event"), QStringLiteral("voice.test.submitted")},
        {QStringLiteral("source"), QStringLiteral("settings_voice_test")},
        {QStringLiteral("sentenceId"), QStringLiteral("v01")},
        {QStringLiteral("category"), QStringLiteral("command")},
        {QStringLiteral("reference"), QStringLiteral("open it")},
        {QStringLiteral("hypothesis"), QStringLiteral("open %1 \"it\"")},
        {QStringLiteral("accuracy"), 0.75},
        {QStringLiteral("latencyMs"), 1234},
        {QStringLiteral("sttInputMode"), QStringLiteral("batch")},
        {QStringLiteral("voiceSubmitMode"), QStringLiteral("manual")},
        {QStringLiteral("sttBackend"), QStringLiteral("whisper-small-q5")},
        {QStringLiteral("liveSttAvailable"), false},
        {QStringLiteral("silenceTimeoutMs"), 900},
    };
    QCOMPARE(record, expected);
}

QTEST_GUILESS_MAIN(tst_VoiceBridgeSpeech)

#include "tst_VoiceBridgeSpeech.moc"
