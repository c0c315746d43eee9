// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FaultyVoiceRun.h"
#include "MachineFaults.h"
#include "ScreenReader.h"

#include "BundledBridge.h"
#include "PrivateNetwork.h"
#include "SoundMonitor.h"
#include "Timeouts.h"

#include <QElapsedTimer>
#include <QJsonObject>
#include <QTest>

#include <chrono>
#include <csignal>
#include <memory>

using namespace std::chrono_literals;
using MachineFaults::Fault;
using VoiceUser::readers;

namespace
{

const QString s_button = QStringLiteral("push button");

} // namespace

//! Spoken prompts in the OmniBar on a machine at fault: it goes on, and the next prompt is heard, sent and answered
//! aloud. tst_VoiceOutages has the faults of the audio server, and the end of the bridge at each stage of a prompt.
class tst_VoiceFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void machine_data() { MachineFaults::addRows(); }
    void machine();
    void voiceTestLogOnAFullDisk();
    void engine();
    void voice();
    void suspended();
    void clockIsSet();
    void bridgeHangs();
    void bridgeAnswersWithRubbish();
    void bridgeEndsWhileRephrasing();
    void displayGoesAway_data();
    void displayGoesAway();

private:
    //! Starts the program with a countdown of this length.
    bool start(std::chrono::seconds confirmDelay = 0s);
    //! Says a sentence that is understood and sent.
    ScriptedBridge::Request say(const QString &sentence);
    //! Says a sentence, whose reply is read aloud.
    bool converse(const QString &sentence);
    //! Waits for words on standard error that weren't there before the last call.
    bool waitForWords(const QByteArray &words);
    //! Closes the window. @return whether nothing was left behind
    bool end();

    std::unique_ptr<FaultyVoiceRun> m_voice;
    int m_seen = 0; //!< of the program's standard error
};

void tst_VoiceFaults::init()
{
    m_voice.reset();
    m_seen = 0;
}

bool tst_VoiceFaults::start(std::chrono::seconds confirmDelay)
{
    if (!m_voice) {
        m_voice = std::make_unique<FaultyVoiceRun>(confirmDelay);
    }
    m_voice->piper.sounds(440, 1);
    return m_voice->start() && m_voice->waitForConnection() && m_voice->program().takeKeyboard();
}

ScriptedBridge::Request tst_VoiceFaults::say(const QString &sentence)
{
    if (!m_voice->wakeAndListen() || !m_voice->speak(sentence)) {
        return {};
    }
    const ScriptedBridge::Request prompt = m_voice->bridge.takeRequest(QStringLiteral("chat"));
    return prompt.params.value(QLatin1String("message")) == sentence ? prompt : ScriptedBridge::Request();
}

bool tst_VoiceFaults::converse(const QString &sentence)
{
    const ScriptedBridge::Request prompt = say(sentence);
    const int runs = m_voice->piper.runs();
    const QString reply = QStringLiteral("You said ") + sentence;
    m_voice->bridge.reply(prompt, QJsonObject {{QStringLiteral("response"), reply}});
    return prompt.id != 0
        && QTest::qWaitFor([&] { return m_voice->piper.runs() > runs && m_voice->piper.text() == reply; },
                           Timeouts::Program)
        && QTest::qWaitFor([this] { return m_voice->children() == 0; }, Timeouts::Program);
}

bool tst_VoiceFaults::waitForWords(const QByteArray &words)
{
    int position = -1;
    const bool came = QTest::qWaitFor(
        [&] { return (position = m_voice->program().errors().indexOf(words, m_seen)) >= 0; }, Timeouts::Program);
    m_seen = position + words.size();
    return came;
}

bool tst_VoiceFaults::end()
{
    return m_voice->program().closeWindow() && m_voice->tempFiles().isEmpty() && m_voice->areSettingsKept()
        && !VoiceUser::isAnyAlive(m_voice->moonshine.processIds() + m_voice->piper.processIds()) && readers() == 0;
}

