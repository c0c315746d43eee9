// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The operations: their parameters, and what they refuse to send.

#include "LoomraSDK.h"

#include "CliModels.h"
#include "DebugEventLog.h"

namespace
{

QJsonObject only(const char *key, const QJsonValue &value)
{
    return {{QLatin1String(key), value}};
}

} // namespace

void LoomraSDK::sendChatMessage(const QString &message, const QJsonObject &context)
{
    request(QStringLiteral("chat"),
            {{QStringLiteral("message"), message},
             {QStringLiteral("sessionId"), m_currentSessionId},
             {QStringLiteral("model"), m_currentModel},
             {QStringLiteral("agent"), m_currentAgent},
             {QStringLiteral("context"), context}});
}

void LoomraSDK::generateCode(const QString &prompt, const QString &language, const QJsonObject &context)
{
    request(QStringLiteral("generateCode"),
            {{QStringLiteral("prompt"), prompt},
             {QStringLiteral("language"), language},
             {QStringLiteral("context"), context}});
}

void LoomraSDK::editCode(const QString &code, const QString &instruction, const QJsonObject &context)
{
    request(QStringLiteral("editCode"),
            {{QStringLiteral("code"), code},
             {QStringLiteral("instruction"), instruction},
             {QStringLiteral("context"), context}});
}

void LoomraSDK::getFiles(const QString &path)
{
    request(QStringLiteral("getFiles"), only("path", path));
}

void LoomraSDK::readFile(const QString &path)
{
    request(QStringLiteral("readFile"), only("path", path), path);
}

void LoomraSDK::writeFile(const QString &path, const QString &content)
{
    request(QStringLiteral("writeFile"), {{QStringLiteral("path"), path}, {QStringLiteral("content"), content}}, path);
}

void LoomraSDK::listSessions()
{
    logCall("listSessions", "listSessions called");
    request(QStringLiteral("listSessions"));
}

void LoomraSDK::createSession()
{
    request(QStringLiteral("createSession"));
}

void LoomraSDK::switchSession(const QString &sessionId)
{
    request(QStringLiteral("switchSession"), only("sessionId", sessionId));
}

void LoomraSDK::deleteSession(const QString &sessionId)
{
    request(QStringLiteral("deleteSession"), only("sessionId", sessionId));
}

void LoomraSDK::renameSession(const QString &sessionId, const QString &newName)
{
    if (sessionId.isEmpty() || newName.isEmpty()) {
        Q_EMIT error(QStringLiteral("Session ID and new name are required"));
        return;
    }
    request(QStringLiteral("renameSession"),
            {{QStringLiteral("sessionId"), sessionId}, {QStringLiteral("newName"), newName}});
}

void LoomraSDK::loadMessages(const QString &sessionId)
{
    if (sessionId.isEmpty()) {
        Q_EMIT error(QStringLiteral("Session ID is required to load messages"));
        return;
    }
    request(QStringLiteral("loadMessages"), only("sessionId", sessionId));
}

void LoomraSDK::listAgents()
{
    request(QStringLiteral("listAgents"));
}

void LoomraSDK::listModels()
{
    logCall("listModels", "listModels called");
    if (!m_ready || !m_connected) {
        const QJsonArray models = CliModels::list();
        if (!models.isEmpty()) {
            Q_EMIT modelsListed(models);
            return;
        }
    }
    request(QStringLiteral("listModels"));
}

void LoomraSDK::checkFreeProviders()
{
    if (!m_ready || !m_connected) {
        Q_EMIT error(QStringLiteral("SDK not ready — connect first"));
        return;
    }
    request(QStringLiteral("checkFreeProviders"));
}

void LoomraSDK::getTokenStatus(const QString &provider)
{
    const QString name = provider.trimmed();
    request(QStringLiteral("getTokenStatus"), name.isEmpty() ? QJsonObject() : only("provider", name));
}

