// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../logic/Native.js" as Native

//! The voice functions of the bar: puts transcripts into the input, asks for confirmation and speaks replies.
Controller {
    id: voice

    readonly property var voiceBridgeObject: typeof voiceBridge !== "undefined" ? voiceBridge : null

    property bool voiceConfirmPending: false
    property string voiceConfirmText: ""
    readonly property int voiceConfirmTotal: voiceBridgeObject ? voiceBridgeObject.voiceConfirmDelaySec : 4
    property int voiceConfirmCountdown: voiceConfirmTotal
    property bool voiceRephrasing: false

    property Timer voiceConfirmTimer: Timer {
        objectName: "voiceConfirmTimer"
        interval: 1000
        repeat: true
        onTriggered: {
            voice.voiceConfirmCountdown -= 1;
            if (voice.voiceConfirmCountdown <= 0)
                voice.voiceConfirmSend();
        }
    }

    function endConfirmation() {
        voiceConfirmPending = false;
        voiceConfirmText = "";
        voiceRephrasing = false;
        voiceConfirmCountdown = voiceConfirmTotal;
    }

    //! Sends the text in the input. Intentional: attached files go only with a typed prompt.
    function voiceConfirmSend() {
        voiceConfirmTimer.stop();
        const text = bar.inputField.text.trim();
        if (text !== "") {
            bar.lastInputMode = "voice";
            bar.appendUserMessage(text);
            bar.scrollToBottom();
            bar.sendToBridge(text);
            bar.inputField.text = "";
        }
        endConfirmation();
    }

    function voiceConfirmCancel() {
        voiceConfirmTimer.stop();
        bar.inputField.text = "";
        endConfirmation();
    }

    //! Whether a microphone test is running, whose transcripts are no prompts.
    function isTested() {
        return voiceBridgeObject.batchSttMode || voiceBridgeObject.voiceTestActive;
    }

    function takeTranscript(text) {
        const input = bar.inputField;
        input.text = text;
        input.cursorPosition = input.length;
        // In compact mode the bubble keeps the focus. The input gets it when the window expands.
        if (!bar.compactMode)
            input.forceActiveFocus();
    }

    function speakReply(text) {
        if (voiceBridgeObject && voiceBridgeObject.ttsEnabled && voiceBridgeObject.ttsAvailable)
            Native.call(voiceBridgeObject, "speak", text);
    }

    Connections {
        target: voice.voiceBridgeObject

        function onTranscriptReady(text) {
            if (text !== "" && !voice.isTested())
                voice.takeTranscript(text);
        }
        //! Only logged: the user sees that the microphone button is idle again.
        function onErrorOccurred(error) {
            console.warn("[OmniBar] voice:", error);
        }
        //! The only way for the program to restore a minimised window.
        function onWakeWordActivated() {
            voice.bar.summon();
        }
    }
}
