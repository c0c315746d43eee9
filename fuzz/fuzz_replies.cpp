// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Fuzzes the parsers of frames and replies without a client, which is much faster than fuzz_frames.

#include "AgentReply.h"
#include "BridgeFrame.h"
#include "Require.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cstdint>

namespace
{

using Kind = BridgeFrame::Kind;

void checkFrame(const BridgeFrame &frame)
{
    require(frame.isObject || frame.message.isEmpty(), "only an object has keys");
    require(frame.isObject || frame.kind == Kind::Unreadable || frame.kind == Kind::OlderReply,
            "a frame that is no object is unreadable or an older reply");
    require(frame.kind == Kind::Event || (frame.eventPayload.isEmpty() && frame.eventName.isEmpty()),
            "only an event has a name and payload");
    const QLatin1String resultKey(frame.kind == Kind::Response ? "payload" : "result");
    require(frame.result == frame.message.value(resultKey), "each form of a reply has its result");
    require(frame.kind != Kind::Unreadable || !frame.parseError.isEmpty(), "a parser's error has a text");
}

void checkId(const QJsonValue &value)
{
    const quint64 id = requestIdOf(value);
    require(id == 0 || (value.isDouble() && value.toDouble() >= 1), "a request's id is a positive number");
    // A double holds every whole number up to here.
    constexpr double s_largestExact = 9007199254740992.0;
    const double number = value.toDouble();
    const bool isWhole = number >= 1 && number <= s_largestExact;
    require(!isWhole || id == static_cast<quint64>(number), "an id is exact");
}

void checkReply(const QJsonObject &result)
{
    const AgentReply reply = AgentReply::read(result);
    const QJsonValue response = result.value(QLatin1String("response"));
    require(reply.response == response.toString(), "the response is the text of the result");
    require(reply.hasUi == result.value(QLatin1String("ui")).isObject(), "only an object has widgets");
    require(!reply.hasUi || !reply.uiJson.isEmpty(), "widgets come as JSON");
    if (!reply.uiJson.isEmpty()) {
        const QJsonDocument ui = QJsonDocument::fromJson(reply.uiJson.toUtf8());
        require(ui.isObject(), "what accompanies a reply is an object");
        require(!reply.uiJson.contains(QLatin1Char('\n')), "what accompanies a reply is compact");
        require(reply.hasUi || ui.object().value(QLatin1String("followUps")).isArray(), "follow-ups are a list");
    }

    const QString plain = withoutQuotationMarks(reply.response);
    require(plain.size() <= reply.response.size() && reply.response.contains(plain), "only the ends are removed");
    const QString trimmed = reply.response.trimmed();
    require(withoutQuotationMarks(QLatin1String(" \"") + trimmed + QLatin1String("\"\n")) == trimmed,
            "a pair of quotation marks is removed");
}

void checkStep(const QJsonObject &payload)
{
    const PlanStep step = PlanStep::read(payload);
    require(step.isRunning() == (step.index >= 0), "a running step has an index");
    const QJsonValue index = payload.value(QLatin1String("index"));
    require(index.isDouble() || step.index == -1, "without an index no plan runs");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const BridgeFrame frame = BridgeFrame::parse(text);
    checkFrame(frame);
    checkId(frame.id);
    checkReply(frame.result.toObject());
    checkReply(frame.message);
    checkStep(frame.eventPayload);
    frame.errorText();

    const QString request = BridgeFrame::request(1, text, frame.message);
    const BridgeFrame sent = BridgeFrame::parse(request);
    require(sent.isObject && sent.message.size() == 3 && !request.contains(QLatin1Char('\n')),
            "a request is one line with three fields");
    // Qt's JSON parser removes a byte order mark from a string.
    require(text.startsWith(QChar(QChar::ByteOrderMark)) || sent.message.value(QLatin1String("method")) == text,
            "a request keeps its texts");
    return 0;
}
