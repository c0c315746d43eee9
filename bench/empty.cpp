// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The cost of any program that links the libraries of tovictl. Prints the same as `tovictl --version`.

#include <cstdio>

int main()
{
    std::fputs("tovictl " TOVICTL_VERSION "\n", stdout);
    return 0;
}
