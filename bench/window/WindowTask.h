// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <functional>

class QQuickWindow;

//! What bench_bar and bench_bare do with their window, by their first argument. They print lines "NAME VALUE":
//!
//!   --first-frame  exits with the first frame; prints the time of each stage of the start in ns, and the QML plugins
//!   --whole        exits with the first frame in which the whole window is built; prints the same stages and "whole"
//!   --rest         exits when everything is built and no frame follows; prints nothing
//!   --idle         waits until the window is idle and observes it for 10 s; prints the number of swapped frames,
//!   running
//!                  timers and animations, and the resident memory in bytes, in total and by mapping
namespace WindowTask
{

//! Runs the event loop. @return the exit status for main
//! @param isReady whether the window is in the state that --idle observes
int run(QQuickWindow *window, const std::function<bool()> &isReady);

//! The window that the application opened. Ends the benchmark if there is none.
QQuickWindow *openedWindow();

} // namespace WindowTask
