// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Files.h"
#include "MessageLog.h"
#include "PiperStandIn.h"
#include "SignalLog.h"
#include "TestRegistry.h"
#include "TestSetup.h"
#include "VoiceFixture.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace
{

//! A VoiceBridge with stand-ins for piper and paplay, and speech switched on.
struct Fixture
{
    Fixture() { voice->setTtsEnabled(true); }

    MessageLog messages;
    PiperStandIn piper;
    const PaplayStandIn paplay;
    std::unique_ptr<VoiceBridge> voice = std::make_unique<VoiceBridge>(VoiceFixture::parts());
};

} // namespace

//! The part of VoiceBridge in speech output and in the log of voice tests.
class tst_VoiceBridgeSpeech : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void speaks();
    void isSilentWhenItIsOff();
    void isSilentWithoutAVoice();
    void isSilentForWhitespace();
    void stopsWhatPlays_data();
    void stopsWhatPlays();
    void endsWhileSpeaking();
    void writesTheVoiceTestLog();
};

void tst_VoiceBridgeSpeech::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_VoiceBridgeSpeech::init()
{
    TestSetup::clearSettings();
}

void tst_VoiceBridgeSpeech::speaks()
{
    const Fixture fixture;
    QVERIFY(fixture.voice->ttsAvailable());
    SignalLog emitted(fixture.voice.get());
    fixture.voice->speak(QStringLiteral("Say **this** to `nobody`"));
    QVERIFY(fixture.voice->isSpeaking());
    QTRY_VERIFY(!fixture.voice->isSpeaking());
    QCOMPARE(fixture.piper.text(), QStringLiteral("Say this to"));
    QCOMPARE(emitted.entries(),
             (QStringList {QStringLiteral("speakingChanged()"), QStringLiteral("speakingChanged()"),
                           QStringLiteral("speakingFinished()")}));
}

void tst_VoiceBridgeSpeech::isSilentWhenItIsOff()
{
    const Fixture fixture;
    fixture.voice->setTtsEnabled(false);
    SignalLog emitted(fixture.voice.get());
    fixture.voice->speak(QStringLiteral("hello"));
    QCOMPARE(emitted.entries(), QStringList());
    QVERIFY(!fixture.voice->isSpeaking());
    QCOMPARE(fixture.piper.runs(), 0);
}

void tst_VoiceBridgeSpeech::isSilentWithoutAVoice()
{
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    QVERIFY(!voice.ttsAvailable());
    voice.setTtsEnabled(true);
    SignalLog emitted(&voice);
    voice.speak(QStringLiteral("hello"));
    QCOMPARE(emitted.entries(), QStringList());
}

void tst_VoiceBridgeSpeech::isSilentForWhitespace()
{
    Fixture fixture;
    fixture.piper.hangs();
    fixture.voice->speak(QStringLiteral("hello"));
    SignalLog emitted(fixture.voice.get());
    fixture.voice->speak(QStringLiteral(" \n\t")); // doesn't stop the current reply either
    QCOMPARE(emitted.entries(), QStringList());
    QVERIFY(fixture.voice->isSpeaking());
}

void tst_VoiceBridgeSpeech::stopsWhatPlays_data()
{
    QTest::addColumn<QString>("nextReply");
    QTest::newRow("by the user") << QString();
    QTest::newRow("by a reply that is only code") << "```\nrm -rf /\n```";
}

void tst_VoiceBridgeSpeech::stopsWhatPlays()
{
    QFETCH(QString, nextReply);
    Fixture fixture;
    fixture.piper.hangs();
    fixture.voice->speak(QStringLiteral("hello"));
    QTRY_COMPARE(fixture.piper.runs(), 1);
    QSignalSpy finished(fixture.voice.get(), &VoiceBridge::speakingFinished);
    nextReply.isEmpty() ? fixture.voice->stopSpeaking() : fixture.voice->speak(nextReply);
    QVERIFY(!fixture.voice->isSpeaking());
    QCOMPARE(finished.size(), 1);
    QCOMPARE(fixture.piper.runs(), 1);
}

void tst_VoiceBridgeSpeech::endsWhileSpeaking()
{
    Fixture fixture;
    fixture.piper.hangs();
    fixture.voice->speak(QStringLiteral("hello"));
    QTRY_COMPARE(fixture.piper.runs(), 1);
    fixture.voice.reset();
    // The kill counts as a crash. There is no warning by Qt about a running process.
    QCOMPARE(fixture.messages.warnings(),
             QStringList {QStringLiteral("VoiceBridge: piper process error: \"Process crashed\"")});
}

void tst_VoiceBridgeSpeech::writesTheVoiceTestLog()
{
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    voice.setSttInputMode(QStringLiteral("batch"));
    voice.setVoiceSubmitMode(QStringLiteral("manual"));
    voice.setSilenceTimeoutMs(900);
    const QString path = voice.voiceTestLogPath();
    QCOMPARE(path, QDir::homePath() + QStringLiteral("/.local/state/loomra-bridge/logs/voice-test-feedback.log"));

    voice.appendVoiceTestFeedback(QStringLiteral(" v01 "), QStringLiteral("command"), QStringLiteral("open it"),
                                  QStringLiteral("open %1 \"it\"\n"), 0.75, 1234);
    voice.appendVoiceTestFeedback(QStringLiteral("v02"), QString(), QStringLiteral("open it"), QStringLiteral("  "), 0,
                                  1);
    const QByteArrayList lines = contentOf(path).split('\n');
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

REGISTER_TEST(tst_VoiceBridgeSpeech, QCoreApplication)

#include "tst_VoiceBridgeSpeech.moc"
