// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "../omnibar/controllers"
import "qrc:/org/kde/loomra/contents/ui/validation"

TestCase {
    id: test
    name: "ValidationController"

    property var controller
    property var voice
    property var announcements: []

    readonly property var threeSentences: [
        { "id": "s01", "category": "command", "text": "open the browser" },
        { "id": "s02", "category": "query", "text": "what time is it" },
        { "id": "s03", "category": "short", "text": "yes" }
    ]

    Component { id: silent; ValidationController {} }

    // Gives each instance its own fake, with the id that ValidationController expects as a context property.
    Component {
        id: speaking

        QtObject {
            property alias controller: validationController
            property alias fake: voiceBridge

            property QtObject parts: QtObject {
                property FakeVoiceBridge bridge: FakeVoiceBridge {
                    id: voiceBridge

                    isModelLoaded: true
                    lastError: "left from before"
                }
                property ValidationController validation: ValidationController { id: validationController }
            }
        }
    }

    function init() {
        const scene = createTemporaryObject(speaking, test);
        controller = scene.controller;
        voice = scene.fake;
        announcements = [];
        controller.announced.connect(text => { test.announcements = test.announcements.concat(text); });
    }

    function initSuite() {
        controller.suiteSentences = threeSentences;
        controller.chooseMode(true);
    }

    //! As VoiceBridge reports an utterance.
    function hear() {
        voice.isListening = true;
        voice.isListening = false;
        voice.isTranscribing = true;
    }

    function understand(text, ms = 100) {
        voice.isTranscribing = false;
        voice.lastTranscriptionMs = ms;
        voice.lastError = "";
        voice.transcriptReady(text);
    }

    function fail(error) {
        voice.isTranscribing = false;
        voice.lastError = error;
        voice.errorOccurred(error);
    }

    function rows(model, keys) {
        const all = [];
        for (let i = 0; i < model.count; ++i)
            all.push(keys.map(key => model.get(i)[key]));
        return all;
    }

    function scores() {
        return rows(controller.suiteResults, ["sentenceId", "accuracy"]);
    }

    function test_withoutVoice() {
        controller = createTemporaryObject(silent, test);
        compare(controller.voiceState.text, "Unavailable");
        controller.begin();
        controller.loadModel();
        controller.startListening();
        controller.stopListening();
        controller.cancelListening();
        controller.chooseBackend("whisper");
        controller.end();
        compare(controller.backend, "");
        compare(controller.engineRows.length, 1);
        tryVerify(() => controller.suiteSentences.length === 18);
    }

    function test_begin() {
        compare(voice.batchSttMode, false);
        controller.begin();
        compare(voice.batchSttMode, true);
        tryVerify(() => controller.suiteSentences.length === 18);
        compare(controller.suiteSentences[0].id, "s01");
        controller.end();
        compare(voice.batchSttMode, true);
    }

    function test_buttons() {
        controller.startListening();
        controller.stopListening();
        controller.cancelListening();
        controller.loadModel();
        controller.end();
        compare(voice.takeCalls(), ["startListening()", "stopListening()", "cancelListening()", "loadModel()", "cancelListening()"]);
    }

    // VoiceBridge clears its error without a signal of its own.
    function test_lastErrorIsCleared_data() {
        return [
            { tag: "by a model", clear: () => voice.modelLoadedChanged() },
            { tag: "by a transcript", clear: () => voice.transcriptReady("a") }
        ];
    }

    function test_lastErrorIsCleared(data) {
        compare(controller.lastError, "left from before");
        compare(controller.voiceState.text, "Error");
        voice.lastError = "";
        compare(controller.lastError, "left from before");
        data.clear();
        compare(controller.lastError, "");
        compare(controller.voiceState.text, "Ready");
    }

    function test_failures() {
        voice.lastError = "";
        voice.modelLoadedChanged();
        voice.errorOccurred("No speech detected");
        compare([controller.lastError, controller.notice], ["", "No speech detected"]);
        compare(controller.voiceState.text, "Ready");
        fail("engine\nbroken");
        compare([controller.lastError, controller.notice], ["engine\nbroken", ""]);
        compare(announcements, ["No speech detected", "engine\ufffdbroken"]);
        voice.errorOccurred("Cannot open microphone: none");
        compare([controller.lastError, controller.notice], ["engine\nbroken", "Cannot open microphone: none"]);
    }

    function test_noticeIsCleared_data() {
        return [
            { tag: "start", act: () => controller.startListening() },
            { tag: "load", act: () => controller.loadModel() },
            { tag: "engine", act: () => controller.chooseBackend("moonshine") }
        ];
    }

    function test_noticeIsCleared(data) {
        voice.errorOccurred("No speech detected");
        data.act();
        compare(controller.notice, "");
    }

    function test_history() {
        controller.chooseBackend("moonshine");
        hear();
        understand("open the Dolphin", 340.6);
        compare(rows(controller.history, ["backend", "text", "ms"]), [["moonshine", "open the Dolphin", 341]]);
        verify(/^\d\d:\d\d:\d\d$/.test(controller.history.get(0).time));
        compare(controller.suiteResults.count, 0);
        for (let i = 0; i < 20; ++i)
            understand("line " + i);
        compare(controller.history.count, 20);
        compare(controller.history.get(0).text, "line 19");
        compare(controller.history.get(19).text, "line 0");
    }

    function test_announcements() {
        hear();
        compare(announcements, ["Listening...", "Listening ended"]);
        // The end of a cancelled capture is reported twice.
        voice.listeningChanged();
        understand("go\nback");
        compare(announcements, ["Listening...", "Listening ended", "Understood: go back"]);
        initSuite();
        understand("open browser");
        compare(announcements.slice(3), ["Understood: open browser 67%"]);
    }

    function test_chooseBackend() {
        controller.chooseBackend(voice.sttBackend);
        compare(voice.sttBackend, "whisper-small-q5");
        controller.suiteRunAll = true;
        controller.chooseBackend("whisper");
        compare(voice.sttBackend, "whisper");
        compare(controller.backend, "whisper");
        compare(controller.suiteRunAll, false);
    }

    function test_engineRows() {
        compare(controller.engineRows.map(row => row.value), ["whisper"]);
        compare(controller.scoresLine, "Scores · whisper —");
        voice.moonshineAvailable = true;
        compare(controller.engineRows.map(row => row.value), ["whisper", "moonshine"]);
        compare(controller.scoresLine, "Scores · whisper —  |  moonshine —");
    }

    function test_sentences() {
        compare(controller.sentence, null);
        controller.moveSentence(1);
        compare(controller.suiteIndex, 0);
        initSuite();
        const ids = [-1, 1, 1, 1, -1].map(step => { controller.moveSentence(step); return controller.sentence.id; });
        compare(ids, ["s01", "s02", "s03", "s03", "s02"]);
    }

    function test_result() {
        initSuite();
        voice.sttBackend = "whisper";
        hear();
        understand("open browser", 99.5);
        const keys = ["sentenceId", "category", "reference", "hypothesis", "ms", "backend"];
        compare(rows(controller.suiteResults, keys), [["s01", "command", "open the browser", "open browser", 100, "whisper"]]);
        fuzzyCompare(controller.suiteResults.get(0).accuracy, 2 / 3, 1e-9);
        compare(controller.suiteIndex, 1);
        compare(controller.history.count, 0);
        understand("");
        compare(scores()[0], ["s02", 0]);
        compare(controller.suiteSummaryForBackend("whisper"), "33% avg · 100 ms");
        compare(controller.scoresLine, "Scores · whisper 33% avg · 100 ms");
        understand("yes");
        compare(controller.suiteIndex, 2);
        compare(voice.takeCalls(), []);
        // The last sentence can be repeated.
        understand("no");
        compare(scores().map(row => row[0]), ["s03", "s03", "s02", "s01"]);
    }

    function test_withoutSentencesATranscriptIsKept() {
        controller.chooseMode(true);
        understand("anything");
        compare(controller.suiteResults.count, 0);
        compare(controller.history.count, 1);
        controller.runAllSentences();
        compare(controller.suiteRunAll, false);
        compare(voice.takeCalls(), []);
    }

    // An engine may need seconds, in which the user can go on.
    function test_resultBelongsToWhatWasReadAloud_data() {
        return [
            { tag: "next sentence", act: () => controller.moveSentence(1), index: 1 },
            { tag: "other engine", act: () => controller.chooseBackend("whisper"), index: 1 },
            { tag: "free mode", act: () => controller.chooseMode(false), index: 1 }
        ];
    }

    function test_resultBelongsToWhatWasReadAloud(data) {
        initSuite();
        hear();
        data.act();
        understand("open the browser");
        compare(rows(controller.suiteResults, ["sentenceId", "accuracy", "backend"]), [["s01", 1, "whisper-small-q5"]]);
        compare(controller.suiteIndex, data.index);
        compare(controller.history.count, 0);
    }

    function test_newUtteranceForgetsTheLast() {
        initSuite();
        hear();
        controller.moveSentence(1);
        voice.isTranscribing = false; // cancelled
        voice.isListening = true;
        voice.isListening = false;
        understand("what time is it");
        compare(scores(), [["s02", 1]]);
    }

    function test_runAll() {
        initSuite();
        controller.moveSentence(1);
        controller.runAllSentences();
        compare([controller.suiteRunAll, controller.suiteIndex], [true, 0]);
        compare(voice.takeCalls(), ["startListening()"]);
        hear();
        understand("open the browser");
        compare(voice.takeCalls(), []); // not within the signal
        tryCompare(voice, "calls", ["startListening()"]);
        hear();
        understand("what time is it");
        tryCompare(voice, "calls", ["startListening()", "startListening()"]);
        hear();
        understand("no");
        compare([controller.suiteRunAll, controller.suiteIndex], [false, 2]);
        wait(0);
        compare(voice.takeCalls().length, 2);
        compare(scores(), [["s03", 0], ["s02", 1], ["s01", 1]]);
    }

    function test_runGoesOnWhereTheUserIs() {
        initSuite();
        controller.runAllSentences();
        voice.takeCalls();
        hear();
        controller.moveSentence(1);
        understand("open the browser");
        tryCompare(voice, "calls", ["startListening()"]);
        compare(controller.suiteIndex, 1);
    }

    function test_noSpeechStopsTheProgress() {
        initSuite();
        controller.runAllSentences();
        voice.takeCalls();
        voice.isListening = true;
        voice.isListening = false;
        voice.errorOccurred("No speech detected");
        wait(0);
        compare([controller.suiteIndex, controller.suiteRunPaused], [0, true]);
        compare(voice.takeCalls(), []);
        // The user can go on.
        controller.startListening();
        compare(controller.suiteRunPaused, false);
        hear();
        understand("open the browser");
        tryCompare(voice, "calls", ["startListening()", "startListening()"]);
        compare(controller.suiteIndex, 1);
    }

    function test_noPauseOutsideARun() {
        initSuite();
        voice.errorOccurred("No speech detected");
        compare(controller.suiteRunPaused, false);
    }

    function test_runEnds_data() {
        return [
            { tag: "cancel", act: () => controller.cancelListening() },
            { tag: "engine", act: () => controller.chooseBackend("whisper") },
            { tag: "free mode", act: () => controller.chooseMode(false) },
            { tag: "close", act: () => controller.end() }
        ];
    }

    function test_runEnds(data) {
        initSuite();
        controller.runAllSentences();
        hear();
        understand("open the browser"); // the next start is pending
        voice.takeCalls();
        data.act();
        voice.takeCalls();
        wait(0);
        compare(controller.suiteRunAll, false);
        compare(voice.takeCalls(), []);
    }

    function test_stopEndsOnlyTheUtterance() {
        initSuite();
        controller.runAllSentences();
        voice.isListening = true;
        controller.stopListening();
        compare(controller.suiteRunAll, true);
        voice.isListening = false;
        voice.takeCalls();
        understand("open the");
        compare(controller.suiteIndex, 1);
        tryCompare(voice, "calls", ["startListening()"]);
    }

    function test_nothingIsLogged() {
        initSuite();
        controller.begin();
        controller.runAllSentences();
        understand("open the browser");
        compare(voice.takeCalls(), ["startListening()"]);
    }
}
