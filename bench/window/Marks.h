// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

class QQuickWindow;

//! When a starting program reached which stage, counted from the moment at which its parent started it.
namespace Marks
{

//! Notes that a stage is reached, if it is for the first time. Main thread.
void note(const char *stage);

//! Notes the stages of the window's first frame: when the window is on the screen, when the frame's scene is laid out,
//! when it is drawn, and when it is swapped.
void noteFirstFrame(QQuickWindow *window);

//! Writes a line "stage ns" for each that was reached, and the time that all threads spent on processors as another
//! one, "processor ns".
void print();

} // namespace Marks
