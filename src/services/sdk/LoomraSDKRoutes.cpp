// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The table of replies. A new request needs a row here, a signal, and an operation in LoomraSDKOperations.cpp.

#include "LoomraSDKRoutes.h"

#include "CliModels.h"
#include "DebugEventLog.h"

namespace
{

template<typename... Values>
using Signal = void (LoomraSDK::*)(Values...);

//! Emits a string of the result.
auto text(const char *key, Signal<const QString &> signal)
{
    return [key = QLatin1String(key), signal](LoomraSDK &sdk, const auto &reply) {
        Q_EMIT(sdk.*signal)(reply.text(key));
    };
}

//! Emits an array of the result.
auto array(const char *key, Signal<const QJsonArray &> signal)
{
    return [key = QLatin1String(key), signal](LoomraSDK &sdk, const auto &reply) {
        Q_EMIT(sdk.*signal)(reply.array(key));
    };
}

//! Emits the whole object.
auto whole(Signal<const QJsonObject &> signal)
{
    return [signal](LoomraSDK &sdk, const auto &reply) { Q_EMIT(sdk.*signal)(reply.object); };
}

//! The same, but a result that isn't an object is an error.
auto strict(Signal<const QJsonObject &> signal)
{
    return [signal](LoomraSDK &sdk, const auto &reply) {
        if (reply.result.isObject()) {
            Q_EMIT(sdk.*signal)(reply.object);
        } else {
            Q_EMIT sdk.error(QStringLiteral("Invalid %1 response from bridge").arg(reply.label));
        }
    };
}

//! Refreshes what the request has changed.
auto then(void (LoomraSDK::*refresh)())
{
    return [refresh](LoomraSDK &sdk, const auto &) { (sdk.*refresh)(); };
}

//! Ignores the result.
void nothing(LoomraSDK &, const auto &)
{
}

} // namespace

const LoomraSDK::Route *LoomraSDK::routeOf(const QString &label)
{
    using Sdk = LoomraSDK;
    //! Emits the argument of the request, because the reply need not contain it.
    const auto kept = [](Signal<const QString &> signal) {
        return [signal](Sdk &sdk, const Reply &reply) { Q_EMIT(sdk.*signal)(sdk.takeKeptArgument(reply.id)); };
    };

    // Intentional: the two signals with a path emit an empty one and leave the kept path in the hash. Listeners
    // remember the path themselves.
    static const Route s_routes[] = {
        {QLatin1String("chat"), &Sdk::onChatReply},
        {QLatin1String("generateCode"), text("code", &Sdk::codeGenerated)},
        {QLatin1String("editCode"), text("code", &Sdk::codeEdited)},
        {QLatin1String("getFiles"), &Sdk::onGetFilesReply},
        {QLatin1String("readFile"),
         [](Sdk &sdk, const Reply &reply) {
             Q_EMIT sdk.fileContentReceived(QString(), reply.text(QLatin1String("content")));
         }},
        {QLatin1String("writeFile"), [](Sdk &sdk, const Reply &) { Q_EMIT sdk.fileWritten(QString()); }},
        {QLatin1String("listSessions"), &Sdk::onListSessionsReply},
        {QLatin1String("createSession"), &Sdk::onCreateSessionReply},
        {QLatin1String("switchSession"), &Sdk::onSwitchSessionReply},
        {QLatin1String("deleteSession"), &Sdk::onDeleteSessionReply},
        {QLatin1String("listModels"), &Sdk::onListModelsReply},
        {QLatin1String("checkFreeProviders"), whole(&Sdk::freeProvidersChecked)},
        {QLatin1String("getTokenStatus"), strict(&Sdk::tokenStatusReceived)},
        {QLatin1String("setProviderToken"), strict(&Sdk::providerTokenUpdated)},
        {QLatin1String("loadMessages"), array("messages", &Sdk::messagesLoaded)},
        {QLatin1String("listAgents"), array("agents", &Sdk::agentsListed)},
        {QLatin1String("renameSession"),
         [](Sdk &sdk, const Reply &reply) {
             Q_EMIT sdk.sessionRenamed(reply.text(QLatin1String("sessionId")), reply.text(QLatin1String("newName")));
         }},
        {QLatin1String("auditListRecent"), array("actions", &Sdk::auditRecentListed)},
        {QLatin1String("auditRevert"), kept(&Sdk::auditReverted)},
        {QLatin1String("automationList"), array("automations", &Sdk::automationListed)},
        {QLatin1String("automationCreate"), text("id", &Sdk::automationCreated)},
        {QLatin1String("automationUpdate"), kept(&Sdk::automationUpdated)},
        {QLatin1String("automationDelete"), kept(&Sdk::automationDeleted)},
        {QLatin1String("automationPause"), kept(&Sdk::automationUpdated)},
        {QLatin1String("reminderList"), array("reminders", &Sdk::remindersListed)},
        {QLatin1String("reminderCancel"), &Sdk::onReminderCancelReply},
        {QLatin1String("reminderSchedule"), [](Sdk &sdk, const Reply &) { Q_EMIT sdk.remindersListed({}); }},
        {QLatin1String("getDesktopState"), whole(&Sdk::desktopStateReceived)},
        {QLatin1String("getSystemReport"), whole(&Sdk::systemReportReceived)},
        {QLatin1String("getQuickStatus"), whole(&Sdk::quickStatusReceived)},
        {QLatin1String("getPowerProfile"), whole(&Sdk::powerProfileReceived)},
        {QLatin1String("getAppLogSummary"), whole(&Sdk::appLogSummaryReceived)},
        {QLatin1String("getKdeLogs"), whole(&Sdk::kdeLogsReceived)},
        {QLatin1String("getAppMetrics"), whole(&Sdk::appMetricsReceived)},
        {QLatin1String("getServiceHealth"), whole(&Sdk::serviceHealthReceived)},
        {QLatin1String("getSystemDashboard"), whole(&Sdk::systemDashboardReceived)},
        {QLatin1String("ping"), &Sdk::onHealthReply},
        {QLatin1String("health"), &Sdk::onHealthReply},
        {QLatin1String("getCapabilities"), &Sdk::onCapabilitiesReply},
        {QLatin1String("workspaceIntelGetSettings_panel"), &Sdk::onWorkspaceIntelSettingsReply},
        {QLatin1String("workspaceIntelGetDwellSummary_panel"), &Sdk::onDwellSummaryReply},
        {QLatin1String("workspaceIntelSetSettings_obs"), then(&Sdk::refreshWorkspaceIntelPanel)},
        {QLatin1String("workspaceIntelListApproved_templates"), array("workspaces", &Sdk::workspaceTemplatesListed)},
        {QLatin1String("workspaceIntelSetTemplateEnabled_refresh"), then(&Sdk::refreshWorkspaceTemplates)},
        {QLatin1String("workspaceIntelPrepare_template"), &Sdk::onTemplatePreparedReply},
        {QLatin1String("aiRuntimeGetStatus_panel"), whole(&Sdk::aiRuntimePanelUpdated)},
        {QLatin1String("aiRuntimeSetSetting_refresh"), then(&Sdk::refreshAiRuntimePanel)},
        {QLatin1String("workspaceRuntimeGetHealth_panel"), whole(&Sdk::runtimeHealthUpdated)},
        {QLatin1String("workspaceRuntimeListJobs_panel"), array("jobs", &Sdk::runtimeJobsUpdated)},
        {SuggestionCheck, &Sdk::onSuggestionCheckReply},
        {QLatin1String("aiRuntimeDismissSuggestion_internal"), then(&Sdk::refreshAiRuntimePanel)},
        {QLatin1String("aiRuntimeClearDismissedSuggestions_refresh"), then(&Sdk::refreshAiRuntimePanel)},
        {QLatin1String("workspaceIntelPrepare_internal"), &Sdk::onSuggestionPreparedReply},
        {QLatin1String("getPlan"), strict(&Sdk::planReceived)},
        {QLatin1String("executePlan"), strict(&Sdk::planExecuted)},
        {QLatin1String("emergencyStop"), &nothing<Reply>},
        {QLatin1String("emergencyResume"), &nothing<Reply>},
        {QLatin1String("getDeniedPermissions"), array("denied", &Sdk::deniedPermissionsReceived)},
    };
    for (const Route &route : s_routes) {
        if (label == route.label) {
            return &route;
        }
    }
    return nullptr;
}

