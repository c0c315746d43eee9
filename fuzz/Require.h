// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <cstdio>
#include <cstdlib>

//! Ends the program, which the fuzzer takes for a finding, unless what the rule says holds.
inline void require(bool holds, const char *rule)
{
    if (!holds) {
        std::fprintf(stderr, "A rule was broken: %s\n", rule);
        std::abort();
    }
}
