// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "PiperStandIn.h"
#include "VoiceRig.h"
#include "support/MessageLog.h"
#include "support/SignalLog.h"
#include "support/TestSetup.h"
#include "whisper-standin/WhisperStandIn.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFile>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

namespace
{

const QString s_path = QStringLiteral("/org/kde/loomra/WakeWord");
const QString s_interface = QStringLiteral("org.kde.loomra.WakeWord");
const QString s_member = QStringLiteral("Activated");
const QString s_phrase = QStringLiteral("hey %1");

//! The detector, on a connection of its own to the bus.
class Detector
{
public:
    Detector()
        : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("detector")))
    {
    }
    ~Detector() { QDBusConnection::disconnectFromBus(QStringLiteral("detector")); }
    Q_DISABLE_COPY_MOVE(Detector)

    bool hears(const QVariant &phrase = s_phrase, const QString &path = s_path, const QString &interface = s_interface,
               const QString &member = s_member)
    {
        QDBusMessage signal = QDBusMessage::createSignal(path, interface, member);
        signal << phrase;
        return m_bus.send(signal);
    }

private:
    QDBusConnection m_bus;
};

//! What the user's manager was asked for.
QByteArrayList requestsToTheManager()
{
    QFile file(qEnvironmentVariable("TOVICTL_SYSTEMCTL_LOG"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().split('\n') : QByteArrayList();
}

const QByteArray s_start = QByteArrayLiteral("--user start tovi-wakeword.service");
const QByteArray s_stop = QByteArrayLiteral("--user stop tovi-wakeword.service");

} // namespace

//! The wake word, over a real session bus.
class tst_VoiceBridgeWakeWord : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void startsListening();
    void onlyItsSignalCounts();
    void duringACapture();
    void duringATranscription();
    void cutsSpeechOff();
    void asksForTheService();
    void asksForTheServiceAtStart();
    void withoutAManager();
};

void tst_VoiceBridgeWakeWord::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_VoiceBridgeWakeWord::init()
{
    TestSetup::clearSettings();
    WhisperStandIn::reset();
    QFile::remove(qEnvironmentVariable("TOVICTL_SYSTEMCTL_LOG"));
}

void tst_VoiceBridgeWakeWord::startsListening()
{
    const WhisperModelFile model;
    MessageLog messages;
    ScriptedMicrophone microphone;
    VoiceBridge voice(VoiceRig::partsWith(microphone), nullptr);
    QVERIFY(!voice.wakeWordEnabled()); // it is acted on all the same
    SignalLog heard(&voice);
    Detector detector;
    QVERIFY(detector.hears());
    QTRY_VERIFY(voice.isListening());
    QCOMPARE(heard.entries().constFirst(), QStringLiteral("wakeWordActivated(\"hey %1\")"));
    QVERIFY(messages.has(QtDebugMsg, QStringLiteral("VoiceBridge: wake word activated: \"hey %1\"")));
}

void tst_VoiceBridgeWakeWord::onlyItsSignalCounts()
{
    MessageLog messages;
    ScriptedMicrophone microphone;
    VoiceBridge voice(VoiceRig::partsWith(microphone), nullptr);
    QSignalSpy activations(&voice, &VoiceBridge::wakeWordActivated);
    Detector detector;
    QVERIFY(detector.hears(s_phrase, QStringLiteral("/org/kde/loomra/Other")));
    QVERIFY(detector.hears(s_phrase, s_path, QStringLiteral("org.kde.loomra.Other")));
    QVERIFY(detector.hears(s_phrase, s_path, s_interface, QStringLiteral("Deactivated")));
    QVERIFY(detector.hears(7));
    // What was sent before has arrived when this one does.
    QVERIFY(detector.hears());
    QTRY_COMPARE(activations.size(), 1);
    QCOMPARE(activations.constFirst().constFirst().toString(), s_phrase);
}

void tst_VoiceBridgeWakeWord::duringACapture()
{
    const WhisperModelFile model;
    MessageLog messages;
    ScriptedMicrophone microphone;
    VoiceBridge voice(VoiceRig::partsWith(microphone), nullptr);
    voice.setVoiceLogEnabled(true);
    QSignalSpy activations(&voice, &VoiceBridge::wakeWordActivated);
    voice.startListening();
    Detector detector;
    QVERIFY(detector.hears());
    QTRY_COMPARE(activations.size(), 1);
    QVERIFY(voice.isListening());
    QCOMPARE(VoiceRig::logEntries(voice).filter(QStringLiteral("START")).size(), 1);
}

