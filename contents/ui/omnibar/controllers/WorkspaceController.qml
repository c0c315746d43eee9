// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../logic/Native.js" as Native

//! Workspace templates and suggestions.
Controller {
    id: workspace

    //! One line under the bar.
    property string wiNotifyBarLine: ""
    //! The suggestion dialog, an object with "opened" and "close()". Null until there is one.
    property var suggestionDialog: null
    readonly property bool workspaceSuggestionDialogOpen: suggestionDialog ? suggestionDialog.opened : false

    function closeWorkspaceSuggestionDialog() {
        suggestionDialog.close();
    }

    function refreshRuntimePanels() {
        const sdk = bar.sdk;
        if (!sdk || !sdk.ready)
            return;
        if (sdk.workspaceIntelAvailable) {
            Native.call(sdk, "refreshWorkspaceTemplates");
            Native.call(sdk, "refreshWorkspaceIntelPanel");
        }
        if (sdk.aiRuntimeAvailable)
            Native.call(sdk, "refreshAiRuntimePanel");
        Native.call(sdk, "refreshRuntimeHealth");
        Native.call(sdk, "refreshRuntimeJobs");
        Native.call(sdk, "refreshPowerProfile");
        Native.call(sdk, "reminderList");
    }

    //! At start, what the bridge knows already.
    function loadFromBridge() {
        const sdk = bar.sdk;
        if (!sdk || !sdk.ready)
            return;
        bar.refreshModels();
        if (sdk.workspaceIntelAvailable)
            Native.call(sdk, "refreshWorkspaceTemplates");
    }

    //! The catalogue of templates is the client's to fill: without it there is none.
    function loadWorkspaceTemplateCatalogFromPrefs() {
        if (!bar.sdk)
            return;
    }
}
