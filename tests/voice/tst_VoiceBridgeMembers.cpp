// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FakePath.h"
#include "Members.h"
#include "MessageLog.h"
#include "TestRegistry.h"
#include "TestSetup.h"
#include "VoiceFixture.h"

#include <QTest>

using Members::Kind;

//! The members that voiceBridge offers to QML, their first values, and the log of the construction.
class tst_VoiceBridgeMembers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void properties();
    void signalsAndOperations();
    void firstValues();
    void beginsInItsOrder();
    void modelsAreLoadedLater();
};

void tst_VoiceBridgeMembers::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_VoiceBridgeMembers::init()
{
    TestSetup::clearSettings();
}

void tst_VoiceBridgeMembers::properties()
{
    const QStringList expected = {
        QStringLiteral("bool isListening listeningChanged()"),
        QStringLiteral("bool isTranscribing transcribingChanged()"),
        QStringLiteral("bool isModelLoaded modelLoadedChanged()"),
        QStringLiteral("QString lastTranscript transcriptReady(QString)"),
        QStringLiteral("double lastTranscriptionMs transcriptReady(QString)"),
        QStringLiteral("QString lastError errorOccurred(QString)"),
        QStringLiteral("double inputLevel inputLevelChanged()"),
        QStringLiteral("QString modelName modelLoadedChanged()"),
        QStringLiteral("bool isSpeaking speakingChanged()"),
        QStringLiteral("bool ttsEnabled ttsEnabledChanged() writable"),
        QStringLiteral("bool ttsAvailable ttsAvailableChanged()"),
        QStringLiteral("bool wakeWordEnabled wakeWordEnabledChanged() writable"),
        QStringLiteral("QString sttBackend sttBackendChanged() writable"),
        QStringLiteral("bool whisperSmallAvailable whisperSmallAvailableChanged()"),
        QStringLiteral("bool whisperSmallQ5Available whisperSmallQ5AvailableChanged()"),
        QStringLiteral("bool moonshineAvailable moonshineAvailableChanged()"),
        QStringLiteral("bool nemotronAvailable nemotronAvailableChanged()"),
        QStringLiteral("QString partialTranscript partialTranscriptChanged()"),
        QStringLiteral("bool liveSttAvailable liveSttAvailableChanged()"),
        QStringLiteral("bool liveSttEnabled liveSttEnabledChanged() writable"),
        QStringLiteral("QString sttInputMode sttInputModeChanged() writable"),
        QStringLiteral("QString voiceSubmitMode voiceSubmitModeChanged() writable"),
        QStringLiteral("bool voiceTestActive voiceTestActiveChanged() writable"),
        QStringLiteral("bool batchSttMode batchSttModeChanged() writable"),
        QStringLiteral("int silenceTimeoutMs silenceTimeoutMsChanged() writable"),
        QStringLiteral("int voiceConfirmDelaySec voiceConfirmDelaySecChanged() writable"),
        QStringLiteral("bool voiceLogEnabled voiceLogEnabledChanged() writable"),
        QStringLiteral("QStringList voiceLog voiceLogChanged()"),
    };
    QCOMPARE(Members::properties(VoiceBridge::staticMetaObject), expected);
}

void tst_VoiceBridgeMembers::signalsAndOperations()
{
    const QMetaObject &type = VoiceBridge::staticMetaObject;
    const QStringList expectedSignals = {
        QStringLiteral("listeningChanged()"),
        QStringLiteral("transcribingChanged()"),
        QStringLiteral("modelLoadedChanged()"),
        QStringLiteral("transcriptReady(QString) text"),
        QStringLiteral("inputLevelChanged()"),
        QStringLiteral("errorOccurred(QString) error"),
        QStringLiteral("speakingChanged()"),
        QStringLiteral("ttsEnabledChanged()"),
        QStringLiteral("ttsAvailableChanged()"),
        QStringLiteral("speakingFinished()"),
        QStringLiteral("wakeWordEnabledChanged()"),
        QStringLiteral("wakeWordActivated(QString) phrase"),
        QStringLiteral("sttBackendChanged()"),
        QStringLiteral("partialTranscriptChanged()"),
        QStringLiteral("liveSttAvailableChanged()"),
        QStringLiteral("liveSttEnabledChanged()"),
        QStringLiteral("sttInputModeChanged()"),
        QStringLiteral("voiceSubmitModeChanged()"),
        QStringLiteral("voiceTestActiveChanged()"),
        QStringLiteral("batchSttModeChanged()"),
        QStringLiteral("whisperSmallAvailableChanged()"),
        QStringLiteral("whisperSmallQ5AvailableChanged()"),
        QStringLiteral("moonshineAvailableChanged()"),
        QStringLiteral("nemotronAvailableChanged()"),
        QStringLiteral("silenceTimeoutMsChanged()"),
        QStringLiteral("voiceConfirmDelaySecChanged()"),
        QStringLiteral("voiceLogEnabledChanged()"),
        QStringLiteral("voiceLogChanged()"),
        QStringLiteral("requestTranscription(QByteArray) pcm16Data"),
    };
    QCOMPARE(Members::methods(type, Kind::Signal), expectedSignals);

    QStringList operations = Members::methods(type, Kind::Operation);
    operations.sort();
    const QStringList expectedOperations = {
        QStringLiteral("appendVoiceLog(QString) entry"),
        QStringLiteral("appendVoiceTestFeedback(QString,QString,QString,QString,double,int) "
                       "sentenceId,category,reference,hypothesis,accuracy,latencyMs"),
        QStringLiteral("cancelListening()"),
        QStringLiteral("clearVoiceLog()"),
        QStringLiteral("loadModel()"),
        QStringLiteral("loadModel(QString) path"),
        QStringLiteral("speak(QString) text"),
        QStringLiteral("startListening()"),
        QStringLiteral("stopListening()"),
        QStringLiteral("stopSpeaking()"),
        QStringLiteral("voiceTestLogPath()"),
    };
    QCOMPARE(operations, expectedOperations);

    const QStringList expectedSlots = {
        QStringLiteral("onTranscriptionReady(QString,double) text,elapsedMs"),
        QStringLiteral("onTranscriptionFailed(QString) error"),
        QStringLiteral("onPartialTranscript(QString) text"),
        QStringLiteral("onWakeWordActivated(QString) phrase"),
        QStringLiteral("dispatchTranscription(QByteArray) pcm16Data"),
    };
    QCOMPARE(Members::methods(type, Kind::PrivateSlot), expectedSlots);
    QStringList answers = Members::answers(type);
    answers.sort();
    QCOMPARE(answers,
             (QStringList {QStringLiteral("QString voiceTestLogPath()"), QStringLiteral("bool loadModel()"),
                           QStringLiteral("bool loadModel(QString)")}));
}

