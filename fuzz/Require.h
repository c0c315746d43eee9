// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <cstdio>
#include <cstdlib>

//! Aborts the program if the rule doesn't hold. The fuzzer reports this as a finding.
//! @param rule what must hold, as a sentence
inline void require(bool holds, const char *rule)
{
    if (!holds) {
        std::fprintf(stderr, "A rule was broken: %s\n", rule);
        std::abort();
    }
}
