// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

//! The bridge where it runs as a service of the user's manager and not as our child.
namespace BridgeUserService
{

//! What became of a request. Started means that systemctl runs, not that it will succeed.
enum class Outcome
{
    NoSystemctl,
    NotStarted,
    Started,
};

//! Asks the user's manager to start the bridge. Doesn't wait for an answer: the connection attempts show it.
Outcome requestStart();

} // namespace BridgeUserService