void tst_VoiceBridgeMembers::firstValues()
{
    MessageLog log;
    const VoiceBridge voice(VoiceFixture::parts());
    QCOMPARE(voice.isListening(), false);
    QCOMPARE(voice.isTranscribing(), false);
    QCOMPARE(voice.isModelLoaded(), false);
    QCOMPARE(voice.lastTranscript(), QString());
    QCOMPARE(voice.lastTranscriptionMs(), 0.0);
    QCOMPARE(voice.lastError(), QString());
    QCOMPARE(voice.inputLevel(), 0.0);
    QCOMPARE(voice.modelName(), QString());
    QCOMPARE(voice.isSpeaking(), false);
    QCOMPARE(voice.ttsEnabled(), false);
    QCOMPARE(voice.ttsAvailable(), false);
    QCOMPARE(voice.wakeWordEnabled(), false);
    QCOMPARE(voice.sttBackend(), QStringLiteral("whisper-small-q5"));
    QCOMPARE(voice.whisperSmallAvailable(), false);
    QCOMPARE(voice.whisperSmallQ5Available(), false);
    QCOMPARE(voice.moonshineAvailable(), false);
    QCOMPARE(voice.nemotronAvailable(), false);
    QCOMPARE(voice.partialTranscript(), QString());
    QCOMPARE(voice.liveSttAvailable(), false);
    QCOMPARE(voice.liveSttEnabled(), true);
    // A fresh store asks for live transcription, which isn't available in this build.
    QCOMPARE(voice.sttInputMode(), QStringLiteral("live"));
    QCOMPARE(voice.voiceSubmitMode(), QStringLiteral("auto"));
    QCOMPARE(voice.voiceTestActive(), false);
    QCOMPARE(voice.batchSttMode(), false);
    QCOMPARE(voice.silenceTimeoutMs(), 700);
    QCOMPARE(voice.voiceConfirmDelaySec(), 4);
    QCOMPARE(voice.voiceLogEnabled(), false);
    QCOMPARE(voice.voiceLog(), QStringList());
    QCOMPARE(voice.parent(), nullptr);
    QCOMPARE(log.warnings(), QStringList());
}

void tst_VoiceBridgeMembers::beginsInItsOrder()
{
    const FakePath path(FakePath::Rest::Hidden); // no piper
    MessageLog log;
    const VoiceBridge voice(VoiceFixture::parts());
    QStringList lines;
    for (const MessageLog::Line &line : log.lines()) {
        QCOMPARE(line.type, QtDebugMsg);
        lines.append(line.text);
    }
    const QStringList expected = {
        QStringLiteral("[VoiceBridge] init  sttBackend=whisper-small-q5 sttInputMode=live voiceSubmitMode=auto "
                       "silenceTimeout=700ms confirmDelay=4s logEnabled=false"),
        QStringLiteral("VoiceBridge: TTS unavailable — piper binary not found"),
        QStringLiteral("VoiceBridge: whisper-small: false q5_1: false"),
        QStringLiteral("VoiceBridge: moonshine available: false bin: false model: false"),
        QStringLiteral("VoiceBridge: nemotron available: false bin: false model: false"),
        QStringLiteral("VoiceBridge: live STT available: false"),
        QStringLiteral("VoiceBridge: listening for wake word D-Bus signal"),
        QStringLiteral("SttPostProcessor: loaded 8 product names, 10 aliases, 10 word replacements"),
    };
    QCOMPARE(lines, expected);
}

void tst_VoiceBridgeMembers::modelsAreLoadedLater()
{
    const WhisperModelFile model;
    MessageLog log;
    const VoiceBridge voice(VoiceFixture::parts());
    QVERIFY(voice.whisperSmallQ5Available());
    QVERIFY(!voice.isModelLoaded());
    QCOMPARE(log.count(QStringLiteral("VoiceBridge: loading")), 0);
}

REGISTER_TEST(tst_VoiceBridgeMembers, QCoreApplication)

#include "tst_VoiceBridgeMembers.moc"
