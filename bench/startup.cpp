// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The time from the start of the process to the first swapped frame: the OmniBar against an empty window.

#include "support/Child.h"
#include "support/Clock.h"
#include "support/Figures.h"
#include "support/Peer.h"
#include "support/Statistics.h"

#include <QCoreApplication>
#include <QDir>
#include <QStringList>

#include <cstdio>
#include <cstring>
#include <functional>

namespace
{

constexpr int s_runs = 20;
constexpr int s_warmUps = 2;

//! Not a stage but the processor time of all threads until then, which depends less on other load of the machine.
constexpr const char *s_processor = "processor";

const char *const s_stages[] = {"linked",   "application", "loaded",  "exposed",
                                "laid-out", "drawn",       "swapped", s_processor};

//! The starts of one of the two programs.
struct Series
{
    QByteArray program;
    QMap<QByteArray, std::vector<double>> stages; // ms since the start
    QList<QByteArray> plugins;

    void run()
    {
        const auto values = Child::valuesOf(Child::run({program, "--first-frame"}));
        for (const char *stage : s_stages) {
            if (!values.contains(stage)) {
                notMeasured(program + " did not reach the stage " + stage);
            }
            stages[stage].push_back(Clock::milliseconds(values.value(stage).first().toLongLong()));
        }
        plugins = values.value("plugin");
    }

    double median(const char *stage) const { return Statistics::median(stages.value(stage)); }
};

//! Qt's caches of compiled QML, one directory per program.
QStringList qmlCaches()
{
    const QString root = qEnvironmentVariable("XDG_CACHE_HOME", QDir::homePath() + QStringLiteral("/.cache"));
    QStringList caches;
    const QStringList names = QDir(root).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        const QString cache = root + QLatin1Char('/') + name + QStringLiteral("/qmlcache");
        if (QDir(cache).exists()) {
            caches.append(cache);
        }
    }
    return caches;
}

void emptyQmlCaches()
{
    const QStringList caches = qmlCaches();
    for (const QString &cache : caches) {
        if (!QDir(cache).removeRecursively()) {
            notMeasured("the cache of compiled QML can't be emptied");
        }
    }
}

//! The bare window only shows the cost of the modules if both windows import the same ones.
void compareModules(const Series &bar, const Series &bare)
{
    if (bar.plugins == bare.plugins) {
        return;
    }
    for (const auto &[mine, others] : {std::pair(&bar, &bare), std::pair(&bare, &bar)}) {
        for (const QByteArray &plugin : mine->plugins) {
            if (!others->plugins.contains(plugin)) {
                std::fprintf(stderr, "only in %s: %s\n", mine->program.constData(), plugin.constData());
            }
        }
    }
    notMeasured(
        "the two windows import different modules: bench/window/BareWindow.qml must import what the OmniBar does");
}

void printStages(const QByteArray &name, const Series &bar, const Series &bare)
{
    std::printf("%s: median ms since the start of the process\n%-12s %8s %8s %8s\n", name.constData(), "stage", "bar",
                "bare", "more");
    double before = 0;
    for (const char *stage : s_stages) {
        if (std::strcmp(stage, s_processor) == 0) {
            before = 0;
        }
        const double more = bar.median(stage) - bare.median(stage);
        std::printf("%-12s %8.1f %8.1f %+8.1f\n", stage, bar.median(stage), bare.median(stage), more - before);
        before = more;
    }
}

//! Measures until the whole idle bar is on the screen: the rest of it is built after the first frame.
void measureWhole()
{
    std::vector<double> times; // ms since the start
    for (int i = 0; i < s_runs; ++i) {
        const auto values = Child::valuesOf(Child::run({Child::beside("bench_bar"), "--whole"}));
        if (!values.contains("whole")) {
            notMeasured("the window was never complete");
        }
        times.push_back(Clock::milliseconds(values.value("whole").first().toLongLong()));
    }
    Figures::plain("startup.warm.whole", Statistics::median(times), "ms");
}

void measure(const QByteArray &name, const std::function<void()> &prepare, bool wantsStages)
{
    Series bar {Child::beside("bench_bar"), {}, {}};
    Series bare {Child::beside("bench_bare"), {}, {}};
    for (int i = 0; i < s_runs; ++i) {
        // In alternating order, so that other load on the machine affects both equally.
        for (Series *series : {i % 2 == 0 ? &bar : &bare, i % 2 == 0 ? &bare : &bar}) {
            prepare();
            series->run();
        }
    }
    compareModules(bar, bare);
    if (wantsStages) {
        printStages(name, bar, bare);
        return;
    }
    const double barTime = bar.median("swapped");
    const double bareTime = bare.median("swapped");
    Figures::plain(name + ".bar", barTime, "ms");
    Figures::plain(name + ".bare", bareTime, "ms");
    Figures::bounded(name + ".ratio", barTime / bareTime, "x", 1.3);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const Peer peer; // as for a user with a running bridge
    const bool wantsStages = QCoreApplication::arguments().contains(QLatin1String("--stages"));
    // Complete starts, to fill the caches as they are for a user.
    for (int i = 0; i < s_warmUps; ++i) {
        Child::run({Child::beside("bench_bar"), "--rest"});
        Child::run({Child::beside("bench_bare"), "--rest"});
    }
    if (qmlCaches().isEmpty()) {
        notMeasured("there is no cache of compiled QML in the expected place");
    }
    measure(
        "startup.warm", [] {}, wantsStages);
    if (!wantsStages) {
        measureWhole();
    }
    measure(
        "startup.empty-qml-cache", [] { emptyQmlCaches(); }, wantsStages);
}
