// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../../components/logic/LiteralText.js" as LiteralText
import "../../../components/logic/Native.js" as Native
import "../omnibar/logic/VoiceText.js" as VoiceText
import "qrc:/org/kde/loomra/voice/sentenceSuite.js" as SentenceSuite
import "qrc:/org/kde/loomra/voice/sttSentenceScoring.js" as Scoring
import "ValidationText.js" as ValidationText

//! The state and logic of the voice validation window. The free mode lists the transcripts of the engines; the suite
//! mode compares them with sentences that the user reads aloud.
QtObject {
    id: validation

    readonly property var voice: typeof voiceBridge !== "undefined" ? voiceBridge : null
    readonly property bool listening: Boolean(voice && voice.isListening)
    readonly property string backend: voice ? voice.sttBackend : ""
    readonly property var engineRows: ValidationText.offeredEngines(voice)

    //! The last failure of an engine. A copy, because VoiceBridge clears its own without a change signal of it.
    property string lastError: ""
    //! Any other message of the voice path since the last start, such as a missing microphone.
    property string notice: ""
    readonly property var voiceState: ValidationText.stateOf(voice, lastError)

    //! Transcripts of the free mode, newest first: time, backend, text, ms.
    readonly property ListModel history: ListModel {}
    readonly property int historyLimit: 20

    property bool suiteMode: false
    //! Rows with id, category and text. Empty until they are loaded, or if that fails.
    property var suiteSentences: []
    property int suiteIndex: 0
    readonly property var sentence: suiteIndex < suiteSentences.length ? suiteSentences[suiteIndex] : null
    //! Whether listening starts again after each result, for the next sentence.
    property bool suiteRunAll: false
    //! Whether the run waits for the user because a sentence was not recorded.
    property bool suiteRunPaused: false
    //! Newest first: sentenceId, category, reference, hypothesis, accuracy, ms, backend.
    readonly property ListModel suiteResults: ListModel {}
    readonly property string scoresLine: ValidationText.scoresLine(engineRows, results(), tr)

    //! The utterance that is being transcribed: { backend, suite, index }. The user may move on before its transcript
    //! arrives.
    property var utterance: null
    property bool wasListening: false

    //! To be read out by screen readers.
    signal announced(string text)

    function tr(text) { return Translation.tr(text); }

    //! Once, when the window is complete.
    function begin() {
        SentenceSuite.load("qrc:///org/kde/loomra/voice/stt-sentence-suite.json", sentences => {
            validation.suiteSentences = sentences;
        });
        if (voice)
            voice.batchSttMode = true;
    }

    //! Blocks for as long as the engine needs.
    function loadModel() {
        notice = "";
        Native.call(voice, "loadModel");
    }

    //! The window is closed. No microphone stays open.
    function end() {
        suiteRunAll = false;
        Native.call(voice, "cancelListening");
    }

    function startListening() {
        notice = "";
        suiteRunPaused = false;
        Native.call(voice, "startListening");
    }

    //! Ends the utterance. A run goes on with the next sentence.
    function stopListening() {
        Native.call(voice, "stopListening");
    }

    //! Ends a run too: there is no other way out of it.
    function cancelListening() {
        suiteRunAll = false;
        Native.call(voice, "cancelListening");
    }

    function chooseBackend(id) {
        if (!voice || id === voice.sttBackend)
            return;
        suiteRunAll = false;
        notice = "";
        voice.sttBackend = id;
    }

    function chooseMode(suite) {
        suiteRunAll = false;
        suiteMode = suite;
    }

    //! @param step -1 or 1
    function moveSentence(step) {
        suiteIndex = Math.max(0, Math.min(suiteSentences.length - 1, suiteIndex + step));
    }

    function runAllSentences() {
        if (suiteSentences.length === 0)
            return;
        suiteRunAll = true;
        suiteIndex = 0;
        startListening();
    }

    //! After a result.
    function advanceSuite() {
        if (suiteIndex >= suiteSentences.length - 1) {
            suiteRunAll = false;
            return;
        }
        suiteIndex += 1;
        if (suiteRunAll)
            Qt.callLater(continueRun);
    }

    function continueRun() {
        if (suiteRunAll)
            startListening();
    }

    function suiteSummaryForBackend(id) {
        return ValidationText.summary(results(), id, tr);
    }

    function results() {
        return Array.from({ length: suiteResults.count }, (unused, i) => suiteResults.get(i));
    }

    function currentUtterance() {
        return { "backend": backend, "suite": suiteMode && sentence !== null, "index": suiteIndex };
    }

    function takeTranscript(text) {
        const spoken = utterance || currentUtterance();
        utterance = null;
        const ms = Math.round(voice.lastTranscriptionMs);
        if (spoken.suite)
            takeResult(spoken, text, ms);
        else
            takeHistory(spoken, text, ms);
    }

    function takeHistory(spoken, text, ms) {
        history.insert(0, { "time": Qt.formatTime(new Date(), "HH:mm:ss"), "backend": spoken.backend, "text": text, "ms": ms });
        if (history.count > historyLimit)
            history.remove(historyLimit, history.count - historyLimit);
        announced(understood(text));
    }

    function takeResult(spoken, text, ms) {
        const read = suiteSentences[spoken.index];
        const accuracy = Scoring.wordAccuracy(read.text, text);
        suiteResults.insert(0, {
            "sentenceId": read.id,
            "category": read.category,
            "reference": read.text,
            "hypothesis": text,
            "accuracy": accuracy,
            "ms": ms,
            "backend": spoken.backend
        });
        announced(understood(text) + " " + Scoring.formatPercent(accuracy));
        if (spoken.index === suiteIndex)
            advanceSuite();
        else
            Qt.callLater(continueRun); // the user has moved to another sentence
    }

    function understood(text) {
        return VoiceText.understood(text, tr);
    }

    function updateLastError() {
        lastError = voice ? voice.lastError : "";
    }

    Component.onCompleted: updateLastError()

    readonly property Connections voiceSignals: Connections {
        target: validation.voice

        function onListeningChanged() {
            // The end of a cancelled capture is reported twice.
            if (validation.voice.isListening === validation.wasListening)
                return;
            validation.wasListening = validation.voice.isListening;
            if (validation.wasListening)
                validation.utterance = null;
            validation.announced(VoiceText.listening(validation.wasListening, validation.tr));
        }
        function onTranscribingChanged() {
            if (validation.voice.isTranscribing)
                validation.utterance = validation.currentUtterance();
        }
        function onModelLoadedChanged() {
            validation.updateLastError();
        }
        function onTranscriptReady(text) {
            validation.updateLastError();
            validation.takeTranscript(text);
        }
        function onErrorOccurred(error) {
            validation.updateLastError();
            validation.notice = error === validation.lastError ? "" : error;
            validation.suiteRunPaused = validation.suiteRunAll;
            validation.announced(LiteralText.oneLine(error));
        }
    }
}
