// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

class QObject;

//! The detector that listens for the wake word. It is a service of the user's manager and no part of this program; it
//! tells by a signal on the session bus that it has heard something.
namespace WakeWord
{

//! Calls the slot onWakeWordActivated(QString phrase) of @p listener for the signal of any sender. Without a session
//! bus a warning is all that happens.
void connectSignal(QObject *listener);

//! Ask the user's manager; don't wait for an answer, and say nothing of a failure.
void startService();
void stopService();

} // namespace WakeWord
