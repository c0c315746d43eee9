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

//! The bridge as a test plays it: listens on 127.0.0.1:8765, writes down what it hears and says only what it is told
//! to. Serves any number of connections. A wait that runs out fails the test that is running.
class ScriptedBridge : public QObject
{
public:
    //! A request as it came. An id of 0 means that none did.
    struct Request
    {
        quint64 id = 0;
        QString method;
        QJsonObject params;
        //! The frame.
        QString text;
        //! Which of the connections it came on, counted from 0 in the order of their beginning.
        int connection = -1;
    };

    //! Listens at once.
    explicit ScriptedBridge(QObject *parent = nullptr);
    ~ScriptedBridge() override;

    //! Listens again after close(). False when the port is taken.
    bool listen();
    bool isListening() const;
    //! Stops listening and drops all connections, as a killed process does.
    void close();
    //! Drops all connections without a closing handshake and goes on listening.
    void drop();

    //! Waits until so many connections have begun in all.
    bool waitForConnection(int number = 1);
    //! Connections begun so far, living or not.
    int connectionCount() const { return m_connections.size(); }
    //! A living connection, or null.
    QWebSocket *connection(int index) const;
    //! Waits until a connection has ended; tells the close code and reason that the client gave.
    bool waitForClose(int index, QWebSocketProtocol::CloseCode *code, QString *reason);

    //! Everything heard so far, taken or not.
    QList<Request> received() const { return m_received; }
    //! Waits for the first request that wasn't taken yet, of this method if one is named.
    Request takeRequest(const QString &method = QString());
    //! Whether all requests heard so far were taken.
    bool isAllTaken() const { return m_untaken.isEmpty(); }

    // Notices go to every living connection.
    void ready();
    void event(const QString &name, const QJsonObject &more = {});
    void sendRaw(const QString &text);

    // Replies go where the request came from, or by id alone to the youngest connection.
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
    int youngest() const { return m_connections.size() - 1; }

    QTcpServer m_listener;
    QWebSocketServer *const m_server;
    QList<Connection> m_connections;
    QList<Request> m_received;
    QList<Request> m_untaken;
};
