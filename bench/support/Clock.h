// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QtGlobal>

#include <chrono>

//! The clock that all measurements use: CLOCK_MONOTONIC, whose values mean the same in every process. Any thread.
namespace Clock
{

//! In ns.
inline qint64 now()
{
    using namespace std::chrono;
    return duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
}

//! ns as ms.
constexpr double milliseconds(qint64 nanoseconds)
{
    return static_cast<double>(nanoseconds) / 1e6;
}

} // namespace Clock
