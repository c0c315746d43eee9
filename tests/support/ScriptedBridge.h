// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QObject>
#include <QString>
#include <QTcpServer>
#include <QWebSocketProtocol>

class QWebSocket;
class QWebSocketServer;

//! A scripted peer in place of the bridge: listens on 127.0.0.1:8765, records all requests and sends only what the test
//! tells it to. Serves any number of connections. A wait that times out fails the running test.
class ScriptedBridge : public QObject
{
public:
    //! A received request. An id of 0 means that there was none.
    struct Request
    {
        quint64 id = 0;
        QString method;
        QJsonObject params;
        //! The frame.
        QString text;
        //! The index of its connection, in the order in which they were opened.
        int connection = -1;
    };

    //! Starts listening.
    explicit ScriptedBridge(QObject *parent = nullptr);
    ~ScriptedBridge() override;

    //! Listens again after close(). @return false if the port is in use
    bool listen();
    bool isListening() const;
    //! Stops listening and drops all connections, like a killed process.
    void close();
    //! Like close(), but the clients receive nothing, as when a machine loses power. Take the network down before.
    void vanish();
    //! Drops all connections without a closing handshake and goes on listening.
    void drop();

    //! Waits until this number of connections has been opened in total.
    bool waitForConnection(int number = 1);
    //! Connections opened so far, including closed ones.
    int connectionCount() const { return m_connections.size(); }
    //! An open connection, or null.
    QWebSocket *connection(int index) const;
    //! Waits until a connection is closed and returns the close code and reason of the client.
    bool waitForClose(int index, QWebSocketProtocol::CloseCode *code, QString *reason);

    //! All requests so far, taken or not.
    QList<Request> received() const { return m_received; }
    //! Waits for the first request that wasn't taken yet, optionally of this method.
    Request takeRequest(const QString &method = QString());
    //! Takes all requests so far, which nobody answers.
    void takeAll() { m_untaken.clear(); }
    //! Whether all requests so far were taken.
    bool isAllTaken() const { return m_untaken.isEmpty(); }

    // These are sent to all open connections.
    void ready();
    void event(const QString &name, const QJsonObject &more = {});
    void sendRaw(const QString &text);
    //! Sends bytes as they are, such as a part of a frame.
    void sendBytes(const QByteArray &bytes);
    //! Sends only the header of a frame of this size, in bytes.
    void announce(quint64 frameSize);

    // Replies are sent on the connection of the request, or on the latest one if only the id is given.
    void reply(const Request &request, const QJsonValue &payload);
    void reply(quint64 id, const QJsonValue &payload);
    void replyOldForm(const Request &request, const QJsonValue &result);
    //! An error inside a reply.
    void fail(const Request &request, const QString &message, const QString &code = QString());
    //! A message of the type "error".
    void error(const Request &request, const QString &message, const QString &code = QString());

private:
    struct Connection
    {
        QWebSocket *socket = nullptr;
        bool isOpen = true;
        QWebSocketProtocol::CloseCode closeCode = QWebSocketProtocol::CloseCodeAbnormalDisconnection;
        QString closeReason;
    };

    void accept();
    void receive(int connection, const QString &text);
    void send(int connection, const QJsonObject &message);
    int latest() const { return m_connections.size() - 1; }

    QTcpServer m_listener;
    QWebSocketServer *const m_server;
    QList<Connection> m_connections;
    QList<Request> m_received;
    QList<Request> m_untaken;
};
