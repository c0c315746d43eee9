// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Starts.h"

#include "Child.h"
#include "Clock.h"
#include "Figures.h"
#include "Statistics.h"

#include <QDir>
#include <QMap>
#include <QStringList>

#include <cstdio>
#include <cstring>
#include <utility>

namespace
{

constexpr int s_runs = 20;
constexpr int s_warmUps = 2;
constexpr const char *s_program = "bench_bar";
constexpr const char *s_bare = "bench_bare";

//! Not a stage but the processor time of all threads until then, which depends less on other load of the machine.
constexpr const char *s_processor = "processor";

const char *const s_stages[] = {"linked",   "application", "loaded",  "exposed",
                                "laid-out", "drawn",       "swapped", s_processor};

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

} // namespace

//! The starts of one of the two programs.
struct Starts::Series
{
    QList<QByteArray> command;
    QMap<QByteArray, std::vector<double>> stages; // ms since the start
    QList<QByteArray> plugins;

    void run()
    {
        const auto values = Child::valuesOf(Child::run(command));
        for (const char *stage : s_stages) {
            if (!values.contains(stage)) {
                notMeasured(command.first() + " did not reach the stage " + stage);
            }
            stages[stage].push_back(Clock::milliseconds(values.value(stage).first().toLongLong()));
        }
        plugins = values.value("plugin");
    }

    double median(const char *stage) const { return Statistics::median(stages.value(stage)); }

    //! Names the modules that the other one lacks.
    void printOwnModules(const Series &other) const
    {
        for (const QByteArray &plugin : plugins) {
            if (!other.plugins.contains(plugin)) {
                std::fprintf(stderr, "only in %s: %s\n", command.first().constData(), plugin.constData());
            }
        }
    }
};

Starts::Starts(QByteArray figure, QByteArray window, QByteArray bareFile, QList<QByteArray> mode, double target)
    : m_figure(std::move(figure))
    , m_window(std::move(window))
    , m_bareFile(std::move(bareFile))
    , m_mode(std::move(mode))
    , m_target(target)
{
    for (int i = 0; i < s_warmUps; ++i) {
        for (const char *program : {s_program, s_bare}) {
            Child::run(command(program, "--rest"));
        }
    }
}

QList<QByteArray> Starts::command(const char *program, const char *task) const
{
    return QList<QByteArray> {Child::beside(program), task} + m_mode;
}

void Starts::measureWhole()
{
    std::vector<double> times; // ms since the start
    for (int i = 0; i < s_runs; ++i) {
        const auto values = Child::valuesOf(Child::run(command(s_program, "--whole")));
        if (!values.contains("whole")) {
            notMeasured("the window was never complete");
        }
        times.push_back(Clock::milliseconds(values.value("whole").first().toLongLong()));
    }
    Figures::plain(m_figure + ".warm.whole", Statistics::median(times), "ms");
}

void Starts::measure(Caches caches)
{
    compare(caches, false);
}

void Starts::printStages(Caches caches)
{
    compare(caches, true);
}

void Starts::compare(Caches caches, bool wantsStages)
{
    if (caches == Caches::Empty && qmlCaches().isEmpty()) {
        notMeasured("there is no cache of compiled QML in the expected place");
    }
    Series window {command(s_program, "--first-frame"), {}, {}};
    Series bare {command(s_bare, "--first-frame"), {}, {}};
    for (int i = 0; i < s_runs; ++i) {
        // In alternating order, so that other load on the machine affects both equally.
        for (Series *series : {i % 2 == 0 ? &window : &bare, i % 2 == 0 ? &bare : &window}) {
            if (caches == Caches::Empty) {
                emptyQmlCaches();
            }
            series->run();
        }
    }
    // The bare window only shows the cost of the modules if both windows import the same ones.
    if (window.plugins != bare.plugins) {
        window.printOwnModules(bare);
        bare.printOwnModules(window);
        notMeasured("the two windows import different modules: " + m_bareFile + " must import what the window does");
    }
    const QByteArray name = m_figure + (caches == Caches::Empty ? ".empty-qml-cache" : ".warm");
    if (!wantsStages) {
        const double time = window.median("swapped");
        const double bareTime = bare.median("swapped");
        Figures::plain(name + '.' + m_window, time, "ms");
        Figures::plain(name + ".bare", bareTime, "ms");
        Figures::bounded(name + ".ratio", time / bareTime, "x", m_target);
        return;
    }
    std::printf("%s: median ms since the start of the process\n%-12s %8s %8s %8s\n", name.constData(), "stage",
                m_window.constData(), "bare", "more");
    double before = 0;
    for (const char *stage : s_stages) {
        if (std::strcmp(stage, s_processor) == 0) {
            before = 0;
        }
        const double more = window.median(stage) - bare.median(stage);
        std::printf("%-12s %8.1f %8.1f %+8.1f\n", stage, window.median(stage), bare.median(stage), more - before);
        before = more;
    }
}
