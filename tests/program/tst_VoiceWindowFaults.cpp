// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FaultyVoiceRun.h"
#include "MachineFaults.h"
#include "ScreenReader.h"

#include "PrivateNetwork.h"
#include "PulseDaemon.h"
#include "SoundMonitor.h"
#include "Timeouts.h"

#include <QRegularExpression>
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
const QString s_start = QStringLiteral("Start listening");
const QString s_cancel = QStringLiteral("Cancel");
const QString s_noModel =
    QStringLiteral("Whisper model not found. Download ggml-base.en.bin to ~/.local/share/tovi-forkeldaos/models/");

} // namespace

//! The voice validation window on a machine at fault: it says what is wrong, and understands the next utterance.
class tst_VoiceWindowFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void machine_data() { MachineFaults::addRows(); }
    void machine();
    void audioServer();
    void engine();
    void suspended();
    void clockIsSet();
    void displayGoesAway();

private:
    bool start();
    //! Waits until the window shows this text, or a row with it.
    bool waitForText(const QString &text) const;
    //! Starts listening by the button and waits for the microphone.
    bool listen() const;
    //! Speaks a sentence that is understood.
    bool isUnderstood(const QString &sentence);
    //! Closes the window. @return whether nothing was left behind
    bool end();

    std::unique_ptr<ScreenReader> m_reader;
    std::unique_ptr<FaultyVoiceRun> m_voice;
};

void tst_VoiceWindowFaults::init()
{
    m_voice.reset();
    m_reader.reset();
    m_reader = std::make_unique<ScreenReader>(ScreenReader::Events::None);
    m_voice = std::make_unique<FaultyVoiceRun>(0s);
}

bool tst_VoiceWindowFaults::start()
{
    return m_voice->start({QStringLiteral("--voice-test")});
}

bool tst_VoiceWindowFaults::waitForText(const QString &text) const
{
    QStringList texts;
    QStringList rows;
    const auto isShown = [&] {
        texts = m_reader->shown(QStringLiteral("label"));
        rows = m_reader->shown(QStringLiteral("list item"));
        return texts.contains(text) || !rows.filter(text).isEmpty();
    };
    if (QTest::qWaitFor(isShown, Timeouts::Program)) {
        return true;
    }
    qWarning() << "The window shows" << texts << rows;
    return false;
}

bool tst_VoiceWindowFaults::listen() const
{
    return m_reader->press(s_button, s_start) && QTest::qWaitFor([] { return readers() == 1; }, Timeouts::Program);
}

bool tst_VoiceWindowFaults::isUnderstood(const QString &sentence)
{
    return listen() && m_voice->speak(sentence) && waitForText(sentence) && waitForText(QStringLiteral("Ready"));
}

bool tst_VoiceWindowFaults::end()
{
    return m_voice->program().closeWindow() && m_voice->tempFiles().isEmpty() && m_voice->areSettingsKept()
        && !VoiceUser::isAnyAlive(m_voice->moonshine.processIds());
}

void tst_VoiceWindowFaults::machine()
{
    QFETCH(MachineFaults::Fault, fault);
    MachineFaults::arrange(fault, m_voice->environment, m_voice->faults);
    QVERIFY2(start(), m_voice->program().errors().constData());
    switch (fault) {
    case Fault::NoSessionBus: // and thus no screen reader
        QTRY_VERIFY_WITH_TIMEOUT(m_voice->program().errors().contains("MoonshineWorker: loaded"), Timeouts::Program);
        QVERIFY(m_voice->program().takeKeyboard());
        m_voice->program().press("Tab");
        m_voice->program().press("Tab");
        m_voice->program().press("space");
        QTRY_COMPARE_WITH_TIMEOUT(readers(), 1, Timeouts::Program);
        QVERIFY(m_voice->speak(QStringLiteral("open the browser")));
        break;
    case Fault::NoHome:
    case Fault::NoNameOfTheHome: // and thus no engine
        QVERIFY(waitForText(s_noModel));
        QVERIFY(waitForText(QStringLiteral("No model")));
        QVERIFY(m_reader->press(s_button, s_start));
        QVERIFY(waitForText(s_noModel));
        break;
    case Fault::FullDisk:
        QVERIFY(waitForText(QStringLiteral("Ready")));
        QVERIFY(listen());
        m_voice->sentence.speak();
        QVERIFY(waitForText(QStringLiteral("Failed to write temp WAV")));
        QVERIFY(waitForText(QStringLiteral("Error")));
        m_voice->faults.setDisk(FaultState::Works);
        QVERIFY(isUnderstood(QStringLiteral("open the browser")));
        break;
    case Fault::ReadOnlyHome:
        QVERIFY(waitForText(QStringLiteral("Ready")));
        QVERIFY(listen());
        m_voice->sentence.speak();
        QVERIFY(waitForText(QStringLiteral("Cannot create temp WAV file")));
        QVERIFY(waitForText(QStringLiteral("Error")));
        m_voice->faults.setDisk(FaultState::Works);
        QVERIFY(isUnderstood(QStringLiteral("open the browser")));
        break;
    case Fault::NoThemeAndIcons:
        QVERIFY(waitForText(QStringLiteral("Ready")));
        QVERIFY(isUnderstood(QStringLiteral("open the browser")));
        break;
    }
    QVERIFY2(end(), m_voice->program().errors().constData());
}

