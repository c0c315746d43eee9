// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The voice path of the OmniBar: from the microphone to the bridge, and the reply to the speaker.

#include "Figures.h"
#include "Replies.h"
#include "Soak.h"
#include "SoakBridge.h"

#include "AgentBridge.h"
#include "Application.h"
#include "PiperStandIn.h"
#include "SherpaStandIn.h"
#include "VoiceBridge.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QStyleHints>

#include <csignal>
#include <iterator>

using namespace std::chrono_literals;

namespace
{

constexpr int s_rowsOfAConversation = 100;
constexpr int s_samplesPerSecond = 16000;
constexpr auto s_word = 200ms;
constexpr auto s_pause = 400ms; // longer than the silence that ends an utterance
constexpr qint16 s_loud = 8000;

bool write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return QDir().mkpath(path.section(QLatin1Char('/'), 0, -2)) && file.open(QIODevice::WriteOnly)
        && file.write(content) == content.size();
}

//! Somebody who says a word now and then, and never stops. A process of its own, which is no child of this one.
class Speaker
{
public:
    Speaker()
    {
        const QString file = QDir::homePath() + QStringLiteral("/word.raw");
        const auto samples = [](std::chrono::milliseconds time) {
            return static_cast<int>(time.count() * s_samplesPerSecond / 1000);
        };
        QByteArray sound;
        for (int i = 0; i < samples(s_word); ++i) {
            const qint16 sample = i / 40 % 2 ? s_loud : -s_loud;
            sound.append(reinterpret_cast<const char *>(&sample), sizeof sample);
        }
        sound.append(samples(s_pause) * int(sizeof(qint16)), '\0');
        const QString command = QStringLiteral("while cat '%1'; do :; done | exec pacat --playback --device=mic "
                                               "--rate=16000 --channels=1 --format=s16le --latency-msec=50")
                                    .arg(file);
        if (!write(file, sound)
            || !QProcess::startDetached(QStringLiteral("setsid"), {QStringLiteral("sh"), QStringLiteral("-c"), command},
                                        QString(), &m_process)) {
            Soak::fail("nobody speaks");
        }
    }
    ~Speaker() { ::kill(static_cast<pid_t>(-m_process), SIGTERM); }
    Q_DISABLE_COPY_MOVE(Speaker)

private:
    qint64 m_process = 0;
};

//! The settings and programs of a user who speaks with the OmniBar.
struct Installation
{
    SherpaStandIn engine {SherpaStandIn::Engine::Moonshine};
    PiperStandIn piper;
    Speaker speaker;
};

class VoiceSoak
{
public:
    VoiceSoak(int &argc, char **argv, const Amounts &amounts, Installation &installation);
    int run();

private:
    struct Kind
    {
        const char *name;
        void (VoiceSoak::*act)();
    };
    static const Kind s_utterances[];

    void perform(const Kind &utterance);
    //! Begins an utterance and waits until its recording has ended.
    void utter();
    //! An utterance that gets a prompt to the bridge, and its reply, which is spoken.
    void converse(const QString &reply);
    void waitForSilence();
    void rest();

    void spoken() { converse(Replies::plain(m_number)); }
    void markdown() { converse(Replies::markdown(m_number)); }
    void interrupted();
    void cancelledWhileListening();
    void cancelledWhileTranscribing();
    void stoppedAtOnce();
    void nothingUnderstood();
    void engineFails();
    void engineCrashes();
    void voiceFails();

    const Amounts m_amounts;
    Installation &m_installation;
    Application m_application;
    SoakBridge m_bridge;
    SoakWindow m_window;
    AgentBridge *const m_agent = Soak::native<AgentBridge>();
    VoiceBridge *const m_voice = Soak::native<VoiceBridge>();
    QList<SoakBridge::Request> m_requests;
    int m_number = 0;
    int m_errors = 0;
    int m_transcripts = 0;
    int m_speeches = 0; //!< begun
};

const VoiceSoak::Kind VoiceSoak::s_utterances[] = {
    {"spoken", &VoiceSoak::spoken},
    {"cancelled while listening", &VoiceSoak::cancelledWhileListening},
    {"markdown", &VoiceSoak::markdown},
    {"cancelled while transcribing", &VoiceSoak::cancelledWhileTranscribing},
    {"stopped at once", &VoiceSoak::stoppedAtOnce},
    {"nothing understood", &VoiceSoak::nothingUnderstood},
    {"engine fails", &VoiceSoak::engineFails},
    {"interrupted", &VoiceSoak::interrupted},
    {"engine crashes", &VoiceSoak::engineCrashes},
    {"voice fails", &VoiceSoak::voiceFails},
};

