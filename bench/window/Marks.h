// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

class QQuickWindow;

//! The stages of a program's start, measured from the moment when the parent process started it.
namespace Marks
{

//! Records that a stage is reached, unless it was before. Main thread.
void note(const char *stage);

//! Records the stages of the window's first frame: window exposed, scene laid out, frame drawn, and frame swapped.
void noteFirstFrame(QQuickWindow *window);

//! Prints a line "STAGE NS" for each stage that was reached, and the processor time of all threads as "processor NS".
void print();

} // namespace Marks
