// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! The chat client as a controller sees it. It notes what is asked of it, and says only what a test lets it say.
QtObject {
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

    //! Calls and writes in their order, such as "sendIntent(hello)" and "inputMode = text".
    property var calls: []

    signal agentReplied(string response)
    signal structuredReplyReceived(string uiJson)
    signal errorOccurred(string error)
    signal usageReported(int inputTokens, int outputTokens)
    signal actionStarted(string actionName)
    signal planStepChanged()

    function sendIntent(text) { note("sendIntent", [text]); }
    function cancelRequest() { note("cancelRequest", []); }
    function copyToClipboard(text) { note("copyToClipboard", [text]); }
    function sendMessageFeedback(vote, messageIndex, messageText, userQuery) {
        note("sendMessageFeedback", [vote, messageIndex, messageText, userQuery]);
    }

    function note(name, values) {
        calls = calls.concat(name + "(" + values.join(", ") + ")");
    }

    //! What was noted so far, which is then forgotten.
    function takeCalls() {
        const taken = calls;
        calls = [];
        return taken;
    }

    onCurrentAgentChanged: calls = calls.concat("currentAgent = " + currentAgent)
    onCurrentModelChanged: calls = calls.concat("currentModel = " + currentModel)
    onInputModeChanged: calls = calls.concat("inputMode = " + inputMode)
}
