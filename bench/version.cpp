// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// `tovictl --version` against an empty program that links the same libraries.

#include "support/Child.h"
#include "support/Clock.h"
#include "support/Figures.h"
#include "support/Statistics.h"

#include <vector>

namespace
{

constexpr int s_runs = 100;
constexpr int s_warmUps = 5;

double startOf(const QList<QByteArray> &arguments, const QByteArray &expected)
{
    const Child::Result result = Child::run(arguments);
    if (result.output != expected) {
        notMeasured(arguments.first() + " does not print the version");
    }
    return Clock::milliseconds(result.duration);
}

} // namespace

int main()
{
    const QList<QByteArray> program {Child::beside("tovictl"), "--version"};
    const QList<QByteArray> empty {Child::beside("bench_empty")};
    if (Child::librariesOf(program.first()) != Child::librariesOf(empty.first())) {
        notMeasured("the empty program and tovictl link different libraries: see bench/CMakeLists.txt");
    }
    const QByteArray expected = Child::run(empty).output;

    std::vector<double> programTimes;
    std::vector<double> emptyTimes;
    for (int i = -s_warmUps; i < s_runs; ++i) {
        const double programTime = startOf(program, expected);
        const double emptyTime = startOf(empty, expected);
        if (i >= 0) {
            programTimes.push_back(programTime);
            emptyTimes.push_back(emptyTime);
        }
    }
    const double programTime = Statistics::median(programTimes);
    const double emptyTime = Statistics::median(emptyTimes);
    Figures::plain("version.tovictl", programTime, "ms");
    Figures::plain("version.empty", emptyTime, "ms");
    Figures::bounded("version.ratio", programTime / emptyTime, "x", 1.1);
}
