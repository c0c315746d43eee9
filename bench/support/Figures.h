// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>

//! What a benchmark says on standard output: one line a figure, with name, value, unit, target and verdict.
namespace Figures
{

//! A figure that is to be at most @p target. A line that ends in "MISSED" says that it isn't.
void bounded(const QByteArray &name, double value, const char *unit, double target);

//! A figure that is to be at least @p target, with the same verdicts.
void atLeast(const QByteArray &name, double value, const char *unit, double target);

//! A figure that has no target, or that explains another one.
void plain(const QByteArray &name, double value, const char *unit);

} // namespace Figures

//! Ends the benchmark with status 1 and a sentence on standard error: what was to be measured could not be.
[[noreturn]] void notMeasured(const QByteArray &why);