void tst_VoiceBridgeWakeWord::duringATranscription()
{
    const WhisperModelFile model;
    MessageLog messages;
    ScriptedMicrophone microphone;
    VoiceBridge voice(VoiceRig::partsWith(microphone), nullptr);
    voice.setSilenceTimeoutMs(200);
    QSignalSpy activations(&voice, &VoiceBridge::wakeWordActivated);
    WhisperStandIn::hold();
    microphone.hear(5, ScriptedMicrophone::Loud);
    voice.startListening();
    QTRY_VERIFY(voice.isTranscribing());
    Detector detector;
    QVERIFY(detector.hears());
    QTRY_COMPARE(activations.size(), 1);
    QVERIFY(!voice.isListening());
    QVERIFY(voice.isTranscribing());
    WhisperStandIn::letGo();
    QTRY_VERIFY(!voice.isTranscribing());
    QVERIFY(!voice.isListening());
}

void tst_VoiceBridgeWakeWord::cutsSpeechOff()
{
    PiperStandIn piper;
    piper.hangs();
    const WhisperModelFile model;
    MessageLog messages;
    ScriptedMicrophone microphone;
    VoiceBridge voice(VoiceRig::partsWith(microphone), nullptr);
    voice.setTtsEnabled(true);
    voice.speak(QStringLiteral("a long reply"));
    QVERIFY(voice.isSpeaking());
    Detector detector;
    QVERIFY(detector.hears());
    QTRY_VERIFY(voice.isListening());
    QVERIFY(!voice.isSpeaking());
}

void tst_VoiceBridgeWakeWord::asksForTheService()
{
    MessageLog messages;
    VoiceBridge voice;
    QVERIFY(requestsToTheManager().isEmpty());
    SignalLog heard(&voice);
    voice.setWakeWordEnabled(true);
    QTRY_COMPARE(requestsToTheManager(), (QByteArrayList {s_start, QByteArray()}));
    voice.setWakeWordEnabled(true); // starts nothing
    voice.setWakeWordEnabled(false);
    QTRY_COMPARE(requestsToTheManager(), (QByteArrayList {s_start, s_stop, QByteArray()}));
    QCOMPARE(heard.entries(),
             (QStringList {QStringLiteral("wakeWordEnabledChanged()"), QStringLiteral("wakeWordEnabledChanged()")}));
    QVERIFY(messages.has(QtDebugMsg, QStringLiteral("VoiceBridge: requested tovi-wakeword.service start")));
    QVERIFY(messages.has(QtDebugMsg, QStringLiteral("VoiceBridge: requested tovi-wakeword.service stop")));
}

void tst_VoiceBridgeWakeWord::asksForTheServiceAtStart()
{
    QSettings().setValue(QStringLiteral("voice/wakeWordEnabled"), true);
    MessageLog messages;
    {
        const VoiceBridge voice;
        QVERIFY(voice.wakeWordEnabled());
        QTRY_COMPARE(requestsToTheManager(), (QByteArrayList {s_start, QByteArray()}));
        // The last thing that it does.
        QCOMPARE(messages.lines().constLast().text,
                 QStringLiteral("VoiceBridge: requested tovi-wakeword.service start"));
    }
    // The service stays when the program ends.
    QCOMPARE(requestsToTheManager(), (QByteArrayList {s_start, QByteArray()}));
}

void tst_VoiceBridgeWakeWord::withoutAManager()
{
    const FakePath path(FakePath::Rest::Hidden);
    MessageLog messages;
    VoiceBridge voice;
    QSignalSpy errors(&voice, &VoiceBridge::errorOccurred);
    voice.setWakeWordEnabled(true);
    QVERIFY(voice.wakeWordEnabled());
    QCOMPARE(errors.size(), 0);
    QCOMPARE(messages.warnings(), QStringList());
}

QTEST_GUILESS_MAIN(tst_VoiceBridgeWakeWord)

#include "tst_VoiceBridgeWakeWord.moc"
