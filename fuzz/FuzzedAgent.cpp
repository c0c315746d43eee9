// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FuzzedAgent.h"

#include "Feeding.h"
#include "Require.h"

#include <QJsonDocument>

#include <algorithm>
#include <iterator>

namespace
{

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

using Operation = void (*)(AgentBridge &);

constexpr Operation s_operations[] = {
    [](AgentBridge &agent) { agent.sendIntent(text("hi")); },
    [](AgentBridge &agent) { agent.rephraseText(text("hi")); },
    [](AgentBridge &agent) { agent.handleUiAction(text("click"), 1, text(R"({"a":1})")); },
    [](AgentBridge &agent) { agent.sendMessageFeedback(text("up"), 1, text("hi")); },
};

} // namespace

FuzzedAgent::FuzzedAgent()
{
    checkSignals();
    m_agent.setCurrentModel(text("a/b")); // or each prompt would read the settings
    Feeding::pumpUntil([this] { return m_agent.isServiceAvailable(); });
}

void FuzzedAgent::checkSignals()
{
    QObject::connect(&m_agent, &AgentBridge::errorOccurred, &m_agent,
                     [](const QString &error) { require(!error.isEmpty(), "an error has a text"); });
    QObject::connect(&m_agent, &AgentBridge::actionStarted, &m_agent,
                     [](const QString &tool) { require(!tool.isEmpty(), "a tool has a name"); });
    QObject::connect(&m_agent, &AgentBridge::usageReported, &m_agent,
                     [](int input, int output) { require(input > 0 || output > 0, "a usage report is not empty"); });
    QObject::connect(&m_agent, &AgentBridge::structuredReplyReceived, &m_agent, [](const QString &json) {
        require(QJsonDocument::fromJson(json.toUtf8()).isObject(), "a structured reply is an object");
    });
    QObject::connect(&m_agent, &AgentBridge::agentReplied, &m_agent, [this](const QString &response) {
        require(!response.isEmpty(), "a reply has a text");
        m_replied = response;
    });
}

void FuzzedAgent::take(quint8 choice, const QString &frame)
{
    s_operations[choice % std::size(s_operations)](m_agent);
    ++m_lastId;
    deliver(Feeding::withId(frame, m_lastId));
    checkState();
    checkThatItAnswers();
    cancelAll();
}

void FuzzedAgent::deliver(const QString &frame)
{
    const bool called = QMetaObject::invokeMethod(&m_agent, "onTextMessageReceived", Q_ARG(QString, frame));
    require(called, "AgentBridge has a slot for frames");
}

void FuzzedAgent::checkState() const
{
    require(m_agent.isServiceAvailable(), "no frame closes the connection");
    const QLatin1String possible[] = {AgentStatus::Idle, AgentStatus::Thinking, AgentStatus::Error};
    require(std::find(std::begin(possible), std::end(possible), m_agent.status()) != std::end(possible),
            "the status is valid for an open connection");
}

void FuzzedAgent::checkThatItAnswers()
{
    m_replied.clear();
    m_agent.sendIntent(text("fresh"));
    deliver(Feeding::withId(text(R"({"type":"response","id":#,"payload":{"response":"good"}})"), ++m_lastId));
    require(m_replied == text("good"), "a new prompt is answered");
    require(!m_agent.isThinking() && m_agent.status() == AgentStatus::Idle, "a reply ends the thinking");
    require(m_agent.activePhase().isEmpty() && m_agent.routedAgent().isEmpty() && m_agent.planStepIndex() < 0,
            "a reply clears the progress");
}

void FuzzedAgent::cancelAll()
{
    // With a prompt open the cancel is always sent, and uses an id too.
    m_agent.sendIntent(text("cancelled"));
    m_agent.cancelRequest();
    m_lastId += 2;
    require(!m_agent.isThinking() && m_agent.status() == AgentStatus::Idle, "a cancel ends the thinking");
}