void tst_VoiceFaults::machine()
{
    QFETCH(MachineFaults::Fault, fault);
    m_voice = std::make_unique<FaultyVoiceRun>(0s);
    MachineFaults::arrange(fault, m_voice->environment, m_voice->faults);
    QVERIFY2(start(), m_voice->program().errors().constData());
    switch (fault) {
    case Fault::NoSessionBus: // and thus no wake word
        m_voice->focusMicrophone();
        QVERIFY(m_voice->pressAndListen());
        QVERIFY(m_voice->speak(QStringLiteral("open the browser")));
        QVERIFY(m_voice->bridge.takeRequest(QStringLiteral("chat")).id != 0);
        break;
    case Fault::NoHome:
    case Fault::NoNameOfTheHome: // and thus no engine
        m_voice->focusMicrophone();
        m_voice->program().press("Return");
        QVERIFY(waitForWords("voice: Whisper model not found. Download ggml-base.en.bin to "));
        m_voice->program().press("shift+Tab");
        m_voice->program().press("shift+Tab");
        m_voice->program().type("hello");
        m_voice->program().press("Return");
        QCOMPARE(m_voice->bridge.takeRequest(QStringLiteral("chat")).params.value(QLatin1String("message")).toString(),
                 QStringLiteral("hello"));
        break;
    case Fault::ReadOnlyHome:
    case Fault::FullDisk:
        QVERIFY(m_voice->wakeAndListen());
        m_voice->sentence.speak();
        QVERIFY(waitForWords(fault == Fault::FullDisk ? "voice: Failed to write temp WAV"
                                                      : "voice: Cannot create temp WAV file"));
        m_voice->faults.setDisk(FaultState::Works);
        QVERIFY(converse(QStringLiteral("open the browser")));
        MachineFaults::arrange(fault, m_voice->environment, m_voice->faults);
        break;
    case Fault::NoThemeAndIcons:
        QVERIFY(converse(QStringLiteral("open the browser")));
        break;
    }
    QVERIFY2(end(), m_voice->program().errors().constData());
    QVERIFY2(m_voice->program().errors().contains(MachineFaults::words(fault)),
             m_voice->program().errors().constData());
}

//! The result of a sentence that was read aloud in the settings counts, although it can't be logged.
void tst_VoiceFaults::voiceTestLogOnAFullDisk()
{
    const ScreenReader reader(ScreenReader::Events::None);
    QVERIFY2(start(), m_voice->program().errors().constData());
    const auto press = [&reader](const QString &button) {
        return QTest::qWaitFor([&] { return reader.press(s_button, button); }, Timeouts::Program);
    };
    QVERIFY(press(QStringLiteral("Settings")));
    QVERIFY(QTest::qWaitFor([&] { return reader.focus(QStringLiteral("page tab"), QStringLiteral("Voice")); },
                            Timeouts::Program));
    QTRY_COMPARE_WITH_TIMEOUT(reader.focused(), QStringLiteral("page tab: Voice"), Timeouts::Program);
    m_voice->program().press("space");

    const struct
    {
        FaultState::Disk disk;
        QByteArray words;
    } rounds[] = {{FaultState::Full, "VoiceBridge: cannot append voice test log: "},
                  {FaultState::Works, "VoiceBridge: voice test feedback logged "}};
    int submitted = 0;
    for (const auto &[disk, words] : rounds) {
        m_voice->faults.setDisk(FaultState::Works);
        QVERIFY(press(QStringLiteral("Start listening")));
        QTRY_COMPARE_WITH_TIMEOUT(readers(), 1, Timeouts::Program);
        QVERIFY(m_voice->speak(QStringLiteral("go back")));
        m_voice->faults.setDisk(disk);
        QVERIFY(press(QStringLiteral("Submit")));
        QVERIFY(waitForWords(words));
        const QString progress = QStringLiteral("%1 of 10 submitted").arg(++submitted);
        QTRY_VERIFY_WITH_TIMEOUT(reader.shown(QStringLiteral("label")).contains(progress), Timeouts::Program);
    }
    QVERIFY2(end(), m_voice->program().errors().constData());
}

