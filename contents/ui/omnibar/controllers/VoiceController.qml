// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../logic/Native.js" as Native

//! What the bar knows of the voice path: a transcript in the input, where it may wait to be confirmed, and spoken replies.
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

    //! Sends what stands in the input. Attached files wait for a typed prompt.
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

    //! A test of the microphone keeps its transcripts to itself.
    function isTested() {
        return voiceBridgeObject.batchSttMode || voiceBridgeObject.voiceTestActive;
    }

    function takeTranscript(text) {
        const input = bar.inputField;
        input.text = text;
        input.cursorPosition = input.length;
        // The bubble keeps the keys; the input has them again as soon as it is in sight.
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
        //! The user sees the microphone return to idle.
        function onErrorOccurred(error) {
            console.warn("[OmniBar] voice:", error);
        }
        //! The one way to bring a minimised window back from inside the program.
        function onWakeWordActivated() {
            voice.bar.summon();
        }
    }
}
