// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../logic/Native.js" as Native

//! Workspace templates and suggestions.
Controller {
    id: workspace

    //! A line of text below the bar, "" for none.
    property string wiNotifyBarLine: ""
    //! The suggestion dialog, an object with "opened" and "close()". Null before it is created.
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

    //! Loads the initial data from the bridge at startup.
    function loadFromBridge() {
        const sdk = bar.sdk;
        if (!sdk || !sdk.ready)
            return;
        bar.refreshModels();
        if (sdk.workspaceIntelAvailable)
            Native.call(sdk, "refreshWorkspaceTemplates");
    }

    //! Without the SDK client there is no catalogue. Reading the stored one is not implemented yet.
    function loadWorkspaceTemplateCatalogFromPrefs() {
        if (!bar.sdk)
            return;
    }
}