void tst_VoiceFaults::engine()
{
    QVERIFY2(start(), m_voice->program().errors().constData());
    const auto failsWith = [this](const QByteArray &words) {
        if (!m_voice->wakeAndListen()) {
            return false;
        }
        m_voice->sentence.speak();
        return waitForWords("voice: " + words) && m_voice->tempFiles().isEmpty();
    };
    m_voice->moonshine.crashes("half a tr");
    QVERIFY(failsWith("sherpa-onnx-offline failed: half a tr"));
    m_voice->moonshine.behaves("head -c 1000000 /dev/urandom; exit 1");
    QVERIFY(failsWith("sherpa-onnx-offline failed: "));
    m_voice->moonshine.cannotStart();
    QVERIFY(failsWith("Failed to start sherpa-onnx-offline"));

    // It hangs, is cancelled by the user, and is killed at last.
    m_voice->moonshine.hangs();
    const int runs = m_voice->moonshine.runs();
    QVERIFY(m_voice->wakeAndListen());
    m_voice->sentence.speak();
    QTRY_COMPARE_WITH_TIMEOUT(m_voice->moonshine.runs(), runs + 1, Timeouts::Program);
    m_voice->focusMicrophone();
    m_voice->program().press("Return");
    QVERIFY(m_voice->pressAndListen());
    QVERIFY(m_voice->holdUntilSilent());
    QCOMPARE(::kill(static_cast<pid_t>(m_voice->moonshine.processIds().constLast()), SIGKILL), 0);
    QVERIFY(waitForWords("voice: sherpa-onnx-offline failed: "));

    QVERIFY(converse(QStringLiteral("open the browser")));
    QVERIFY2(end(), m_voice->program().errors().constData());
}

//! The program that speaks. The reply is shown all the same.
void tst_VoiceFaults::voice()
{
    const ScreenReader reader(ScreenReader::Events::None);
    QVERIFY2(start(), m_voice->program().errors().constData());
    int replies = 0;
    const auto isReplyShown = [&] {
        const ScriptedBridge::Request prompt = say(QStringLiteral("open the browser"));
        const QString reply = QStringLiteral("Reply %1").arg(++replies);
        m_voice->bridge.reply(prompt, QJsonObject {{QStringLiteral("response"), reply}});
        return prompt.id != 0
            && QTest::qWaitFor([&] { return !reader.shown(QStringLiteral("list item")).filter(reply).isEmpty(); },
                               Timeouts::Program);
    };
    m_voice->piper.crashes();
    QVERIFY(isReplyShown());
    QTRY_COMPARE_WITH_TIMEOUT(m_voice->piper.runs(), 1, Timeouts::Program);
    QTRY_COMPARE_WITH_TIMEOUT(m_voice->children(), 0, Timeouts::Program);

    m_voice->piper.behaves("head -c 20000 /dev/urandom >&2; exit 3");
    QVERIFY(isReplyShown());
    QTRY_COMPARE_WITH_TIMEOUT(m_voice->piper.runs(), 2, Timeouts::Program);
    QTRY_COMPARE_WITH_TIMEOUT(m_voice->children(), 0, Timeouts::Program);

    m_voice->piper.cannotStart();
    QVERIFY(isReplyShown());
    QVERIFY(waitForWords("VoiceBridge: failed to start piper"));

    // It hangs until the wake word stops it.
    m_voice->piper.hangs();
    QVERIFY(isReplyShown());
    QTRY_COMPARE_WITH_TIMEOUT(m_voice->piper.runs(), 3, Timeouts::Program);
    m_voice->piper.sounds(440, 1);
    QVERIFY(converse(QStringLiteral("mute the volume")));

    // It hangs while the window is closed.
    m_voice->piper.hangs();
    QVERIFY(isReplyShown());
    QTRY_COMPARE_WITH_TIMEOUT(m_voice->piper.runs(), 5, Timeouts::Program);
    QVERIFY2(end(), m_voice->program().errors().constData());
}

