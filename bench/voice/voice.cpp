// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Measures the voice path: its construction, the start and end of a capture, the load during one, and the corrections.

#include "Endpointer.h"
#include "SttPostProcessor.h"
#include "VoiceBridge.h"
#include "WakeWord.h"
#include "support/Child.h"
#include "support/Clock.h"
#include "support/EventLoop.h"
#include "support/Figures.h"
#include "support/Statistics.h"
#include "voice/Engine.h"

#include <KAboutData>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QLoggingCategory>
#include <QSet>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

using namespace std::chrono_literals;

namespace
{

constexpr int s_runs = 50;
constexpr int s_constructions = 40;
constexpr int s_warmUps = 3;
constexpr std::chrono::milliseconds s_listenTime = 10s;
constexpr int s_correctionRuns = 20;
constexpr int s_sentences = 1000;

constexpr double s_maxStopMs = Pcm::ChunkDuration.count();
constexpr double s_maxWakeRatio = 1.2;
constexpr double s_maxCorePercent = 2;
constexpr double s_maxConstructionRatio = 1.5;

//! The real microphone. Replaces its audio by speech on request, and counts the chunks that are read.
class WatchedMicrophone : public Microphone
{
public:
    //! Shared with the measuring code.
    struct Watch
    {
        std::atomic<bool> speaks = false;
        std::atomic<int> chunks = 0;
        std::atomic<qint64> firstRead = 0; // by Clock
    };

    WatchedMicrophone(std::unique_ptr<Microphone> microphone, Watch &watch)
        : m_microphone(std::move(microphone))
        , m_watch(watch)
    {
        m_watch.chunks = 0;
    }

    bool read(void *data, std::size_t bytes) override
    {
        if (!m_microphone->read(data, bytes)) {
            return false;
        }
        if (m_watch.chunks == 0) {
            m_watch.firstRead = Clock::now();
        }
        if (m_watch.speaks) {
            std::fill_n(static_cast<qint16 *>(data), bytes / sizeof(qint16), qint16(3000));
        }
        ++m_watch.chunks;
        return true;
    }

    static OpenMicrophone opener(Watch &watch)
    {
        return [&watch](QString *reason) -> std::unique_ptr<Microphone> {
            std::unique_ptr<Microphone> microphone = openPulseMicrophone(reason);
            if (!microphone) {
                notMeasured("no microphone: " + reason->toUtf8());
            }
            return std::make_unique<WatchedMicrophone>(std::move(microphone), watch);
        };
    }

private:
    const std::unique_ptr<Microphone> m_microphone;
    Watch &m_watch;
};

//! A VoiceBridge that is ready to listen.
class Listener
{
public:
    explicit Listener(WatchedMicrophone::Watch &watch)
        : m_voice(parts(watch), nullptr)
    {
        m_voice.setSttBackend(QStringLiteral("moonshine"));
        if (!m_voice.loadModel()) {
            notMeasured("the engine's model isn't found");
        }
        m_voice.disconnect(SIGNAL(requestTranscription(QByteArray)));
    }

    VoiceBridge *operator->() { return &m_voice; }

    //! Ends the capture and processes the events of its end.
    void cancel()
    {
        m_voice.cancelListening();
        QCoreApplication::processEvents();
    }

private:
    static VoiceParts parts(WatchedMicrophone::Watch &watch)
    {
        VoiceParts parts;
        parts.openMicrophone = WatchedMicrophone::opener(watch);
        return parts;
    }

