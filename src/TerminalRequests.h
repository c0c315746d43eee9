// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

#include <chrono>
#include <optional>

//! Requests that tovictl answers in the terminal, without a window: usage, version and the model list. Those that the
//! wrapper /usr/bin/tovictl handles are refused. Runs before any application object exists.
namespace TerminalRequests
{

//! For the start of the agent CLI. Its run has no timeout.
constexpr std::chrono::milliseconds LaunchTimeout {5000};

enum class Request
{
    Prompt,
    Usage,
    Version,
    Uninstall,
    Test,
    Models,
};

//! The request that an argument stands for, if any. Arguments must match exactly, except for the prefix "--prompt=".
std::optional<Request> requestOf(const QString &argument);

//! Answers the first request among the arguments (local 8-bit encoding).
//! @return the exit code for main(), or nothing if no argument is a request
std::optional<int> answer(int argc, const char *const *argv);

} // namespace TerminalRequests
