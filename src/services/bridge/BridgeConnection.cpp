// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BridgeConnection.h"

#include "BridgeFrame.h"

#include <QTimer>
#include <QWebSocket>

BridgeConnection::BridgeConnection(const QString &host, Retry retry, QObject *owner)
    : m_owner(owner)
    , m_url(QStringLiteral("ws://%1:%2/ws").arg(host, QString::number(Port)))
    , m_socket(new QWebSocket(QString(), QWebSocketProtocol::Version13, owner))
    , m_retryTimer(new QTimer(owner))
{
    m_socket->setMaxAllowedIncomingFrameSize(MaxIncomingSize);
    m_socket->setMaxAllowedIncomingMessageSize(MaxIncomingSize);
    m_retryTimer->setObjectName(QStringLiteral("reconnectTimer"));
    m_retryTimer->setInterval(RetryInterval);
    m_retryTimer->setSingleShot(retry == Retry::Once);
    // While the socket waits for the rest of a frame, a timer runs that closes the connection after 5 s. The socket
    // doesn't stop it when the connection is lost, so that it would close the next one.
    QObject::connect(m_socket, &QWebSocket::disconnected, m_socket, [this] {
        const QList<QTimer *> timers = m_socket->findChildren<QTimer *>();
        for (QTimer *timer : timers) {
            timer->stop();
        }
    });
    // The socket keeps the code when a later connection ends without one.
    QObject::connect(m_socket, &QWebSocket::aboutToClose, m_socket, [this] {
        m_wasMessageTooLarge = m_socket->closeCode() == QWebSocketProtocol::CloseCodeTooMuchData;
    });
}

BridgeConnection::~BridgeConnection()
{
    m_socket->disconnect(m_owner);
    close();
    delete m_socket;
    delete m_retryTimer; // and with it a scheduled retry
}

bool BridgeConnection::isOpen() const
{
    return m_socket->state() == QAbstractSocket::ConnectedState;
}

bool BridgeConnection::isConnecting() const
{
    return m_socket->state() == QAbstractSocket::ConnectingState;
}

QString BridgeConnection::messageTooLargeText()
{
    return QStringLiteral("Connection to Loomra bridge closed because a message was too large");
}

void BridgeConnection::open()
{
    // The socket would replace a connection without emitting disconnected().
    Q_ASSERT(!isOpen());
    finishClosing();
    m_wasMessageTooLarge = false;
    m_socket->open(m_url);
}

void BridgeConnection::close(const QString &reason)
{
    if (isOpen()) { // a close frame needs an open socket
        m_socket->close(QWebSocketProtocol::CloseCodeNormal, reason);
    }
}

void BridgeConnection::finishClosing()
{
    if (m_socket->state() == QAbstractSocket::ClosingState) {
        m_socket->abort();
    }
}

void BridgeConnection::send(qint64 id, const QString &method, const QJsonObject &params)
{
    m_socket->sendTextMessage(BridgeFrame::request(id, method, params));
}

void BridgeConnection::startRetryTimer()
{
    if (!m_retryTimer->isActive()) {
        m_retryTimer->start();
    }
}

void BridgeConnection::scheduleRetry()
{
    QMetaObject::invokeMethod(
        m_retryTimer, [this] { startRetryTimer(); }, Qt::QueuedConnection);
}
