// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <chrono>

//! How long LoomraSDK waits for the bridge's process, and before it connects to it.
namespace BridgeProcessTimes
{

using Duration = std::chrono::milliseconds;

constexpr Duration ConnectAfterStart {1000};
constexpr Duration ConnectAfterService {500};
constexpr Duration RestartAfterToggle {500};
constexpr Duration StartTimeout {5000};
//! Time for the bridge to react to the close frame before it gets SIGTERM.
constexpr Duration CloseDelay {150};
constexpr Duration TerminateTimeout {10000};
constexpr Duration KillTimeout {2000};
//! Once the bridge is ready, the reminder of workspace suggestions waits for the first requests.
constexpr Duration ReminderAfterReady {300};

} // namespace BridgeProcessTimes
