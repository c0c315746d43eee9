// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The real program, for measurements of its start and its idle state.

#include "Application.h"
#include "Marks.h"
#include "ResourceTree.h"
#include "TerminalRequests.h"
#include "WindowTask.h"

#include <QQuickWindow>

int main(int argc, char **argv)
{
    Marks::note("linked");
    ResourceTree::init();
    if (const auto exitCode = TerminalRequests::answer(argc, argv)) {
        return *exitCode;
    }
    Application::prepareEnvironment();
    Application application(argc, argv);
    Marks::note("loaded");
    QQuickWindow *window = WindowTask::openedWindow();
    return WindowTask::run(window,
                           [window] { return window->property("bridgeStatus").toString() == QLatin1String("idle"); });
}
