// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The connection to the bridge: what sets "connected" and "ready", and how a lost connection is retried.

#include "LoomraSDK.h"

#include "BridgeProcessTimes.h"
#include "DebugEventLog.h"

#include <QDebug>
#include <QTimer>
#include <QWebSocket>

namespace
{

QString flagsBefore(bool connected, bool ready)
{
    return QStringLiteral("{\"wasConnected\":%1,\"wasReady\":%2}").arg(int(connected)).arg(int(ready));
}

} // namespace

void LoomraSDK::connectWebSocket()
{
    DebugEventLog::write(QStringLiteral("LoomraSDK:connectWebSocket"), QStringLiteral("connectWebSocket called"), [&] {
        return QStringLiteral("{\"port\":%1,\"currentState\":%2}")
            .arg(BridgeConnection::Port)
            .arg(int(m_connection.socket()->state()));
    });
    if (!m_connection.isOpen()) {
        m_connection.open();
    }
}

void LoomraSDK::reconnectBridge()
{
    m_connection.close();
    connectWebSocket();
}

void LoomraSDK::onWebSocketConnected()
{
    qDebug() << "WebSocket connected to bridge! wasConnected:" << m_connected << "wasReady:" << m_ready;
    DebugEventLog::write(QStringLiteral("LoomraSDK:onWebSocketConnected"), QStringLiteral("WebSocket connected"),
                         [&] { return flagsBefore(m_connected, m_ready); });
    m_connected = true;
    Q_EMIT connectedChanged();
    qDebug() << "WebSocket connected to bridge";
}

void LoomraSDK::onWebSocketDisconnected()
{
    DebugEventLog::write(QStringLiteral("LoomraSDK:onWebSocketDisconnected"), QStringLiteral("WebSocket disconnected"),
                         [&] { return flagsBefore(m_connected, m_ready); });
    if (m_connection.wasMessageTooLarge()) { // the socket emits no error
        const QString text = BridgeConnection::messageTooLargeText();
        qWarning() << qUtf8Printable(text);
        Q_EMIT error(text);
    }
    fallToDisconnected();
    qDebug() << "WebSocket disconnected from bridge";
    QMetaObject::invokeMethod(this, &LoomraSDK::scheduleReconnect, Qt::QueuedConnection);
}

void LoomraSDK::onWebSocketError(QAbstractSocket::SocketError socketError)
{
    const QString reason = m_connection.socket()->errorString();
    qWarning() << "WebSocket error:" << socketError << "error string:" << reason;
    DebugEventLog::write(QStringLiteral("LoomraSDK:onWebSocketError"), QStringLiteral("WebSocket error"), [&] {
        return QStringLiteral("{\"error\":%1,\"errorString\":\"%2\"}")
            .arg(QString::number(socketError), DebugEventLog::escaped(reason));
    });
    // Intentional: the number of the error, so that each refused attempt reports "WebSocket error: 0".
    Q_EMIT error(QStringLiteral("WebSocket error: %1").arg(int(socketError)));
    if (m_connectOnly) {
        ensureBridgeUserServiceStarted();
        QMetaObject::invokeMethod(this, &LoomraSDK::scheduleReconnect, Qt::QueuedConnection);
    }
}

void LoomraSDK::fallToDisconnected()
{
    m_connected = false;
    m_ready = false;
    Q_EMIT connectedChanged();
    Q_EMIT readyChanged();
}

void LoomraSDK::onReady()
{
    m_ready = true;
    Q_EMIT readyChanged();
    m_connection.retryTimer()->stop();
    fetchBridgeCapabilities();
    QTimer::singleShot(BridgeProcessTimes::ReminderAfterReady, this,
                       &LoomraSDK::updateWorkspaceSuggestionReminderTimer);
}

void LoomraSDK::fetchBridgeCapabilities()
{
    if (m_connection.isOpen() && m_ready) {
        request(QStringLiteral("ping"));
        request(QStringLiteral("getCapabilities"));
    }
}

void LoomraSDK::scheduleReconnect()
{
    if (!m_shuttingDown) {
        m_connection.startRetryTimer();
    }
}

void LoomraSDK::tryReconnect()
{
    if (m_shuttingDown) {
        return;
    }
    if (m_connected && m_ready) {
        m_connection.retryTimer()->stop();
        return;
    }
    if (m_connectOnly) {
        ensureBridgeUserServiceStarted();
    } else if (m_bridgeProcess->state() == QProcess::NotRunning) {
        startBridgeProcess(); // connects on its own
        return;
    }
    if (!m_connection.isOpen()) { // an open one waits for "ready"
        connectWebSocket();
    }
}
