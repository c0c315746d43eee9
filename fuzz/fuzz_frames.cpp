// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Fuzzes frames of the bridge: their parser and both clients.
//
// The first byte of an input selects the request that is open when the frame arrives, the rest is the frame. The peer
// listens on the bridge's port, which scripts/fuzz provides in a network namespace.

#include "BridgeFrame.h"
#include "Feeding.h"
#include "FuzzedAgent.h"
#include "FuzzedSdk.h"
#include "Require.h"

#include <QCoreApplication>
#include <QEvent>
#include <QJsonDocument>
#include <QWebSocket>
#include <QWebSocketServer>

#include <cstdint>
#include <cstdio>

namespace
{

constexpr quint16 s_port = 8765;

//! Inputs between two runs of the event loop, which empties the sockets.
constexpr int s_inputsPerTurn = 64;

//! Prints fatal messages only.
void stayQuiet(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "%s\n", qPrintable(message));
    }
}

//! A WebSocket server that accepts the clients' connections and never replies.
class Peer
{
public:
    Peer()
    {
        QObject::connect(&m_server, &QWebSocketServer::newConnection, &m_server, [this] {
            QWebSocket *socket = m_server.nextPendingConnection();
            QObject::connect(socket, &QWebSocket::disconnected, socket, &QObject::deleteLater);
        });
        require(m_server.listen(QHostAddress::LocalHost, s_port), "the bridge's port is free");
    }

private:
    QWebSocketServer m_server {QStringLiteral("peer"), QWebSocketServer::NonSecureMode};
};

// Not deleted at exit, because Qt's own statics are destroyed before.
QCoreApplication *s_application = nullptr;
Peer *s_peer = nullptr;
FuzzedSdk *s_sdk = nullptr;
FuzzedAgent *s_agent = nullptr;

void makeClients()
{
    delete s_agent;
    delete s_sdk;
    s_sdk = new FuzzedSdk;
    s_agent = new FuzzedAgent;
}

void runEventLoop()
{
    QCoreApplication::processEvents();
    // processEvents() leaves these out while no event loop runs.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void checkFrame(const QString &text)
{
    using Kind = BridgeFrame::Kind;
    const BridgeFrame frame = BridgeFrame::parse(text);
    require(frame.isObject || frame.message.isEmpty(), "only an object has keys");
    require(frame.isObject || frame.kind == Kind::Unreadable || frame.kind == Kind::OlderReply,
            "a frame that is no object is unreadable or an older reply");
    require(frame.kind == Kind::Event || (frame.eventPayload.isEmpty() && frame.eventName.isEmpty()),
            "only an event has a name and payload");
    if (frame.isObject) {
        const QString again = QString::fromUtf8(QJsonDocument(frame.message).toJson(QJsonDocument::Compact));
        const BridgeFrame second = BridgeFrame::parse(again);
        require(second.isObject && second.kind == frame.kind && second.eventName.size() == frame.eventName.size(),
                "a frame is the same after a round trip");
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qunsetenv("LOOMRA_DEBUG"); // it would write a log
    qputenv("LOOMRA_WORKSPACE_NOTIFY_INAPP", "1");
    qInstallMessageHandler(stayQuiet);
    s_application = new QCoreApplication(*argc, *argv);
    QCoreApplication::setOrganizationName(QStringLiteral("tovictl-fuzz"));
    s_peer = new Peer;
    makeClients();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0) {
        return 0;
    }
    const quint8 choice = data[0];
    const QString frame = QString::fromUtf8(reinterpret_cast<const char *>(data + 1), static_cast<int>(size - 1));

    checkFrame(frame);
    s_sdk->take(choice, frame);
    s_agent->take(choice, frame);

    static int s_inputs = 0;
    if (++s_inputs % s_inputsPerTurn == 0) {
        runEventLoop();
    }
    if (s_sdk->isWornOut()) {
        makeClients();
    }
    return 0;
}
