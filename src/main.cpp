// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Application.h"
#include "ResourceTree.h"
#include "TerminalRequests.h"

int main(int argc, char **argv)
{
    ResourceTree::init();
    // A terminal request needs neither a display nor an application object, so it is answered before either exists.
    if (const auto exitCode = TerminalRequests::answer(argc, argv)) {
        return *exitCode;
    }
    Application::prepareEnvironment();
    Application application(argc, argv);
    return application.exec();
}
