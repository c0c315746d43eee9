// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonObject>
#include <QString>

//! What AgentBridge says to the bridge, as values. Pure: no socket, no settings.
namespace AgentRequests
{

//! What a request tells of the conversation that it belongs to. An empty text is left out of the request.
struct Conversation
{
    QString sessionId;
    QString agent;
    QString model;
    //! "text" or "voice". Never left out: an empty one goes out as "text".
    QString inputMode;
};

//! A vote on a reply. Long texts are cut when they go out.
struct Feedback
{
    QString vote;
    int messageIndex = 0;
    QString messageText;
    QString userQuery;
};

QJsonObject chat(const QString &message, const Conversation &conversation);
QJsonObject cancel(const Conversation &conversation);

//! Asks for the rewrite of a voice transcript. On the wire this is a chat with the agent "chat", whatever agent the
//! conversation has.
QJsonObject rephrase(const QString &transcript, const Conversation &conversation);

//! @param data JSON of an object; any other text counts as an object without keys
QJsonObject uiAction(const QString &actionType, const QString &data, const Conversation &conversation);

//! The wire name of a vote, by which its reply is known too.
QString feedbackMethod();
QJsonObject feedback(const Feedback &feedback, const Conversation &conversation);

} // namespace AgentRequests
