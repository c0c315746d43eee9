// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "TokenTotals.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <limits>

namespace
{

//! The fields that are sums.
constexpr qint64 DayTotals::*s_fields[] = {&DayTotals::input,     &DayTotals::output,     &DayTotals::reasoning,
                                           &DayTotals::cacheRead, &DayTotals::cacheWrite, &DayTotals::messages};

//! The number up to which a double holds every whole number.
constexpr double s_largestWhole = 9007199254740992.0; // 2^53

//! Sum that stops at the limits, because files may contain any number.
qint64 sum(qint64 a, qint64 b)
{
    qint64 result = 0;
    if (__builtin_add_overflow(a, b, &result)) {
        return a < 0 ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
    }
    return result;
}

//! A number without its fraction; 0 if the value is none.
qint64 whole(const QJsonValue &value)
{
    return static_cast<qint64>(std::clamp(value.toDouble(), -s_largestWhole, s_largestWhole));
}

} // namespace

DayTotals &DayTotals::operator+=(const DayTotals &other)
{
    for (const auto field : s_fields) {
        this->*field = sum(this->*field, other.*field);
    }
    return *this;
}

qint64 DayTotals::total() const
{
    qint64 result = 0;
    for (const qint64 tokens : {input, output, reasoning, cacheRead, cacheWrite}) {
        result = sum(result, tokens);
    }
    return result;
}

std::optional<MessageTokens> parseMessageTokens(const QByteArray &content)
{
    const QJsonObject message = QJsonDocument::fromJson(content).object();
    const QJsonObject tokens = message.value(QLatin1String("tokens")).toObject();
    if (message.value(QLatin1String("role")).toString() != QLatin1String("assistant") || tokens.isEmpty()) {
        return std::nullopt;
    }
    const QJsonObject time = message.value(QLatin1String("time")).toObject();
    qint64 stamp = whole(time.value(QLatin1String("completed")));
    if (stamp < 1) {
        stamp = whole(time.value(QLatin1String("created")));
    }
    if (stamp < 1) {
        return std::nullopt;
    }
    const QJsonObject cache = tokens.value(QLatin1String("cache")).toObject();
    return MessageTokens {stamp,
                          {
                              whole(tokens.value(QLatin1String("input"))),
                              whole(tokens.value(QLatin1String("output"))),
                              whole(tokens.value(QLatin1String("reasoning"))),
                              whole(cache.value(QLatin1String("read"))),
                              whole(cache.value(QLatin1String("write"))),
                              1,
                          }};
}
