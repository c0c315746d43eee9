// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! The voice path as the bar sees it. It records calls and does nothing else.
CallRecorder {
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

    signal transcriptReady(string text)
    signal errorOccurred(string error)
    signal wakeWordActivated(string phrase)

    function startListening() { note("startListening", []); }
    function stopListening() { note("stopListening", []); }
    function cancelListening() { note("cancelListening", []); }
    function stopSpeaking() { note("stopSpeaking", []); }
    function speak(text) { note("speak", [text]); }
}