void tst_VoiceFaults::suspended()
{
    QVERIFY2(start(), m_voice->program().errors().constData());

    // While it listens.
    QVERIFY(m_voice->wakeAndListen());
    m_voice->moonshine.says(QStringLiteral("open the browser"));
    m_voice->program().send(SIGSTOP);
    m_voice->sentence.speakToTheEnd();
    m_voice->program().send(SIGCONT);
    QVERIFY(m_voice->bridge.takeRequest(QStringLiteral("chat")).id != 0);

    // While the engine works, which ends meanwhile.
    m_voice->moonshine.says(QStringLiteral("mute the volume"));
    m_voice->moonshine.hold();
    QVERIFY(m_voice->wakeAndListen());
    m_voice->sentence.speak();
    QTRY_COMPARE_WITH_TIMEOUT(m_voice->moonshine.runs(), 2, Timeouts::Program);
    m_voice->program().send(SIGSTOP);
    m_voice->moonshine.releaseAll();
    m_voice->program().send(SIGCONT);
    const ScriptedBridge::Request prompt = m_voice->bridge.takeRequest(QStringLiteral("chat"));
    QCOMPARE(prompt.params.value(QLatin1String("message")).toString(), QStringLiteral("mute the volume"));

    // While it speaks. What was synthesized is played to its end meanwhile.
    {
        SoundMonitor monitor;
        QTRY_VERIFY(monitor.isListening());
        m_voice->bridge.reply(prompt, QJsonObject {{QStringLiteral("response"), QStringLiteral("It is muted.")}});
        QTRY_VERIFY_WITH_TIMEOUT(!monitor.levels().isEmpty(), Timeouts::Program);
        m_voice->program().send(SIGSTOP);
        QTRY_VERIFY_WITH_TIMEOUT(monitor.levels().size() > SoundMonitor::ChunksPerSecond / 2, Timeouts::Program);
        m_voice->program().send(SIGCONT);
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_voice->children(), 0, Timeouts::Program);

    QVERIFY(converse(QStringLiteral("what time is it")));
    QVERIFY2(end(), m_voice->program().errors().constData());
}

//! While the user speaks and during the countdown: neither ends at once, nor a day later.
void tst_VoiceFaults::clockIsSet()
{
    constexpr auto countdown = 1s;
    QVERIFY2(start(countdown), m_voice->program().errors().constData());
    for (const auto ahead : {24h, -24h}) {
        QVERIFY(m_voice->wakeAndListen());
        m_voice->faults.setClock(ahead);
        QVERIFY(m_voice->speak(QStringLiteral("open the browser")));
        m_voice->faults.setClock(-ahead);
        QElapsedTimer time;
        time.start();
        QVERIFY(m_voice->bridge.takeRequest(QStringLiteral("chat")).id != 0);
        QVERIFY2(time.elapsed() > 500, qPrintable(QString::number(time.elapsed())));
    }
    QVERIFY2(end(), m_voice->program().errors().constData());
}

//! A real bridge stops to read and to write, but its connections stay open.
void tst_VoiceFaults::bridgeHangs()
{
    m_voice = std::make_unique<FaultyVoiceRun>(0s);
    m_voice->bridge.close();
    BundledBridge bridge;
    QVERIFY(bridge.isListening());
    const ScreenReader reader(ScreenReader::Events::None);
    QVERIFY2(start(), m_voice->program().errors().constData());

    QCOMPARE(::kill(static_cast<pid_t>(bridge.processId()), SIGSTOP), 0);
    QVERIFY(m_voice->wakeAndListen());
    QVERIFY(m_voice->speak(QStringLiteral("help")));
    QVERIFY(waitForWords("[AgentBridge] Sending request to bridge"));
    // The user waits no longer.
    m_voice->program().press("Escape");
    QTRY_VERIFY_WITH_TIMEOUT(!reader.shown(QStringLiteral("list item")).filter(QStringLiteral("Stopped.")).isEmpty(),
                             Timeouts::Program);
    QTRY_COMPARE_WITH_TIMEOUT(m_voice->children(), 0, Timeouts::Program);
    const int runs = m_voice->piper.runs();

    QCOMPARE(::kill(static_cast<pid_t>(bridge.processId()), SIGCONT), 0);
    QVERIFY(waitForWords("[AgentBridge] Message not for pending request"));
    QVERIFY(m_voice->wakeAndListen());
    QVERIFY(m_voice->speak(QStringLiteral("help")));
    QTRY_COMPARE_WITH_TIMEOUT(m_voice->piper.runs(), runs + 1, Timeouts::Program);
    QVERIFY2(end(), m_voice->program().errors().constData());
}

