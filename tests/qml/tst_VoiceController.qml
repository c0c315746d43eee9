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

    // Each instance sees a voice bridge of its own under the name that the program's context gives it.
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

    function test_sendOfNothing() {
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

    function test_repliesAreSpoken_data() {
        return [
            { tag: "on", enabled: true, available: true, spoken: ["hello"] },
            { tag: "switched off", enabled: false, available: true, spoken: [] },
            { tag: "not there", enabled: true, available: false, spoken: [] }
        ];
    }

    function test_repliesAreSpoken(data) {
        const fake = withVoice();
        fake.ttsEnabled = data.enabled;
        fake.ttsAvailable = data.available;
        voice.speakReply("hello");
        compare(fake.spoken, data.spoken);
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
