// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <functional>

//! Lets the main thread's events run, without a pause that would blur what is measured.
namespace EventLoop
{

//! Until the condition holds. Looks again after each round of events. @return whether it held in time
bool until(const std::function<bool()> &condition, int milliseconds = 20000);

//! For so long.
void run(int milliseconds);

} // namespace EventLoop
