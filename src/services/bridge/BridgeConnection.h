// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

class QObject;
class QWebSocket;

//! What the two clients' sockets have in common.
namespace BridgeSocket
{

//! A socket that isn't open yet, with a limit of 64 MiB on what comes in: far above any reply, and what is longer
//! closes the connection.
QWebSocket *create(QObject *parent);

} // namespace BridgeSocket
