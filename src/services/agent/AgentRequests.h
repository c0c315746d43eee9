// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonObject>
#include <QString>

//! Parameters of the requests that AgentBridge sends. Pure: no socket, no settings.
namespace AgentRequests
{

//! The conversation that a request belongs to. Empty strings are left out of the request.
struct Conversation
{
    QString sessionId;
    QString agent;
    QString model;
    //! "text" or "voice". Never left out: an empty string is sent as "text".
    QString inputMode;
};

//! A vote on a reply. Long texts are truncated when sent.
struct Feedback
{
    QString vote;
    int messageIndex = 0;
    QString messageText;
    QString userQuery;
};

QJsonObject chat(const QString &message, const Conversation &conversation);
QJsonObject cancel(const Conversation &conversation);

//! Asks to rephrase a voice transcript. On the wire this is a chat with the agent "chat", whatever the agent of the
//! conversation.
QJsonObject rephrase(const QString &transcript, const Conversation &conversation);

//! @param data a JSON object; anything else counts as an empty object
QJsonObject uiAction(const QString &actionType, const QString &data, const Conversation &conversation);

//! The wire name of a vote, which is also its label.
QString feedbackMethod();
QJsonObject feedback(const Feedback &feedback, const Conversation &conversation);

} // namespace AgentRequests
