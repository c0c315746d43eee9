// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QtGlobal>

#include <chrono>
#include <ctime>

//! The clocks of all measurements. Any thread.
namespace Clock
{

//! The current time in ns, by CLOCK_MONOTONIC, which is the same in all processes.
inline qint64 now()
{
    using namespace std::chrono;
    return duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
}

//! The processor time of this thread in ns. Unlike now() it can be compared on a busy machine.
inline qint64 work()
{
    timespec time {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return qint64(time.tv_sec) * 1000000000 + time.tv_nsec;
}

//! The processor time of all threads of this process in ns.
inline qint64 processWork()
{
    timespec time {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return qint64(time.tv_sec) * 1000000000 + time.tv_nsec;
}

//! Converts ns to ms.
constexpr double milliseconds(qint64 nanoseconds)
{
    return static_cast<double>(nanoseconds) / 1e6;
}

} // namespace Clock
