// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

class QObject;

//! The wake-word detector: a systemd user service that is not part of this program, and that emits a signal on the
//! session bus when it hears the wake word.
namespace WakeWord
{

//! Connects the signal, of any sender, to the slot onWakeWordActivated(QString phrase) of @p listener. Without a
//! session bus it logs a warning.
void connectSignal(QObject *listener);

//! Ask the user manager, without waiting for an answer. A failure is not reported.
void startService();
void stopService();

} // namespace WakeWord
