// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// A tick of the countdown before a spoken prompt is sent, against repainting its ring.

#include "VoiceBridge.h"
#include "support/Clock.h"
#include "support/Figures.h"
#include "support/Statistics.h"
#include "window/Bar.h"

#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

namespace
{

constexpr int s_countdowns = 10;
constexpr int s_seconds = 15;
//! The last tick would send the prompt.
constexpr int s_ticks = s_seconds - 1;
constexpr double s_maxRatio = 1.1;

void invoke(QObject *object, const char *function)
{
    if (!QMetaObject::invokeMethod(object, function)) {
        notMeasured(QByteArray("there is no function ") + function);
    }
}

//! The cost of what an action changes on the screen.
struct Cost
{
    double work = 0; //!< processor time of all threads, in ms
    int frames = 0;
};

template<typename Action>
Cost costOf(Bar &bar, Action action)
{
    const int frames = bar.frames().count();
    const qint64 before = Clock::processWork();
    action();
    bar.frames().waitForFrame();
    bar.frames().waitUntilStill();
    return {Clock::milliseconds(Clock::processWork() - before), bar.frames().count() - frames};
}

//! Begins a countdown that doesn't run.
void begin(Bar &bar, QObject *timer)
{
    Q_EMIT bar.voice()->transcriptReady(QStringLiteral("Open the file manager"));
    invoke(timer, "stop");
    bar.frames().waitUntilStill(300ms);
}

} // namespace

int main(int argc, char **argv)
{
    Bar bar(argc, argv);
    bar.voice()->setVoiceConfirmDelaySec(s_seconds);
    auto *timer = bar.window()->property("voiceConfirmTimer").value<QObject *>();
    if (!timer) {
        notMeasured("the window has no timer");
    }
    begin(bar, timer);
    QQuickItem *ring = bar.item("countdownRing");

    std::vector<double> tickWork;
    std::vector<double> repaintWork;
    int frames = 0;
    for (int countdown = 0; countdown < s_countdowns; ++countdown) {
        begin(bar, timer);
        for (int i = 0; i < s_ticks; ++i) {
            const Cost tick = costOf(bar, [timer] { invoke(timer, "triggered"); });
            const Cost repaint = costOf(bar, [ring] { invoke(ring, "requestPaint"); });
            tickWork.push_back(tick.work);
            repaintWork.push_back(repaint.work);
            frames = std::max(frames, tick.frames);
        }
    }
    const double tick = Statistics::median(tickWork);
    const double repaint = Statistics::median(repaintWork);
    Figures::plain("countdown.tick", tick, "ms");
    Figures::plain("countdown.repaint", repaint, "ms");
    Figures::bounded("countdown.ratio", tick / repaint, "x", s_maxRatio);
    Figures::plain("countdown.frames", frames, "frames");
}
