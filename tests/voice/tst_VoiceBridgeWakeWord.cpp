// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Files.h"
#include "MessageLog.h"
#include "PiperStandIn.h"
#include "SignalLog.h"
#include "TestRegistry.h"
#include "TestSetup.h"
#include "VoiceFixture.h"
#include "WhisperStandIn.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFile>
#include <QRegularExpression>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

namespace
{

const QString s_path = QStringLiteral("/org/kde/loomra/WakeWord");
const QString s_interface = QStringLiteral("org.kde.loomra.WakeWord");
const QString s_member = QStringLiteral("Activated");
const QString s_phrase = QStringLiteral("hey %1");

//! The detector, with its own connection to the bus.
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

//! A reply that is read aloud until it is stopped.
class LongReply
{
public:
    LongReply()
    {
        m_piper.hangs();
        m_paplay.playsOn();
    }

    //! Returns true once it is read aloud.
    bool begins(VoiceBridge &voice)
    {
        voice.setTtsEnabled(true);
        voice.speak(QStringLiteral("a long reply"));
        return voice.isSpeaking() && QTest::qWaitFor([this] { return m_paplay.runs() == 1; });
    }

private:
    PiperStandIn m_piper;
    PaplayStandIn m_paplay;
};

//! The arguments of the recorded calls of systemctl.
QByteArrayList systemctlCalls()
{
    const QByteArray log = contentOf(qEnvironmentVariable("TOVICTL_SYSTEMCTL_LOG"));
    return log.isEmpty() ? QByteArrayList() : log.split('\n');
}

//! The recorded signals that concern the wake word, each once: how often the end of speech is reported depends on which
//! of piper and paplay ends first.
QStringList wakeWordEvents(const SignalLog &emitted)
{
    QStringList events =
        emitted.entries().filter(QRegularExpression(QStringLiteral("^(wakeWord|speaking|listening|transcribing)")));
    events.removeDuplicates();
    return events;
}

const QString s_activated = QStringLiteral("wakeWordActivated(\"hey %1\")");
const QStringList s_speechEnds = {QStringLiteral("speakingChanged()"), QStringLiteral("speakingFinished()")};

const QByteArray s_start = QByteArrayLiteral("--user start tovi-wakeword.service");
const QByteArray s_stop = QByteArrayLiteral("--user stop tovi-wakeword.service");

} // namespace

//! The wake word, with a real session bus.
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
    void startsAndStopsTheService();
    void startsTheServiceOnConstruction();
    void withoutSystemctl();
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
    VoiceBridge voice(VoiceFixture::parts(microphone));
    QVERIFY(!voice.wakeWordEnabled()); // the signal is handled anyway
    SignalLog emitted(&voice);
    Detector detector;
    QVERIFY(detector.hears());
    QTRY_VERIFY(voice.isListening());
    QCOMPARE(emitted.entries().constFirst(), s_activated);
    QVERIFY(messages.has(QtDebugMsg, QStringLiteral("VoiceBridge: wake word activated: \"hey %1\"")));
}

void tst_VoiceBridgeWakeWord::onlyItsSignalCounts()
{
    MessageLog messages;
    ScriptedMicrophone microphone;
    VoiceBridge voice(VoiceFixture::parts(microphone));
    QSignalSpy activations(&voice, &VoiceBridge::wakeWordActivated);
    Detector detector;
    QVERIFY(detector.hears(s_phrase, QStringLiteral("/org/kde/loomra/Other")));
    QVERIFY(detector.hears(s_phrase, s_path, QStringLiteral("org.kde.loomra.Other")));
    QVERIFY(detector.hears(s_phrase, s_path, s_interface, QStringLiteral("Deactivated")));
    QVERIFY(detector.hears(7));
    // When this signal arrives, the ones before have arrived.
    QVERIFY(detector.hears());
    QTRY_COMPARE(activations.size(), 1);
    QCOMPARE(activations.constFirst().constFirst().toString(), s_phrase);
}

void tst_VoiceBridgeWakeWord::duringACapture()
{
    LongReply reply;
    const WhisperModelFile model;
    MessageLog messages;
    ScriptedMicrophone microphone;
    VoiceBridge voice(VoiceFixture::parts(microphone));
    voice.setVoiceLogEnabled(true);
    voice.startListening();
    QVERIFY(reply.begins(voice));
    SignalLog emitted(&voice);
    Detector detector;
    QVERIFY(detector.hears());
    QTRY_VERIFY(!voice.isSpeaking());
    QVERIFY(voice.isListening());
    QCOMPARE(wakeWordEvents(emitted), QStringList {s_activated} + s_speechEnds);
    QCOMPARE(VoiceFixture::logEntries(voice).filter(QStringLiteral("START")).size(), 1);
}