VoiceSoak::VoiceSoak(int &argc, char **argv, const Amounts &amounts, Installation &installation)
    : m_amounts(amounts)
    , m_installation(installation)
    , m_application(argc, argv)
{
    QGuiApplication::styleHints()->setCursorFlashTime(0);
    m_bridge.onChat = [this](const SoakBridge::Request &request) { m_requests.append(request); };
    QObject::connect(m_voice, &VoiceBridge::errorOccurred, [this] { ++m_errors; });
    QObject::connect(m_voice, &VoiceBridge::transcriptReady, [this] { ++m_transcripts; });
    QObject::connect(m_voice, &VoiceBridge::speakingChanged, [this] { m_speeches += m_voice->isSpeaking() ? 1 : 0; });
    Soak::hurryReconnects();
    Soak::waitFor("the connection", [this] { return m_agent->isServiceAvailable(); });
    Soak::waitFor("the whole window", [this] { return m_window.get("firstFrameShown").toBool(); });
}

int VoiceSoak::run()
{
    // So that what is created on first use is not taken for growth.
    for (const auto act : {&VoiceSoak::spoken, &VoiceSoak::markdown, &VoiceSoak::interrupted}) {
        perform({"warming up", act});
    }

    Record record("voice", m_amounts.utterances, qmlEngine(m_window.window()), [this] { rest(); });
    for (m_number = 1; m_number <= m_amounts.utterances; ++m_number) {
        perform(s_utterances[m_number % std::size(s_utterances)]);
        record.step();
    }
    return record.finish();
}

void VoiceSoak::perform(const Kind &utterance)
{
    Soak::setTask(utterance.name);
    m_installation.engine.says(QStringLiteral("Open the dolphine number %1").arg(m_number));
    (this->*utterance.act)();
    waitForSilence();
    if (m_window.rows() >= s_rowsOfAConversation) {
        m_window.call("clearConversation");
    }
}

void VoiceSoak::utter()
{
    m_voice->startListening();
    if (!m_voice->isListening()) {
        Soak::fail("the program doesn't listen");
    }
    Soak::waitFor("the end of an utterance", [this] { return !m_voice->isListening(); });
}

void VoiceSoak::converse(const QString &reply)
{
    utter();
    Soak::waitFor("a prompt", [this] { return !m_requests.isEmpty(); });
    const int before = m_speeches;
    SoakBridge::reply(m_requests.takeFirst(), Replies::text(reply));
    Soak::waitFor("speech", [&] { return m_speeches > before; });
}

void VoiceSoak::waitForSilence()
{
    Soak::waitFor("silence", [this] {
        return !m_voice->isListening() && !m_voice->isTranscribing() && !m_voice->isSpeaking()
            && !m_agent->isThinking();
    });
}

void VoiceSoak::rest()
{
    m_window.call("clearConversation");
    m_window.call("initResponseSuggestions");
    m_window.object("inputField")->setProperty("text", QString());
}

void VoiceSoak::interrupted()
{
    m_installation.piper.behaves("cat > /dev/null; exec sleep 1000");
    converse(Replies::plain(m_number));
    m_voice->stopSpeaking();
    m_installation.piper.behaves("cat");
}

void VoiceSoak::cancelledWhileListening()
{
    m_voice->startListening();
    Soak::runEvents(100ms);
    m_voice->cancelListening();
}

void VoiceSoak::cancelledWhileTranscribing()
{
    const int before = m_transcripts;
    utter();
    m_voice->cancelListening();
    // Intentional: the engine isn't stopped, and its transcript is sent.
    Soak::waitFor("the transcript", [&] { return m_transcripts > before && !m_requests.isEmpty(); });
    SoakBridge::reply(m_requests.takeFirst(), Replies::text(Replies::plain(m_number)));
}

void VoiceSoak::stoppedAtOnce()
{
    const int before = m_errors;
    m_installation.engine.prints("");
    m_voice->startListening();
    m_voice->stopListening();
    Soak::waitFor("the end of a recording", [&] { return m_errors > before; });
}

void VoiceSoak::nothingUnderstood()
{
    const int before = m_errors;
    m_installation.engine.prints("");
    utter();
    Soak::waitFor("an error", [&] { return m_errors > before; });
}

void VoiceSoak::engineFails()
{
    const int before = m_errors;
    m_installation.engine.prints("no transcript", "broken", 1);
    utter();
    Soak::waitFor("an error", [&] { return m_errors > before; });
}

void VoiceSoak::engineCrashes()
{
    const int before = m_errors;
    m_installation.engine.crashes();
    utter();
    Soak::waitFor("an error", [&] { return m_errors > before; });
}

void VoiceSoak::voiceFails()
{
    m_installation.piper.behaves("exit 1");
    utter();
    Soak::waitFor("a prompt", [this] { return !m_requests.isEmpty(); });
    SoakBridge::reply(m_requests.takeFirst(), Replies::text(Replies::plain(m_number)));
    waitForSilence();
    m_installation.piper.behaves("cat");
}

} // namespace

int Soak::runVoice(char *program, const Amounts &amounts)
{
    if (!write(QDir::homePath() + QStringLiteral("/.config/kde.org/loomra-kde.conf"),
               "[voice]\nsttBackend=moonshine\nttsEnabled=true\nsilenceTimeoutMs=200\nvoiceConfirmDelaySec=0\n")) {
        Soak::fail("the settings can't be written");
    }
    Installation installation;
    int argc = 1;
    char *argv[] = {program, nullptr};
    return (new VoiceSoak(argc, argv, amounts, installation))->run(); // kept until the process ends
}
