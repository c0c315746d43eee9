// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

//! A parsed text frame of the bridge. Where the two clients differ (error texts, streams, a top level that isn't an
//! object, the width of ids) each interprets the values itself.
struct BridgeFrame
{
    enum class Kind
    {
        Unreadable, //!< not JSON; only parseError is set
        Ready, //!< the bridge accepts requests
        Event, //!< not a reply to any request
        Stream, //!< a part of a reply; otherwise like OlderReply
        Error, //!< a failure; that of a request if there is an id
        Response, //!< the reply to a request
        OlderReply, //!< a reply in the older form, and every unknown type
    };

    //! Parses a frame. Never fails: malformed text gives Unreadable, and JSON whose top level isn't an object gives an
    //! OlderReply without keys and with isObject false. Pure, any thread.
    static BridgeFrame parse(const QString &text);

    //! The text frame of a request, in compact JSON. Pure, any thread.
    static QString request(qint64 id, const QString &method, const QJsonObject &params);

    //! The error object's message, or its code where the message is empty; empty without an error object.
    QString errorText() const;

    Kind kind = Kind::Unreadable;
    //! Description by the parser; "no error occurred" unless kind is Unreadable.
    QString parseError;
    //! The text is a JSON object, as every valid frame is.
    bool isObject = false;
    //! The whole object, for keys that only one client uses.
    QJsonObject message;

    //! Unchanged from the object; undefined if the key is missing.
    QJsonValue id = QJsonValue::Undefined;
    QJsonValue error = QJsonValue::Undefined;
    //! The result of a reply, from the key of its form; undefined if that is missing.
    QJsonValue result = QJsonValue::Undefined;
    //! Payload and name of an event; empty for all other kinds.
    QJsonObject eventPayload;
    QString eventName;
};
