// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Peer.h"

#include "Clock.h"
#include "Figures.h"
#include "PeerServer.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QWebSocket>
#include <QWebSocketServer>

namespace
{

constexpr quint16 s_port = 8765;

}

bool PeerServer::listen()
{
    m_server = new QWebSocketServer(QStringLiteral("bridge"), QWebSocketServer::NonSecureMode, this);
    connect(m_server, &QWebSocketServer::newConnection, this, &PeerServer::accept);
    return m_server->listen(QHostAddress::LocalHost, s_port);
}

void PeerServer::close()
{
    delete m_server;
    m_server = nullptr;
}

void PeerServer::accept()
{
    QWebSocket *client = m_server->nextPendingConnection();
    client->setParent(m_server);
    connect(client, &QWebSocket::textMessageReceived, this, [this, client](const QString &text) {
        if (!m_payload.isEmpty()) {
            reply(client, text, m_payload);
            return;
        }
        const qint64 now = Clock::now();
        m_lastSender = client;
        {
            const QMutexLocker lock(&m_mutex);
            m_lastReceived = text;
            m_lastReceivedAt = now;
            ++m_received;
        }
        // The main thread may be waiting for this frame, and sleeps until there is an event.
        QAbstractEventDispatcher::instance(QCoreApplication::instance()->thread())->wakeUp();
    });
    client->sendTextMessage(QStringLiteral(R"({"type":"ready","sdkInitialized":true})"));
}

void PeerServer::answer(const QString &text)
{
    reply(m_lastSender, lastReceived(), {{QStringLiteral("response"), text}});
}

void PeerServer::reply(QWebSocket *client, const QString &text, const QJsonObject &payload)
{
    const QJsonObject request = QJsonDocument::fromJson(text.toUtf8()).object();
    const QJsonObject reply {{QStringLiteral("type"), QStringLiteral("response")},
                             {QStringLiteral("id"), request.value(QStringLiteral("id"))},
                             {QStringLiteral("payload"), payload}};
    client->sendTextMessage(QString::fromUtf8(QJsonDocument(reply).toJson(QJsonDocument::Compact)));
}

int PeerServer::received() const
{
    const QMutexLocker lock(&m_mutex);
    return m_received;
}

QString PeerServer::lastReceived() const
{
    const QMutexLocker lock(&m_mutex);
    return m_lastReceived;
}

qint64 PeerServer::lastReceivedAt() const
{
    const QMutexLocker lock(&m_mutex);
    return m_lastReceivedAt;
}

Peer::Peer()
    : m_server(std::make_unique<PeerServer>())
{
    m_server->moveToThread(&m_thread);
    m_thread.start();
    bool listens = false;
    QMetaObject::invokeMethod(
        m_server.get(), [this] { return m_server->listen(); }, Qt::BlockingQueuedConnection, &listens);
    if (!listens) {
        notMeasured("the bridge's port is in use");
    }
}

Peer::~Peer()
{
    QMetaObject::invokeMethod(
        m_server.get(), [this] { m_server->close(); }, Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}

int Peer::received() const
{
    return m_server->received();
}

QString Peer::lastReceived() const
{
    return m_server->lastReceived();
}

qint64 Peer::lastReceivedAt() const
{
    return m_server->lastReceivedAt();
}

void Peer::answer(const QString &text)
{
    QMetaObject::invokeMethod(
        m_server.get(), [this, text] { m_server->answer(text); }, Qt::QueuedConnection);
}

void Peer::answerAll(const QJsonObject &payload)
{
    QMetaObject::invokeMethod(
        m_server.get(), [this, payload] { m_server->answerAll(payload); }, Qt::BlockingQueuedConnection);
}
