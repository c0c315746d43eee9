// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

class AgentBridge;
class QTimer;
class QWebSocket;

// What an AgentBridge keeps to itself, for tests of its connection.

//! The timer of the pause between two attempts to connect.
QTimer *timerOf(const AgentBridge &agent);
QWebSocket *socketOf(const AgentBridge &agent);

//! Ends the pause at once. It must be running.
void endPause(const AgentBridge &agent);