void LoomraSDK::onChatReply(const Reply &reply)
{
    const QString sessionId = reply.text(QLatin1String("sessionId"));
    if (!sessionId.isEmpty() && sessionId != m_currentSessionId) {
        setCurrentSessionId(sessionId);
    }
    Q_EMIT chatResponse(reply.text(QLatin1String("response")));
}

void LoomraSDK::onGetFilesReply(const Reply &reply)
{
    QStringList files;
    const QJsonArray entries = reply.array(QLatin1String("files"));
    for (const QJsonValue &entry : entries) {
        files.append(entry.toString());
    }
    Q_EMIT filesReceived(files);
}

void LoomraSDK::onListSessionsReply(const Reply &reply)
{
    const QJsonArray sessions = reply.array(QLatin1String("sessions"));
    logListing("listSessions response", "sessionCount", sessions.size(), reply.id);
    Q_EMIT sessionsListed(sessions);
}

void LoomraSDK::onCreateSessionReply(const Reply &reply)
{
    const QString sessionId = reply.text(QLatin1String("sessionId"));
    setCurrentSessionId(sessionId);
    Q_EMIT sessionCreated(sessionId);
}

void LoomraSDK::onSwitchSessionReply(const Reply &reply)
{
    const QString sessionId = reply.text(QLatin1String("sessionId"));
    setCurrentSessionId(sessionId);
    Q_EMIT sessionSwitched(sessionId);
}

void LoomraSDK::onDeleteSessionReply(const Reply &reply)
{
    const QString sessionId = reply.text(QLatin1String("sessionId"));
    if (sessionId == m_currentSessionId) {
        setCurrentSessionId(QString());
    }
    Q_EMIT sessionDeleted(sessionId);
}

void LoomraSDK::onListModelsReply(const Reply &reply)
{
    const QJsonArray models = CliModels::merge(reply.array(QLatin1String("models")), CliModels::list());
    logListing("listModels response", "modelCount", models.size(), reply.id);
    Q_EMIT modelsListed(models);
}

void LoomraSDK::onReminderCancelReply(const Reply &reply)
{
    const QString kept = takeKeptArgument(reply.id);
    const QString id = reply.text(QLatin1String("id"));
    Q_EMIT reminderCancelled(id.isEmpty() ? kept : id);
}

void LoomraSDK::onHealthReply(const Reply &reply)
{
    const QJsonValue value = reply.object.value(QLatin1String("executorPathEnabled"));
    if (value.isUndefined() || value.toBool() == m_executorPathEnabled) {
        return;
    }
    // The bridge reports its state, so that neither the environment nor the child needs to change.
    m_executorPathEnabled = value.toBool();
    Q_EMIT executorPathEnabledChanged();
}
