// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "LoomraSDK.h"

#include "BridgeEnvironment.h"
#include "BridgePath.h"
#include "BridgeSocket.h"
#include "ConfigManager.h"
#include "LogDirectory.h"

#include <QTimer>
#include <QWebSocket>

namespace
{

constexpr int s_port = 8765;
constexpr int s_reconnectInterval = 3000; // ms

} // namespace

LoomraSDK::LoomraSDK(ConfigManager *configManager, QObject *parent)
    : QObject(parent)
    , m_configManager(configManager)
    , m_webSocket(BridgeSocket::create(this))
    , m_bridgeProcess(new QProcess(this))
    , m_reconnectTimer(new QTimer(this))
    , m_bridgePath(BridgePath::resolve())
    , m_port(s_port)
    , m_executorPathEnabled(
          BridgeEnvironment::truthyEnvValue(qEnvironmentVariable(BridgeEnvironment::executorPathVariable)))
    , m_reminderTimer(new QTimer(this))
    , m_workspaceSuggestionReminderEnabled(configManager->workspaceSuggestionReminderEnabled())
    , m_workspaceSuggestionReminderMinutes(configManager->workspaceSuggestionReminderMinutes())
{
    m_reconnectTimer->setObjectName(QStringLiteral("reconnectTimer"));
    m_reconnectTimer->setInterval(s_reconnectInterval);
    m_reminderTimer->setObjectName(QStringLiteral("reminderTimer"));

    connect(m_webSocket, &QWebSocket::connected, this, &LoomraSDK::onWebSocketConnected);
    connect(m_webSocket, &QWebSocket::disconnected, this, &LoomraSDK::onWebSocketDisconnected);
    connect(m_webSocket, &QWebSocket::textMessageReceived, this, &LoomraSDK::onWebSocketTextMessageReceived);
    connect(m_webSocket, QOverload<QAbstractSocket::SocketError>::of(&QWebSocket::error), this,
            &LoomraSDK::onWebSocketError);
    connect(m_bridgeProcess, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &LoomraSDK::onBridgeProcessFinished);
    connect(m_bridgeProcess, &QProcess::errorOccurred, this, &LoomraSDK::onBridgeProcessError);
    connect(m_reconnectTimer, &QTimer::timeout, this, &LoomraSDK::tryReconnect);
    connect(m_reminderTimer, &QTimer::timeout, this, &LoomraSDK::onWorkspaceSuggestionReminderTimeout);
    for (const auto changed : {&LoomraSDK::readyChanged, &LoomraSDK::workspaceIntelAvailableChanged,
                               &LoomraSDK::aiRuntimeAvailableChanged}) {
        connect(this, changed, this, &LoomraSDK::updateWorkspaceSuggestionReminderTimer);
    }
}

LoomraSDK::~LoomraSDK()
{
    // Nobody should hear of the state of an object that is half gone.
    m_webSocket->disconnect(this);
    m_bridgeProcess->disconnect(this);
    if (isSocketOpen()) { // a closing frame needs an open socket
        m_webSocket->close(QWebSocketProtocol::CloseCodeNormal);
    }
    stopBridgeProcess(true);
}

QString LoomraSDK::eventLogDir() const
{
    return LogDirectory::ofBridge();
}

void LoomraSDK::setCurrentModel(const QString &model)
{
    if (m_currentModel == model) {
        return;
    }
    m_currentModel = model;
    Q_EMIT currentModelChanged();
}

void LoomraSDK::setCurrentAgent(const QString &agent)
{
    if (m_currentAgent == agent) {
        return;
    }
    m_currentAgent = agent;
    Q_EMIT currentAgentChanged();
}

void LoomraSDK::setCurrentSessionId(const QString &sessionId)
{
    m_currentSessionId = sessionId;
    Q_EMIT currentSessionIdChanged();
}

void LoomraSDK::setWorkspaceSuggestionReminderEnabled(bool enabled)
{
    if (m_workspaceSuggestionReminderEnabled == enabled) {
        return;
    }
    m_workspaceSuggestionReminderEnabled = enabled;
    m_configManager->setWorkspaceSuggestionReminderEnabled(enabled);
    m_configManager->save();
    updateWorkspaceSuggestionReminderTimer();
    Q_EMIT workspaceSuggestionReminderEnabledChanged();
}

void LoomraSDK::setWorkspaceSuggestionReminderMinutes(int minutes)
{
    const int bounded = ConfigManager::boundedReminderMinutes(minutes);
    if (m_workspaceSuggestionReminderMinutes == bounded) {
        return;
    }
    m_workspaceSuggestionReminderMinutes = bounded;
    m_configManager->setWorkspaceSuggestionReminderMinutes(bounded);
    m_configManager->save();
    updateWorkspaceSuggestionReminderTimer();
    Q_EMIT workspaceSuggestionReminderMinutesChanged();
}
