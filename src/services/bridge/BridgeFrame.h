// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

//! One text frame of the bridge, told apart by its form. Both clients of the bridge start from it. Where they differ
//! (error texts, streams, a top level that is no object, the width of ids) each reads the values for itself.
struct BridgeFrame
{
    enum class Kind
    {
        Unreadable, //!< no JSON; nothing but parseError holds anything
        Ready, //!< the bridge takes requests
        Event, //!< a notice that answers no request
        Stream, //!< a part of a reply; in every other way like OlderReply
        Error, //!< a failure, of a request if there is an id
        Response, //!< the reply to a request
        OlderReply, //!< the reply to a request in its older form; also what any unknown type counts as
    };

    //! Reads a frame. Never fails: text that can't be read gives Unreadable, and JSON whose top level is no object
    //! gives an OlderReply without keys and with isObject false. Pure, any thread.
    static BridgeFrame parse(const QString &text);

    //! The text frame of a request, in compact JSON. Pure, any thread.
    static QString request(qint64 id, const QString &method, const QJsonObject &params);

    //! The error object's message, or its code where the message is empty; empty without an error object.
    QString errorText() const;

    Kind kind = Kind::Unreadable;
    //! The parser's words; "no error occurred" unless kind is Unreadable.
    QString parseError;
    //! True when the text was a JSON object, which every good frame is.
    bool isObject = false;
    //! The whole object, for what only one client reads.
    QJsonObject message;

    //! As they stand in the object: undefined where the key is missing.
    QJsonValue id = QJsonValue::Undefined;
    QJsonValue error = QJsonValue::Undefined;
    //! What a reply carries, from the key that goes with its form; undefined where that is missing.
    QJsonValue result = QJsonValue::Undefined;
    //! What an event tells and its name; empty for all other kinds.
    QJsonObject eventPayload;
    QString eventName;
};
