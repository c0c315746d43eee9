// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>

//! The output of a benchmark: one line per figure, with name, value, unit, target and verdict.
namespace Figures
{

//! Prints a figure with a maximum. The verdict is "ok" or "MISSED".
void bounded(const QByteArray &name, double value, const char *unit, double target);

//! Prints a figure with a minimum.
void atLeast(const QByteArray &name, double value, const char *unit, double target);

//! Prints a figure without a target.
void plain(const QByteArray &name, double value, const char *unit);

} // namespace Figures

//! Ends the benchmark with exit status 1 and the reason on standard error.
[[noreturn]] void notMeasured(const QByteArray &why);
