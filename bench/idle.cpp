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

using Values = QMap<QByteArray, QList<QByteArray>>;

Values observe(const QByteArray &program)
{
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

void printMappings()
{
    const auto bar = mappingsOf(observe(Child::beside("bench_bar")));
    const auto bare = mappingsOf(observe(Child::beside("bench_bare")));
    QList<QByteArray> names = (QSet(bar.keyBegin(), bar.keyEnd()) + QSet(bare.keyBegin(), bare.keyEnd())).values();
    const auto more = [&](const QByteArray &name) { return bar.value(name) - bare.value(name); };
    std::sort(names.begin(), names.end(), [&](const auto &one, const auto &other) { return more(one) > more(other); });
    std::printf("%9s %9s %9s  MiB resident\n", "bar", "bare", "more");
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
        printMappings();
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
        barMemory.push_back(bar.value("memory").first().toDouble() / s_mebibyte);
        bareMemory.push_back(observe(Child::beside("bench_bare")).value("memory").first().toDouble() / s_mebibyte);
    }
    const double barMedian = Statistics::median(barMemory);
    const double bareMedian = Statistics::median(bareMemory);
    Figures::bounded("idle.frames-in-10s", frames, "frames", 0);
    Figures::bounded("idle.running", running, "objects", 0);
    Figures::plain("idle.memory.bar", barMedian, "MiB");
    Figures::plain("idle.memory.bare", bareMedian, "MiB");
    Figures::bounded("idle.memory.more", barMedian - bareMedian, "MiB", 30);
}