    VoiceBridge m_voice;
};

//! From stopListening() to requestTranscription().
void measureStop()
{
    WatchedMicrophone::Watch watch;
    watch.speaks = true;
    Listener voice(watch);
    qint64 requested = 0;
    QObject::connect(voice.operator->(), &VoiceBridge::requestTranscription, voice.operator->(),
                     [&requested] { requested = Clock::now(); });
    std::vector<double> times;
    for (int run = -s_warmUps; run < s_runs; ++run) {
        requested = 0;
        voice->startListening();
        if (!EventLoop::until([&watch] { return watch.chunks >= 3; })) {
            notMeasured("no audio is read");
        }
        // Users stop at any time within a chunk.
        EventLoop::run((run + s_warmUps) * 7ms % Pcm::ChunkDuration);
        const qint64 stopped = Clock::now();
        voice->stopListening();
        if (!EventLoop::until([&requested] { return requested != 0; })) {
            notMeasured("a capture does not end");
        }
        if (run >= 0) {
            times.push_back(Clock::milliseconds(requested - stopped));
        }
        voice.cancel();
    }
    Figures::bounded("voice.stop-to-request", Statistics::median(times), "ms", s_maxStopMs);
    Figures::plain("voice.stop-to-request.99th", Statistics::percentile(times, 0.99), "ms");
}

//! Runs the program's code and a bare equivalent alternately. Reports the median times and their ratio.
//! @param program and @p bare return milliseconds
void measureInTurn(const QByteArray &name, int runs, double maxRatio, const std::function<double()> &program,
                   const std::function<double()> &bare)
{
    std::vector<double> programTimes;
    std::vector<double> bareTimes;
    for (int run = -s_warmUps; run < runs; ++run) {
        const double programTime = program();
        const double bareTime = bare();
        if (run >= 0) {
            programTimes.push_back(programTime);
            bareTimes.push_back(bareTime);
        }
    }
    const double programTime = Statistics::median(programTimes);
    const double bareTime = Statistics::median(bareTimes);
    Figures::plain(name, programTime, "ms");
    Figures::plain(name + ".bare", bareTime, "ms");
    Figures::bounded(name + ".ratio", programTime / bareTime, "x", maxRatio);
}

//! The bare equivalent: opens the same stream and reads one chunk when the signal arrives.
class BareListener : public QObject
{
    Q_OBJECT

public:
    explicit BareListener(WatchedMicrophone::Watch &watch)
        : m_open(WatchedMicrophone::opener(watch))
    {
        WakeWord::connectSignal(this);
    }

    bool isOn = false;

public Q_SLOTS:
    void onWakeWordActivated(const QString &)
    {
        if (isOn) {
            QString reason;
            char chunk[Pcm::ChunkBytes];
            m_open(&reason)->read(chunk, sizeof(chunk));
        }
    }

private:
    const OpenMicrophone m_open;
};

//! From the signal on the bus until the first chunk is read.
void measureWakeWord()
{
    WatchedMicrophone::Watch watch;
    QDBusConnection detector = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("detector"));
    const auto wake = [&] {
        watch.firstRead = 0;
        QDBusMessage signal =
            QDBusMessage::createSignal(QStringLiteral("/org/kde/loomra/WakeWord"),
                                       QStringLiteral("org.kde.loomra.WakeWord"), QStringLiteral("Activated"));
        signal << QStringLiteral("hey");
        const qint64 sent = Clock::now();
        detector.send(signal);
        if (!EventLoop::until([&watch] { return watch.firstRead != 0; })) {
            notMeasured("no audio is read after the wake word");
        }
        return Clock::milliseconds(watch.firstRead - sent);
    };

    BareListener bare(watch);
    measureInTurn(
        "voice.wake-to-first-chunk", s_runs, s_maxWakeRatio,
        [&] {
            Listener voice(watch);
            const double time = wake();
            voice.cancel();
            return time;
        },
        [&] {
            bare.isOn = true;
            const double time = wake();
            bare.isOn = false;
            return time;
        });
}

//! Processor time of all threads during a capture of silence.
void measureListening()
{
    WatchedMicrophone::Watch watch;
    Listener voice(watch);
    voice->startListening();
    if (!EventLoop::until([&watch] { return watch.chunks >= 3; })) {
        notMeasured("no audio is read");
    }
    const qint64 before = Clock::processWork();
    const qint64 begun = Clock::now();
    EventLoop::run(s_listenTime);
    const auto spent = static_cast<double>(Clock::processWork() - before);
    const auto lasted = static_cast<double>(Clock::now() - begun);
    if (!voice->isListening()) {
        notMeasured("the capture ended too early");
    }
    Figures::bounded("voice.listening", spent / lasted * 100, "% of a core", s_maxCorePercent);
    voice.cancel();
}

