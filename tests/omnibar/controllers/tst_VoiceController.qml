// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/controllers"

// One long file, because the tests share the fakes and what they compare.
TestCase {
    id: test
    name: "VoiceController"

    property FakeBar bar
    property var voice

    Component { id: bars; FakeBar {} }
    Component { id: silent; VoiceController {} }
    Component { id: bridges; FakeBridge {} }
    Component { id: mutes; QtObject { property string status: "idle" } }
    Component { id: spies; SignalSpy {} }

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
        voice.voiceConfirmCountdown = 2;
        voice.voiceConfirmTimer.start();
    }

    //! Says something to a bar that confirms after 4 s.
    function pendBySpeech(fake, text) {
        fake.transcriptReady(text);
        comparePending(text, 4);
        bar.takeCalls();
    }

    //! @param countdown in seconds, halted if not given as running
    function comparePending(text, countdown, running = true) {
        compare([voice.voiceConfirmPending, voice.voiceConfirmCountdown, voice.voiceConfirmTimer.running, bar.inputField.text],
                [true, countdown, running, text]);
    }

    function compareEnded() {
        compare([voice.voiceConfirmPending, voice.voiceConfirmText, voice.voiceRephrasing, voice.voiceConfirmTimer.running,
                 bar.inputField.text], [false, "", false, false, ""]);
        compare(voice.voiceConfirmCountdown, voice.voiceConfirmTotal);
    }

    function understood(text) {
        return "announce(<Understood: {text}>)".replace("{text}", text);
    }

    function sent(text) {
        return ["appendUserMessage(" + text + ")", "scrollToBottom()", "sendToBridge(" + text + ")"];
    }

    function test_firstValues() {
        withoutVoice();
        compare(voice.voiceBridgeObject, null);
        compare([voice.voiceConfirmPending, voice.voiceConfirmText, voice.voiceConfirmTotal, voice.voiceConfirmCountdown,
                 voice.voiceRephrasing, voice.voiceComposeBase, voice.voiceManualSubmit], [false, "", 4, 4, false, "", false]);
        compare(voice.voiceConfirmTimer.interval, 1000);
        compare(voice.voiceConfirmTimer.repeat, true);
    }

    function test_theBridgeGivesTheDelay() {
        const fake = withVoice();
        fake.voiceConfirmDelaySec = 7;
        compare(voice.voiceConfirmTotal, 7);
        compare(voice.voiceConfirmCountdown, 7);
    }

    function test_send() {
        withoutVoice();
        pend("  open the file manager ");
        voice.voiceConfirmSend();
        compare(bar.takeCalls(), sent("open the file manager"));
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
        compare(bar.takeCalls(), sent("go"));
        compareEnded();
    }

    // ---- Transcripts

    function test_transcripts_data() {
        return [
            { tag: "words", words: "open the file manager", taken: true },
            { tag: "unchanged", words: "  two  spaces ", taken: true },
            { tag: "a command for the bar", words: "/clear", taken: true },
            { tag: "a cancellation, but nothing is pending", words: "stop", taken: true },
            { tag: "nothing", words: "", taken: false },
            { tag: "batch of a test", words: "open", batchSttMode: true, taken: false },
            { tag: "test in the settings", words: "open", voiceTestActive: true, taken: false },
            { tag: "both", words: "open", batchSttMode: true, voiceTestActive: true, taken: false }
        ];
    }

    function test_transcripts(data) {
        const fake = withVoice();
        fake.batchSttMode = Boolean(data.batchSttMode);
        fake.voiceTestActive = Boolean(data.voiceTestActive);
        bar.inputField.text = "typed";
        fake.transcriptReady(data.words);
        compare(bar.inputField.text, data.taken ? data.words : "typed");
        compare(bar.inputField.cursorPosition, data.taken ? data.words.length : 0);
        compare(bar.takeCalls(), data.taken ? [understood(data.words.trim().replace("  ", " ")), "inputField.forceActiveFocus()"] : []);
        compare(voice.voiceConfirmPending, data.taken);
        compare(voice.voiceConfirmText, data.taken ? data.words : "");
        compare(voice.voiceConfirmTimer.running, data.taken);
        compare(fake.takeCalls(), []);
    }

    function test_longTranscriptsAreCutForScreenReaders() {
        const fake = withVoice();
        fake.transcriptReady("word ".repeat(1000));
        verify(bar.takeCalls()[0].length < 600);
        compare(bar.inputField.text.length, 5000);
    }

    function test_inputDoesNotTakeTheFocusInTheBubble_data() {
        return [{ tag: "auto" }, { tag: "manual" }];
    }

    function test_inputDoesNotTakeTheFocusInTheBubble(data) {
        const fake = withVoice();
        fake.voiceSubmitMode = data.tag;
        bar.compactMode = true;
        fake.transcriptReady("open");
        compare(bar.inputField.text, "open");
        compare(bar.takeCalls(), [understood("open")]);
    }

    function test_transcriptsArriveAgainAfterATest() {
        const fake = withVoice();
        fake.voiceTestActive = true;
        fake.transcriptReady("for the test");
        fake.voiceTestActive = false;
        fake.transcriptReady("for the bar");
        compare(bar.inputField.text, "for the bar");
    }

    function test_aLateTranscriptOfATest_data() {
        return [{ tag: "voiceTestActive" }, { tag: "batchSttMode" }];
    }

    function test_aLateTranscriptOfATest(data) {
        const fake = withVoice();
        fake[data.tag] = true;
        fake.isListening = true;
        fake[data.tag] = false;
        fake.isListening = false;
        fake.transcriptReady("for the test");
        compare(bar.inputField.text, "");
        compare(bar.takeCalls(), []);
        fake.isListening = true;
        fake.isListening = false;
        fake.transcriptReady("for the bar");
        comparePending("for the bar", 4);
    }

    function test_countdownOfATranscript() {
        const fake = withVoice();
        fake.voiceConfirmDelaySec = 3;
        fake.transcriptReady("go");
        bar.takeCalls();
        for (const left of [3, 2, 1]) {
            comparePending("go", left);
            compare(bar.takeCalls(), []);
            voice.voiceConfirmTimer.triggered();
        }
        compare(bar.takeCalls(), sent("go"));
        compare(bar.lastInputMode, "voice");
        compareEnded();
    }

    function test_withoutADelayItIsSentAtOnce() {
        const fake = withVoice();
        fake.voiceConfirmDelaySec = 0;
        const shown = createTemporaryObject(spies, test, { "target": voice, "signalName": "voiceConfirmPendingChanged" });
        fake.transcriptReady("go");
        compare(bar.takeCalls(), [understood("go"), "inputField.forceActiveFocus()"].concat(sent("go")));
        compare(bar.lastInputMode, "voice");
        compareEnded();
        compare(shown.count, 0);
    }

    function test_aBlankTranscriptIsNotSent() {
        const fake = withVoice();
        fake.voiceConfirmDelaySec = 0;
        fake.transcriptReady("   ");
        compare(bar.takeCalls().slice(2), []);
        compare(bar.lastInputMode, "text");
    }

    function test_theDelayIsTurnedOffDuringTheCountdown() {
        const fake = withVoice();
        pendBySpeech(fake, "go");
        fake.voiceConfirmDelaySec = 0;
        comparePending("go", 4);
        fake.transcriptReady("now");
        compare(bar.takeCalls().slice(2), sent("now"));
        compareEnded();
    }

    function test_anUtteranceDuringTheCountdown_data() {
        return ["cancel that", "cancel", "stop", "never mind", "nevermind", "no", " STOP "].map(words => ({ "tag": words, "cancels": true }))
            .concat({ tag: "stop it", cancels: false }, { tag: "open the door", cancels: false });
    }

    function test_anUtteranceDuringTheCountdown(data) {
        const fake = withVoice();
        pendBySpeech(fake, "delete everything");
        voice.voiceConfirmTimer.triggered();
        fake.transcriptReady(data.tag);
        const calls = bar.takeCalls();
        if (data.cancels) {
            compareEnded();
            compare(calls, [understood(data.tag.trim())]);
            return;
        }
        comparePending(data.tag, 4);
        compare(voice.voiceConfirmText, data.tag);
        compare(calls, [understood(data.tag), "inputField.forceActiveFocus()"]);
    }

    // ---- Listening

    function test_listeningBegins_data() {
        return [
            { tag: "auto", mode: "auto", typed: "typed", left: "", base: "" },
            { tag: "manual", mode: "manual", typed: "  typed ", left: "typed", base: "typed" },
            { tag: "manual, only blanks", mode: "manual", typed: "  ", left: "  ", base: "" },
            { tag: "auto, in a batch", mode: "auto", test: "batchSttMode", typed: " typed", left: " typed", base: "before" },
            { tag: "auto, in a test", mode: "auto", test: "voiceTestActive", typed: " typed", left: " typed", base: "before" },
            { tag: "manual, in a test", mode: "manual", test: "voiceTestActive", typed: " typed", left: " typed", base: "before" }
        ];
    }

    function test_listeningBegins(data) {
        const fake = withVoice();
        fake.voiceSubmitMode = data.mode;
        if (data.test)
            fake[data.test] = true;
        bar.inputField.text = data.typed;
        voice.voiceComposeBase = "before";
        fake.isListening = true;
        compare(bar.inputField.text, data.left);
        compare(voice.voiceComposeBase, data.base);
        compare(bar.takeCalls(), data.test ? [] : ["announce(<Listening...>)"]);
        // The end of listening changes nothing.
        bar.inputField.text = "later";
        fake.isListening = false;
        compare(bar.inputField.text, "later");
        compare(voice.voiceComposeBase, data.base);
        compare(bar.takeCalls(), data.test ? [] : ["announce(<Listening ended>)"]);
    }

    function test_aCancelledCaptureEndsOnce() {
        const fake = withVoice();
        fake.isListening = true;
        fake.isListening = false;
        bar.takeCalls();
        fake.listeningChanged();
        compare(bar.takeCalls(), []);
    }

    function test_theCursorIsBehindTheBase() {
        const fake = withVoice();
        fake.voiceSubmitMode = "manual";
        bar.inputField.text = " typed";
        fake.isListening = true;
        compare(bar.inputField.cursorPosition, 5);
    }

    function test_partials_data() {
        return [
            { tag: "auto", mode: "auto", listening: true, partial: "open the", shown: "open the" },
            { tag: "manual", mode: "manual", listening: true, partial: " open the ", shown: "please open the" },
            { tag: "empty", mode: "auto", listening: true, partial: "", shown: "as it was" },
            { tag: "empty, manual", mode: "manual", listening: true, partial: "", shown: "as it was" },
            { tag: "not listening", mode: "auto", listening: false, partial: "open", shown: "as it was" },
            { tag: "in a batch", mode: "auto", test: "batchSttMode", listening: true, partial: "open", shown: "as it was" },
            { tag: "in a test", mode: "manual", test: "voiceTestActive", listening: true, partial: "open", shown: "as it was" }
        ];
    }

    function test_partials(data) {
        const fake = withVoice();
        fake.voiceSubmitMode = data.mode;
        fake.isListening = data.listening;
        if (data.test)
            fake[data.test] = true;
        fake.partialTranscript = "before";
        voice.voiceComposeBase = "please";
        bar.inputField.text = "as it was";
        bar.takeCalls();
        fake.partialTranscript = data.partial;
        compare(bar.inputField.text, data.shown);
        compare(bar.takeCalls(), []);
        compare(voice.voiceConfirmPending, false);
    }

    // ---- Manual mode

    function test_utterancesAreCollected() {
        const fake = withVoice();
        fake.voiceSubmitMode = "manual";
        verify(voice.voiceManualSubmit);
        bar.inputField.text = " please ";
        for (const [words, collected] of [[" open ", "please open"], ["the browser", "please open the browser"], ["stop", "please open the browser stop"]]) {
            fake.isListening = true;
            fake.isListening = false;
            bar.takeCalls();
            fake.transcriptReady(words);
            compare(bar.inputField.text, collected);
            compare(bar.inputField.cursorPosition, collected.length);
            compare(voice.voiceComposeBase, collected);
            compare(bar.takeCalls(), [understood(words.trim()), "inputField.forceActiveFocus()"]);
            compare([voice.voiceConfirmPending, voice.voiceConfirmTimer.running], [false, false]);
        }
        compare(bar.lastInputMode, "text");
    }

    function test_whatIsTypedMeanwhileIsKept() {
        const fake = withVoice();
        fake.voiceSubmitMode = "manual";
        bar.inputField.text = "open";
        fake.isListening = true;
        bar.inputField.text = "open now ";
        bar.inputEdited();
        fake.transcriptReady("the browser");
        compare(bar.inputField.text, "open now the browser");
    }

    function test_aPartialIsNotKeptTwice() {
        const fake = withVoice();
        fake.voiceSubmitMode = "manual";
        bar.inputField.text = "open";
        fake.isListening = true;
        fake.partialTranscript = "the";
        bar.inputField.text = "open thex";
        bar.inputEdited();
        fake.transcriptReady("the browser");
        compare(bar.inputField.text, "open the browser");
    }

    function test_whatWasSentDoesNotComeBack() {
        const fake = withVoice();
        fake.voiceSubmitMode = "manual";
        fake.transcriptReady("open");
        bar.inputField.text = ""; // as Enter does
        fake.transcriptReady("the browser");
        compare(bar.inputField.text, "the browser");
    }

    function test_typingInAutoModeChangesNothing() {
        const fake = withVoice();
        bar.inputField.text = "typed";
        bar.inputEdited();
        compare([voice.voiceConfirmPending, voice.voiceConfirmCountdown, voice.voiceComposeBase], [false, 4, ""]);
        fake.isListening = true;
        compare(bar.inputField.text, "");
    }

    function test_theModeChangesDuringTheCountdown() {
        const fake = withVoice();
        pendBySpeech(fake, "open");
        fake.voiceSubmitMode = "manual";
        voice.voiceConfirmTimer.triggered();
        comparePending("open", 3);
        voice.voiceConfirmSend();
        compare(bar.takeCalls(), sent("open"));
        compareEnded();
    }

    // ---- Edits

    function test_anEditHaltsTheCountdown() {
        const fake = withVoice();
        pendBySpeech(fake, "open");
        bar.inputField.text = "open it";
        bar.inputEdited();
        comparePending("open it", 0, false);
        compare(bar.takeCalls(), []);
        voice.voiceConfirmSend();
        compare(bar.takeCalls(), sent("open it"));
        compareEnded();
    }

    function test_theNextUtteranceReplacesAnEditedOne() {
        const fake = withVoice();
        pendBySpeech(fake, "open");
        bar.inputEdited();
        fake.transcriptReady("close");
        comparePending("close", 4);
    }

    // ---- Rephrasing

    function withRephrasing(text) {
        const fake = withVoice();
        bar.bridge = createTemporaryObject(bridges, test);
        pendBySpeech(fake, text);
        voice.voiceConfirmTimer.triggered();
        voice.voiceRephrase();
        comparePending(text, 3, false);
        compare(voice.voiceRephrasing, true);
        compare(bar.bridge.takeCalls(), ["rephraseText(" + text.trim() + ")"]);
        return fake;
    }

    function test_rephrase() {
        withRephrasing(" open it ");
        voice.voiceRephrase();
        compare(bar.bridge.takeCalls(), []);
        bar.bridge.rephraseReady("open it", "Open the browser");
        comparePending("Open the browser", 4);
        compare(bar.takeCalls(), []); // the focus stays
        compare([voice.voiceConfirmText, voice.voiceRephrasing, bar.inputField.cursorPosition], ["Open the browser", false, 16]);
        voice.voiceRephrase();
        compare(bar.bridge.takeCalls(), ["rephraseText(Open the browser)"]);
    }

    function test_anEditedPromptIsRephrased() {
        const fake = withVoice();
        bar.bridge = createTemporaryObject(bridges, test);
        pendBySpeech(fake, "open");
        bar.inputField.text = "open it";
        bar.inputEdited();
        voice.voiceRephrase();
        compare(bar.bridge.takeCalls(), ["rephraseText(open it)"]);
        bar.bridge.rephraseReady("open it", "Open it");
        comparePending("Open it", 4);
    }

    function test_nothingToRephrase() {
        withVoice();
        bar.bridge = createTemporaryObject(bridges, test);
        bar.inputField.text = "typed";
        voice.voiceRephrase();
        compare(bar.bridge.takeCalls(), []);
        compare(voice.voiceRephrasing, false);
        bar.bridge.rephraseReady("typed", "Typed");
        compare(bar.inputField.text, "typed");
        compare(voice.voiceConfirmPending, false);
    }

    function test_anErasedPromptIsNotRephrased() {
        const fake = withVoice();
        bar.bridge = createTemporaryObject(bridges, test);
        pendBySpeech(fake, "open");
        bar.inputField.text = " ";
        bar.inputEdited();
        voice.voiceRephrase();
        compare(bar.bridge.takeCalls(), []);
        comparePending(" ", 0, false);
        compare(voice.voiceRephrasing, false);
    }

    function test_rephraseWithoutABridge_data() {
        return [{ tag: "no bridge" }, { tag: "no such function" }];
    }

    function test_rephraseWithoutABridge(data) {
        const fake = withVoice();
        if (data.tag === "no such function")
            bar.bridge = createTemporaryObject(mutes, test);
        pendBySpeech(fake, "open");
        voice.voiceRephrase();
        comparePending("open", 4, false);
        compare(voice.voiceRephrasing, false);
    }

    function test_anEmptyResultLeavesTheCountdownHalted_data() {
        return [{ tag: "empty", result: "" }, { tag: "blank", result: " \n" }];
    }

    function test_anEmptyResultLeavesTheCountdownHalted(data) {
        withRephrasing("open");
        bar.bridge.rephraseReady("open", data.result);
        comparePending("open", 3, false);
        compare([voice.voiceConfirmText, voice.voiceRephrasing], ["open", false]);
        voice.voiceRephrase();
        compare(bar.bridge.takeCalls(), ["rephraseText(open)"]);
    }

    function test_lateResults_data() {
        return [
            { tag: "after Cancel", act: () => voice.voiceConfirmCancel(), text: "" },
            { tag: "after Send", act: () => voice.voiceConfirmSend(), text: "" },
            { tag: "after an edit", act: () => { bar.inputField.text = "mine"; bar.inputEdited(); }, text: "mine", countdown: 0 },
            { tag: "after the next utterance", act: fake => fake.transcriptReady("close"), text: "close", countdown: 4, running: true },
            { tag: "of the confirmation before", act: fake => { voice.voiceConfirmCancel(); fake.transcriptReady("close"); }, text: "close", countdown: 4, running: true }
        ];
    }

    function test_lateResults(data) {
        // The error may be that of another request.
        for (const isAfterAnError of [false, true]) {
            const fake = withRephrasing("open");
            if (isAfterAnError)
                bar.bridge.errorOccurred("no model");
            data.act(fake);
            compare(voice.voiceRephrasing, false);
            bar.bridge.rephraseReady("open", "Open the browser");
            if (data.countdown === undefined)
                compareEnded();
            else
                comparePending(data.text, data.countdown, Boolean(data.running));
            compare(voice.voiceRephrasing, false);
        }
    }

    function test_resultAfterAnError() {
        withRephrasing("open");
        bar.bridge.errorOccurred("of another request");
        bar.bridge.rephraseReady("open", "Open the browser");
        comparePending("Open the browser", 4);
    }

    function test_aSecondRequestAfterALateResult() {
        const fake = withRephrasing("open");
        voice.voiceConfirmCancel();
        pendBySpeech(fake, "close");
        voice.voiceRephrase();
        compare(voice.voiceRephrasing, true);
        bar.bridge.rephraseReady("close", "Close it");
        comparePending("Close it", 4);
    }

    function test_noResult_data() {
        return [
            { tag: "the connection is lost", act: () => { bar.bridge.status = "disconnected"; } },
            { tag: "an error", act: () => bar.bridge.errorOccurred("no model") }
        ];
    }

    function test_noResult(data) {
        withRephrasing("open");
        data.act();
        comparePending("open", 3, false);
        compare(voice.voiceRephrasing, false);
        voice.voiceRephrase();
        compare(bar.bridge.takeCalls(), ["rephraseText(open)"]);
    }

    function test_sendWhileRephrasing() {
        withRephrasing("open");
        voice.voiceConfirmSend();
        compare(bar.takeCalls(), sent("open"));
        compareEnded();
    }

    // ---- The rest

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
