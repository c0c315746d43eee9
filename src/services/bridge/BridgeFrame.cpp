// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BridgeFrame.h"

#include <QJsonDocument>
#include <QJsonParseError>

namespace
{

struct NamedKind
{
    QLatin1String type;
    BridgeFrame::Kind kind;
};

const NamedKind s_kinds[] = {
    {QLatin1String("ready"), BridgeFrame::Kind::Ready},       {QLatin1String("event"), BridgeFrame::Kind::Event},
    {QLatin1String("stream"), BridgeFrame::Kind::Stream},     {QLatin1String("error"), BridgeFrame::Kind::Error},
    {QLatin1String("response"), BridgeFrame::Kind::Response},
};

BridgeFrame::Kind kindOf(const QString &type)
{
    for (const NamedKind &row : s_kinds) {
        if (type == row.type) {
            return row.kind;
        }
    }
    return BridgeFrame::Kind::OlderReply;
}

} // namespace

BridgeFrame BridgeFrame::parse(const QString &text)
{
    BridgeFrame frame;
    QJsonParseError parsed;
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8(), &parsed);
    frame.parseError = parsed.errorString();
    if (parsed.error != QJsonParseError::NoError) {
        return frame;
    }

    frame.isObject = document.isObject();
    frame.message = document.object();
    frame.kind = kindOf(frame.message.value(QLatin1String("type")).toString());
    frame.id = frame.message.value(QLatin1String("id"));
    frame.error = frame.message.value(QLatin1String("error"));

    const QJsonValue payload = frame.message.value(QLatin1String("payload"));
    frame.result = frame.kind == Kind::Response ? payload : frame.message.value(QLatin1String("result"));
    if (frame.kind == Kind::Event) {
        frame.eventPayload = payload.toObject();
        frame.eventName = frame.eventPayload.value(QLatin1String("event")).toString();
    }
    return frame;
}

QString BridgeFrame::request(qint64 id, const QString &method, const QJsonObject &params)
{
    const QJsonObject request {
        {QStringLiteral("id"), id},
        {QStringLiteral("method"), method},
        {QStringLiteral("params"), params},
    };
    return QString::fromUtf8(QJsonDocument(request).toJson(QJsonDocument::Compact));
}

QString BridgeFrame::errorText() const
{
    const QJsonObject object = error.toObject();
    const QString message = object.value(QLatin1String("message")).toString();
    return message.isEmpty() ? object.value(QLatin1String("code")).toString() : message;
}
