// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QUrl>

#include <chrono>

class QJsonObject;
class QObject;
class QTimer;
class QWebSocket;

//! One client's connection to the bridge: endpoint, socket and its limits, request frames, and the timer that retries a
//! lost connection. What a client does with the socket's signals, when it counts as ready and how it reports errors is
//! its own business: it connects to socket() and retryTimer() itself. Main thread only.
class BridgeConnection
{
public:
    static constexpr int Port = 8765;
    //! The same for every attempt: no back-off and no limit, so that a bridge that comes back is found within seconds.
    static constexpr std::chrono::seconds RetryInterval {3};
    //! Of a frame and of a message, in bytes. Far above any reply; a longer one closes the connection, which
    //! wasMessageTooLarge() then reports.
    static constexpr quint64 MaxIncomingSize = 64 * 1024 * 1024;

    enum class Retry
    {
        Once, //!< each failure starts the timer again
        UntilStopped, //!< the timer goes on until the client stops it
    };

    //! Creates the socket and the timer as children of @p owner; opens nothing.
    //! @param host of the bridge. Each client keeps its own, as "localhost" and "127.0.0.1" differ where the bridge
    //! listens on IPv6 alone.
    BridgeConnection(const QString &host, Retry retry, QObject *owner);
    //! Closes the connection and deletes socket and timer. No slot of the owner is called any more, as the owner is
    //! usually being destroyed.
    ~BridgeConnection();
    Q_DISABLE_COPY_MOVE(BridgeConnection)

    QWebSocket *socket() const { return m_socket; }
    QTimer *retryTimer() const { return m_retryTimer; }
    QUrl url() const { return m_url; }

    bool isOpen() const;
    //! An attempt is under way.
    bool isConnecting() const;

    //! Whether the last connection was closed because a message exceeded the limit: ours, or that of the bridge.
    bool wasMessageTooLarge() const { return m_wasMessageTooLarge; }
    //! The text for the user in that case.
    static QString messageTooLargeText();

    //! Starts an attempt, in place of one that is under way. The connection must not be open.
    void open();
    //! Closes with the normal close code if the connection is open. It stays in the closing state until the bridge has
    //! received all bytes, which a hung bridge never does.
    void close(const QString &reason = QString());
    //! Ends a connection that is still closing. The socket emits disconnected().
    void finishClosing();
    //! Sends one request frame. Nothing is queued: without a connection it is lost.
    void send(qint64 id, const QString &method, const QJsonObject &params);

    //! Starts the retry timer unless it is running: an error and a disconnect of the same failure make one attempt.
    void startRetryTimer();
    //! The same from the event loop, to be out of the socket's own signal.
    void scheduleRetry();

private:
    QObject *const m_owner;
    const QUrl m_url;
    QWebSocket *const m_socket;
    QTimer *const m_retryTimer;
    bool m_wasMessageTooLarge = false;
};
