// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! The SDK client as a controller sees it. It records calls, with lists as JSON, and emits only what a test makes it emit.
CallRecorder {
    id: sdk

    property bool ready: true
    property bool executorPathEnabled: true
    property bool workspaceIntelAvailable: false
    property bool aiRuntimeAvailable: false
    property string currentModel: ""
    property string currentSessionId: ""
    property bool workspaceSuggestionReminderEnabled: false
    property int workspaceSuggestionReminderMinutes: 5

    //! What the functions of these names return.
    readonly property QtObject answers: QtObject {
        property string eventLogDir: ""
        //! If not empty, some requests emit it as an error at once, like those of a client that isn't ready.
        property string refusal: ""

        function refuse() {
            if (refusal !== "")
                sdk.error(refusal);
        }
    }

    signal planReceived(var payload)
    signal planExecuted(var payload)
    signal error(string error)
    signal modelsListed(var models)
    signal freeProvidersChecked(var result)
    signal sessionsListed(var sessions)
    signal sessionCreated(string sessionId)
    signal sessionSwitched(string sessionId)
    signal sessionRenamed(string sessionId, string newName)
    signal sessionDeleted(string sessionId)
    signal workspaceIntelPanelUpdated(var payload)
    signal workspaceTemplatesListed(var workspaces)
    signal workspaceTemplatePrepareFinished(var result)
    signal aiRuntimePanelUpdated(var payload)
    signal workspaceSuggestionNotifyResult(var payload)
    signal workspaceSuggestionUserChoice(var payload)
    signal workspaceSuggestionShowInAppDialog(string clientNotificationJson)
    signal systemDashboardReceived(var dashboard)
    signal systemReportReceived(var report)
    signal quickStatusReceived(var status)
    signal appLogSummaryReceived(var summary)
    signal appMetricsReceived(var metrics)
    signal serviceHealthReceived(var health)
    signal powerProfileReceived(var profile)
    signal runtimeHealthUpdated(var payload)
    signal runtimeJobsUpdated(var jobs)
    signal remindersListed(var reminders)
    signal reminderCancelled(string id)

    function getPlan(message) { note("getPlan", [message]); }
    function executePlan(steps) { note("executePlan", [JSON.stringify(steps)]); }
    function auditRevert(actionId) { note("auditRevert", [actionId]); }
    function listModels() { note("listModels", []); }
    function checkFreeProviders() { note("checkFreeProviders", []); }
    function getTokenStatus(provider) { note("getTokenStatus", [provider]); }
    function setProviderToken(provider, token) { note("setProviderToken", [provider, token]); }
    function listSessions() { note("listSessions", []); }
    function createSession() { note("createSession", []); }
    function switchSession(sessionId) {
        note("switchSession", [sessionId]);
        answers.refuse();
    }
    function renameSession(sessionId, newName) { note("renameSession", [sessionId, newName]); }
    function deleteSession(sessionId) { note("deleteSession", [sessionId]); }
    function loadMessages(sessionId) { note("loadMessages", [sessionId]); }
    function refreshWorkspaceTemplates() { note("refreshWorkspaceTemplates", []); }
    function refreshWorkspaceIntelPanel() { note("refreshWorkspaceIntelPanel", []); }
    function refreshAiRuntimePanel() { note("refreshAiRuntimePanel", []); }
    function refreshRuntimeHealth() { note("refreshRuntimeHealth", []); }
    function refreshRuntimeJobs() { note("refreshRuntimeJobs", []); }
    function refreshPowerProfile() { note("refreshPowerProfile", []); }
    function reminderList() { note("reminderList", []); }
    function setWorkspaceTemplateEnabled(slug, enabled, workspaceId) {
        note("setWorkspaceTemplateEnabled", [slug, enabled, workspaceId]);
    }
    function prepareWorkspaceTemplate(workspaceId, message) { note("prepareWorkspaceTemplate", [workspaceId, message]); }
    function setWorkspaceIntelObservationEnabled(enabled) { note("setWorkspaceIntelObservationEnabled", [enabled]); }
    function setAiRuntimeEnabled(enabled) { note("setAiRuntimeEnabled", [enabled]); }
    function setAiRuntimeExecutionGating(mode) { note("setAiRuntimeExecutionGating", [mode]); }
    function checkWorkspaceSuggestionNotify() {
        note("checkWorkspaceSuggestionNotify", []);
        answers.refuse();
    }
    function clearAiRuntimeDismissedSuggestions() {
        note("clearAiRuntimeDismissedSuggestions", []);
        answers.refuse();
    }
    function applyWorkspaceSuggestionAction(actionId, clientNotificationJson) {
        note("applyWorkspaceSuggestionAction", [actionId, clientNotificationJson]);
    }
    function getSystemDashboard() { note("getSystemDashboard", []); }
    function eventLogDir() { return answers.eventLogDir; }
    function reconnectBridge() { note("reconnectBridge", []); }
}
