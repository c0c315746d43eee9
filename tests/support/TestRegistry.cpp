// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "TestRegistry.h"

#include <cstdio>
#include <map>
#include <string>

namespace
{

std::map<std::string, TestRegistry::Run> &tests()
{
    static std::map<std::string, TestRegistry::Run> s_tests;
    return s_tests;
}

} // namespace

TestRegistry::Registration::Registration(const char *name, Run run)
{
    tests().emplace(name, run);
}

int TestRegistry::run(int argc, char **argv)
{
    const auto found = argc > 1 ? tests().find(argv[1]) : tests().end();
    if (found == tests().end()) {
        std::fprintf(stderr, "usage: %s CLASS [ARGUMENTS OF QTEST]\nThe classes:\n", argv[0]);
        for (const auto &[name, run] : tests()) {
            std::fprintf(stderr, "  %s\n", name.c_str());
        }
        return 2;
    }
    // The class sees the arguments of a stand-alone program.
    argv[1] = argv[0];
    return found->second(argc - 1, argv + 1);
}

int main(int argc, char **argv)
{
    return TestRegistry::run(argc, argv);
}
