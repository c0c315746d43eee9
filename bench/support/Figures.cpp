// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Figures.h"

#include <cstdio>
#include <cstdlib>

namespace
{

void print(const QByteArray &name, double value, const char *unit, const char *target, const char *verdict)
{
    std::printf("%-34s %10.3f %-7s %-9s %s\n", name.constData(), value, unit, target, verdict);
    std::fflush(stdout);
}

void printJudged(const QByteArray &name, double value, const char *unit, const char *sign, double target, bool isMet)
{
    char text[16];
    std::snprintf(text, sizeof text, "%s %g", sign, target);
    print(name, value, unit, text, isMet ? "ok" : "MISSED");
}

} // namespace

namespace Figures
{

void bounded(const QByteArray &name, double value, const char *unit, double target)
{
    printJudged(name, value, unit, "<=", target, value <= target);
}

void atLeast(const QByteArray &name, double value, const char *unit, double target)
{
    printJudged(name, value, unit, ">=", target, value >= target);
}

void plain(const QByteArray &name, double value, const char *unit)
{
    print(name, value, unit, "-", "-");
}

} // namespace Figures

void notMeasured(const QByteArray &why)
{
    std::fflush(stdout);
    std::fprintf(stderr, "not measured: %s\n", why.constData());
    // No unwinding: threads and windows are in an unknown state.
    std::_Exit(EXIT_FAILURE);
}
