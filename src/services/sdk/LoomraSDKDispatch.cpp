// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Sends requests and dispatches replies.

#include "LoomraSDK.h"

#include "BridgeFrame.h"
#include "DebugEventLog.h"
#include "LoomraSDKRoutes.h"

#include <QDebug>

namespace
{

//! A kept argument has this offset from the id of its request. After that many requests it may collide with a later
//! id; the newer entry wins.
constexpr int s_pendingArgumentOffset = 10000;

constexpr int s_loggedFrame = 200; // characters

QString receiverLocation()
{
    return QStringLiteral("LoomraSDK:onWebSocketTextMessageReceived");
}

QString senderLocation()
{
    return QStringLiteral("LoomraSDK:sendRequest");
}

QString requestData(const QString &method, int requestId)
{
    return QStringLiteral("{\"method\":\"%1\",\"requestId\":%2}")
        .arg(DebugEventLog::escaped(method), QString::number(requestId));
}

//! In a "response" only an object is an error, in the older form only a string.
QString errorTextOf(const BridgeFrame &frame)
{
    return frame.kind == BridgeFrame::Kind::Response ? frame.errorText() : frame.error.toString();
}

} // namespace

void LoomraSDK::request(const QString &label, const QJsonObject &params, const std::optional<QString> &kept)
{
    Q_ASSERT_X(routeOf(label), "LoomraSDK::request", qUtf8Printable(label + QLatin1String(" has no route")));
    const int requestId = m_nextRequestId++;
    m_pendingRequests.insert(requestId, label);
    if (kept) {
        m_pendingRequests.insert(requestId + s_pendingArgumentOffset, *kept);
    }
    sendRequest(label.left(label.indexOf(QLatin1Char('_'))), params, requestId);
}

void LoomraSDK::sendRequest(const QString &method, const QJsonObject &params, int requestId)
{
    DebugEventLog::write(senderLocation(), QStringLiteral("sendRequest entry"), [&] {
        return QStringLiteral("{\"method\":\"%1\",\"requestId\":%2,\"ready\":%3,\"connected\":%4}")
            .arg(DebugEventLog::escaped(method), QString::number(requestId), QString::number(int(m_ready)),
                 QString::number(int(m_connected)));
    });
    if (!m_ready) {
        // Intentional: the label stays, as if the request were open.
        Q_EMIT error(notReadyText());
        DebugEventLog::write(senderLocation(), QStringLiteral("sendRequest SDK not ready"),
                             [&] { return requestData(method, requestId); });
        return;
    }
    m_connection.send(requestId, method, params);
    DebugEventLog::write(senderLocation(), QStringLiteral("sendRequest message sent"),
                         [&] { return requestData(method, requestId); });
}

void LoomraSDK::onWebSocketTextMessageReceived(const QString &message)
{
    DebugEventLog::write(receiverLocation(), QStringLiteral("WebSocket message received"), [&] {
        return QStringLiteral("{\"messageLength\":%1,\"messagePreview\":\"%2\"}")
            .arg(QString::number(message.size()), DebugEventLog::escapedLines(message.left(s_loggedFrame)));
    });

    const BridgeFrame frame = BridgeFrame::parse(message);
    if (frame.kind == BridgeFrame::Kind::Unreadable) {
        qDebug() << "Failed to parse JSON message:" << frame.parseError;
        DebugEventLog::write(receiverLocation(), QStringLiteral("JSON parse error"), [&] {
            return QStringLiteral("{\"error\":\"%1\"}").arg(DebugEventLog::escaped(frame.parseError));
        });
        return;
    }

    // A top level that isn't an object has no keys, so that it ends as a reply to no request.
    const QString type = frame.message.value(QLatin1String("type")).toString();
    DebugEventLog::write(receiverLocation(), QStringLiteral("Parsed message object"), [&] {
        return QStringLiteral("{\"hasType\":%1,\"type\":\"%2\",\"hasId\":%3}")
            .arg(QString::number(int(frame.message.contains(QLatin1String("type")))), DebugEventLog::escaped(type),
                 QString::number(int(frame.message.contains(QLatin1String("id")))));
    });

    switch (frame.kind) {
    case BridgeFrame::Kind::Ready: {
        const bool sdkInitialized = frame.message.value(QLatin1String("sdkInitialized")).toBool();
        DebugEventLog::write(receiverLocation(), QStringLiteral("Received ready message"), [&] {
            return QStringLiteral("{\"sdkInitialized\":%1,\"wasReady\":%2}").arg(int(sdkInitialized)).arg(int(m_ready));
        });
        qDebug() << "Bridge is ready, sdkInitialized:" << sdkInitialized;
        onReady();
        break;
    }
    case BridgeFrame::Kind::Event:
        if (frame.eventName == QLatin1String("ready")) { // all others are for the chat client
            onReady();
        }
        break;
    case BridgeFrame::Kind::Error:
        processError(frame);
        break;
    case BridgeFrame::Kind::Response:
    case BridgeFrame::Kind::OlderReply:
        processReply(frame);
        break;
    case BridgeFrame::Kind::Stream: // this client doesn't stream
    case BridgeFrame::Kind::Unreadable:
        break;
    }
}

void LoomraSDK::processError(const BridgeFrame &frame)
{
    const QString text = frame.errorText();
    if (!text.isEmpty()) {
        Q_EMIT error(text);
    }
    const int id = frame.id.toInt();
    if (id != 0) {
        m_pendingRequests.remove(id);
    }
}

void LoomraSDK::processReply(const BridgeFrame &frame)
{
    const int id = frame.id.toInt();
    const auto pending = m_pendingRequests.constFind(id);
    if (pending == m_pendingRequests.constEnd()) {
        if (frame.kind == BridgeFrame::Kind::Response && frame.result.isObject()
            && frame.message.value(QLatin1String("method")).toString() == SuggestionCheck) {
            handleSuggestionCheck(frame.result.toObject());
        }
        return;
    }
    // Removed before the handler runs: a duplicate finds nothing, and the handler may send requests.
    const QString label = m_pendingRequests.take(id);
    const QString errorText = errorTextOf(frame);
    if (!errorText.isEmpty()) {
        Q_EMIT error(errorText); // intentional: a kept argument stays
        return;
    }
    if (const Route *route = routeOf(label)) {
        route->handle(*this, Reply {id, label, frame.result, frame.result.toObject()});
    }
}

QString LoomraSDK::takeKeptArgument(int requestId)
{
    return m_pendingRequests.take(requestId + s_pendingArgumentOffset);
}

void LoomraSDK::logCall(const char *function, const char *message) const
{
    DebugEventLog::write(QStringLiteral("LoomraSDK:") + QLatin1String(function), QLatin1String(message), [&] {
        return QStringLiteral("{\"ready\":%1,\"connected\":%2}").arg(int(m_ready)).arg(int(m_connected));
    });
}

void LoomraSDK::logListing(const char *message, const char *countKey, int count, int requestId)
{
    DebugEventLog::write(receiverLocation(), QLatin1String(message), [&] {
        return QStringLiteral("{\"%1\":%2,\"requestId\":%3}")
            .arg(QLatin1String(countKey), QString::number(count), QString::number(requestId));
    });
}
