// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Processor time while listening to sound of a changing level, in the window and without one.

#include "Engine.h"
#include "VoiceBridge.h"
#include "support/Child.h"
#include "support/Clock.h"
#include "support/EventLoop.h"
#include "support/Figures.h"
#include "support/Process.h"
#include "window/Bar.h"

#include <KAboutData>

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QProcess>
#include <QQuickItem>
#include <QTemporaryDir>

#include <cstdio>
#include <functional>

using namespace std::chrono_literals;

namespace
{

constexpr std::chrono::milliseconds s_time = 10s;
constexpr double s_maxRingPercent = 3;

//! Plays noise of a changing volume into the microphone. Louder than silence, and below the end of the ring's scale.
class Noise
{
public:
    Noise()
    {
        const QString file = m_directory.filePath(QStringLiteral("noise.wav"));
        const QString sound =
            QStringLiteral("-q -n -r 16000 -c 1 -b 16 %1 synth 25 whitenoise tremolo 0.9 60 vol 0.07");
        if (QProcess::execute(QStringLiteral("sox"), sound.arg(file).split(QLatin1Char(' '))) != 0) {
            notMeasured("the noise can't be made");
        }
        m_player.start(QStringLiteral("paplay"), {QStringLiteral("--device=mic"), file});
        if (!m_player.waitForStarted()) {
            notMeasured("the noise can't be played");
        }
    }
    ~Noise()
    {
        m_player.kill();
        m_player.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Noise)

private:
    const QTemporaryDir m_directory;
    QProcess m_player;
};

//! What a process spends while it listens.
struct Load
{
    double percent = 0; //!< processor time of all threads, of a core
    double program = 0; //!< the same without the software renderer's threads, which take the place of a graphics card
    int changes = 0; //!< of the level
};

//! @param prepare is called once the capture has begun
Load listen(
    VoiceBridge &voice, const std::function<void()> &prepare = [] {})
{
    const Noise noise;
    int changes = 0;
    double last = 0;
    const auto watch = QObject::connect(&voice, &VoiceBridge::inputLevelChanged, &voice, [&] {
        changes += voice.inputLevel() != last ? 1 : 0;
        last = voice.inputLevel();
    });
    voice.setSttBackend(QStringLiteral("moonshine"));
    voice.startListening();
    prepare();
    if (!EventLoop::until([&changes] { return changes >= 2; })) {
        notMeasured("the level doesn't change");
    }
    changes = 0;
    const qint64 before = Clock::processWork();
    const qint64 rendered = Process::rendererWork();
    const qint64 begun = Clock::now();
    EventLoop::run(s_time);
    const qint64 spent = Clock::processWork() - before;
    const qint64 program = spent - (Process::rendererWork() - rendered);
    const auto onePercent = static_cast<double>(Clock::now() - begun) / 100;
    if (!voice.isListening()) {
        notMeasured("the capture ended too early");
    }
    QObject::disconnect(watch);
    voice.cancelListening();
    return {static_cast<double>(spent) / onePercent, static_cast<double>(program) / onePercent, changes};
}

//! In a process of its own, without a window.
int listenAlone(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    KAboutData::setApplicationData(KAboutData(QStringLiteral("loomra-kde")));
    VoiceBridge voice;
    std::printf("permille %.0f\n", listen(voice).percent * 10);
    return 0;
}

//! Stops the pulse of the button, which draws all the time.
void stopPulse(const QQuickItem *button)
{
    const QList<QObject *> children = button->children();
    for (QObject *child : children) {
        if (child->inherits("QQuickSequentialAnimation")) {
            child->setProperty("running", false);
        }
    }
}

} // namespace

int main(int argc, char **argv)
{
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    if (argc > 1 && QByteArray(argv[1]) == "alone") {
        return listenAlone(argc, argv);
    }
    Engine::install();
    const Child::Result child = Child::run({Child::beside("bench_level"), "alone"});
    const double alone = Child::valuesOf(child).value("permille").value(0).toDouble() / 10;

    Bar bar(argc, argv);
    const Load window = listen(*bar.voice());
    const int before = bar.frames().count();
    const Load ring = listen(*bar.voice(), [&bar] { stopPulse(bar.item("micBtn")); });
    const int frames = bar.frames().count() - before;

    Figures::plain("level.alone", alone, "% of a core");
    Figures::plain("level.window", window.percent, "% of a core");
    Figures::plain("level.window.program", window.program, "% of a core");
    Figures::plain("level.ring", ring.percent, "% of a core");
    Figures::plain("level.ring.program", ring.program, "% of a core");
    Figures::bounded("level.ring.own", ring.percent - alone, "% of a core", s_maxRingPercent);
    Figures::plain("level.ring.frames", static_cast<double>(frames) / ring.changes, "per change of the level");
}
