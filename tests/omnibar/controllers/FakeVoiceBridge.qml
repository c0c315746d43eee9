// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! The voice path as the windows see it. It records calls and does nothing else.
CallRecorder {
    property bool isListening: false
    property bool isTranscribing: false
    property bool isModelLoaded: false
    property real lastTranscriptionMs: 0
    property string lastError: ""
    property real inputLevel: 0
    property string modelName: ""
    property bool isSpeaking: false
    property bool ttsEnabled: false
    property bool ttsAvailable: false
    property string sttBackend: "whisper-small-q5"
    property bool whisperSmallAvailable: false
    property bool whisperSmallQ5Available: false
    property bool moonshineAvailable: false
    property bool nemotronAvailable: false
    property string partialTranscript: ""
    property bool liveSttAvailable: false
    property string sttInputMode: "batch"
    property string voiceSubmitMode: "auto"
    property bool voiceTestActive: false
    property bool batchSttMode: false
    property int silenceTimeoutMs: 700
    property int voiceConfirmDelaySec: 4
    property bool voiceLogEnabled: false
    property var voiceLog: []

    // The real properties' change signals, whose names differ from those of QML.
    signal listeningChanged()
    signal transcribingChanged()
    signal modelLoadedChanged()
    signal transcriptReady(string text)
    signal errorOccurred(string error)
    signal wakeWordActivated(string phrase)

    onIsListeningChanged: listeningChanged()
    onIsTranscribingChanged: transcribingChanged()
    onIsModelLoadedChanged: modelLoadedChanged()

    function startListening() { note("startListening", []); }
    function stopListening() { note("stopListening", []); }
    function cancelListening() { note("cancelListening", []); }
    function loadModel() { note("loadModel", []); }
    function stopSpeaking() { note("stopSpeaking", []); }
    function speak(text) { note("speak", [text]); }
    function clearVoiceLog() { note("clearVoiceLog", []); }
    function appendVoiceLog(entry) { note("appendVoiceLog", [entry]); }
    function voiceTestLogPath() { return "/state/voice-test-feedback.log"; }
    function appendVoiceTestFeedback(sentenceId, category, reference, hypothesis, accuracy, latencyMs) {
        note("appendVoiceTestFeedback", [sentenceId, category, reference, hypothesis, accuracy, latencyMs]);
    }
}