void tst_VoiceFaults::bridgeAnswersWithRubbish()
{
    QVERIFY2(start(), m_voice->program().errors().constData());
    ScriptedBridge::Request prompt = say(QStringLiteral("open the browser"));
    QVERIFY(prompt.id != 0);
    m_voice->bridge.sendRaw(QStringLiteral("{\"type\":\"response\",\"id\":"));
    m_voice->bridge.sendRaw(QString(1000, QChar(0xfffd)));
    m_voice->bridge.reply(prompt, QJsonObject {{QStringLiteral("response"), 7}, {QStringLiteral("ui"), true}});
    QVERIFY(converse(QStringLiteral("mute the volume")));

    // Of a megabyte, only the beginning is spoken.
    prompt = say(QStringLiteral("what time is it"));
    const int runs = m_voice->piper.runs();
    m_voice->bridge.reply(prompt, QJsonObject {{QStringLiteral("response"), QString(1 << 20, QLatin1Char('x'))}});
    QTRY_COMPARE_WITH_TIMEOUT(m_voice->piper.runs(), runs + 1, Timeouts::Program);
    QTRY_COMPARE_WITH_TIMEOUT(m_voice->piper.text().size(), 1003, Timeouts::Program);
    QVERIFY2(end(), m_voice->program().errors().constData());
}

void tst_VoiceFaults::bridgeEndsWhileRephrasing()
{
    const ScreenReader reader(ScreenReader::Events::None);
    QVERIFY2(start(15s), m_voice->program().errors().constData());
    QVERIFY(m_voice->wakeAndListen());
    QVERIFY(m_voice->speak(QStringLiteral("open the browser")));
    const auto press = [&reader](const QString &button) {
        return QTest::qWaitFor([&] { return reader.press(s_button, button); }, Timeouts::Program);
    };
    QVERIFY(press(QStringLiteral("Rephrase")));
    QVERIFY(m_voice->bridge.takeRequest(QStringLiteral("chat")).id != 0);
    const int connections = m_voice->connections();
    m_voice->bridge.close();
    QVERIFY(m_voice->bridge.listen());

    // The transcript is kept, and isn't sent without the user.
    QVERIFY(m_voice->waitForConnection(connections));
    QCOMPARE(reader.textOf(QStringLiteral("Prompt")), QStringLiteral("open the browser"));
    QCOMPARE(m_voice->prompts().size(), 1);
    QVERIFY(press(QStringLiteral("Send")));
    QVERIFY(m_voice->bridge.takeRequest(QStringLiteral("chat")).id != 0);
    QCOMPARE(m_voice->prompts().mid(1), QStringList {QStringLiteral("open the browser, by voice")});
    QVERIFY2(end(), m_voice->program().errors().constData());
}

void tst_VoiceFaults::displayGoesAway_data()
{
    QTest::addColumn<bool>("speaks");
    QTest::newRow("while an utterance is transcribed") << false;
    QTest::newRow("while a reply is spoken") << true;
}

void tst_VoiceFaults::displayGoesAway()
{
    QFETCH(bool, speaks);
    QVERIFY2(start(), m_voice->program().errors().constData());
    if (speaks) {
        m_voice->piper.hangs();
        const ScriptedBridge::Request prompt = say(QStringLiteral("open the browser"));
        m_voice->bridge.reply(prompt, QJsonObject {{QStringLiteral("response"), QStringLiteral("It is open.")}});
        QTRY_COMPARE_WITH_TIMEOUT(m_voice->piper.runs(), 1, Timeouts::Program);
    } else {
        m_voice->moonshine.hangs();
        QVERIFY(m_voice->wakeAndListen());
        m_voice->sentence.speak();
        QTRY_COMPARE_WITH_TIMEOUT(m_voice->moonshine.runs(), 1, Timeouts::Program);
    }
    m_voice->program().loseDisplay();
    QVERIFY(m_voice->program().waitForEnd());
    QVERIFY(!m_voice->program().crashed());
    QCOMPARE(m_voice->program().exitCode(), 1);
    QVERIFY(m_voice->program().errors().contains("The X11 connection broke"));
    QTRY_VERIFY_WITH_TIMEOUT(!VoiceUser::isAnyAlive(m_voice->moonshine.processIds() + m_voice->piper.processIds()),
                             Timeouts::Program);
    QCOMPARE(m_voice->tempFiles(), QStringList());
    QVERIFY(m_voice->areSettingsKept());
}

REGISTER_PRIVATE_NETWORK_TEST(tst_VoiceFaults, QCoreApplication)
#include "tst_VoiceFaults.moc"