void LoomraSDK::setProviderToken(const QString &provider, const QString &token, const QString &tokenKey)
{
    const QString name = provider.trimmed();
    const QString secret = token.trimmed();
    const QString key = tokenKey.trimmed();
    if (name.isEmpty()) {
        Q_EMIT error(QStringLiteral("Provider is required"));
        return;
    }
    if (secret.isEmpty()) {
        Q_EMIT error(QStringLiteral("Token is required"));
        return;
    }
    QJsonObject params {{QStringLiteral("provider"), name}, {QStringLiteral("token"), secret}};
    if (!key.isEmpty()) {
        params.insert(QStringLiteral("tokenKey"), key);
    }
    request(QStringLiteral("setProviderToken"), params);
}

void LoomraSDK::getPlan(const QString &message)
{
    if (message.trimmed().isEmpty()) {
        Q_EMIT error(QStringLiteral("getPlan requires a non-empty message"));
        return;
    }
    request(QStringLiteral("getPlan"), only("message", message)); // with its whitespace
}

void LoomraSDK::executePlan(const QVariantList &steps)
{
    if (steps.isEmpty()) {
        Q_EMIT error(QStringLiteral("executePlan requires at least one step"));
        return;
    }
    QJsonArray objects;
    for (const QVariant &step : steps) {
        if (step.canConvert<QJsonObject>()) {
            objects.append(step.toJsonObject());
        } else if (step.canConvert<QVariantMap>()) {
            objects.append(QJsonObject::fromVariantMap(step.toMap()));
        }
    }
    if (objects.isEmpty()) {
        Q_EMIT error(QStringLiteral("executePlan requires valid step objects"));
        return;
    }
    request(QStringLiteral("executePlan"), only("steps", objects));
}

void LoomraSDK::auditListRecent(int limit)
{
    request(QStringLiteral("auditListRecent"), only("limit", limit));
}

void LoomraSDK::auditRevert(const QString &actionId)
{
    request(QStringLiteral("auditRevert"), only("actionId", actionId), actionId);
}

void LoomraSDK::automationList()
{
    request(QStringLiteral("automationList"));
}

void LoomraSDK::automationCreate(const QJsonObject &trigger, const QJsonArray &steps, const QJsonObject &condition)
{
    request(QStringLiteral("automationCreate"),
            {{QStringLiteral("trigger"), trigger},
             {QStringLiteral("steps"), steps},
             {QStringLiteral("condition"), condition}});
}

void LoomraSDK::automationUpdate(const QString &id, const QJsonObject &params)
{
    QJsonObject changed = params;
    changed.insert(QStringLiteral("id"), id);
    request(QStringLiteral("automationUpdate"), changed, id);
}

void LoomraSDK::automationDelete(const QString &id)
{
    request(QStringLiteral("automationDelete"), only("id", id), id);
}

void LoomraSDK::automationPause(const QString &id, bool pause)
{
    request(QStringLiteral("automationPause"), {{QStringLiteral("id"), id}, {QStringLiteral("pause"), pause}}, id);
}

void LoomraSDK::reminderList()
{
    request(QStringLiteral("reminderList"));
}

void LoomraSDK::reminderCancel(const QString &id)
{
    request(QStringLiteral("reminderCancel"), only("id", id), id);
}

void LoomraSDK::getDesktopState()
{
    request(QStringLiteral("getDesktopState"));
}

void LoomraSDK::emergencyStop()
{
    request(QStringLiteral("emergencyStop"));
}

void LoomraSDK::emergencyResume()
{
    request(QStringLiteral("emergencyResume"));
}

void LoomraSDK::getDeniedPermissions()
{
    request(QStringLiteral("getDeniedPermissions"));
}

void LoomraSDK::getSystemReport()
{
    request(QStringLiteral("getSystemReport"));
}

void LoomraSDK::getQuickStatus()
{
    request(QStringLiteral("getQuickStatus"));
}

void LoomraSDK::refreshPowerProfile()
{
    request(QStringLiteral("getPowerProfile"));
}

void LoomraSDK::getAppLogSummary()
{
    request(QStringLiteral("getAppLogSummary"));
}

void LoomraSDK::getKdeLogs()
{
    request(QStringLiteral("getKdeLogs"));
}

void LoomraSDK::getAppMetrics()
{
    request(QStringLiteral("getAppMetrics"));
}

void LoomraSDK::getServiceHealth()
{
    request(QStringLiteral("getServiceHealth"));
}

void LoomraSDK::getSystemDashboard()
{
    request(QStringLiteral("getSystemDashboard"));
}
