// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/controllers"

TestCase {
    id: test
    name: "VoiceController"

    property FakeBar bar
    property var voice

    Component { id: bars; FakeBar {} }
    Component { id: silent; VoiceController {} }

    // Gives each instance its own fake, with the id that VoiceController expects as a context property.
    Component {
        id: speaking

        QtObject {
            property alias controller: controller
            property alias fake: voiceBridge
            property alias bar: controller.bar

            property QtObject parts: QtObject {
                property FakeVoiceBridge bridge: FakeVoiceBridge { id: voiceBridge }
                property VoiceController voice: VoiceController { id: controller }
            }
        }
    }

    function init() {
        bar = createTemporaryObject(bars, test);
    }

    function withVoice() {
        const scene = createTemporaryObject(speaking, test, { "bar": bar });
        voice = scene.controller;
        return scene.fake;
    }

    function withoutVoice() {
        voice = createTemporaryObject(silent, test, { "bar": bar });
    }

    function pend(text) {
        bar.inputField.text = text;
        voice.voiceConfirmPending = true;
        voice.voiceConfirmText = text;
        voice.voiceRephrasing = true;
        voice.voiceConfirmCountdown = 2;
        voice.voiceConfirmTimer.start();
    }

    function compareEnded() {
        compare([voice.voiceConfirmPending, voice.voiceConfirmText, voice.voiceRephrasing, voice.voiceConfirmTimer.running,
                 bar.inputField.text], [false, "", false, false, ""]);
        compare(voice.voiceConfirmCountdown, voice.voiceConfirmTotal);
    }

    function test_firstValues() {
        withoutVoice();
        compare(voice.voiceBridgeObject, null);
        compare([voice.voiceConfirmPending, voice.voiceConfirmText, voice.voiceConfirmTotal, voice.voiceConfirmCountdown,
                 voice.voiceRephrasing], [false, "", 4, 4, false]);
        compare(voice.voiceConfirmTimer.interval, 1000);
        compare(voice.voiceConfirmTimer.repeat, true);
    }

    function test_theBridgeGivesTheDelay() {
        const fake = withVoice();
        fake.voiceConfirmDelaySec = 7;
        compare(voice.voiceConfirmTotal, 7);
    }

    function test_send() {
        withoutVoice();
        pend("  open the file manager ");
        voice.voiceConfirmSend();
        compare(bar.takeCalls(), ["appendUserMessage(open the file manager)", "scrollToBottom()",
                                  "sendToBridge(open the file manager)"]);
        compare(bar.lastInputMode, "voice");
        compareEnded();
    }

    function test_sendOfEmptyInput() {
        withoutVoice();
        pend("");
        voice.voiceConfirmSend();
        compare(bar.takeCalls(), []);
        compare(bar.lastInputMode, "text");
        compareEnded();
    }

    function test_cancel() {
        withoutVoice();
        pend("never mind");
        voice.voiceConfirmCancel();
        compare(bar.takeCalls(), []);
        compareEnded();
    }

    function test_theCountdownSends() {
        withoutVoice();
        pend("go");
        voice.voiceConfirmTimer.triggered();
        compare(voice.voiceConfirmCountdown, 1);
        compare(bar.takeCalls(), []);
        voice.voiceConfirmTimer.triggered();
        compare(bar.takeCalls(), ["appendUserMessage(go)", "scrollToBottom()", "sendToBridge(go)"]);
        compareEnded();
    }

    function test_aTranscriptGoesIntoTheInput_data() {
        return [
            { tag: "words", words: "open the file manager", taken: true },
            { tag: "unchanged", words: "  two  spaces ", taken: true },
            { tag: "a command for the bar", words: "/clear", taken: true },
            { tag: "nothing", words: "", taken: false },
            { tag: "batch of a test", words: "open", batchSttMode: true, taken: false },
            { tag: "test in the settings", words: "open", voiceTestActive: true, taken: false },
            { tag: "both", words: "open", batchSttMode: true, voiceTestActive: true, taken: false }
        ];
    }

    function test_aTranscriptGoesIntoTheInput(data) {
        const fake = withVoice();
        fake.batchSttMode = Boolean(data.batchSttMode);
        fake.voiceTestActive = Boolean(data.voiceTestActive);
        bar.inputField.text = "typed";
        fake.transcriptReady(data.words);
        compare(bar.inputField.text, data.taken ? data.words : "typed");
        compare(bar.inputField.cursorPosition, data.taken ? data.words.length : 0);
        compare(bar.takeCalls(), data.taken ? ["inputField.forceActiveFocus()"] : []);
        compare(fake.takeCalls(), []);
    }

    function test_inputDoesNotTakeTheFocusInTheBubble() {
        const fake = withVoice();
        bar.compactMode = true;
        fake.transcriptReady("open");
        compare(bar.inputField.text, "open");
        compare(bar.takeCalls(), []);
    }

    function test_transcriptsArriveAgainAfterATest() {
        const fake = withVoice();
        fake.voiceTestActive = true;
        fake.transcriptReady("for the test");
        fake.voiceTestActive = false;
        fake.transcriptReady("for the bar");
        compare(bar.inputField.text, "for the bar");
    }

    function test_errorsAreLogged() {
        const fake = withVoice();
        bar.inputField.text = "typed";
        ignoreWarning("[OmniBar] voice: No %1 speech <b>detected</b>");
        fake.errorOccurred("No %1 speech <b>detected</b>");
        compare(bar.inputField.text, "typed");
        compare(bar.takeCalls(), []);
    }

    function test_repliesAreSpoken_data() {
        return [
            { tag: "on", enabled: true, available: true, calls: ["speak(hello)"] },
            { tag: "switched off", enabled: false, available: true, calls: [] },
            { tag: "not available", enabled: true, available: false, calls: [] },
            { tag: "neither", enabled: false, available: false, calls: [] }
        ];
    }

    function test_repliesAreSpoken(data) {
        const fake = withVoice();
        fake.ttsEnabled = data.enabled;
        fake.ttsAvailable = data.available;
        voice.speakReply("hello");
        compare(fake.takeCalls(), data.calls);
    }

    function test_withoutAVoiceNothingIsSpoken() {
        withoutVoice();
        voice.speakReply("hello");
        compare(bar.takeCalls(), []);
    }

    function test_theWakeWordSummonsTheBar() {
        const fake = withVoice();
        fake.wakeWordActivated("tovi");
        compare(bar.takeCalls(), ["summon()"]);
    }
}
