// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "VoiceRun.h"

#include "PrivateNetwork.h"
#include "PulseDaemon.h"
#include "SoundMonitor.h"
#include "Timeouts.h"

#include <QJsonObject>
#include <QTest>

#include <chrono>

using namespace std::chrono_literals;
using VoiceUser::readers;

//! The bridge and the audio daemon end at each stage of a spoken prompt. The built program goes on, and works again as
//! soon as they are back.
class tst_VoiceOutages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bridge();
    void audioDaemon();
};

void tst_VoiceOutages::bridge()
{
    VoiceRun voice(15s); // each countdown is ended by Return
    const auto isGone = [&voice] {
        voice.bridge.close();
        return voice.bridge.listen();
    };
    voice.bridge.close();
    QVERIFY2(voice.start(), voice.program().errors().constData());
    QVERIFY(voice.program().takeKeyboard());

    // Gone when the prompt is sent: it is lost, with an error in the conversation, and the program connects at once.
    QVERIFY(voice.wakeAndListen());
    QVERIFY(voice.speak(QStringLiteral("Sent to no bridge")));
    QVERIFY(voice.bridge.listen());
    voice.program().press("Return");
    QVERIFY(voice.waitForConnection());

    // Gone while listening and while transcribing: the transcript is kept, and sent once a bridge is there.
    QVERIFY(voice.wakeAndListen());
    int before = voice.connections();
    QVERIFY(isGone());
    voice.moonshine.says(QStringLiteral("Gone while listening"));
    voice.moonshine.hold();
    voice.sentence.speak();
    QTRY_COMPARE_WITH_TIMEOUT(voice.moonshine.runs(), 2, Timeouts::Program);
    QVERIFY(voice.waitForConnection(before));
    before = voice.connections();
    QVERIFY(isGone());
    voice.moonshine.releaseAll();
    QTRY_COMPARE_WITH_TIMEOUT(voice.transcripts(), 2, Timeouts::Program);
    QVERIFY(voice.waitForConnection(before));
    voice.program().press("Return");
    voice.bridge.takeRequest(QStringLiteral("chat"));
    QStringList expected {QStringLiteral("Gone while listening, by voice")};
    QCOMPARE(voice.prompts(), expected);

    // Gone during the countdown, and again after the prompt was sent: no reply comes, but the next prompt is sent.
    before = voice.connections();
    QVERIFY(voice.wakeAndListen());
    QVERIFY(voice.speak(QStringLiteral("Gone during the countdown")));
    QVERIFY(isGone());
    QVERIFY(voice.waitForConnection(before));
    voice.program().press("Return");
    voice.bridge.takeRequest(QStringLiteral("chat"));
    expected.append(QStringLiteral("Gone during the countdown, by voice"));
    before = voice.connections();
    QVERIFY(isGone());
    QVERIFY(voice.wakeAndListen());
    QVERIFY(voice.speak(QStringLiteral("Gone before the reply")));
    QVERIFY(voice.waitForConnection(before));
    voice.program().press("Return");
    voice.bridge.takeRequest(QStringLiteral("chat"));
    expected.append(QStringLiteral("Gone before the reply, by voice"));
    QCOMPARE(voice.prompts(), expected);

    QTRY_COMPARE(readers(), 0);
    QVERIFY2(voice.program().closeWindow(), voice.program().errors().constData());
}

void tst_VoiceOutages::audioDaemon()
{
    PulseDaemon daemon;
    VoiceRun voice(0s);
    voice.piper.sounds(440, 60);
    QVERIFY2(voice.start(), voice.program().errors().constData());
    QVERIFY(voice.waitForConnection());
    QVERIFY(voice.program().takeKeyboard());
    voice.focusMicrophone();

    // Killed before listening. Intentional: the button looks as if it were listening until it is held.
    daemon.kill();
    QVERIFY(VoiceUser::wake());
    QTRY_VERIFY_WITH_TIMEOUT(voice.program().errors().contains("voice: Cannot open microphone: Connection refused\n"),
                             Timeouts::Program);
    daemon.start();
    voice.program().pressDown("space");
    QTRY_VERIFY_WITH_TIMEOUT(VoiceUser::wake() && readers() == 1, Timeouts::Program);
    voice.program().letGo("space");

    // Killed while listening, before any speech.
    daemon.kill();
    QTRY_VERIFY_WITH_TIMEOUT(voice.program().errors().contains("voice: No speech detected\n"), Timeouts::Program);
    QTRY_COMPARE(voice.openStreams(), 0);

    // Killed while the user speaks: what was recorded is transcribed. Not needed while the engine works.
    daemon.start();
    QVERIFY(voice.wakeAndListen());
    QCOMPARE(voice.openStreams(), 1);
    voice.moonshine.says(QStringLiteral("Open the dolphine."));
    Sentence longSentence(QStringLiteral("Search for all documents that were modified in the last week"));
    {
        SoundMonitor monitor(QStringLiteral("mic"));
        QTRY_VERIFY(monitor.isListening());
        longSentence.speak();
        QTRY_VERIFY_WITH_TIMEOUT(monitor.levels().size() > SoundMonitor::ChunksPerSecond / 2, Timeouts::Program);
        daemon.kill();
    }
    ScriptedBridge::Request prompt = voice.bridge.takeRequest(QStringLiteral("chat"));
    QStringList expected {QStringLiteral("Open the Dolphin, by voice")};
    QCOMPARE(voice.prompts(), expected);
    QCOMPARE(voice.openStreams(), 0);

    // Gone when the reply is to be spoken.
    const QJsonObject reply {{QStringLiteral("response"), QStringLiteral("It is open.")}};
    voice.bridge.reply(prompt, reply);
    QTRY_COMPARE_WITH_TIMEOUT(voice.piper.runs(), 1, Timeouts::Program);
    QTRY_COMPARE_WITH_TIMEOUT(voice.children(), 0, Timeouts::Program);

    // Killed while the reply is spoken.
    daemon.start();
    QVERIFY(voice.wakeAndListen());
    QVERIFY(voice.speak(QStringLiteral("Undo that")));
    prompt = voice.bridge.takeRequest(QStringLiteral("chat"));
    {
        SoundMonitor monitor;
        voice.bridge.reply(prompt, reply);
        QTRY_VERIFY_WITH_TIMEOUT(!monitor.levels().isEmpty(), Timeouts::Program);
        QCOMPARE(voice.children(), 2);
        daemon.kill();
    }
    QTRY_COMPARE_WITH_TIMEOUT(voice.children(), 0, Timeouts::Program);

    // Back again.
    daemon.start();
    QVERIFY(voice.wakeAndListen());
    QVERIFY(voice.speak(QStringLiteral("What time is it")));
    voice.bridge.takeRequest(QStringLiteral("chat"));
    expected += {QStringLiteral("Undo that, by voice"), QStringLiteral("What time is it, by voice")};
    QCOMPARE(voice.prompts(), expected);
    QTRY_COMPARE(readers(), 0);
    QVERIFY2(voice.program().closeWindow(), voice.program().errors().constData());
}

REGISTER_PRIVATE_NETWORK_TEST(tst_VoiceOutages, QCoreApplication)

#include "tst_VoiceOutages.moc"
