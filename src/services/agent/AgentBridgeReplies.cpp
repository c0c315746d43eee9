// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The receiving half of AgentBridge: turns frames into properties and signals.

#include "AgentBridge.h"
#include "BridgeFrame.h"

#include <QDebug>

#include <algorithm>

namespace
{

constexpr int s_loggedMessage = 200; // characters

//! The phase shown once an agent is routed; the bridge sends none for it.
QString routingPhase()
{
    return QStringLiteral("routing");
}

//! The error in a reply, null if there is none. Only a string counts: in a "response" the message, never the code; in
//! the older form a string under "error", never an object.
QJsonValue errorOfReply(const BridgeFrame &frame)
{
    if (frame.kind != BridgeFrame::Kind::Response) {
        return frame.error;
    }
    const QJsonObject error = frame.error.toObject();
    return error.isEmpty() ? QJsonValue() : QJsonValue(error.value(QLatin1String("message")).toString());
}

} // namespace

void AgentBridge::onTextMessageReceived(const QString &message)
{
    qDebug() << "[AgentBridge] Received WebSocket message:" << message.left(s_loggedMessage);

    const BridgeFrame frame = BridgeFrame::parse(message);
    if (!frame.isObject) {
        // For JSON that isn't an object parseError is "no error occurred"; the raw message explains it.
        qWarning() << "[AgentBridge] Failed to parse WebSocket message as JSON:" << frame.parseError;
        qWarning() << "[AgentBridge] Raw message:" << message;
        return;
    }

    switch (frame.kind) {
    case BridgeFrame::Kind::Ready:
        // The signals of the socket set the status, so that nothing depends on this.
        qDebug() << "[AgentBridge] Bridge ready message received";
        break;
    case BridgeFrame::Kind::Event:
        processEvent(frame.eventName, frame.eventPayload);
        break;
    case BridgeFrame::Kind::Error:
        processError(frame);
        break;
    case BridgeFrame::Kind::Stream: // handled like any other reply, as this client doesn't stream
    case BridgeFrame::Kind::Response:
    case BridgeFrame::Kind::OlderReply:
    case BridgeFrame::Kind::Unreadable: // never an object
        processReply(frame, message);
        break;
    }
}

//! Ignores events that aren't in the table without logging them: they are for the other client.
void AgentBridge::processEvent(const QString &name, const QJsonObject &payload)
{
    struct Event
    {
        QLatin1String name;
        void (AgentBridge::*process)(const QJsonObject &payload);
    };
    static const Event s_events[] = {
        {QLatin1String("tool.executed"), &AgentBridge::onToolExecuted},
        {QLatin1String("agent.routed"), &AgentBridge::onAgentRouted},
        {QLatin1String("plan.phase"), &AgentBridge::onPlanPhase},
        {QLatin1String("plan.step"), &AgentBridge::onPlanStep},
    };
    for (const Event &event : s_events) {
        if (name == event.name) {
            (this->*event.process)(payload);
            return;
        }
    }
}

void AgentBridge::onToolExecuted(const QJsonObject &payload)
{
    const QString tool = payload.value(QLatin1String("tool")).toString();
    if (!tool.isEmpty()) {
        qDebug() << "[AgentBridge] Tool executed event received:" << tool;
        Q_EMIT actionStarted(tool);
    }
}

void AgentBridge::onAgentRouted(const QJsonObject &payload)
{
    // The agent first, so that it is set when the phase changes.
    setRoutedAgent(payload.value(QLatin1String("agent")).toString());
    setActivePhase(routingPhase());
}

void AgentBridge::onPlanPhase(const QJsonObject &payload)
{
    setActivePhase(payload.value(QLatin1String("phase")).toString());
}

void AgentBridge::onPlanStep(const QJsonObject &payload)
{
    m_planStep = PlanStep::read(payload);
    Q_EMIT planStepChanged(); // Intentional: also if nothing changed
}

void AgentBridge::processError(const BridgeFrame &frame)
{
    const QString text = frame.errorText();
    if (!text.isEmpty()) {
        qWarning() << "[AgentBridge] Bridge error:" << text;
    }
    fail(text);
    m_pendingRequests.remove(requestIdOf(frame.id));
}

