// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../../../../components/logic/Native.js" as Native
import "../logic/SuggestionNotice.js" as SuggestionNotice

//! Workspace suggestions: the result of a check, in the settings sheet and for a moment below the bar, and the dialog
//! with a suggestion.
Controller {
    id: notice

    //! The result of the last check, for the settings sheet.
    property string wiSuggestionNotifyStatus: ""
    //! A request of the user is open.
    property bool requested: false
    //! A line of text below the bar, "" for none.
    property string wiNotifyBarLine: ""
    //! The notification in the dialog, as received and parsed.
    property string workspaceSuggestionDialogJson: ""
    property var workspaceSuggestionDialogData: ({})
    //! The dialog is waiting for the user. It isn't visible while the window is a bubble.
    property bool workspaceSuggestionDialogOpen: false

    property Timer wiNotifyBarClearTimer: Timer {
        objectName: "wiNotifyBarClearTimer"
        interval: 15000
        onTriggered: notice.wiNotifyBarLine = ""
    }

    function checkWorkspaceSuggestion() {
        request("checkWorkspaceSuggestionNotify", bar.tr("Running analysis…"));
    }

    function resetDismissedSuggestions() {
        request("clearAiRuntimeDismissedSuggestions", bar.tr("Dismissed prompts cleared — try Check workspace suggestion again."));
        // No reply confirms it. Only a refusal is reported, and at once.
        requested = false;
    }

    function request(name, text) {
        wiSuggestionNotifyStatus = text;
        requested = true;
        Native.call(bar.sdk, name);
    }

    //! Replaces the message about an open request, which would stay for good. If the error belongs to another request,
    //! the result still comes.
    function giveUp(text) {
        if (!requested)
            return;
        requested = false;
        wiSuggestionNotifyStatus = text;
    }

    function showNotifyResult(payload) {
        requested = false;
        wiSuggestionNotifyStatus = SuggestionNotice.statusText(payload, bar.tr);
        wiNotifyBarLine = SuggestionNotice.barLine(wiSuggestionNotifyStatus);
        wiNotifyBarClearTimer.restart();
    }

    function reviewSuggestion() {
        bar.settingsPanelOpen = true;
        // Intentional: no heading of the sheet is called so. The sections about suggestions are on the Assistant tab.
        wiSuggestionNotifyStatus = bar.tr("Review this suggestion in Settings → Workspace learning.");
        Qt.callLater(bar.refreshRuntimePanels);
    }

    //! @param json what workspaceSuggestionShowInAppDialog() passes
    function openWorkspaceSuggestionDialog(json) {
        if (json === "")
            return;
        try {
            workspaceSuggestionDialogData = SuggestionNotice.parsed(json);
        } catch (error) {
            console.warn("[OmniBar] workspace suggestion dialog JSON parse failed:", error);
            return;
        }
        workspaceSuggestionDialogJson = json;
        workspaceSuggestionDialogOpen = true;
    }

    function closeWorkspaceSuggestionDialog() {
        workspaceSuggestionDialogOpen = false;
    }

    //! The user has chosen an action of the dialog.
    function applyWorkspaceSuggestion(actionId) {
        Native.call(bar.sdk, "applyWorkspaceSuggestionAction", actionId, workspaceSuggestionDialogJson);
        closeWorkspaceSuggestionDialog();
    }

    Connections {
        target: notice.bar.sdk

        function onError(error) {
            notice.giveUp(notice.errorText(error, notice.bar.tr("SDK is connecting...")));
        }
        function onReadyChanged() {
            // A lost connection takes the open request with it.
            notice.giveUp(notice.bar.tr("SDK is connecting..."));
        }
        function onWorkspaceSuggestionNotifyResult(payload) {
            notice.showNotifyResult(payload);
        }
        function onWorkspaceSuggestionUserChoice(payload) {
            if (payload.action === "review")
                notice.reviewSuggestion();
        }
        function onWorkspaceSuggestionShowInAppDialog(clientNotificationJson) {
            notice.openWorkspaceSuggestionDialog(clientNotificationJson);
        }
    }
}
