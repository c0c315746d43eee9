// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! The OmniBar as a controller sees it: the state that controllers read from each other, and a record of the calls.
//! Translated texts are in angle brackets.
CallRecorder {
    id: bar

    property var bridge: null
    property var sdk: null
    property var config: null
    property string bridgeStatus: bridge ? bridge.status : "disconnected"

    readonly property QtObject inputField: QtObject {
        property string text: ""
        readonly property int length: text.length
        property int cursorPosition: 0
        property bool visible: true

        signal accepted()

        function forceActiveFocus() { bar.note("inputField.forceActiveFocus", []); }
    }
    readonly property QtObject appearanceStore: QtObject {
        property bool lightChrome: false
        property bool translucentBackground: false
    }

    property int barHeight: 56
    property int bubbleSize: 56
    property int bubbleMargin: 20
    property int chatMinHeight: 260
    property int chatPanelBottomMargin: 10
    property int chatTopSafePadding: 24
    property bool active: true
    property real x: -1
    property real y: -1

    property ListModel chatModel: ListModel {}
    property string lastInputMode: "text"
    property string wiNotifyBarLine: ""
    property string modelsStatusMessage: ""
    property bool settingsPanelOpen: false
    property bool voiceConfirmPending: false
    property bool compactMode: false
    property bool slashMenuVisible: false
    property bool slashSessionPopupVisible: false
    property string currentModelId: ""
    property var sessionsList: []
    property bool sessionsLoading: false
    property bool workspaceSuggestionDialogOpen: false
    property bool suggestionsShown: false
    property bool planCardShown: false
    property bool undoShown: false
    property var activeFocusItem: inputField

    signal inputEdited()

    //! What the functions of these names return.
    readonly property QtObject answers: QtObject {
        property string chosenSlashCommand: ""
        property bool tryHandleSlashCommand: false
        property string takeFileContext: ""
        property bool isQueryProcessing: false
        property var latestTurn: []
        property var lastText: ({})
    }

    function tr(text) { return "<" + text + ">"; }

    function chosenSlashCommand() { return answers.chosenSlashCommand; }
    function tryHandleSlashCommand(text) {
        note("tryHandleSlashCommand", [text]);
        return answers.tryHandleSlashCommand;
    }
    function takeFileContext() { return answers.takeFileContext; }
    function isQueryProcessing() { return answers.isQueryProcessing; }
    function latestTurn() { return answers.latestTurn; }
    function lastText(role) { return answers.lastText[role] || ""; }

    function appendAssistantText(text) { note("appendAssistantText", [text]); }
    function appendUserMessage(msg) { note("appendUserMessage", [msg]); }
    function appendSystemMessage(msg) { note("appendSystemMessage", [msg]); }
    function clearConversation() { note("clearConversation", []); }
    function openSessions(nameOrId) { note("openSessions", [nameOrId]); }
    function sessionSwitchTo(id) { note("sessionSwitchTo", [id]); }
    function sessionDelete(id) { note("sessionDelete", [id]); }
    function chooseFile() { note("chooseFile", []); }
    function detachFiles() { note("detachFiles", []); }
    function scrollToBottom() { note("scrollToBottom", []); }
    function sendToBridge(prompt) { note("sendToBridge", [prompt]); }
    function refreshResponseSuggestions(followUps) { note("refreshResponseSuggestions", [JSON.stringify(followUps)]); }
    function speakReply(text) { note("speakReply", [text]); }
    function collapseForAction() { note("collapseForAction", []); }
    function voiceConfirmSend() { note("voiceConfirmSend", []); }
    function voiceConfirmCancel() { note("voiceConfirmCancel", []); }
    function stopActiveQuery() { note("stopActiveQuery", []); }
    function closeWorkspaceSuggestionDialog() { note("closeWorkspaceSuggestionDialog", []); }
    function announce(text) { note("announce", [text]); }
    function summon() { note("summon", []); }
    function show() { note("show", []); }
    function showMinimized() { note("showMinimized", []); }
    function raise() { note("raise", []); }
    function requestActivate() { note("requestActivate", []); }
    function focusBubble() { note("focusBubble", []); }
    function selectSettingsModel(model) { note("selectSettingsModel", [model.fullId]); }
    function refreshModels() { note("refreshModels", []); }
    function syncSettingsCombos() { note("syncSettingsCombos", []); }
    function refreshRuntimePanels() { note("refreshRuntimePanels", []); }
}
