// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../../../../components/logic/Native.js" as Native
import "../logic/VoiceText.js" as VoiceText

//! The voice functions of the bar: puts transcripts into the input, asks for confirmation and speaks replies.
Controller {
    id: voice

    readonly property var voiceBridgeObject: typeof voiceBridge !== "undefined" ? voiceBridge : null
    //! Whether transcripts collect in the input until the user sends them. Otherwise they are sent after a countdown.
    readonly property bool voiceManualSubmit: voiceBridgeObject ? voiceBridgeObject.voiceSubmitMode === "manual" : false

    //! Whether a transcript in the input waits to be sent or discarded.
    property bool voiceConfirmPending: false
    property string voiceConfirmText: ""
    //! Duration of the countdown in seconds.
    readonly property int voiceConfirmTotal: voiceBridgeObject ? voiceBridgeObject.voiceConfirmDelaySec : 4
    //! Seconds left; 0 after the user has edited the transcript.
    property int voiceConfirmCountdown: voiceConfirmTotal
    property bool voiceRephrasing: false
    //! Manual mode: the text before the next utterance.
    property string voiceComposeBase: ""
    //! A request to rephrase may still be answered. Outlives voiceRephrasing, which an unrelated error ends.
    property bool rephraseAwaited: false
    //! The reply to the last request to rephrase is of no use any more.
    property bool rephraseOutdated: false
    //! The state before the last change signal.
    property bool wasListening: false
    //! The last utterance was begun by a voice test. Its transcript may arrive after the test has ended.
    property bool utteranceIsTest: false

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

    // ---- The input

    function writeInput(text) {
        bar.inputField.text = text;
        bar.inputField.cursorPosition = bar.inputField.length;
    }

    function focusInput() {
        // In compact mode the bubble keeps the focus. The input gets it when the window expands.
        if (!bar.compactMode)
            bar.inputField.forceActiveFocus();
    }

    function voiceJoinText(base, segment) {
        return VoiceText.joined(base, segment);
    }

    function voiceApplyComposeField(partialOrFinal) {
        writeInput(voiceJoinText(voiceComposeBase, partialOrFinal));
    }

    // ---- Confirmation

    function beginConfirmation(text) {
        abandonRephrase();
        voiceConfirmTimer.stop();
        writeInput(text);
        if (voiceConfirmTotal <= 0) {
            voiceConfirmSend();
            return;
        }
        voiceConfirmText = text;
        voiceConfirmCountdown = voiceConfirmTotal;
        voiceConfirmPending = true;
        voiceConfirmTimer.start();
    }

    function endConfirmation() {
        abandonRephrase();
        voiceConfirmPending = false;
        voiceConfirmText = "";
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

    // ---- Rephrasing

    function voiceRephrase() {
        if (!voiceConfirmPending || voiceRephrasing)
            return;
        voiceConfirmTimer.stop();
        const text = bar.inputField.text.trim();
        // An empty text would get no reply.
        if (text === "" || !Native.offers(bar.bridge, "rephraseText"))
            return;
        rephraseOutdated = false;
        rephraseAwaited = true;
        voiceRephrasing = true;
        bar.bridge.rephraseText(text);
    }

    //! Call when the text that is being rephrased changes: the reply would overwrite the new one.
    function abandonRephrase() {
        rephraseOutdated = rephraseOutdated || rephraseAwaited;
        voiceRephrasing = false;
    }

    //! Without a usable result the countdown stays halted, so that the user decides. The focus stays where it is: the
    //! user may have moved it meanwhile, such as to Cancel.
    function takeRephrased(text) {
        rephraseAwaited = false;
        voiceRephrasing = false;
        if (!rephraseOutdated && voiceConfirmPending && text.trim() !== "")
            beginConfirmation(text);
    }

    // ---- The voice path

    //! Whether a voice test is running, whose transcripts are no prompts.
    function isTested() {
        return voiceBridgeObject.batchSttMode || voiceBridgeObject.voiceTestActive;
    }

    function beginUtterance() {
        if (voiceManualSubmit) {
            voiceComposeBase = bar.inputField.text.trim();
            if (voiceComposeBase !== "")
                voiceApplyComposeField("");
        } else {
            bar.inputField.text = "";
            voiceComposeBase = "";
        }
    }

    function takePartial(text) {
        if (voiceManualSubmit)
            voiceApplyComposeField(text);
        else
            bar.inputField.text = text;
    }

    function takeTranscript(text) {
        if (voiceManualSubmit) {
            voiceApplyComposeField(text);
            voiceComposeBase = bar.inputField.text.trim();
            focusInput();
        } else if (voiceConfirmPending && VoiceText.isCancellation(text)) {
            voiceConfirmCancel();
        } else {
            focusInput();
            beginConfirmation(text);
        }
    }

    function speakReply(text) {
        if (voiceBridgeObject && voiceBridgeObject.ttsEnabled && voiceBridgeObject.ttsAvailable)
            Native.call(voiceBridgeObject, "speak", text);
    }

    Connections {
        target: voice.voiceBridgeObject

        function onListeningChanged() {
            const begins = voice.voiceBridgeObject.isListening;
            // The end of a cancelled capture is reported twice.
            if (begins === voice.wasListening)
                return;
            voice.wasListening = begins;
            if (begins)
                voice.utteranceIsTest = voice.isTested();
            if (voice.utteranceIsTest || voice.isTested())
                return;
            if (begins)
                voice.beginUtterance();
            voice.bar.announce(VoiceText.listening(begins, voice.bar.tr));
        }
        function onPartialTranscriptChanged() {
            const path = voice.voiceBridgeObject;
            if (path.isListening && path.partialTranscript !== "" && !voice.isTested())
                voice.takePartial(path.partialTranscript);
        }
        function onTranscriptReady(text) {
            if (text === "" || voice.utteranceIsTest || voice.isTested())
                return;
            voice.bar.announce(VoiceText.understood(text, voice.bar.tr));
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

    Connections {
        target: voice.bar.bridge
        ignoreUnknownSignals: true // a chat client that can't rephrase

        function onRephraseReady(original, rephrased) {
            voice.takeRephrased(rephrased);
        }
        //! It may be the error of the request to rephrase, which then gets no reply. A reply that comes anyway is used.
        function onErrorOccurred() {
            voice.voiceRephrasing = false;
        }
    }

    Connections {
        target: voice.bar

        //! The user takes over: from here on only they end the confirmation.
        function onInputEdited() {
            if (voice.voiceConfirmPending) {
                voice.voiceConfirmTimer.stop();
                voice.voiceConfirmCountdown = 0;
                voice.abandonRephrase();
            } else if (voice.voiceManualSubmit && voice.voiceBridgeObject.partialTranscript === "") {
                // Typed while an utterance is being transcribed.
                voice.voiceComposeBase = voice.bar.inputField.text.trim();
            }
        }
        //! The request is lost with the connection.
        function onBridgeStatusChanged() {
            if (voice.bar.bridgeStatus === "disconnected")
                voice.voiceRephrasing = false;
        }
    }

    Connections {
        target: voice.bar.inputField

        //! A text that was sent or cleared doesn't come back with the next utterance.
        function onTextChanged() {
            if (voice.bar.inputField.text === "")
                voice.voiceComposeBase = "";
        }
    }
}
