// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ScriptedBridge.h"

#include "Json.h"
#include "WaitUntil.h"

#include <QDataStream>
#include <QTcpSocket>
#include <QTest>
#include <QWebSocket>
#include <QWebSocketServer>

#include <algorithm>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace
{

constexpr quint16 s_port = 8765;

void failTest(const char *what, int line)
{
    QTest::qFail(what, __FILE__, line);
}

QJsonObject errorObject(const QString &message, const QString &code)
{
    QJsonObject error;
    if (!message.isEmpty()) {
        error.insert(QStringLiteral("message"), message);
    }
    if (!code.isEmpty()) {
        error.insert(QStringLiteral("code"), code);
    }
    return error;
}

//! By default TCP holds a second frame back until the first one is acknowledged, and acknowledges only after 40 ms.
//! That would be most of the time that the tests take.
void disableDelays(QTcpSocket *socket)
{
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket] {
        const int on = 1; // the kernel may reset it, so it is set for every frame
        ::setsockopt(static_cast<int>(socket->socketDescriptor()), IPPROTO_TCP, TCP_QUICKACK, &on, sizeof on);
    });
}

} // namespace

ScriptedBridge::ScriptedBridge(QObject *parent)
    : QObject(parent)
    , m_server(new QWebSocketServer(QStringLiteral("bridge"), QWebSocketServer::NonSecureMode, this))
{
    connect(&m_listener, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = m_listener.nextPendingConnection()) {
            disableDelays(socket);
            m_server->handleConnection(socket);
        }
    });
    connect(m_server, &QWebSocketServer::newConnection, this, &ScriptedBridge::accept);
    if (!listen()) {
        failTest("the bridge's port is taken", __LINE__);
    }
}

ScriptedBridge::~ScriptedBridge()
{
    close();
}

bool ScriptedBridge::listen()
{
    return m_listener.listen(QHostAddress::LocalHost, s_port);
}

bool ScriptedBridge::isListening() const
{
    return m_listener.isListening();
}

void ScriptedBridge::close()
{
    m_listener.close();
    drop();
}