//! A thousand different commands, some of them with recognition errors. Always the same.
QStringList sentences()
{
    const char *const beginnings[] = {"open the",       "close the",   "switch to",   "hey tovvi open",
                                      "please start",   "what is the", "show me the", "ask loom raw for the",
                                      "move away from", "go back to",  "search for",  "remind me of the"};
    const char *const middles[] = {"console",     "dolphine",     "omni bar",      "browser",        "doc mode",
                                   "said things", "file manager", "lumra session", "katie settings", "origami window"};
    const char *const ends[] = {"",
                                "now.",
                                "and go to downloads",
                                "on the second monitor",
                                "and summarize the last reply in one sentence",
                                "for fifteen minutes?",
                                "then re factor this function",
                                "in san francisco",
                                "and undo that!"};
    QStringList all;
    for (const char *end : ends) {
        for (const char *middle : middles) {
            for (const char *beginning : beginnings) {
                all.append(QStringLiteral("%1 %2 %3")
                               .arg(QLatin1String(beginning), QLatin1String(middle), QLatin1String(end)));
            }
        }
    }
    all = all.mid(0, s_sentences);
    if (QSet<QString>(all.cbegin(), all.cend()).size() != s_sentences) {
        notMeasured("the sentences are not a thousand different ones");
    }
    return all;
}

void measureCorrections()
{
    SttPostProcessor processor;
    processor.loadInstalledRules();
    if (!processor.isLoaded()) {
        notMeasured("there are no rules");
    }
    const QStringList all = sentences();
    std::vector<double> perSecond;
    int changed = 0;
    for (int run = -s_warmUps; run < s_correctionRuns; ++run) {
        changed = 0;
        const qint64 begun = Clock::now();
        for (const QString &sentence : all) {
            changed += processor.correctFinal(sentence) != sentence ? 1 : 0;
        }
        if (run >= 0) {
            perSecond.push_back(all.size() / static_cast<double>(Clock::now() - begun) * 1e9);
        }
    }
    Figures::plain("voice.corrections", Statistics::median(perSecond), "per second");
    Figures::plain("voice.corrections.changed", changed, "of 1000");
}

// Construction is measured in separate processes because each process connects to the bus only once.

void construct()
{
    const qint64 begun = Clock::now();
    const VoiceBridge voice;
    std::printf("time %lld\n", static_cast<long long>(Clock::now() - begun));
}

//! The bare equivalent: only what is indispensable.
void constructBare()
{
    const qint64 begun = Clock::now();
    QThread thread;
    thread.start();
    WatchedMicrophone::Watch watch;
    const BareListener listener(watch);
    SttPostProcessor processor;
    processor.loadInstalledRules();
    std::printf("time %lld\n", static_cast<long long>(Clock::now() - begun));
    thread.quit();
    thread.wait();
}

void measureConstruction()
{
    const auto timeOf = [](const char *task) {
        const Child::Result result = Child::run({Child::beside("bench_voice"), task});
        return Clock::milliseconds(Child::valuesOf(result).value("time").value(0).toLongLong());
    };
    measureInTurn(
        "voice.construction", s_constructions, s_maxConstructionRatio, [&] { return timeOf("construct"); },
        [&] { return timeOf("construct-bare"); });
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    KAboutData::setApplicationData(KAboutData(QStringLiteral("loomra-kde")));
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    const QByteArray task(argc > 1 ? argv[1] : "");
    if (task == "construct") {
        construct();
        return 0;
    }
    if (task == "construct-bare") {
        constructBare();
        return 0;
    }
    measureConstruction();
    measureCorrections();
    Engine::install();
    measureStop();
    measureWakeWord();
    measureListening();
}

#include "voice.moc"
