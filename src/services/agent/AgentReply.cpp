// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AgentReply.h"

#include <QJsonDocument>

#include <algorithm>
#include <limits>

namespace
{

//! Truncates a number to an int. A number out of range is clamped, because converting it would be undefined
//! behaviour.
int truncated(const QJsonValue &value, int otherwise)
{
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(
        std::clamp(value.toDouble(otherwise), static_cast<double>(Limits::min()), static_cast<double>(Limits::max())));
}

QString compact(const QJsonObject &object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

} // namespace

AgentReply AgentReply::read(const QJsonObject &result)
{
    AgentReply reply;
    reply.response = result.value(QLatin1String("response")).toString();
    reply.sessionId = result.value(QLatin1String("sessionId")).toString();

    const QJsonObject usage = result.value(QLatin1String("usage")).toObject();
    reply.inputTokens = truncated(usage.value(QLatin1String("inputTokens")), 0);
    reply.outputTokens = truncated(usage.value(QLatin1String("outputTokens")), 0);

    const QLatin1String followUpsKey("followUps");
    const QJsonValue ui = result.value(QLatin1String("ui"));
    const QJsonValue followUps = result.value(followUpsKey);
    reply.hasUi = ui.isObject();
    QJsonObject structured = ui.toObject();
    if (followUps.isArray() && !structured.contains(followUpsKey)) {
        structured.insert(followUpsKey, followUps);
    }
    if (reply.hasUi || followUps.isArray()) {
        reply.uiJson = compact(structured);
    }
    return reply;
}

PlanStep PlanStep::read(const QJsonObject &eventPayload)
{
    PlanStep step;
    step.index = truncated(eventPayload.value(QLatin1String("index")), step.index);
    step.total = truncated(eventPayload.value(QLatin1String("total")), step.total);
    step.capability = eventPayload.value(QLatin1String("capabilityId")).toString();
    step.phase = eventPayload.value(QLatin1String("phase")).toString();
    return step;
}

quint64 requestIdOf(const QJsonValue &id)
{
    constexpr double s_tooLarge = 18446744073709551616.0; // 2 to the 64th
    const double number = id.toDouble();
    return number >= 1 && number < s_tooLarge ? static_cast<quint64>(number) : 0;
}

QString withoutQuotationMarks(const QString &response)
{
    const QString text = response.trimmed();
    for (const QLatin1Char mark : {QLatin1Char('"'), QLatin1Char('\'')}) {
        if (text.size() >= 2 && text.startsWith(mark) && text.endsWith(mark)) {
            return text.mid(1, text.size() - 2);
        }
    }
    return text;
}