void AgentBridge::processReply(const BridgeFrame &frame, const QString &message)
{
    const quint64 id = requestIdOf(frame.id);
    const QJsonValue error = errorOfReply(frame);
    // A missing key is undefined and not null, so that it counts as present. Only this log line shows that.
    qDebug() << "[AgentBridge] Processing message, id=" << id << "hasResult=" << !frame.result.isNull()
             << "hasError=" << !error.isNull();

    const auto pending = m_pendingRequests.constFind(id);
    if (pending == m_pendingRequests.constEnd()) {
        QList<quint64> ids = m_pendingRequests.keys();
        std::sort(ids.begin(), ids.end());
        qDebug() << "[AgentBridge] Message not for pending request, id=" << id << "pending=" << ids;
        return;
    }
    const bool isFeedback = pending.value() == AgentRequests::feedbackMethod();
    m_pendingRequests.erase(pending);

    const QString errorText = error.toString();
    if (!errorText.isEmpty()) {
        qWarning() << "[AgentBridge] Bridge error:" << errorText;
        // Intentional: a refused vote hides its text from the user but otherwise counts as a failure, even of a chat
        // that runs at the same time, because the status shows every failure of the bridge.
        fail(isFeedback ? QString() : errorText);
        return;
    }

    if (isFeedback) {
        if (frame.result.isObject()) {
            qDebug() << "[AgentBridge] messageFeedback recorded, ok="
                     << frame.result.toObject().value(QLatin1String("ok")).toBool();
        } else {
            qDebug() << "[AgentBridge] messageFeedback recorded (empty ack)";
        }
        return;
    }

    if (!frame.result.isObject()) {
        qWarning() << "[AgentBridge] Unexpected result payload from bridge, result type:"
                   << static_cast<int>(frame.result.type());
        qWarning() << "[AgentBridge] Full message:" << message;
        fail(QStringLiteral("Unexpected result from Loomra bridge"));
        return;
    }
    processResult(id, AgentReply::read(frame.result.toObject()));
}

void AgentBridge::processResult(quint64 id, const AgentReply &reply)
{
    if (!reply.sessionId.isEmpty()) {
        m_sessionId = reply.sessionId;
    }
    if (reply.inputTokens > 0 || reply.outputTokens > 0) {
        Q_EMIT usageReported(reply.inputTokens, reply.outputTokens);
    }
    qDebug() << "[AgentBridge] Received response from bridge, sessionId=" << reply.sessionId
             << "responseLength=" << reply.response.length();

    if (id == m_rephraseRequestId) {
        finishRephrase(reply.response);
        return;
    }
    if (reply.response.isEmpty()) {
        qWarning() << "[AgentBridge] Empty response received from bridge";
        fail(QStringLiteral("Empty response from Loomra bridge"));
        return;
    }

    // Widgets go out before the text: the receiver keeps them and makes one row of both.
    if (reply.hasUi) {
        qDebug() << "[AgentBridge] Structured UI payload detected, emitting structuredReplyReceived";
    }
    if (!reply.uiJson.isEmpty()) {
        Q_EMIT structuredReplyReceived(reply.uiJson);
    }
    resetProgress();
    Q_EMIT agentReplied(reply.response);
    setThinking(false);
    setStatus(AgentStatus::Idle);
}

void AgentBridge::finishRephrase(const QString &response)
{
    m_rephraseRequestId = 0;
    const QString text = withoutQuotationMarks(response);
    // A copy, because a listener that rephrases again changes the member before the next listener is called.
    const QString original = m_rephraseOriginal;
    qDebug() << "[AgentBridge] rephrase result:" << original << "->" << text;
    Q_EMIT rephraseReady(original, text);
}

void AgentBridge::setThinking(bool thinking)
{
    if (m_isThinking == thinking) {
        return;
    }
    m_isThinking = thinking;
    Q_EMIT thinkingChanged(thinking);
}

void AgentBridge::setStatus(const QString &status)
{
    if (m_status == status) {
        return;
    }
    m_status = status;
    Q_EMIT statusChanged(status);
}

void AgentBridge::setActivePhase(const QString &phase)
{
    if (m_activePhase == phase) {
        return;
    }
    m_activePhase = phase;
    Q_EMIT activePhaseChanged(phase);
}

void AgentBridge::setRoutedAgent(const QString &agent)
{
    if (m_routedAgent == agent) {
        return;
    }
    m_routedAgent = agent;
    Q_EMIT routedAgentChanged(agent);
}

void AgentBridge::resetProgress()
{
    setActivePhase(QString());
    setRoutedAgent(QString());
    if (m_planStep.isRunning()) {
        m_planStep = PlanStep();
        Q_EMIT planStepChanged();
    }
}

void AgentBridge::fail(const QString &error)
{
    if (!error.isEmpty()) {
        Q_EMIT errorOccurred(error);
    }
    setThinking(false);
    setStatus(AgentStatus::Error);
}
