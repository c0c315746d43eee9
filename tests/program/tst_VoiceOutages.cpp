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
    int connections = 0;
    const auto restart = [&] {
        connections = voice.connections();
        voice.bridge.close();
        return voice.bridge.listen();
    };
    voice.bridge.close();
    QVERIFY2(voice.start(), voice.program().errors().constData());
    QVERIFY(voice.program().takeKeyboard());

    // Gone from the start. Intentional: a prompt that is sent to no bridge is lost. The program then connects at once.
    QVERIFY(voice.wakeAndListen());
    QVERIFY(voice.speak(QStringLiteral("Gone from the start")));
    QVERIFY(voice.bridge.listen());
    voice.program().press("Return");
    QVERIFY(voice.waitForConnection());

    // Gone while transcribing, and not yet connected again when the prompt is sent.
    QVERIFY(voice.wakeAndListen());
    voice.moonshine.says(QStringLiteral("Gone while transcribing"));
    voice.moonshine.hold();
    voice.sentence.speak();
    QTRY_COMPARE_WITH_TIMEOUT(voice.moonshine.runs(), 2, Timeouts::Program);
    QVERIFY(restart());
    voice.moonshine.releaseAll();
    QTRY_COMPARE_WITH_TIMEOUT(voice.transcripts(), 2, Timeouts::Program);
    voice.program().press("Return");
    QVERIFY(voice.waitForConnection(connections));

    // Gone while listening. The transcript waits in the input, and is sent when the bridge is back.
    QVERIFY(voice.wakeAndListen());
    QVERIFY(restart());
    QVERIFY(voice.speak(QStringLiteral("Gone while listening")));
    QVERIFY(voice.waitForConnection(connections));
    voice.program().press("Return");
    QTRY_VERIFY(voice.prompts().contains(QStringLiteral("Gone while listening, by voice")));

    // Gone after the prompt was sent: no reply comes, but the next prompt waits for the bridge and is sent.
    QVERIFY(restart());
    QVERIFY(voice.wakeAndListen());
    QVERIFY(voice.speak(QStringLiteral("Gone after the prompt")));
    QVERIFY(voice.waitForConnection(connections));
    voice.program().press("Return");
    QTRY_VERIFY(voice.prompts().contains(QStringLiteral("Gone after the prompt, by voice")));

    // Gone during the countdown.
    QVERIFY(voice.wakeAndListen());
    QVERIFY(voice.speak(QStringLiteral("Gone during the countdown")));
    QVERIFY(restart());
    voice.program().press("Return");
    QVERIFY(voice.waitForConnection(connections));

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

    // Killed while the user speaks: what was recorded is transcribed.
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

    // Killed while transcribing.
    daemon.start();
    QVERIFY(voice.wakeAndListen());
    voice.moonshine.says(QStringLiteral("Undo that"));
    voice.moonshine.hold();
    voice.sentence.speak();
    QTRY_COMPARE_WITH_TIMEOUT(voice.moonshine.runs(), 2, Timeouts::Program);
    daemon.kill();
    voice.moonshine.releaseAll();
    prompt = voice.bridge.takeRequest(QStringLiteral("chat"));

    // Killed while the reply is spoken.
    daemon.start();
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
