// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Marks.h"

#include "support/Clock.h"

#include <QCoreApplication>
#include <QEvent>
#include <QQuickWindow>

#include <cstdio>
#include <cstring>
#include <ctime>
#include <utility>
#include <vector>

namespace
{

std::vector<std::pair<const char *, qint64>> s_marks;

//! The base class of the application object is complete; every program with a window has this stage.
void noteApplication()
{
    Marks::note("application");
}
Q_COREAPP_STARTUP_FUNCTION(noteApplication)

class ExposeWatch : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Expose) {
            Marks::note("exposed");
        }
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

namespace Marks
{

void note(const char *stage)
{
    for (const auto &[name, time] : s_marks) {
        if (std::strcmp(name, stage) == 0) {
            return;
        }
    }
    s_marks.emplace_back(stage, Clock::now());
}

void noteFirstFrame(QQuickWindow *window)
{
    window->installEventFilter(new ExposeWatch(window));
    const auto noteAt = [window](auto signal, const char *stage) {
        QObject::connect(
            window, signal, window, [stage] { note(stage); }, Qt::DirectConnection);
    };
    noteAt(&QQuickWindow::beforeSynchronizing, "laid-out");
    noteAt(&QQuickWindow::afterRendering, "drawn");
    noteAt(&QQuickWindow::frameSwapped, "swapped");
}

void print()
{
    timespec processor {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &processor);
    std::printf("processor %lld\n", static_cast<long long>(processor.tv_sec) * 1000000000 + processor.tv_nsec);
    const qint64 started = qEnvironmentVariable("BENCH_STARTED").toLongLong();
    for (const auto &[stage, time] : s_marks) {
        std::printf("%s %lld\n", stage, static_cast<long long>(time - started));
    }
}

} // namespace Marks