void tst_VoiceWindowFaults::audioServer()
{
    PulseDaemon daemon;
    m_voice->environment.insert(QStringLiteral("PULSE_SERVER"), qEnvironmentVariable("PULSE_SERVER"));
    daemon.kill();
    QVERIFY2(start(), m_voice->program().errors().constData());
    QVERIFY(waitForText(QStringLiteral("Ready")));

    // Missing. Intentional: the window says that it listens until the user cancels.
    QVERIFY(m_reader->press(s_button, s_start));
    QVERIFY(waitForText(QStringLiteral("Cannot open microphone: Connection refused")));
    QVERIFY(waitForText(QStringLiteral("Listening")));
    QVERIFY(m_reader->press(s_button, s_cancel));
    QVERIFY(waitForText(QStringLiteral("Ready")));

    // Killed while listening.
    daemon.start();
    QVERIFY(listen());
    daemon.kill();
    QVERIFY(waitForText(QStringLiteral("No speech detected")));
    QVERIFY(waitForText(QStringLiteral("Ready")));

    // Killed while the user speaks: what was recorded is transcribed.
    daemon.start();
    QVERIFY(listen());
    m_voice->moonshine.says(QStringLiteral("search for all"));
    Sentence longSentence(QStringLiteral("Search for all documents that were modified in the last week"));
    {
        SoundMonitor monitor(QStringLiteral("mic"));
        QTRY_VERIFY(monitor.isListening());
        longSentence.speak();
        QTRY_VERIFY_WITH_TIMEOUT(monitor.levels().size() > SoundMonitor::ChunksPerSecond / 2, Timeouts::Program);
        daemon.kill();
    }
    QVERIFY(waitForText(QStringLiteral("search for all")));

    // In the middle of a run through the suite, which waits for the user and then goes on.
    daemon.start();
    QVERIFY(m_reader->press(QStringLiteral("check box"), QStringLiteral("Sentence suite")));
    QVERIFY(waitForText(QStringLiteral("“open the browser”")));
    QVERIFY(m_reader->press(s_button, QStringLiteral("Run all sentences")));
    QTRY_COMPARE_WITH_TIMEOUT(readers(), 1, Timeouts::Program);
    daemon.kill();
    QVERIFY(waitForText(QStringLiteral("The run waits. Start listening to go on with this sentence.")));
    daemon.start();
    QVERIFY(listen());
    QVERIFY(m_voice->speak(QStringLiteral("open the browser")));
    QVERIFY(waitForText(QStringLiteral("“set brightness to fifty percent”")));
    QTRY_COMPARE_WITH_TIMEOUT(readers(), 1, Timeouts::Program);
    QVERIFY2(end(), m_voice->program().errors().constData());
}

void tst_VoiceWindowFaults::engine()
{
    QVERIFY2(start(), m_voice->program().errors().constData());
    QVERIFY(waitForText(QStringLiteral("Ready")));
    const auto failsWith = [this](const QString &text) {
        m_voice->sentence.speak();
        return waitForText(text) && waitForText(QStringLiteral("Error")) && m_voice->tempFiles().isEmpty();
    };

    QVERIFY(listen());
    m_voice->moonshine.crashes("half a tr");
    QVERIFY(failsWith(QStringLiteral("sherpa-onnx-offline failed: half a tr")));

    QVERIFY(m_reader->press(s_button, QStringLiteral("Reload model"))); // which clears the error
    QVERIFY(waitForText(QStringLiteral("Ready")));
    QVERIFY(listen());
    m_voice->moonshine.behaves("head -c 1000000 /dev/urandom; exit 1");
    m_voice->sentence.speak();
    QTRY_VERIFY_WITH_TIMEOUT(
        !m_reader->shown(QStringLiteral("label")).filter(QStringLiteral("sherpa-onnx-offline failed: ")).isEmpty(),
        Timeouts::Program);
    QVERIFY(listen());
    m_voice->moonshine.cannotStart();
    QVERIFY(failsWith(QStringLiteral("Failed to start sherpa-onnx-offline")));

    QVERIFY(listen());
    m_voice->moonshine.prints("");
    QVERIFY(failsWith(QStringLiteral("No speech detected in audio")));

    // The user cancels, and the program is killed.
    QVERIFY(listen());
    m_voice->moonshine.hangs();
    const int runs = m_voice->moonshine.runs();
    m_voice->sentence.speak();
    QTRY_COMPARE_WITH_TIMEOUT(m_voice->moonshine.runs(), runs + 1, Timeouts::Program);
    QVERIFY(waitForText(QStringLiteral("Transcribing")));
    QVERIFY(m_reader->press(s_button, s_cancel));
    QVERIFY(waitForText(QStringLiteral("Error"))); // still that of the last utterance
    QCOMPARE(::kill(static_cast<pid_t>(m_voice->moonshine.processIds().constLast()), SIGKILL), 0);
    QVERIFY(waitForText(QStringLiteral("sherpa-onnx-offline failed: ")));

    QVERIFY(isUnderstood(QStringLiteral("open the browser")));
    QVERIFY2(end(), m_voice->program().errors().constData());
}

