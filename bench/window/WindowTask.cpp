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

namespace
{

constexpr int s_lookAtIdle = 10000; // ms

//! Never returns. The end comes at once, with the frame on the screen: what follows it is not to be seen in a profile.
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

//! The first frame in which nothing is left to be built. Never returns either.
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

//! A blinking cursor is meant to draw; where rest is waited for it would hide what isn't.
void stopCursor()
{
    QGuiApplication::styleHints()->setCursorFlashTime(0);
}

int comeToRest(QQuickWindow *window)
{
    stopCursor();
    FrameWatch frames(window);
    frames.waitForFrame();
    frames.waitUntilStill(500);
    return 0;
}

int lookAtIdle(QQuickWindow *window, const std::function<bool()> &isReady)
{
    stopCursor();
    FrameWatch frames(window);
    frames.waitForFrame();
    // The entrance, or in an empty window nothing: told so that a walk that is blind can be found out.
    const QList<QObject *> roots {window, qApp};
    std::printf("running-at-start %d\n", ObjectWalk::runningIn(roots).size());
    if (!EventLoop::until(isReady)) {
        notMeasured("the window did not reach the state in which it is idle");
    }
    frames.waitUntilStill(1000);

    const int before = frames.count();
    EventLoop::run(s_lookAtIdle);
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
        return comeToRest(window);
    }
    if (arguments.contains(QLatin1String("--idle"))) {
        return lookAtIdle(window, isReady);
    }
    notMeasured("the argument is none of --first-frame, --whole, --rest and --idle");
}

} // namespace WindowTask
