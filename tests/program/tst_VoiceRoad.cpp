// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "VoiceRun.h"

#include "PrivateNetwork.h"
#include "SoundMonitor.h"
#include "Timeouts.h"

#include <QElapsedTimer>
#include <QJsonObject>
#include <QTest>

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;
using VoiceUser::readers;

namespace
{

//! Ended by a key: no test waits for it.
constexpr auto s_longCountdown = 15s;

} // namespace

//! Spoken prompts in the built program: from the microphone to the bridge, and back to the speaker.
class tst_VoiceRoad : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fromTheWakeWordToTheSpokenReply();
    void cancelledAtEachStage();
};

void tst_VoiceRoad::fromTheWakeWordToTheSpokenReply()
{
    VoiceRun voice(1s, QStringLiteral("Open the dolphin"));
    voice.piper.sounds(440, 1);
    QVERIFY2(voice.start(), voice.program().errors().constData());
    QVERIFY(voice.waitForConnection());
    QVERIFY(voice.wakeAndListen());
    voice.moonshine.says(QStringLiteral("Open the dolphine."));
    voice.moonshine.hold();
    voice.sentence.speak();
    QTRY_COMPARE_WITH_TIMEOUT(voice.moonshine.runs(), 1, Timeouts::Program);
    QTRY_COMPARE(readers(), 0);
    const std::size_t recorded = Sentence::samplesIn(voice.moonshine.wav()).size();
    QVERIFY2(recorded > voice.sentence.samples().size() / 2, qPrintable(QString::number(recorded)));

    QElapsedTimer countdown;
    countdown.start();
    voice.moonshine.release();
    const ScriptedBridge::Request prompt = voice.bridge.takeRequest(QStringLiteral("chat"));
    // Timers of QML may be early by 5 %.
    QVERIFY2(countdown.elapsed() >= 900, qPrintable(QString::number(countdown.elapsed())));
    QCOMPARE(voice.prompts(), QStringList {QStringLiteral("Open the Dolphin, by voice")});
    QVERIFY(voice.program().errors().contains("SttPostProcessor: \"Open the dolphine.\" -> \"Open the Dolphin\"\n"));

    SoundMonitor monitor;
    QTRY_VERIFY(monitor.isListening());
    QCOMPARE(monitor.levels().size(), 0);
    voice.bridge.reply(prompt, QJsonObject {{QStringLiteral("response"), QStringLiteral("It is **open**.")}});
    QTRY_VERIFY_WITH_TIMEOUT(monitor.frequencies().size() > SoundMonitor::ChunksPerSecond / 2, Timeouts::Program);
    QCOMPARE(voice.piper.text(), QStringLiteral("It is open."));
    QVector<int> frequencies = monitor.frequencies();
    std::sort(frequencies.begin(), frequencies.end());
    const int median = frequencies.at(frequencies.size() / 2);
    QVERIFY2(qAbs(median - 440) <= 20, qPrintable(QString::number(median)));

    QVERIFY2(voice.program().closeWindow(), voice.program().errors().constData());
    QCOMPARE(voice.program().unexpectedWords(), QString());
}

void tst_VoiceRoad::cancelledAtEachStage()
{
    VoiceRun voice(s_longCountdown);
    QVERIFY2(voice.start(), voice.program().errors().constData());
    QVERIFY(voice.waitForConnection());
    QVERIFY(voice.program().takeKeyboard());

    // While listening.
    voice.focusMicrophone();
    QVERIFY(voice.pressAndListen());
    QVERIFY(voice.holdUntilSilent());

    // While transcribing. The button then listens again, although the engine is still busy.
    QVERIFY(voice.pressAndListen());
    voice.moonshine.says(QStringLiteral("Close all windows"));
    voice.moonshine.hold();
    voice.sentence.speak();
    QTRY_COMPARE_WITH_TIMEOUT(voice.moonshine.runs(), 1, Timeouts::Program);
    QTRY_COMPARE(readers(), 0);
    voice.program().press("Return");
    QVERIFY(voice.pressAndListen());
    QVERIFY(voice.holdUntilSilent());

    // Intentional: the engine isn't stopped, and its transcript still waits for confirmation. Cancelled by key.
    voice.moonshine.releaseAll();
    QTRY_COMPARE_WITH_TIMEOUT(voice.transcripts(), 1, Timeouts::Program);
    voice.program().press("Escape");

    // Cancelled by voice.
    QVERIFY(voice.wakeAndListen());
    QVERIFY(voice.speak(QStringLiteral("Empty the trash")));
    QVERIFY(voice.wakeAndListen());
    QVERIFY(voice.speak(QStringLiteral("Cancel that")));

    // Not cancelled, and sent before the end of the countdown. Nothing of the others is left.
    voice.focusMicrophone();
    QVERIFY(voice.pressAndListen());
    QVERIFY(voice.speak(QStringLiteral("Open the dolphine.")));
    voice.program().press("Return");
    voice.bridge.takeRequest(QStringLiteral("chat"));
    QCOMPARE(voice.prompts(), QStringList {QStringLiteral("Open the Dolphin, by voice")});

    QTRY_COMPARE(readers(), 0);
    QVERIFY2(voice.program().closeWindow(), voice.program().errors().constData());
}

REGISTER_PRIVATE_NETWORK_TEST(tst_VoiceRoad, QCoreApplication)

#include "tst_VoiceRoad.moc"
