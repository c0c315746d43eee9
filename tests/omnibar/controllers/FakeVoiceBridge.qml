// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! The voice path as the bar sees it: it does nothing by itself, and writes down what it is asked for.
QtObject {
    property bool isListening: false
    property bool isTranscribing: false
    property bool isSpeaking: false
    property real inputLevel: 0
    property string partialTranscript: ""
    property bool ttsEnabled: false
    property bool ttsAvailable: false
    property bool batchSttMode: false
    property bool voiceTestActive: false
    property string voiceSubmitMode: "auto"
    property int voiceConfirmDelaySec: 4

    //! Calls in their order, such as "speak(hello)".
    property var calls: []

    signal transcriptReady(string text)
    signal errorOccurred(string error)
    signal wakeWordActivated(string phrase)

    function note(call) {
        calls = calls.concat(call);
    }

    //! What was noted so far, which is then forgotten.
    function takeCalls() {
        const taken = calls;
        calls = [];
        return taken;
    }

    function startListening() { note("startListening()"); }
    function stopListening() { note("stopListening()"); }
    function cancelListening() { note("cancelListening()"); }
    function stopSpeaking() { note("stopSpeaking()"); }
    function speak(text) { note("speak(" + text + ")"); }
}
