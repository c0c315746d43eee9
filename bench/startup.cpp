// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// From the start of the process to the first swapped frame: the OmniBar's window against an empty one.

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

//! Not a stage, but what all threads spent until then. Says more where the machine has other work.
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
                notMeasured(program + " did not come to the stage " + stage);
            }
            stages[stage].push_back(Clock::milliseconds(values.value(stage).first().toLongLong()));
        }
        plugins = values.value("plugin");
    }

    double median(const char *stage) const { return Statistics::median(stages.value(stage)); }
};

//! Where Qt keeps compiled QML, one directory a program.
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

//! The bare window stands for what the modules cost only if they are the same.
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
    notMeasured("the two windows import different modules: bench/window/BareWindow.qml is to follow the OmniBar");
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

//! When all that the idle bar shows is on the screen: what the first frame leaves out is built right after it.
void measureWhole()
{
    std::vector<double> times; // ms since the start
    for (int i = 0; i < s_runs; ++i) {
        const auto values = Child::valuesOf(Child::run({Child::beside("bench_bar"), "--whole"}));
        if (!values.contains("whole")) {
            notMeasured("the window was never drawn as a whole");
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
        // Who is first changes, so that what the machine does else hits both alike.
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
    const Peer peer; // as for a user whose bridge runs
    const bool wantsStages = QCoreApplication::arguments().contains(QLatin1String("--stages"));
    // Whole starts, so that the caches hold what they hold for a user.
    for (int i = 0; i < s_warmUps; ++i) {
        Child::run({Child::beside("bench_bar"), "--rest"});
        Child::run({Child::beside("bench_bare"), "--rest"});
    }
    if (qmlCaches().isEmpty()) {
        notMeasured("compiled QML lies elsewhere than where it is to be removed");
    }
    measure(
        "startup.warm", [] {}, wantsStages);
    if (!wantsStages) {
        measureWhole();
    }
    measure(
        "startup.empty-qml-cache", [] { emptyQmlCaches(); }, wantsStages);
}
