// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

#include <optional>

//! What tovictl answers in the terminal, without a window: usage, version, the model list, and refusals of what
//! belongs to the wrapper /usr/bin/tovictl. Runs before any application object exists.
namespace TerminalRequests
{

enum class Request
{
    Prompt,
    Usage,
    Version,
    Uninstall,
    Test,
    Models,
};

//! The request that one argument makes, or none. Exact and case-sensitive, but for the prefix "--prompt=".
std::optional<Request> requestOf(const QString &argument);

//! Scans the arguments after the program's name in order (local 8-bit encoding) and answers the first request.
//! @return the exit code for main, or nothing if no argument is a request
std::optional<int> answer(int argc, const char *const *argv);

} // namespace TerminalRequests