void tst_VoiceWindowFaults::suspended()
{
    QVERIFY2(start(), m_voice->program().errors().constData());
    QVERIFY(waitForText(QStringLiteral("Ready")));

    // While it listens.
    QVERIFY(listen());
    m_voice->moonshine.says(QStringLiteral("open the browser"));
    m_voice->program().send(SIGSTOP);
    m_voice->sentence.speakToTheEnd();
    m_voice->program().send(SIGCONT);
    QVERIFY(waitForText(QStringLiteral("open the browser")));

    // While the engine works, which ends meanwhile.
    m_voice->moonshine.says(QStringLiteral("mute the volume"));
    m_voice->moonshine.hold();
    QVERIFY(listen());
    m_voice->sentence.speak();
    QTRY_COMPARE_WITH_TIMEOUT(m_voice->moonshine.runs(), 2, Timeouts::Program);
    m_voice->program().send(SIGSTOP);
    m_voice->moonshine.releaseAll();
    m_voice->program().send(SIGCONT);
    QVERIFY(waitForText(QStringLiteral("mute the volume")));
    QVERIFY(waitForText(QStringLiteral("Ready")));
    QVERIFY2(end(), m_voice->program().errors().constData());
}

void tst_VoiceWindowFaults::clockIsSet()
{
    QVERIFY2(start(), m_voice->program().errors().constData());
    QVERIFY(waitForText(QStringLiteral("Ready")));
    m_voice->moonshine.hold();
    for (const auto ahead : {24h, -24h}) {
        const QString sentence = ahead > 0h ? QStringLiteral("open the browser") : QStringLiteral("mute the volume");
        const int runs = m_voice->moonshine.runs();
        m_voice->moonshine.says(sentence);
        QVERIFY(listen());
        m_voice->sentence.speak();
        QTRY_COMPARE_WITH_TIMEOUT(m_voice->moonshine.runs(), runs + 1, Timeouts::Program);
        m_voice->faults.setClock(ahead);
        m_voice->moonshine.release();
        QVERIFY(waitForText(sentence));
    }
    // The engine's time isn't a day.
    const QStringList rows = m_reader->shown(QStringLiteral("list item"));
    QCOMPARE(rows.size(), 2);
    for (const QString &row : rows) {
        QVERIFY2(QRegularExpression(QStringLiteral(" moonshine . \\d{1,5} ms")).match(row).hasMatch(), qPrintable(row));
    }
    QVERIFY2(end(), m_voice->program().errors().constData());
}

void tst_VoiceWindowFaults::displayGoesAway()
{
    QVERIFY2(start(), m_voice->program().errors().constData());
    QVERIFY(waitForText(QStringLiteral("Ready")));
    QVERIFY(listen());
    m_voice->moonshine.hangs();
    m_voice->sentence.speak();
    QTRY_COMPARE_WITH_TIMEOUT(m_voice->moonshine.runs(), 1, Timeouts::Program);

    m_voice->program().loseDisplay();

    QVERIFY(m_voice->program().waitForEnd());
    QVERIFY(!m_voice->program().crashed());
    QCOMPARE(m_voice->program().exitCode(), 1);
    QVERIFY(m_voice->program().errors().contains("The X11 connection broke"));
    QTRY_VERIFY_WITH_TIMEOUT(!VoiceUser::isAnyAlive(m_voice->moonshine.processIds()), Timeouts::Program);
    QCOMPARE(m_voice->tempFiles(), QStringList());
    QVERIFY(m_voice->areSettingsKept());
    QCOMPARE(readers(), 0);
}

REGISTER_PRIVATE_NETWORK_TEST(tst_VoiceWindowFaults, QCoreApplication)
#include "tst_VoiceWindowFaults.moc"
