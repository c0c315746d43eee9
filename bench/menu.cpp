// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The menu of commands: from the key "/" until it is in a swapped frame.

#include "support/Clock.h"
#include "support/EventLoop.h"
#include "support/Figures.h"
#include "support/Statistics.h"
#include "window/Bar.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <algorithm>

namespace
{

constexpr int s_openings = 50;

struct Opening
{
    int frames = 0;
    double time = 0; // ms
};

bool isMenuShown(Bar &bar)
{
    return bar.window()->property("slashMenuShown").toBool() && bar.item("slashMenuRow")->isVisible();
}

Opening open(Bar &bar)
{
    Opening opening;
    int frames = 0;
    const qint64 begun = Clock::now();
    // keyClick() processes events, so frames may be swapped before it returns.
    const auto watch = QObject::connect(
        bar.window(), &QQuickWindow::frameSwapped, bar.window(),
        [&] {
            ++frames;
            if (opening.frames == 0 && isMenuShown(bar)) {
                opening = {frames, Clock::milliseconds(Clock::now() - begun)};
            }
        },
        Qt::DirectConnection);
    QTest::keyClick(bar.window(), '/');
    if (!EventLoop::until([&] { return opening.frames > 0; })) {
        notMeasured("the menu was never shown");
    }
    QObject::disconnect(watch);
    bar.frames().waitUntilStill();
    QTest::keyClick(bar.window(), Qt::Key_Backspace);
    bar.frames().waitUntilStill();
    return opening;
}

} // namespace

int main(int argc, char **argv)
{
    Bar bar(argc, argv);

    const Opening first = open(bar);
    int frames = first.frames;
    std::vector<double> times;
    for (int i = 0; i < s_openings; ++i) {
        const Opening opening = open(bar);
        frames = std::max(frames, opening.frames);
        times.push_back(opening.time);
    }
    Figures::bounded("menu.frames", frames, "frames", 2);
    Figures::plain("menu.first", first.time, "ms");
    Figures::plain("menu.again", Statistics::median(times), "ms");
}
