// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! The chat client as a controller sees it. It records calls and writes, such as "sendIntent(hello)" and
//! "inputMode = text", and emits only what a test makes it emit.
CallRecorder {
    id: bridge

    property string status: "idle"
    property bool isThinking: false
    property string activePhase: ""
    property string routedAgent: ""
    property int planStepIndex: -1
    property int planStepTotal: 0
    property string planStepCapability: ""
    property string planStepPhase: ""
    property string currentAgent: "auto"
    property string currentModel: ""
    property string inputMode: ""

    signal agentReplied(string response)
    signal structuredReplyReceived(string uiJson)
    signal errorOccurred(string error)
    signal usageReported(int inputTokens, int outputTokens)
    signal rephraseReady(string original, string rephrased)
    signal actionStarted(string actionName)
    signal planStepChanged()

    function sendIntent(text) { note("sendIntent", [text]); }
    function cancelRequest() { note("cancelRequest", []); }
    function rephraseText(text) { note("rephraseText", [text]); }
    function copyToClipboard(text) { note("copyToClipboard", [text]); }
    function handleUiAction(actionType, messageIndex, data) { note("handleUiAction", [actionType, messageIndex, data]); }
    function sendMessageFeedback(vote, messageIndex, messageText, userQuery) {
        note("sendMessageFeedback", [vote, messageIndex, messageText, userQuery]);
    }

    onCurrentAgentChanged: calls = calls.concat("currentAgent = " + currentAgent)
    onCurrentModelChanged: calls = calls.concat("currentModel = " + currentModel)
    onInputModeChanged: calls = calls.concat("inputMode = " + inputMode)
}
