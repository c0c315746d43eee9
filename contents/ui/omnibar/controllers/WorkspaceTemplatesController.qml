// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../../../../components/logic/Native.js" as Native
import "../logic/WorkspaceTemplates.js" as WorkspaceTemplates

//! The workspace templates: the user's preferences, the bridge's workspaces, and preparing them. Preparing acts on the
//! desktop, so the switch for desktop tools is here too.
Controller {
    id: templates

    //! Rows {id, name, description, enabled, workspaceId}, all off.
    readonly property var workspaceTemplateCatalogBase: WorkspaceTemplates.base(bar.tr)
    //! The same rows, with preferences and workspaces.
    property var workspaceTemplateCatalog: workspaceTemplateCatalogBase
    //! How preparing a template went.
    property string workspaceTemplateStatusMessage: ""
    //! A template is being prepared.
    property bool preparing: false
    //! Whether the assistant may act on the desktop.
    readonly property bool toolsEnabled: Boolean(bar.sdk && bar.sdk.executorPathEnabled)

    //! By id, how often a workspace was to be enabled and still is not. Each request brings a new list, so without a
    //! limit a bridge that never enables it would be asked without end.
    property var syncAttempts: ({})
    readonly property int maxSyncAttempts: 3

    //! Whether the bridge has workspaces. A function, because a binding may be older than the signal that asks for it.
    function isAvailable() {
        return isReady() && bar.sdk.workspaceIntelAvailable;
    }

    function isPreferred(id) {
        return Boolean(Native.call(bar.config, "isWorkspaceTemplateSlugEnabled", id));
    }

    function setToolsEnabled(on) {
        if (bar.sdk)
            bar.sdk.executorPathEnabled = on;
    }

    function loadWorkspaceTemplateCatalogFromPrefs() {
        workspaceTemplateCatalog = WorkspaceTemplates.preferred(workspaceTemplateCatalogBase, isPreferred);
    }

    function mergeWorkspaceTemplatesFromBridge(workspaces) {
        workspaceTemplateCatalog = WorkspaceTemplates.merged(workspaceTemplateCatalogBase, workspaces, isPreferred);
        syncWorkspaceTemplatePrefsToBridge();
    }

    //! Enables the workspaces that the user wants on. Intentional: a preference never disables a workspace, because
    //! another program may have enabled it.
    function syncWorkspaceTemplatePrefsToBridge() {
        if (!isAvailable())
            return;
        const rows = WorkspaceTemplates.toEnable(workspaceTemplateCatalog, isPreferred);
        const attempts = {};
        rows.forEach(row => {
            attempts[row.id] = (syncAttempts[row.id] || 0) + 1;
            if (attempts[row.id] <= maxSyncAttempts)
                Native.call(bar.sdk, "setWorkspaceTemplateEnabled", row.id, true, row.workspaceId);
        });
        syncAttempts = attempts;
    }

    function setWorkspaceTemplateEnabled(templateId, on) {
        const row = WorkspaceTemplates.find(workspaceTemplateCatalog, templateId);
        if (!row)
            return;
        Native.call(bar.config, "setWorkspaceTemplateSlugEnabled", templateId, on);
        Native.call(bar.config, "save");
        syncAttempts = {};
        workspaceTemplateCatalog = WorkspaceTemplates.withEnabled(workspaceTemplateCatalog, templateId, on);
        if (isAvailable())
            Native.call(bar.sdk, "setWorkspaceTemplateEnabled", templateId, on, row.workspaceId);
    }

    //! The user has turned a template on or off.
    function switchWorkspaceTemplate(templateId, on) {
        // Intentional: a message of the models, which another tab shows. The Prepare button beside the switch, which
        // stays disabled, is the hint here.
        if (on && !toolsEnabled)
            bar.modelsStatusMessage = bar.tr("Turn on desktop actions to apply templates.");
        setWorkspaceTemplateEnabled(templateId, on);
    }

    function prepareWorkspaceTemplate(templateId) {
        const row = WorkspaceTemplates.find(workspaceTemplateCatalog, templateId);
        if (!row)
            return;
        const refusal = WorkspaceTemplates.refusal(row, { "available": isAvailable(), "toolsEnabled": toolsEnabled }, bar.tr);
        workspaceTemplateStatusMessage = refusal || WorkspaceTemplates.preparingText(row, bar.tr);
        preparing = refusal === "";
        // The bridge finds the template by its id; the message, which it may log, is not translated.
        if (preparing)
            Native.call(bar.sdk, "prepareWorkspaceTemplate", row.workspaceId, "prepare " + templateId);
    }

    //! Replaces the message about the preparation, which would stay for good. If the error belongs to another request,
    //! the result still comes.
    function giveUp(text) {
        if (!preparing)
            return;
        preparing = false;
        workspaceTemplateStatusMessage = text;
    }

    Connections {
        target: templates.bar.sdk

        function onError(error) {
            templates.giveUp(templates.errorText(error, templates.bar.tr("SDK is connecting...")));
        }
        function onReadyChanged() {
            templates.syncAttempts = {};
            // A lost connection takes the open request with it.
            templates.giveUp(templates.bar.tr("SDK is connecting..."));
        }
        function onWorkspaceIntelAvailableChanged() {
            if (templates.isAvailable())
                Native.call(templates.bar.sdk, "refreshWorkspaceTemplates");
        }
        function onWorkspaceTemplatesListed(workspaces) {
            templates.mergeWorkspaceTemplatesFromBridge(workspaces);
        }
        function onWorkspaceTemplatePrepareFinished(result) {
            templates.preparing = false;
            const text = WorkspaceTemplates.preparedText(result, templates.bar.tr);
            if (text !== "")
                templates.workspaceTemplateStatusMessage = text;
        }
    }
}