void tst_VoiceBridgeWakeWord::duringATranscription()
{
    LongReply reply;
    const WhisperModelFile model;
    MessageLog messages;
    ScriptedMicrophone microphone;
    VoiceBridge voice(VoiceFixture::parts(microphone));
    voice.setSilenceTimeoutMs(200);
    const WhisperStandIn::Held held;
    microphone.hear(5, ScriptedMicrophone::Loud);
    voice.startListening();
    QTRY_VERIFY(voice.isTranscribing());
    QVERIFY(reply.begins(voice));
    SignalLog emitted(&voice);
    Detector detector;
    QVERIFY(detector.hears());
    QTRY_VERIFY(!voice.isSpeaking());
    QVERIFY(!voice.isListening());
    QVERIFY(voice.isTranscribing());
    WhisperStandIn::letGo();
    QTRY_VERIFY(!voice.isTranscribing());
    QVERIFY(!voice.isListening());
    QCOMPARE(wakeWordEvents(emitted),
             QStringList {s_activated} + s_speechEnds + QStringList {QStringLiteral("transcribingChanged()")});
}

void tst_VoiceBridgeWakeWord::cutsSpeechOff()
{
    LongReply reply;
    const WhisperModelFile model;
    MessageLog messages;
    ScriptedMicrophone microphone;
    VoiceBridge voice(VoiceFixture::parts(microphone));
    QVERIFY(reply.begins(voice));
    SignalLog emitted(&voice);
    Detector detector;
    QVERIFY(detector.hears());
    QTRY_VERIFY(voice.isListening());
    QVERIFY(!voice.isSpeaking());
    // The microphone must not record the speech.
    QCOMPARE(wakeWordEvents(emitted),
             QStringList {s_activated} + s_speechEnds + QStringList {QStringLiteral("listeningChanged()")});
}

void tst_VoiceBridgeWakeWord::startsAndStopsTheService()
{
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    QVERIFY(systemctlCalls().isEmpty());
    SignalLog emitted(&voice);
    voice.setWakeWordEnabled(true);
    QTRY_COMPARE(systemctlCalls(), (QByteArrayList {s_start, QByteArray()}));
    voice.setWakeWordEnabled(true); // no change, no call
    voice.setWakeWordEnabled(false);
    QTRY_COMPARE(systemctlCalls(), (QByteArrayList {s_start, s_stop, QByteArray()}));
    // VoiceBridge doesn't wait for systemctl. A wrong call may be recorded late, but hardly after this one.
    voice.setWakeWordEnabled(true);
    QTRY_COMPARE(systemctlCalls(), (QByteArrayList {s_start, s_stop, s_start, QByteArray()}));
    const QString changed = QStringLiteral("wakeWordEnabledChanged()");
    QCOMPARE(emitted.entries(), (QStringList {changed, changed, changed}));
    const QString requested = QStringLiteral("VoiceBridge: requested tovi-wakeword.service ");
    QCOMPARE(messages.count(requested), 3);
    QVERIFY(messages.has(QtDebugMsg, requested + QLatin1String("start")));
    QVERIFY(messages.has(QtDebugMsg, requested + QLatin1String("stop")));
}

void tst_VoiceBridgeWakeWord::startsTheServiceOnConstruction()
{
    QSettings().setValue(QStringLiteral("voice/wakeWordEnabled"), true);
    MessageLog messages;
    {
        const VoiceBridge voice(VoiceFixture::parts());
        QVERIFY(voice.wakeWordEnabled());
        QTRY_COMPARE(systemctlCalls(), (QByteArrayList {s_start, QByteArray()}));
        // The last step of the construction.
        QCOMPARE(messages.lines().constLast().text,
                 QStringLiteral("VoiceBridge: requested tovi-wakeword.service start"));
    }
    // The service isn't stopped with the program.
    QCOMPARE(systemctlCalls(), (QByteArrayList {s_start, QByteArray()}));
}

void tst_VoiceBridgeWakeWord::withoutSystemctl()
{
    const FakePath path(FakePath::Rest::Hidden);
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    QSignalSpy errors(&voice, &VoiceBridge::errorOccurred);
    voice.setWakeWordEnabled(true);
    QVERIFY(voice.wakeWordEnabled());
    QCOMPARE(errors.size(), 0);
    QCOMPARE(messages.warnings(), QStringList());
}

REGISTER_TEST(tst_VoiceBridgeWakeWord, QCoreApplication)

#include "tst_VoiceBridgeWakeWord.moc"