void ScriptedBridge::vanish()
{
    for (const QTcpSocket *socket : m_listener.findChildren<QTcpSocket *>()) {
        // Closing it sends a packet that the kernel, unlike others, doesn't send again.
        const linger noLinger {1, 0};
        ::setsockopt(static_cast<int>(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &noLinger, sizeof noLinger);
    }
    close();
}

void ScriptedBridge::drop()
{
    for (const Connection &connection : qAsConst(m_connections)) {
        if (connection.isOpen) {
            connection.socket->abort();
        }
    }
}

bool ScriptedBridge::waitForConnection(int number)
{
    const bool came = waitUntil([&] { return connectionCount() >= number; });
    if (!came) {
        failTest("no client connected", __LINE__);
    }
    return came;
}

QWebSocket *ScriptedBridge::connection(int index) const
{
    const Connection connection = m_connections.value(index);
    return connection.isOpen ? connection.socket : nullptr;
}

bool ScriptedBridge::waitForClose(int index, QWebSocketProtocol::CloseCode *code, QString *reason)
{
    const auto isClosed = [&] { return index < m_connections.size() && !m_connections.at(index).isOpen; };
    if (!waitUntil(isClosed)) {
        failTest("the connection is still open", __LINE__);
        return false;
    }
    *code = m_connections.at(index).closeCode;
    *reason = m_connections.at(index).closeReason;
    return true;
}

ScriptedBridge::Request ScriptedBridge::takeRequest(const QString &method)
{
    Request request;
    const auto find = [&] {
        const auto found = std::find_if(m_untaken.begin(), m_untaken.end(), [&](const Request &candidate) {
            return method.isEmpty() || candidate.method == method;
        });
        if (found == m_untaken.end()) {
            return false;
        }
        request = *found;
        m_untaken.erase(found);
        return true;
    };
    if (!waitUntil(find)) {
        failTest("no such request was received", __LINE__);
    }
    return request;
}

void ScriptedBridge::ready()
{
    sendRaw(QStringLiteral(R"({"type":"ready","sdkInitialized":true})"));
}

void ScriptedBridge::event(const QString &name, const QJsonObject &more)
{
    QJsonObject payload = more;
    payload.insert(QStringLiteral("event"), name);
    sendRaw(compactJson({{QStringLiteral("type"), QStringLiteral("event")}, {QStringLiteral("payload"), payload}}));
}

void ScriptedBridge::sendRaw(const QString &text)
{
    for (const Connection &connection : qAsConst(m_connections)) {
        if (connection.isOpen) {
            connection.socket->sendTextMessage(text);
        }
    }
}

void ScriptedBridge::sendBytes(const QByteArray &bytes)
{
    // QWebSocket sends only whole messages.
    const QList<QTcpSocket *> sockets = m_listener.findChildren<QTcpSocket *>();
    for (QTcpSocket *socket : sockets) {
        socket->write(bytes);
    }
}

void ScriptedBridge::announce(quint64 frameSize)
{
    QByteArray header("\x81\x7f"); // the last frame of a text; a length of 64 bits
    QDataStream(&header, QIODevice::Append) << frameSize;
    sendBytes(header);
}

void ScriptedBridge::reply(const Request &request, const QJsonValue &payload)
{
    send(request.connection,
         {{QStringLiteral("type"), QStringLiteral("response")},
          {QStringLiteral("id"), static_cast<qint64>(request.id)},
          {QStringLiteral("payload"), payload}});
}

void ScriptedBridge::reply(quint64 id, const QJsonValue &payload)
{
    Request request;
    request.id = id;
    request.connection = latest();
    reply(request, payload);
}

void ScriptedBridge::replyOldForm(const Request &request, const QJsonValue &result)
{
    send(request.connection,
         {{QStringLiteral("id"), static_cast<qint64>(request.id)}, {QStringLiteral("result"), result}});
}

void ScriptedBridge::fail(const Request &request, const QString &message, const QString &code)
{
    send(request.connection,
         {{QStringLiteral("type"), QStringLiteral("response")},
          {QStringLiteral("id"), static_cast<qint64>(request.id)},
          {QStringLiteral("error"), errorObject(message, code)}});
}

void ScriptedBridge::error(const Request &request, const QString &message, const QString &code)
{
    send(request.connection,
         {{QStringLiteral("type"), QStringLiteral("error")},
          {QStringLiteral("id"), static_cast<qint64>(request.id)},
          {QStringLiteral("error"), errorObject(message, code)}});
}

void ScriptedBridge::accept()
{
    while (QWebSocket *socket = m_server->nextPendingConnection()) {
        const int index = connectionCount();
        Connection connection;
        connection.socket = socket;
        m_connections.append(connection);
        socket->setParent(this);
        connect(socket, &QWebSocket::textMessageReceived, this,
                [this, index](const QString &text) { receive(index, text); });
        connect(socket, &QWebSocket::disconnected, this, [this, index, socket] {
            Connection &ended = m_connections[index];
            ended.isOpen = false;
            ended.closeCode = socket->closeCode();
            ended.closeReason = socket->closeReason();
        });
    }
}

void ScriptedBridge::receive(int connection, const QString &text)
{
    const QJsonObject message = json(text);
    Request request;
    request.id = static_cast<quint64>(message.value(QStringLiteral("id")).toDouble());
    request.method = message.value(QStringLiteral("method")).toString();
    request.params = message.value(QStringLiteral("params")).toObject();
    request.text = text;
    request.connection = connection;
    m_received.append(request);
    m_untaken.append(request);
}

void ScriptedBridge::send(int connection, const QJsonObject &message)
{
    if (QWebSocket *socket = this->connection(connection)) {
        socket->sendTextMessage(compactJson(message));
    } else {
        failTest("the client is no longer connected", __LINE__);
    }
}
