// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SoakBridge.h"

#include "Soak.h"

#include <QDataStream>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTcpSocket>
#include <QWebSocket>
#include <QWebSocketServer>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace
{

constexpr quint16 s_port = 8765;

//! Without this, TCP waits up to 40 ms for an acknowledgement before it sends the next frame.
void disableDelays(QTcpSocket *socket)
{
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket] {
        const int on = 1; // the kernel may reset it
        ::setsockopt(static_cast<int>(socket->socketDescriptor()), IPPROTO_TCP, TCP_QUICKACK, &on, sizeof on);
    });
}

QJsonObject object(const char *json)
{
    return QJsonDocument::fromJson(json).object();
}

} // namespace

SoakBridge::SoakBridge()
    : m_server(new QWebSocketServer(QStringLiteral("bridge"), QWebSocketServer::NonSecureMode, this))
{
    connect(&m_listener, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = m_listener.nextPendingConnection()) {
            disableDelays(socket);
            m_server->handleConnection(socket);
        }
    });
    connect(m_server, &QWebSocketServer::newConnection, this, &SoakBridge::accept);
    listen();
}

SoakBridge::~SoakBridge()
{
    close();
}

void SoakBridge::listen()
{
    if (!m_listener.listen(QHostAddress::LocalHost, s_port)) {
        Soak::fail("the bridge's port is in use");
    }
}

void SoakBridge::close()
{
    m_listener.close();
    drop();
}

void SoakBridge::drop()
{
    const QList<QWebSocket *> clients = m_clients; // which loses them meanwhile
    for (QWebSocket *client : clients) {
        client->abort();
    }
}

void SoakBridge::event(const QString &name, const QJsonObject &more)
{
    QJsonObject payload = more;
    payload.insert(QStringLiteral("event"), name);
    const QJsonObject message {{QStringLiteral("type"), QStringLiteral("event")}, {QStringLiteral("payload"), payload}};
    sendRaw(QString::fromUtf8(QJsonDocument(message).toJson(QJsonDocument::Compact)));
}

void SoakBridge::sendRaw(const QString &text)
{
    for (QWebSocket *client : qAsConst(m_clients)) {
        client->sendTextMessage(text);
    }
}

void SoakBridge::announce(quint64 frameSize)
{
    QByteArray header("\x81\x7f"); // the last frame of a text; a length of 64 bits
    QDataStream(&header, QIODevice::Append) << frameSize;
    const QList<QTcpSocket *> sockets = m_listener.findChildren<QTcpSocket *>();
    for (QTcpSocket *socket : sockets) {
        socket->write(header); // QWebSocket sends only whole messages
    }
}

void SoakBridge::reply(const Request &request, const QJsonValue &payload)
{
    send(request, {{QStringLiteral("type"), QStringLiteral("response")}, {QStringLiteral("payload"), payload}});
}

void SoakBridge::send(const Request &request, const QJsonObject &message)
{
    QJsonObject whole = message;
    whole.insert(QStringLiteral("id"), request.id);
    request.client->sendTextMessage(QString::fromUtf8(QJsonDocument(whole).toJson(QJsonDocument::Compact)));
}

void SoakBridge::accept()
{
    while (QWebSocket *client = m_server->nextPendingConnection()) {
        m_clients.append(client);
        connect(client, &QWebSocket::textMessageReceived, this,
                [this, client](const QString &text) { receive(client, text); });
        connect(client, &QWebSocket::disconnected, this, [this, client] {
            m_clients.removeOne(client);
            client->deleteLater();
        });
        client->sendTextMessage(QStringLiteral(R"({"type":"ready","sdkInitialized":true})"));
    }
}

void SoakBridge::receive(QWebSocket *client, const QString &text)
{
    const QJsonObject message = QJsonDocument::fromJson(text.toUtf8()).object();
    const Request request {static_cast<qint64>(message.value(QLatin1String("id")).toDouble()),
                           message.value(QLatin1String("method")).toString(),
                           message.value(QLatin1String("params")).toObject(), client};
    static const QJsonObject s_models =
        object(R"({"models": [{"fullId": "demo/one", "displayName": "One"}, {"fullId": "demo/two"}]})");
    static const QJsonObject s_agents = object(R"({"agents": [{"id": "build", "name": "Build"}, {"id": "plan"}]})");
    static const QJsonObject s_plan = object(
        R"({"allowed": true, "requiresApproval": true, "riskLevel": "high", "summary": "List and empty",
            "plan": [{"capabilityId": "window.list"}, {"capabilityId": "trash.empty", "params": {"all": true}}]})");
    static const QJsonObject s_planResult = object(
        R"({"ok": true, "actionId": "act_1", "results": [{"capabilityId": "window.list", "ok": true},
            {"capabilityId": "trash.empty", "ok": true}]})");

    const QString &method = request.method;
    if (method == QLatin1String("chat") || method == QLatin1String("handleStructuredUiAction")
        || method == QLatin1String("messageFeedback")) {
        if (onChat) {
            onChat(request);
        }
    } else if (method == QLatin1String("listModels")) {
        reply(request, s_models);
    } else if (method == QLatin1String("listAgents")) {
        reply(request, s_agents);
    } else if (method == QLatin1String("listSessions")) {
        const auto session = [](const QString &id) { return QJsonObject {{QStringLiteral("id"), id}}; };
        reply(request,
              QJsonObject {
                  {QStringLiteral("sessions"),
                   QJsonArray {session(QStringLiteral("new-%1").arg(m_sessions)), session(QStringLiteral("old"))}}});
    } else if (method == QLatin1String("createSession")) {
        reply(request, QJsonObject {{QStringLiteral("sessionId"), QStringLiteral("new-%1").arg(++m_sessions)}});
    } else if (method == QLatin1String("switchSession")) {
        reply(request, QJsonObject {{QStringLiteral("sessionId"), request.params.value(QLatin1String("sessionId"))}});
    } else if (method == QLatin1String("loadMessages")) {
        ++m_histories;
        reply(request, QJsonObject {{QStringLiteral("messages"), QJsonArray()}});
    } else if (method == QLatin1String("getPlan")) {
        reply(request, s_plan);
    } else if (method == QLatin1String("executePlan")) {
        reply(request, s_planResult);
    } else {
        reply(request, QJsonObject());
    }
}
