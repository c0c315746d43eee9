// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "TestRegistry.h"

#include <cstdio>

//! For tests in which the program clears port 8765, which kills any `node` process that uses it. They may run only in a
//! network namespace of their own, which tests/support/environment makes where the system allows it.
namespace PrivateNetwork
{

//! For QSKIP.
constexpr const char *SkipReason =
    "SKIPPED: this test would kill any node process on port 8765, and it has no private network (network namespaces "
    "are not allowed here, or it was not started by tests/support/environment)";

inline bool isAvailable()
{
    return qEnvironmentVariableIsSet("TOVICTL_PRIVATE_NETWORK");
}

template<typename Application, typename Test>
int runOrSkip(int argc, char **argv)
{
    if (!isAvailable()) {
        std::fprintf(stderr, "%s\n", SkipReason);
        return 77; // SKIP_RETURN_CODE of the tests
    }
    return TestRegistry::runWith<Application, Test>(argc, argv);
}

} // namespace PrivateNetwork

//! REGISTER_TEST for a test class that is skipped without a private network.
#define REGISTER_PRIVATE_NETWORK_TEST(Test, Application)                                                               \
    REGISTER_TEST_MAIN(Test, (PrivateNetwork::runOrSkip<Application, Test>))
