// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// What any program costs that is linked to the libraries of tovictl: it says what that says, and nothing else.

#include <cstdio>

int main()
{
    std::fputs("tovictl " TOVICTL_VERSION "\n", stdout);
    return 0;
}
