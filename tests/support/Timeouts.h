// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

//! How long tests wait before they fail. Generous, because a busy machine must not fail a test; a test that passes
//! never waits that long. In ms, as the macros of Qt Test and QProcess take them.
namespace Timeouts
{

//! For events of the test's own process and its peers.
constexpr int Default = 10000;
//! For a started program: its first window, its connection, its end.
constexpr int Program = 45000;

} // namespace Timeouts
