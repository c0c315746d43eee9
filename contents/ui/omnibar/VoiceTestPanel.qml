// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../../voice/sentenceSuite.js" as SentenceSuite
import "../../../voice/sttSentenceScoring.js" as Scoring
import "../../../components/logic/LiteralText.js" as LiteralText
import "../../../components/logic/Native.js" as Native
import "../../../components/logic/Translatable.js" as Translatable
import "logic/VoiceTabText.js" as VoiceTabText
import "logic/VoiceText.js" as VoiceText
import "common"
import "settings/common"
import "settings/voice"

//! The voice test of the settings: the user reads sentences aloud, and each submitted transcript is scored and added to
//! the log of voice tests. It uses the settings of the bar, whose input gets no transcripts meanwhile. Results live as
//! long as this panel.
Column {
    id: panel
    objectName: "voiceTestPanel"

    required property var bar
    required property var theme
    //! Whether the test takes the transcripts.
    required property bool active

    property string suiteUrl: "qrc:///org/kde/loomra/voice/stt-live-validation-suite.json"
    property var sentences: []
    readonly property bool suiteLoaded: sentences.length > 0
    property int currentIndex: 0
    readonly property var sentence: suiteLoaded ? sentences[currentIndex] : null

    //! The transcript to be submitted.
    property string pendingHypothesis: ""
    //! Engine time in ms.
    property real pendingMs: 0
    //! Objects with id, category, reference, hypothesis, accuracy and latencyMs, one for each submitted sentence.
    property var testResults: []
    //! The last error, also that of an engine before the panel became active. The next utterance clears it.
    property string problem: ""

    readonly property var voice: bar.voice
    readonly property bool listening: Boolean(voice) && voice.isListening
    readonly property bool transcribing: Boolean(voice) && voice.isTranscribing
    readonly property string logPath: Native.call(voice, "voiceTestLogPath") || ""
    property bool isComplete: false
    property bool isEntered: false

    function dropPending() {
        pendingHypothesis = "";
        pendingMs = 0;
    }

    //! Follows "active".
    function enterOrLeave() {
        if (isComplete && active && !isEntered)
            enter();
        else if (!active)
            leave();
    }

    function enter() {
        isEntered = true;
        if (!voice)
            return;
        problem = voice.lastError;
        voice.voiceTestActive = true;
        if (!voice.isModelLoaded)
            Native.call(voice, "loadModel");
    }

    function leave() {
        if (!isEntered)
            return;
        isEntered = false;
        dropPending();
        if (!voice)
            return;
        if (voice.isListening || voice.isTranscribing)
            Native.call(voice, "cancelListening");
        voice.voiceTestActive = false;
    }

    function startOrStop() {
        if (listening) {
            Native.call(voice, "stopListening");
            return;
        }
        problem = "";
        Native.call(voice, "stopSpeaking");
        Native.call(voice, "startListening");
    }

    function submit() {
        recordTestResult();
        dropPending();
        if (currentIndex + 1 < sentences.length)
            ++currentIndex;
    }

    function recordTestResult() {
        const result = {
            "id": sentence.id,
            "category": sentence.category,
            "reference": sentence.text,
            "hypothesis": pendingHypothesis,
            "accuracy": Scoring.wordAccuracy(sentence.text, pendingHypothesis),
            "latencyMs": Math.round(pendingMs)
        };
        testResults = VoiceTabText.withResult(testResults, result);
        Native.call(voice, "appendVoiceTestFeedback", result.id, result.category, result.reference, result.hypothesis,
                    result.accuracy, result.latencyMs);
        if (voice.voiceLogEnabled)
            Native.call(voice, "appendVoiceLog", VoiceTabText.resultLine(result));
    }

    function clearResults() {
        testResults = [];
        dropPending();
    }

    spacing: 8
    Component.onCompleted: {
        // The file may arrive after this panel was destroyed.
        SentenceSuite.load(suiteUrl, loaded => {
            if (panel)
                panel.sentences = loaded;
        });
        isComplete = true;
        enterOrLeave();
    }
    Component.onDestruction: leave()
    onActiveChanged: enterOrLeave()
    onCurrentIndexChanged: dropPending()
    onListeningChanged: {
        if (!isEntered)
            return;
        if (listening)
            problem = "";
        announcer.announce(VoiceText.listening(listening, bar.tr));
    }
    onProblemChanged: {
        if (problem !== "")
            announcer.announce(LiteralText.oneLine(problem));
    }

    Connections {
        target: panel.voice

        function onTranscriptReady(text) {
            if (!panel.isEntered || text === "")
                return;
            panel.problem = "";
            panel.pendingHypothesis = text;
            panel.pendingMs = panel.voice.lastTranscriptionMs;
            announcer.announce(VoiceText.understood(text, panel.bar.tr));
        }
        function onPartialTranscriptChanged() {
            if (panel.isEntered && panel.voice.isListening)
                panel.pendingHypothesis = panel.voice.partialTranscript;
        }
        function onErrorOccurred(error) {
            if (panel.isEntered)
                panel.problem = error;
        }
        function onModelLoadedChanged() {
            if (panel.voice.isModelLoaded)
                panel.problem = "";
        }
    }

    Announcer {
        id: announcer
        objectName: "voiceTestAnnouncer"
    }

    SettingsHeading {
        theme: panel.theme
        topPadding: 6
        isSection: true
        text: panel.bar.tr("Voice test")
    }

    SettingsCaption {
        theme: panel.theme
        text: panel.bar.tr("Read the sentences aloud and submit what was heard. The test uses the settings above and sends nothing.")
    }

    SettingsCaption {
        objectName: "suiteLoading"

        theme: panel.theme
        visible: !panel.suiteLoaded
        text: panel.bar.tr("Loading…")
    }

    TestSentence {
        width: parent.width
        visible: panel.suiteLoaded
        bar: panel.bar
        theme: panel.theme
        test: panel
    }

    TestResults {
        bar: panel.bar
        theme: panel.theme
        results: panel.testResults
    }

    TestProgress {
        width: parent.width
        bar: panel.bar
        theme: panel.theme
        submitted: panel.testResults.length
        total: panel.sentences.length
    }

    ShortText {
        objectName: "accuracyLogPath"

        width: parent.width
        visible: panel.logPath !== ""
        whole: Translatable.filled(panel.bar.tr("Accuracy log file: {path}"), { "path": panel.logPath })
        text: LiteralText.oneLine(whole, 600)
        elide: Text.ElideMiddle
        color: panel.theme.uiTextCaption
        font.pointSize: 9
    }
}
