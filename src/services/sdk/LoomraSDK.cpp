// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "LoomraSDK.h"

#include "BridgeEnvironment.h"
#include "BridgePath.h"
#include "ChildProcess.h"
#include "ConfigManager.h"
#include "LogDirectory.h"

#include <QTimer>
#include <QWebSocket>

#include <csignal>

LoomraSDK::LoomraSDK(ConfigManager *configManager, QObject *parent)
    : QObject(parent)
    , m_configManager(configManager)
    , m_connection(QStringLiteral("localhost"), BridgeConnection::Retry::UntilStopped, this)
    , m_bridgeProcess(new ChildProcess(SIGTERM, this))
    , m_bridgePath(BridgePath::resolve())
    , m_executorPathEnabled(
          BridgeEnvironment::truthyEnvValue(qEnvironmentVariable(BridgeEnvironment::ExecutorPathVariable)))
    , m_reminderTimer(new QTimer(this))
    , m_workspaceSuggestionReminderEnabled(configManager->workspaceSuggestionReminderEnabled())
    , m_workspaceSuggestionReminderMinutes(configManager->workspaceSuggestionReminderMinutes())
{
    m_reminderTimer->setObjectName(QStringLiteral("reminderTimer"));

    const QWebSocket *socket = m_connection.socket();
    connect(socket, &QWebSocket::connected, this, &LoomraSDK::onWebSocketConnected);
    connect(socket, &QWebSocket::disconnected, this, &LoomraSDK::onWebSocketDisconnected);
    connect(socket, &QWebSocket::textMessageReceived, this, &LoomraSDK::onWebSocketTextMessageReceived);
    connect(socket, QOverload<QAbstractSocket::SocketError>::of(&QWebSocket::error), this,
            &LoomraSDK::onWebSocketError);
    connect(m_bridgeProcess, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &LoomraSDK::onBridgeProcessFinished);
    connect(m_bridgeProcess, &QProcess::errorOccurred, this, &LoomraSDK::onBridgeProcessError);
    connect(m_connection.retryTimer(), &QTimer::timeout, this, &LoomraSDK::tryReconnect);
    connect(m_reminderTimer, &QTimer::timeout, this, &LoomraSDK::onWorkspaceSuggestionReminderTimeout);
    for (const auto changed : {&LoomraSDK::readyChanged, &LoomraSDK::workspaceIntelAvailableChanged,
                               &LoomraSDK::aiRuntimeAvailableChanged}) {
        connect(this, changed, this, &LoomraSDK::updateWorkspaceSuggestionReminderTimer);
    }
}

LoomraSDK::~LoomraSDK()
{
    // No signal may reach listeners from an object that is being destroyed.
    m_connection.socket()->disconnect(this);
    m_bridgeProcess->disconnect(this);
    m_connection.close();
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
