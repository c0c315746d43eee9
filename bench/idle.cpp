// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Activity and memory of the idle program.

#include "support/Child.h"
#include "support/Figures.h"
#include "support/Peer.h"
#include "support/Statistics.h"

#include <QCoreApplication>
#include <QSet>

#include <algorithm>
#include <cstdio>

namespace
{

constexpr int s_runs = 3;
constexpr double s_mebibyte = 1024 * 1024;

//! The renderers that are measured. The memory of a virtual graphics card's driver counts as the window's; without a
//! driver, only our own heap and code are left.
struct Renderer
{
    const char *figure;
    const char *backend; //!< of Qt Quick; empty for the default
    double target; //!< MiB more than the bare window
};
constexpr Renderer s_opengl {"idle.memory", "", 30};
constexpr Renderer s_software {"idle.software.memory", "software", 20};

using Values = QMap<QByteArray, QList<QByteArray>>;

Values observe(const QByteArray &program, const Renderer &renderer = s_opengl)
{
    qputenv("QT_QUICK_BACKEND", renderer.backend);
    const Values values = Child::valuesOf(Child::run({program, "--idle"}));
    for (const char *name : {"running-at-start", "frames", "memory"}) {
        if (!values.contains(name)) {
            notMeasured(program + " does not report " + name);
        }
    }
    return values;
}

//! Resident memory in bytes by mapping, from the lines "mapping BYTES NAME".
QMap<QByteArray, double> mappingsOf(const Values &values)
{
    QMap<QByteArray, double> mappings;
    for (const QByteArray &line : values.value("mapping")) {
        const int space = line.indexOf(' ');
        mappings.insert(line.mid(space + 1), line.left(space).toDouble());
    }
    return mappings;
}

double memoryOf(const Values &values)
{
    return values.value("memory").first().toDouble() / s_mebibyte;
}

//! What the window takes more than the bare one.
void judgeMemory(const Renderer &renderer, const std::vector<double> &bar, const std::vector<double> &bare)
{
    const QByteArray figure = renderer.figure;
    const double barMedian = Statistics::median(bar);
    const double bareMedian = Statistics::median(bare);
    Figures::plain(figure + ".bar", barMedian, "MiB");
    Figures::plain(figure + ".bare", bareMedian, "MiB");
    Figures::bounded(figure + ".more", barMedian - bareMedian, "MiB", renderer.target);
}

void printMappings(const Renderer &renderer)
{
    const auto bar = mappingsOf(observe(Child::beside("bench_bar"), renderer));
    const auto bare = mappingsOf(observe(Child::beside("bench_bare"), renderer));
    QList<QByteArray> names = (QSet(bar.keyBegin(), bar.keyEnd()) + QSet(bare.keyBegin(), bare.keyEnd())).values();
    const auto more = [&](const QByteArray &name) { return bar.value(name) - bare.value(name); };
    std::sort(names.begin(), names.end(), [&](const auto &one, const auto &other) { return more(one) > more(other); });
    std::printf("%s\n%9s %9s %9s  MiB resident\n", renderer.figure, "bar", "bare", "more");
    for (const QByteArray &name : qAsConst(names)) {
        std::printf("%9.2f %9.2f %+9.2f  %s\n", bar.value(name) / s_mebibyte, bare.value(name) / s_mebibyte,
                    more(name) / s_mebibyte, name.constData());
    }
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const Peer peer;
    if (QCoreApplication::arguments().contains(QLatin1String("--mappings"))) {
        printMappings(s_opengl);
        printMappings(s_software);
        return 0;
    }
    if (QCoreApplication::arguments().contains(QLatin1String("--once"))) {
        observe(Child::beside("bench_bar"));
        return 0;
    }
    double frames = 0;
    double running = 0;
    std::vector<double> barMemory;
    std::vector<double> bareMemory;
    for (int i = 0; i < s_runs; ++i) {
        const Values bar = observe(Child::beside("bench_bar"));
        if (bar.value("running-at-start").first().toInt() == 0) {
            notMeasured("the window's entrance animation is running but was not found");
        }
        const QList<QByteArray> culprits = bar.value("running");
        for (const QByteArray &culprit : culprits) {
            std::fprintf(stderr, "running while idle: %s\n", culprit.constData());
        }
        frames = std::max(frames, bar.value("frames").first().toDouble());
        running = std::max(running, static_cast<double>(culprits.size()));
        barMemory.push_back(memoryOf(bar));
        bareMemory.push_back(memoryOf(observe(Child::beside("bench_bare"))));
    }
    Figures::bounded("idle.frames-in-10s", frames, "frames", 0);
    Figures::bounded("idle.running", running, "objects", 0);
    judgeMemory(s_opengl, barMemory, bareMemory);

    barMemory.clear();
    bareMemory.clear();
    for (int i = 0; i < s_runs; ++i) {
        barMemory.push_back(memoryOf(observe(Child::beside("bench_bar"), s_software)));
        bareMemory.push_back(memoryOf(observe(Child::beside("bench_bare"), s_software)));
    }
    judgeMemory(s_software, barMemory, bareMemory);
}
