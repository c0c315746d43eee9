// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QtGlobal>

#include <chrono>

//! The clock of all measurements: CLOCK_MONOTONIC, which is the same in all processes. Any thread.
namespace Clock
{

//! The current time in ns.
inline qint64 now()
{
    using namespace std::chrono;
    return duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
}

//! Converts ns to ms.
constexpr double milliseconds(qint64 nanoseconds)
{
    return static_cast<double>(nanoseconds) / 1e6;
}

} // namespace Clock
