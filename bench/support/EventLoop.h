// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <chrono>
#include <functional>

//! Runs the main thread's event loop without polling intervals, which would distort measurements.
namespace EventLoop
{

//! Runs until the condition holds, which is checked after each round of events. @return false after the timeout
bool until(const std::function<bool()> &condition, std::chrono::milliseconds timeout = std::chrono::seconds(20));

//! Runs for this time.
void run(std::chrono::milliseconds duration);

} // namespace EventLoop
