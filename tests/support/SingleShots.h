// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QObjectList>

//! The delays that QTimer::singleShot() has started in this thread and that are still running.
namespace SingleShots
{

QObjectList pending();

//! Ends them now, so that a test need not wait for a fixed delay.
void fire();

//! Ends them without an effect, so that a slow machine doesn't reach them before what the test is about.
void cancel();

} // namespace SingleShots
