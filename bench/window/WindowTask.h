// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <functional>

class QQuickWindow;

//! What bench_bar and bench_bare do with their window, by their first argument, and tell as lines "name value" on
//! standard output:
//!
//!   --first-frame  ends with the first frame; tells when each stage of the start was reached, in ns, and the QML
//!                  plugins that are loaded
//!   --rest         ends once everything that follows the first frame is built and no frame comes any more; tells
//!                  nothing
//!   --idle         waits until the window is at rest and looks at it for 10 s; tells the frames that were swapped
//!                  meanwhile, what is running, and the resident memory in bytes at the end, in all and by mapping
namespace WindowTask
{

//! Runs the event loop. @return the exit status for main
//! @param isReady tells whether the window is in the state in which it is to be looked at; waited for by --idle
int run(QQuickWindow *window, const std::function<bool()> &isReady);

//! The window that the application opened. Ends the benchmark when there is none.
QQuickWindow *openedWindow();

} // namespace WindowTask
