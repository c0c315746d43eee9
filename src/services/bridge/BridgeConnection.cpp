// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BridgeSocket.h"

#include <QWebSocket>

namespace
{

constexpr quint64 s_incomingLimit = 64 * 1024 * 1024; // bytes

} // namespace

namespace BridgeSocket
{

QWebSocket *create(QObject *parent)
{
    auto *socket = new QWebSocket(QString(), QWebSocketProtocol::Version13, parent);
    socket->setMaxAllowedIncomingFrameSize(s_incomingLimit);
    socket->setMaxAllowedIncomingMessageSize(s_incomingLimit);
    return socket;
}

} // namespace BridgeSocket
