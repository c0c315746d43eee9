// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar"
import "../controllers"

Item {
    id: root

    readonly property string firstSentence: "open the file manager and go to downloads"

    width: 600
    height: 600

    FakeVoiceBridge {
        id: fakeVoice
    }

    FakeBar {
        id: fakeBar

        property var voice: fakeVoice
    }

    OmniBarTheme {
        id: omniTheme
    }

    Component {
        id: factory

        VoiceTestPanel {
            width: 600
            bar: fakeBar
            theme: omniTheme
            active: false
        }
    }

    TestCase {
        name: "VoiceTestPanel"
        when: windowShown

        property var panel

        function init() {
            fakeBar.voice = fakeVoice;
            const initial = {
                "isListening": false, "isTranscribing": false, "isModelLoaded": true, "lastError": "",
                "lastTranscriptionMs": 0, "partialTranscript": "", "voiceLogEnabled": false, "voiceTestActive": false
            };
            Object.keys(initial).forEach(name => { fakeVoice[name] = initial[name]; });
            panel = create({ "active": true });
            fakeVoice.calls = [];
        }
        //! The panel after its sentences have arrived.
        function create(properties) {
            const made = createTemporaryObject(factory, root, properties);
            verify(made);
            tryVerify(() => made.suiteLoaded || made.suiteUrl !== "qrc:///org/kde/loomra/voice/stt-live-validation-suite.json");
            return made;
        }
        function item(name) {
            const found = findChild(panel, name);
            verify(found, name);
            return found;
        }
        function hear(text, ms) {
            fakeVoice.lastTranscriptionMs = ms;
            fakeVoice.transcriptReady(text);
        }
        //! A row of the results, which the list creates later.
        function row(index) {
            const view = item("testResultList").view;
            tryVerify(() => view.itemAtIndex(index));
            return view.itemAtIndex(index);
        }
        function announced() {
            const announcement = Array.from(item("voiceTestAnnouncer").children).find(child => child.visible);
            return announcement ? announcement.Accessible.name : "";
        }
        function press(name) {
            verify(item(name).enabled, name);
            item(name).clicked();
        }

        function test_words() {
            const texts = Array.from(panel.children).filter(child => child.visible && child.textFormat !== undefined).map(child => child.text);
            compare(texts, [
                "<Voice test>",
                "<Read the sentences aloud and submit what was heard. The test uses the settings above and sends nothing.>",
                "<Accuracy log file: /state/voice-test-feedback.log>"
            ]);
            const labels = ["voiceTestMicBtn", "submitTestBtn", "previousSentenceBtn", "nextSentenceBtn", "clearTestResultsBtn"];
            compare(labels.map(name => item(name).label),
                    ["<Start listening>", "<Submit>", "<Previous sentence>", "<Next sentence>", "<Clear test results>"]);
            compare(item("testResultList").name, "<Test results>");
            compare(item("testResultList").scrollBarName, "<Scroll test results>");
            compare(panel.pendingMs, 0);
        }

        function test_sentences() {
            compare(panel.sentences.length, 10);
            compare(panel.currentIndex, 0);
            compare(item("sentencePlace").text, "<Sentence 1 / 10 · command>");
            compare(item("sentenceText").text, "\u201c" + root.firstSentence + "\u201d");
            verify(!item("suiteLoading").visible);
            verify(!item("previousSentenceBtn").enabled);
            for (let i = 1; i < 10; ++i) {
                press("nextSentenceBtn");
                compare(panel.currentIndex, i);
            }
            verify(!item("nextSentenceBtn").enabled);
            compare(item("sentencePlace").text, "<Sentence 10 / 10 · noise>");
            press("previousSentenceBtn");
            compare(panel.currentIndex, 8);
        }

        function test_suiteThatCannotBeLoaded() {
            panel = create({ "suiteUrl": "qrc:///missing.json", "active": true });
            wait(0);
            verify(!panel.suiteLoaded);
            verify(item("suiteLoading").visible);
            compare(item("suiteLoading").text, "<Loading…>");
            verify(!item("nextSentenceBtn").enabled);
            verify(!item("submitTestBtn").visible);
            compare(item("submittedShare").width, 0);
        }

        // ---- Entering and leaving

        function test_activeDrivesTheFlag() {
            compare(fakeVoice.voiceTestActive, true);
            panel.active = false;
            compare(fakeVoice.voiceTestActive, false);
            panel.active = true;
            compare(fakeVoice.voiceTestActive, true);
            compare(fakeVoice.calls, []);
            compare(fakeVoice.batchSttMode, false);
        }

        function test_inactiveAtTheStart() {
            fakeVoice.voiceTestActive = false;
            fakeVoice.isModelLoaded = false;
            panel = create({});
            compare(fakeVoice.voiceTestActive, false);
            compare(fakeVoice.calls, []);
        }

        function test_modelIsLoadedOnEntering_data() {
            return [{ tag: "loaded", loaded: true, calls: [] }, { tag: "not loaded", loaded: false, calls: ["loadModel()"] }];
        }
        function test_modelIsLoadedOnEntering(data) {
            fakeVoice.isModelLoaded = data.loaded;
            panel.active = false;
            panel.active = true;
            compare(fakeVoice.takeCalls(), data.calls);
            panel.destroy();
            wait(0);
            fakeVoice.takeCalls();
            panel = create({ "active": true });
            compare(fakeVoice.takeCalls(), data.calls);
        }

        function test_leavingEndsTheUtterance_data() {
            return [
                { tag: "idle", listening: false, transcribing: false, calls: [] },
                { tag: "listening", listening: true, transcribing: false, calls: ["cancelListening()"] },
                { tag: "transcribing", listening: false, transcribing: true, calls: ["cancelListening()"] }
            ];
        }
        function test_leavingEndsTheUtterance(data) {
            hear("go back", 5);
            fakeVoice.isListening = data.listening;
            fakeVoice.isTranscribing = data.transcribing;
            panel.active = false;
            compare(fakeVoice.calls, data.calls);
            compare(panel.pendingHypothesis, "");
            compare(fakeVoice.voiceTestActive, false);
        }

        function test_destructionEndsTheUtterance() {
            fakeVoice.isListening = true;
            panel.destroy();
            tryCompare(fakeVoice, "voiceTestActive", false);
            compare(fakeVoice.calls, ["cancelListening()"]);
        }

        //! An old page may be destroyed after the new one was created.
        function test_destructionAfterLeaving() {
            panel.active = false;
            const other = create({ "active": true });
            compare(fakeVoice.voiceTestActive, true);
            fakeVoice.isListening = true;
            panel.destroy();
            wait(0);
            compare(fakeVoice.voiceTestActive, true);
            compare(fakeVoice.calls, []);
            other.active = false;
        }

        function test_inactivePanelTakesNothing() {
            panel.active = false;
            fakeVoice.isListening = true;
            fakeVoice.partialTranscript = "go";
            compare(announced(), "");
            hear("go back", 5);
            fakeVoice.errorOccurred("broken");
            compare(panel.pendingHypothesis, "");
            compare(panel.problem, "");
            compare(announced(), "");
        }

        // ---- The microphone

        function test_microphone_data() {
            return [
                { tag: "idle", label: "<Start listening>", enabled: true, calls: ["stopSpeaking()", "startListening()"] },
                { tag: "listening", listening: true, label: "<Stop>", enabled: true, calls: ["stopListening()"] },
                { tag: "transcribing", transcribing: true, label: "<Start listening>", enabled: false }
            ];
        }
        function test_microphone(data) {
            fakeVoice.isListening = Boolean(data.listening);
            fakeVoice.isTranscribing = Boolean(data.transcribing);
            const mic = item("voiceTestMicBtn");
            compare(mic.label, data.label);
            compare(mic.enabled, data.enabled);
            if (data.enabled) {
                mouseClick(mic);
                compare(fakeVoice.calls, data.calls);
            }
        }

        function test_holdCancels() {
            fakeVoice.isListening = true;
            const mic = item("voiceTestMicBtn");
            compare(mic.Accessible.description, "<Hold to cancel>");
            mic.forceActiveFocus(Qt.TabFocusReason);
            verify(mic.spaceHolds);
            keyPress(Qt.Key_Space);
            mic.heldBySpace = true; // as repeated presses do
            mic.pressAndHold();
            keyRelease(Qt.Key_Space);
            compare(fakeVoice.calls, ["cancelListening()"]);
            keyClick(Qt.Key_Return); // Space right after a hold still belongs to it
            compare(fakeVoice.calls, ["cancelListening()", "stopListening()"]);
            fakeVoice.isListening = false;
            compare(mic.Accessible.description, "");
        }

        function test_withoutVoicePath() {
            fakeBar.voice = null;
            panel = create({ "active": true });
            compare(item("voiceTestState").text, "<Voice input unavailable>");
            verify(!item("voiceTestMicBtn").enabled);
            verify(!item("submitTestBtn").enabled);
            verify(!item("accuracyLogPath").visible);
            press("nextSentenceBtn");
            panel.active = false;
        }

        // ---- Transcripts

        function test_transcriptIsPending() {
            verify(!item("submitTestBtn").enabled);
            compare(item("pendingText").text, "<Nothing heard yet.>");
            hear("go %1 <b>back</b>", 123.4);
            compare(panel.pendingHypothesis, "go %1 <b>back</b>");
            compare(panel.pendingMs, 123.4);
            compare(item("pendingText").text, "<Understood: go %1 <b>back</b>>");
            compare(item("pendingText").textFormat, Text.PlainText);
            verify(item("submitTestBtn").enabled);
            hear("", 9);
            compare(panel.pendingHypothesis, "go %1 <b>back</b>");
            compare(panel.pendingMs, 123.4);
        }

        function test_partials() {
            hear("first", 50);
            fakeVoice.partialTranscript = "ignored";
            compare(panel.pendingHypothesis, "first");
            fakeVoice.isListening = true;
            fakeVoice.partialTranscript = "go ba";
            compare(panel.pendingHypothesis, "go ba");
            compare(panel.pendingMs, 50);
            fakeVoice.isListening = false;
            fakeVoice.partialTranscript = "";
            compare(panel.pendingHypothesis, "go ba");
        }

        function test_anotherSentenceDropsThePendingText() {
            hear("go back", 5);
            press("nextSentenceBtn");
            compare(panel.pendingHypothesis, "");
            compare(panel.pendingMs, 0);
        }

        // ---- Submitting

        function test_submit() {
            hear("open a file manager and go to downloads", 123.6);
            press("submitTestBtn");
            const result = panel.testResults[0];
            compare(panel.testResults.length, 1);
            fuzzyCompare(result.accuracy, 1 - 1 / 8, 1e-9);
            compare(result.latencyMs, 124);
            compare(fakeVoice.calls, ["appendVoiceTestFeedback(v01, command, " + root.firstSentence
                                      + ", open a file manager and go to downloads, 0.875, 124)"]);
            compare(panel.currentIndex, 1);
            compare(panel.pendingHypothesis, "");
            compare(panel.pendingMs, 0);
        }

        function test_submitIsLogged() {
            fakeVoice.voiceLogEnabled = true;
            hear("open", 10);
            press("submitTestBtn");
            compare(fakeVoice.calls[1], "appendVoiceLog(TEST v01 13% · 10ms · \"open\")");
        }

        function test_lastSentenceStays() {
            panel.currentIndex = 9;
            hear("play the next song in my playlist", 10);
            press("submitTestBtn");
            compare(panel.currentIndex, 9);
            compare(panel.pendingHypothesis, "");
            compare(panel.testResults[0].id, "v10");
        }

        function test_resubmittedSentenceReplacesItsRow() {
            hear("open", 10);
            press("submitTestBtn");
            hear("set the volume", 11);
            press("submitTestBtn");
            panel.currentIndex = 0;
            hear(root.firstSentence, 12);
            press("submitTestBtn");
            compare(panel.testResults.map(result => [result.id, result.latencyMs]), [["v01", 12], ["v02", 11]]);
            compare(fakeVoice.calls.length, 3);
            compare(item("testResultList").count, 2);
            compare(row(0).Accessible.name, "v01, 100%, <12 ms>, " + root.firstSentence);
            compare(row(1).rid, "v02");
        }

        function test_allResultsAreInView() {
            for (let i = 0; i < 10; ++i) {
                hear("a", 5);
                press("submitTestBtn");
            }
            verify(!item("testResultList").scrolls);
            compare(item("submittedBar").minimumValue, 0);
            compare(item("submittedBar").maximumValue, 10);
            compare(item("submittedBar").value, 10);
            compare(item("submittedBar").Accessible.name, "<10 of 10 submitted>");
        }

        function test_tones() {
            const texts = ["the the the the the the the the", root.firstSentence];
            const tones = [omniTheme.warningText, omniTheme.positiveText];
            for (let i = 0; i < texts.length; ++i) {
                panel.currentIndex = 0;
                hear(texts[i], 5);
                press("submitTestBtn");
                compare(String(findChild(row(0), "testResultPercentage").color), String(tones[i]));
                compare(String(findChild(row(0), "testResultText").color), String(tones[i]));
            }
        }

        function test_progress() {
            compare(item("submittedCount").text, "<0 of 10 submitted>");
            compare(item("remainingCount").text, "<10 remaining>");
            verify(!item("testResultList").visible);
            for (let i = 0; i < 3; ++i) {
                hear("a", 5);
                press("submitTestBtn");
            }
            compare(item("submittedCount").text, "<3 of 10 submitted>");
            compare(item("remainingCount").text, "<7 remaining>");
            fuzzyCompare(item("submittedShare").width, 0.3 * 600, 0.01);
            verify(item("testResultList").visible);
            compare(item("accuracyLogPath").whole, "<Accuracy log file: /state/voice-test-feedback.log>");
        }

        function test_clear() {
            verify(!item("clearTestResultsBtn").enabled);
            hear("a", 5);
            verify(item("clearTestResultsBtn").enabled);
            press("submitTestBtn");
            verify(item("clearTestResultsBtn").enabled);
            hear("b", 5);
            fakeVoice.takeCalls();
            press("clearTestResultsBtn");
            compare(panel.testResults, []);
            compare(panel.pendingHypothesis, "");
            compare(panel.currentIndex, 1);
            compare(fakeVoice.calls, []);
            verify(!item("testResultList").visible);
            verify(!item("clearTestResultsBtn").enabled);
        }

        // ---- What went wrong

        function test_problems() {
            const state = item("voiceTestState");
            compare(state.text, "<Start listening, then read the sentence aloud.>");
            fakeVoice.isModelLoaded = false;
            compare(state.text, "<No speech model is loaded.>");
            fakeVoice.errorOccurred("Failed to load\nwhisper model");
            compare(state.text, "Failed to load\ufffdwhisper model");
            compare(String(state.color), String(omniTheme.dangerText));
            compare(announced(), "Failed to load\ufffdwhisper model");
            fakeVoice.isModelLoaded = true;
            compare(panel.problem, "");
            compare(String(state.color), String(omniTheme.uiTextCaption));
        }

        function test_problemEnds_data() {
            return [
                { tag: "a click", act: () => press("voiceTestMicBtn") },
                { tag: "listening", act: () => { fakeVoice.isListening = true; } },
                { tag: "a transcript", act: () => hear("a", 5) }
            ];
        }
        function test_problemEnds(data) {
            fakeVoice.errorOccurred("No speech detected");
            compare(panel.problem, "No speech detected");
            data.act();
            compare(panel.problem, "");
        }

        function test_oldErrorIsShown() {
            panel.active = false;
            fakeVoice.lastError = "Engine failed";
            panel.active = true;
            compare(item("voiceTestState").text, "Engine failed");
        }

        // ---- Screen readers

        function test_announcements() {
            fakeVoice.isListening = true;
            compare(announced(), "<Listening...>");
            fakeVoice.isListening = false;
            compare(announced(), "<Listening ended>");
            hear("go back", 5);
            compare(announced(), "<Understood: go back>");
        }

        // ---- The focus

        function test_focusStays_data() {
            const button = (tag, name, other, prepare) => ({ tag: tag, name: name, other: other, prepare: prepare });
            return [
                button("submitted", "submitTestBtn", "voiceTestMicBtn", () => hear("a", 5)),
                button("last sentence", "nextSentenceBtn", "previousSentenceBtn", () => { panel.currentIndex = 8; }),
                button("first sentence", "previousSentenceBtn", "nextSentenceBtn", () => { panel.currentIndex = 1; }),
                button("a sentence between", "nextSentenceBtn", "nextSentenceBtn", () => {}),
                button("cleared", "clearTestResultsBtn", "voiceTestMicBtn", () => hear("a", 5))
            ];
        }
        function test_focusStays(data) {
            data.prepare();
            item(data.name).forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            verify(item(data.other).activeFocus);
            verify(item(data.other).visualFocus);
        }

        function test_clickMovesNoFocus() {
            item("nextSentenceBtn").forceActiveFocus(Qt.TabFocusReason);
            hear("a", 5);
            mouseClick(item("submitTestBtn"));
            verify(item("nextSentenceBtn").activeFocus);
        }

        function test_focusReturnsToTheMicrophone() {
            const mic = item("voiceTestMicBtn");
            mic.forceActiveFocus(Qt.TabFocusReason);
            fakeVoice.isTranscribing = true;
            fakeVoice.isTranscribing = false;
            verify(mic.activeFocus);
        }
    }
}
