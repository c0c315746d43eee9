// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QObject>
#include <QString>
#include <QTcpServer>

#include <functional>

class QWebSocket;
class QWebSocketServer;

//! A bridge that keeps nothing, so that all growth of the process is the program's. It answers all requests at once;
//! those of a chat as the caller says.
class SoakBridge : public QObject
{
public:
    struct Request
    {
        qint64 id = 0;
        QString method;
        QJsonObject params;
        QWebSocket *client = nullptr;
    };

    //! Starts listening.
    SoakBridge();
    ~SoakBridge() override;

    void listen();
    //! Drops all connections and stops listening.
    void close();
    //! Drops all connections without a closing handshake.
    void drop();
    //! The number of histories that were asked for.
    int histories() const { return m_histories; }
    int clients() const { return m_clients.size(); }

    //! Takes the requests of these methods: "chat", "handleStructuredUiAction", "messageFeedback".
    std::function<void(const Request &request)> onChat;

    // These go to all clients.
    void event(const QString &name, const QJsonObject &more = {});
    void sendRaw(const QString &text);
    //! Only the header of a frame of this size, in bytes.
    void announce(quint64 frameSize);

    static void reply(const Request &request, const QJsonValue &payload);
    static void send(const Request &request, const QJsonObject &message);

private:
    void accept();
    void receive(QWebSocket *client, const QString &text);

    QTcpServer m_listener;
    QWebSocketServer *m_server;
    QList<QWebSocket *> m_clients;
    int m_sessions = 0;
    int m_histories = 0;
};
