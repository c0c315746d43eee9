// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AgentRequests.h"

#include <QJsonDocument>
#include <QJsonParseError>

#include <initializer_list>

namespace AgentRequests
{

namespace
{

constexpr int s_messageTextLimit = 2000; // characters
constexpr int s_userQueryLimit = 500;

enum class Presence
{
    Always,
    UnlessEmpty,
};

struct Row
{
    QLatin1String key;
    QJsonValue value;
    Presence presence = Presence::Always;
};

QJsonObject object(std::initializer_list<Row> rows)
{
    QJsonObject result;
    for (const Row &row : rows) {
        if (row.presence == Presence::Always || !row.value.toString().isEmpty()) {
            result.insert(row.key, row.value);
        }
    }
    return result;
}

Row sessionRow(const Conversation &conversation)
{
    return {QLatin1String("sessionId"), conversation.sessionId, Presence::UnlessEmpty};
}

Row modelRow(const Conversation &conversation)
{
    return {QLatin1String("model"), conversation.model, Presence::UnlessEmpty};
}

Row inputModeRow(const Conversation &conversation)
{
    return {QLatin1String("inputMode"),
            conversation.inputMode.isEmpty() ? QStringLiteral("text") : conversation.inputMode};
}

QString rephrasePrompt(const QString &transcript)
{
    return QStringLiteral(
               "You are a text-only assistant. Do NOT execute any actions or tools. Rephrase the following "
               "voice-transcribed command into a clear, concise instruction. Return ONLY the rephrased sentence, "
               "nothing else. If it is already clear, return it unchanged.\n\n\"%1\"")
        .arg(transcript);
}

//! Intentional: the widgets pass "id:label", which isn't JSON, so that the bridge receives their action type alone.
QJsonObject actionData(const QString &data)
{
    QJsonParseError parsed;
    const QJsonDocument document = QJsonDocument::fromJson(data.toUtf8(), &parsed);
    return parsed.error == QJsonParseError::NoError ? document.object() : QJsonObject();
}

} // namespace

QJsonObject chat(const QString &message, const Conversation &conversation)
{
    return object({
        {QLatin1String("message"), message},
        sessionRow(conversation),
        {QLatin1String("agent"), conversation.agent, Presence::UnlessEmpty},
        modelRow(conversation),
        inputModeRow(conversation),
    });
}

QJsonObject cancel(const Conversation &conversation)
{
    return object({sessionRow(conversation)});
}

QJsonObject rephrase(const QString &transcript, const Conversation &conversation)
{
    return object({
        {QLatin1String("message"), rephrasePrompt(transcript)},
        {QLatin1String("agent"), QStringLiteral("chat")},
        sessionRow(conversation),
        modelRow(conversation),
    });
}

QJsonObject uiAction(const QString &actionType, const QString &data, const Conversation &conversation)
{
    return object({
        {QLatin1String("actionType"), actionType},
        {QLatin1String("data"), actionData(data)},
        sessionRow(conversation),
    });
}

QString feedbackMethod()
{
    return QStringLiteral("messageFeedback");
}

QJsonObject feedback(const Feedback &feedback, const Conversation &conversation)
{
    return object({
        {QLatin1String("vote"), feedback.vote},
        {QLatin1String("messageIndex"), feedback.messageIndex},
        {QLatin1String("messageText"), feedback.messageText.left(s_messageTextLimit)},
        {QLatin1String("userQuery"), feedback.userQuery.left(s_userQueryLimit), Presence::UnlessEmpty},
        sessionRow(conversation),
        {QLatin1String("source"), QStringLiteral("omnibar")},
        inputModeRow(conversation),
    });
}

} // namespace AgentRequests
