// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Workspace intelligence, the AI runtime, and suggestions at intervals.

#include "LoomraSDKRoutes.h"

#include "ConfigManager.h"
#include "SuggestionNotification.h"

#include <QDebug>
#include <QJsonDocument>
#include <QTimer>

#include <algorithm>

namespace
{

constexpr int s_dwellDays = 14;

//! The bridge takes settings as strings.
QString flag(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

QJsonObject setting(const QString &key, const QString &value)
{
    return {{QStringLiteral("key"), key}, {QStringLiteral("value"), value}};
}

} // namespace

bool LoomraSDK::requireWorkspaceIntel()
{
    const bool canUse = canUseWorkspaceIntel();
    if (!canUse) {
        Q_EMIT error(QStringLiteral("Workspace intelligence is not available."));
    }
    return canUse;
}

bool LoomraSDK::requireAiRuntime()
{
    const bool canUse = canUseAiRuntime();
    if (!canUse) {
        Q_EMIT error(QStringLiteral("AI runtime is not available."));
    }
    return canUse;
}

void LoomraSDK::onCapabilitiesReply(const Reply &reply)
{
    const auto isEnabled = [&](QLatin1String subject) {
        return reply.object.value(subject).toObject().value(QLatin1String("enabled")).toBool();
    };
    const bool workspaceIntel = isEnabled(QLatin1String("workspaceIntelligence"));
    const bool aiRuntime = isEnabled(QLatin1String("aiRuntime"));
    if (m_workspaceIntelAvailable != workspaceIntel) {
        m_workspaceIntelAvailable = workspaceIntel;
        Q_EMIT workspaceIntelAvailableChanged();
    }
    if (m_aiRuntimeAvailable != aiRuntime) {
        m_aiRuntimeAvailable = aiRuntime;
        Q_EMIT aiRuntimeAvailableChanged();
    }
    updateWorkspaceSuggestionReminderTimer();
}

// ---- Workspace intelligence panel: the settings and then the summary are requested, and emitted as one object

void LoomraSDK::refreshWorkspaceIntelPanel()
{
    if (canUseWorkspaceIntel()) {
        request(QStringLiteral("workspaceIntelGetSettings_panel"));
    }
}

void LoomraSDK::onWorkspaceIntelSettingsReply(const Reply &reply)
{
    m_workspaceIntelPanelCache = reply.object;
    request(QStringLiteral("workspaceIntelGetDwellSummary_panel"), {{QStringLiteral("days"), s_dwellDays}});
}

void LoomraSDK::onDwellSummaryReply(const Reply &reply)
{
    QJsonObject panel = m_workspaceIntelPanelCache;
    panel.insert(QStringLiteral("dwellSummary"), reply.object);
    m_workspaceIntelPanelCache = QJsonObject();
    Q_EMIT workspaceIntelPanelUpdated(panel);
}

void LoomraSDK::setWorkspaceIntelObservationEnabled(bool enabled)
{
    if (requireWorkspaceIntel()) {
        request(QStringLiteral("workspaceIntelSetSettings_obs"),
                setting(QStringLiteral("observationEnabled"), flag(enabled)));
    }
}

// ---- Templates

void LoomraSDK::refreshWorkspaceTemplates()
{
    if (canUseWorkspaceIntel()) {
        request(QStringLiteral("workspaceIntelListApproved_templates"));
    }
}

void LoomraSDK::setWorkspaceTemplateEnabled(const QString &slug, bool enabled, int workspaceId)
{
    if (!requireWorkspaceIntel()) {
        return;
    }
    QJsonObject params {{QStringLiteral("enabled"), enabled}};
    if (!slug.isEmpty()) {
        params.insert(QStringLiteral("slug"), slug);
    }
    if (workspaceId > 0) {
        params.insert(QStringLiteral("id"), workspaceId);
    }
    request(QStringLiteral("workspaceIntelSetTemplateEnabled_refresh"), params);
}

void LoomraSDK::prepareWorkspaceTemplate(int workspaceId, const QString &message)
{
    if (!requireWorkspaceIntel()) {
        return;
    }
    if (workspaceId < 1) {
        Q_EMIT error(QStringLiteral("prepareWorkspaceTemplate requires a valid workspace id."));
        return;
    }
    QJsonObject params {{QStringLiteral("workspaceId"), workspaceId}};
    if (!message.isEmpty()) {
        params.insert(QStringLiteral("message"), message);
    }
    request(QStringLiteral("workspaceIntelPrepare_template"), params);
}

void LoomraSDK::reportRefusal(const QJsonObject &result)
{
    const QString reason = result.value(QLatin1String("error")).toString();
    if (!result.value(QLatin1String("ok")).toBool() && !reason.isEmpty()) {
        Q_EMIT error(reason);
    }
}

void LoomraSDK::onTemplatePreparedReply(const Reply &reply)
{
    Q_EMIT workspaceTemplatePrepareFinished(reply.object);
    reportRefusal(reply.object);
    refreshWorkspaceTemplates();
}

// ---- The AI runtime

void LoomraSDK::refreshAiRuntimePanel()
{
    if (canUseAiRuntime()) {
        request(QStringLiteral("aiRuntimeGetStatus_panel"));
    }
}

void LoomraSDK::setAiRuntimeEnabled(bool enabled)
{
    if (requireAiRuntime()) {
        request(QStringLiteral("aiRuntimeSetSetting_refresh"),
                setting(QStringLiteral("runtimeEnabled"), flag(enabled)));
    }
}

void LoomraSDK::setAiRuntimeExecutionGating(const QString &mode)
{
    if (requireAiRuntime()) {
        request(QStringLiteral("aiRuntimeSetSetting_refresh"), setting(QStringLiteral("executionGating"), mode));
    }
}

void LoomraSDK::refreshRuntimeHealth()
{
    if (m_ready) {
        request(QStringLiteral("workspaceRuntimeGetHealth_panel"));
    }
}

void LoomraSDK::refreshRuntimeJobs()
{
    if (m_ready) {
        request(QStringLiteral("workspaceRuntimeListJobs_panel"));
    }
}

void LoomraSDK::clearAiRuntimeDismissedSuggestions()
{
    if (!canUseAiRuntime()) {
        Q_EMIT error(QStringLiteral("SDK not ready or AI runtime unavailable."));
        return;
    }
    request(QStringLiteral("aiRuntimeClearDismissedSuggestions_refresh"));
}

// ---- Suggestions

bool LoomraSDK::canRemindOfSuggestions() const
{
    return m_workspaceSuggestionReminderEnabled && m_ready && m_workspaceIntelAvailable && m_aiRuntimeAvailable;
}

void LoomraSDK::updateWorkspaceSuggestionReminderTimer()
{
    m_reminderTimer->stop();
    if (canRemindOfSuggestions()) {
        m_reminderTimer->start(
            std::chrono::minutes(ConfigManager::boundedReminderMinutes(m_workspaceSuggestionReminderMinutes)));
    }
}

void LoomraSDK::onWorkspaceSuggestionReminderTimeout()
{
    if (!canRemindOfSuggestions()) {
        return;
    }
    // One check at a time. Intentional: the label of a check that was never answered stays, so that the timer asks no
    // more if the bridge went away during a check. Checks that the user asks for are still sent.
    if (std::find(m_pendingRequests.cbegin(), m_pendingRequests.cend(), SuggestionCheck) != m_pendingRequests.cend()) {
        return;
    }
    qDebug().noquote() << QStringLiteral("LoomraSDK: periodic workspace suggestion check; interval_min=%1")
                              .arg(m_workspaceSuggestionReminderMinutes);
    checkWorkspaceSuggestionNotify();
}

void LoomraSDK::checkWorkspaceSuggestionNotify()
{
    if (!m_ready) {
        Q_EMIT error(notReadyText());
        return;
    }
    if (!m_workspaceIntelAvailable || !m_aiRuntimeAvailable) {
        Q_EMIT error(QStringLiteral("Workspace intelligence and AI runtime must both be enabled for this action."));
        return;
    }
    request(SuggestionCheck, {{QStringLiteral("ignoreDnd"), true}});
}

void LoomraSDK::onSuggestionCheckReply(const Reply &reply)
{
    if (!reply.result.isObject()) {
        Q_EMIT error(QStringLiteral("Invalid workspace notification check response from bridge"));
        return;
    }
    handleSuggestionCheck(reply.object);
}

void LoomraSDK::handleSuggestionCheck(const QJsonObject &result)
{
    Q_EMIT workspaceSuggestionNotifyResult(result);
    const QJsonObject notification = result.value(QLatin1String("clientNotification")).toObject();
    const bool isDryRun = result.value(QLatin1String("reason")).toString() == QLatin1String("dry_run");
    if (result.value(QLatin1String("notified")).toBool() && !isDryRun && !notification.isEmpty()) {
        presentWorkspaceSuggestionNotification(notification);
    }
}

void LoomraSDK::presentWorkspaceSuggestionNotification(const QJsonObject &notification)
{
    const auto choose = [this, notification](const QString &actionId) {
        applyWorkspaceSuggestionChoice(notification, actionId);
    };
    if (SuggestionNotification::show(notification, this, choose) && SuggestionNotification::wantsInAppDialog()) {
        Q_EMIT workspaceSuggestionShowInAppDialog(
            QString::fromUtf8(QJsonDocument(notification).toJson(QJsonDocument::Compact)));
    }
}

void LoomraSDK::applyWorkspaceSuggestionAction(const QString &actionId, const QString &clientNotificationJson)
{
    const QJsonDocument document = QJsonDocument::fromJson(clientNotificationJson.toUtf8());
    if (document.isObject()) {
        applyWorkspaceSuggestionChoice(document.object(), actionId);
    }
}

void LoomraSDK::applyWorkspaceSuggestionChoice(const QJsonObject &notification, const QString &actionId)
{
    const QString suggestionId = notification.value(QLatin1String("suggestionId")).toString();
    const QJsonValue workspaceId = notification.value(QLatin1String("workspaceId"));
    if (actionId == QLatin1String("dismiss") && !suggestionId.isEmpty() && m_ready) {
        request(QStringLiteral("aiRuntimeDismissSuggestion_internal"),
                {{QStringLiteral("suggestionId"), suggestionId}});
    } else if (actionId == QLatin1String("prepare") && workspaceId.isDouble() && m_ready) {
        request(QStringLiteral("workspaceIntelPrepare_internal"),
                {{QStringLiteral("workspaceId"), workspaceId.toInt()}, {QStringLiteral("dryRun"), false}});
    } else if (actionId == QLatin1String("review")) {
        Q_EMIT workspaceSuggestionUserChoice(
            {{QStringLiteral("action"), QStringLiteral("review")}, {QStringLiteral("suggestionId"), suggestionId}});
    }
}

void LoomraSDK::onSuggestionPreparedReply(const Reply &reply)
{
    reportRefusal(reply.object);
    refreshWorkspaceIntelPanel();
}
