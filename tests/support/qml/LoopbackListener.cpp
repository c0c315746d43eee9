// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "LoopbackListener.h"

#include <QTcpSocket>

bool LoopbackListener::listen()
{
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = m_server.nextPendingConnection()) {
            connect(socket, &QTcpSocket::readyRead, socket, [socket] {
                socket->write("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
                socket->disconnectFromHost();
            });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            ++m_connections;
            Q_EMIT connectionsChanged();
        }
    });
    return m_server.listen(QHostAddress::LocalHost);
}

QString LoopbackListener::address() const
{
    return m_server.isListening() ? QStringLiteral("http://127.0.0.1:%1").arg(m_server.serverPort()) : QString();
}
