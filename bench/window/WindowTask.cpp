// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "WindowTask.h"

#include "Marks.h"
#include "support/EventLoop.h"
#include "support/Figures.h"
#include "support/FrameWatch.h"
#include "support/ObjectWalk.h"
#include "support/Process.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QStyleHints>

#include <cstdio>
#include <cstdlib>

using namespace std::chrono_literals;

namespace
{

constexpr auto s_idleTime = 10s;

//! Never returns. Exits at once with the frame, so that a profile shows nothing after it.
int showFirstFrame(QQuickWindow *window)
{
    Marks::noteFirstFrame(window);
    QObject::connect(
        window, &QQuickWindow::frameSwapped, window,
        [] {
            Marks::print();
            const QList<QByteArray> plugins = Process::qmlPlugins();
            for (const QByteArray &plugin : plugins) {
                std::printf("plugin %s\n", plugin.constData());
            }
            std::fflush(stdout);
            std::_Exit(EXIT_SUCCESS);
        },
        Qt::DirectConnection);
    return QCoreApplication::exec();
}

//! Exits with the first frame in which the whole window is built. Never returns.
int showWhole(QQuickWindow *window)
{
    QObject::connect(
        window, &QQuickWindow::frameSwapped, window,
        [window] {
            if (window->property("firstFrameShown").toBool()) {
                Marks::note("whole");
                Marks::print();
                std::fflush(stdout);
                std::_Exit(EXIT_SUCCESS);
            }
        },
        Qt::DirectConnection);
    return QCoreApplication::exec();
}

//! The blinking cursor draws frames, which would hide unintended ones.
void stopCursor()
{
    QGuiApplication::styleHints()->setCursorFlashTime(0);
}

int waitForRest(QQuickWindow *window)
{
    stopCursor();
    FrameWatch frames(window);
    frames.waitForFrame();
    frames.waitUntilStill(500ms);
    return 0;
}

int observeIdle(QQuickWindow *window, const std::function<bool()> &isReady)
{
    stopCursor();
    FrameWatch frames(window);
    frames.waitForFrame();
    // The entrance animation, or nothing in an empty window. Shows that running() finds something.
    const QList<QObject *> roots {window, qApp};
    std::printf("running-at-start %d\n", ObjectWalk::runningIn(roots).size());
    if (!EventLoop::until(isReady)) {
        notMeasured("the window did not become idle");
    }
    frames.waitUntilStill(1s);

    const int before = frames.count();
    EventLoop::run(s_idleTime);
    std::printf("frames %d\n", frames.count() - before);
    for (const QString &running : ObjectWalk::runningIn(roots)) {
        std::printf("running %s\n", qPrintable(running));
    }
    std::printf("memory %.0f\n", Process::residentMemory());
    const auto mappings = Process::residentMappings();
    for (auto mapping = mappings.begin(); mapping != mappings.end(); ++mapping) {
        std::printf("mapping %.0f %s\n", mapping.value(), mapping.key().constData());
    }
    return 0;
}

} // namespace

namespace WindowTask
{

QQuickWindow *openedWindow()
{
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (QWindow *window : windows) {
        if (auto *quickWindow = qobject_cast<QQuickWindow *>(window)) {
            return quickWindow;
        }
    }
    notMeasured("the program opened no window");
}

int run(QQuickWindow *window, const std::function<bool()> &isReady)
{
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.contains(QLatin1String("--first-frame"))) {
        return showFirstFrame(window);
    }
    if (arguments.contains(QLatin1String("--whole"))) {
        return showWhole(window);
    }
    if (arguments.contains(QLatin1String("--rest"))) {
        return waitForRest(window);
    }
    if (arguments.contains(QLatin1String("--idle"))) {
        return observeIdle(window, isReady);
    }
    notMeasured("the argument is none of --first-frame, --whole, --rest and --idle");
}

} // namespace WindowTask
