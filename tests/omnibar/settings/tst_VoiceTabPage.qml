// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar"
import "qrc:/org/kde/loomra/contents/ui/omnibar/settings"
import "../controllers"

Item {
    id: root

    width: 600
    height: 1200

    FakeVoiceBridge {
        id: fakeVoice
    }

    FakeBar {
        id: fakeBar

        property var voice: fakeVoice
        property bool visible: true

        settingsPanelOpen: true
    }

    OmniBarTheme {
        id: omniTheme
    }

    SettingsTab {
        id: voiceSettings

        current: true
    }

    Component {
        id: factory

        VoiceTab {
            width: 600
            bar: fakeBar
            theme: omniTheme
            tab: voiceSettings
        }
    }

    TestCase {
        name: "VoiceTabPage"
        when: windowShown

        property var page

        function init() {
            fakeBar.voice = fakeVoice;
            fakeBar.settingsPanelOpen = true;
            fakeBar.compactMode = false;
            fakeBar.visible = true;
            voiceSettings.current = true;
            const initial = {
                "sttInputMode": "batch", "voiceSubmitMode": "auto", "silenceTimeoutMs": 700,
                "voiceConfirmDelaySec": 4, "voiceLogEnabled": false, "voiceLog": [], "liveSttAvailable": false,
                "isModelLoaded": true
            };
            Object.keys(initial).forEach(name => { fakeVoice[name] = initial[name]; });
            page = createTemporaryObject(factory, root);
            verify(page);
            fakeVoice.calls = [];
        }
        function item(name) {
            const found = findChild(page, name);
            verify(found, name);
            return found;
        }
        function figure(name) {
            return findChild(item(name).parent, "figure").text;
        }
        //! A row of the log, which the list creates later.
        function logRow(index) {
            const view = item("voiceLogList").view;
            tryVerify(() => view.itemAtIndex(index));
            return view.itemAtIndex(index);
        }
        //! All texts of the page, in order. Those of controls are left out.
        function captions() {
            const texts = [];
            const collect = parent => Array.from(parent.children).filter(child => child.visible).forEach(child => {
                if (child.textFormat !== undefined)
                    texts.push(child.text);
                else if (child.objectName === "delaySection")
                    collect(child);
            });
            collect(page);
            return texts;
        }

        function test_headings() {
            const headings = Array.from(page.children).filter(child => child.isSection !== undefined);
            compare(headings.map(heading => heading.isSection), [false, true, true, true, true]);
        }

        function test_words() {
            compare(captions(), [
                "<Voice input>",
                "<Tune transcription, silence detection, and voice command behavior.>",
                "<Transcription method>",
                "<Shared by OmniBar mic and Voice test. Batch records then transcribes; Live shows text while you speak.>",
                "<Live streaming is not available on this system. Batch will be used instead.>",
                "<After transcription>",
                "<OmniBar only. Manual mode appends each utterance so you can keep speaking before pressing Enter.>",
                "<Silence detection>",
                "<How long to wait after you stop speaking before sending audio for transcription.>",
                "<Voice command safety>",
                "<Auto send: countdown before the prompt is sent. Set 0 s to send immediately. Cancel or edit during the countdown.>",
                "<Voice event log>",
                "<When on, captures timestamped events for listening, silence detection, transcription, and corrections.>"
            ]);
            compare(String(item("noLiveStt").color), "#8a6a4a");
            verify(item("voiceTestPanel").y > item("delaySection").y);
        }

        function test_liveAvailable() {
            fakeVoice.liveSttAvailable = true;
            verify(!item("noLiveStt").visible);
        }

        // ---- Choices

        function test_choices_data() {
            return [
                {
                    tag: "methodCombo", property: "sttInputMode", label: "<Method>",
                    values: ["batch", "live"], texts: ["<Record, then transcribe>", "<Live streaming>"]
                },
                {
                    tag: "submitCombo", property: "voiceSubmitMode", label: "<Submit>",
                    values: ["auto", "manual"], texts: ["<Auto send — countdown then send>", "<Manual — compose, then Enter>"]
                }
            ];
        }
        function test_choices(data) {
            const box = item(data.tag);
            compare(box.Accessible.name, data.label);
            compare(box.count, 2);
            compare(box.displayText, data.texts[0]);
            box.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Down);
            compare(fakeVoice[data.property], data.values[1]);
            compare(box.displayText, data.texts[1]);
            // It still follows the object after the user has chosen.
            fakeVoice[data.property] = data.values[0];
            compare(box.displayText, data.texts[0]);
            fakeVoice[data.property] = data.values[1];
            compare(box.displayText, data.texts[1]);
        }

        function test_refusedChoice() {
            const refuse = () => { fakeVoice.sttInputMode = "batch"; };
            fakeVoice.sttInputModeChanged.connect(refuse);
            const box = item("methodCombo");
            box.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Down);
            fakeVoice.sttInputModeChanged.disconnect(refuse);
            compare(fakeVoice.sttInputMode, "batch");
            compare(box.displayText, "<Record, then transcribe>");
        }

        // ---- Sliders

        function test_sliders_data() {
            return [
                { tag: "silenceSlider", property: "silenceTimeoutMs", label: "<Silence timeout>", range: [200, 3000, 50], initial: "<700 ms>", up: 750, upText: "<750 ms>" },
                { tag: "delaySlider", property: "voiceConfirmDelaySec", label: "<Auto-send delay>", range: [0, 15, 1], initial: "<4 s>", up: 5, upText: "<5 s>" }
            ];
        }
        function test_sliders(data) {
            const slider = item(data.tag);
            compare(slider.Accessible.name, data.label);
            compare([slider.from, slider.to, slider.stepSize], data.range);
            compare(figure(data.tag), data.initial);
            compare(slider.Accessible.description, data.initial);
            slider.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Right);
            compare(fakeVoice[data.property], data.up);
            compare(figure(data.tag), data.upText);
            // It still follows the object after it was moved.
            fakeVoice[data.property] = data.range[0];
            compare(slider.value, data.range[0]);
            keyClick(Qt.Key_Left);
            compare(fakeVoice[data.property], data.range[0]);
        }

        function test_instant() {
            fakeVoice.voiceConfirmDelaySec = 0;
            compare(figure("delaySlider"), "<Instant>");
            fakeVoice.voiceConfirmDelaySec = 1;
            compare(figure("delaySlider"), "<1 s>");
        }

        function test_storedValuesOutOfRange_data() {
            return [
                { tag: "too small", silence: 1, delay: -3, silenceShown: 200, delayShown: 0, texts: ["<200 ms>", "<Instant>"] },
                { tag: "too large", silence: 5000, delay: 99, silenceShown: 3000, delayShown: 15, texts: ["<3000 ms>", "<15 s>"] }
            ];
        }
        function test_storedValuesOutOfRange(data) {
            fakeVoice.silenceTimeoutMs = data.silence;
            fakeVoice.voiceConfirmDelaySec = data.delay;
            page = createTemporaryObject(factory, root);
            compare(item("silenceSlider").value, data.silenceShown);
            compare(item("delaySlider").value, data.delayShown);
            compare([figure("silenceSlider"), figure("delaySlider")], data.texts);
            compare(fakeVoice.silenceTimeoutMs, data.silence);
            compare(fakeVoice.voiceConfirmDelaySec, data.delay);
        }

        function test_refusedMove() {
            const refuse = () => { fakeVoice.silenceTimeoutMs = 700; };
            fakeVoice.silenceTimeoutMsChanged.connect(refuse);
            const slider = item("silenceSlider");
            slider.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Right);
            fakeVoice.silenceTimeoutMsChanged.disconnect(refuse);
            compare(slider.value, 700);
        }

        function test_manualModeHasNoDelay() {
            fakeVoice.voiceSubmitMode = "manual";
            verify(!item("delaySection").visible);
            verify(!item("delaySlider").visible);
            fakeVoice.voiceSubmitMode = "auto";
            verify(item("delaySlider").visible);
        }

        function test_withoutVoicePath() {
            fakeBar.voice = null;
            page = createTemporaryObject(factory, root);
            compare(item("methodCombo").displayText, "<Record, then transcribe>");
            compare(item("submitCombo").displayText, "<Auto send — countdown then send>");
            compare(figure("silenceSlider"), "<700 ms>");
            compare(figure("delaySlider"), "<4 s>");
            verify(!item("noLiveStt").visible);
            verify(!item("voiceLogSwitch").checked);
            verify(!findChild(page, "voiceLogList"));
            ["methodCombo", "submitCombo", "silenceSlider", "delaySlider", "voiceLogSwitch"].forEach(name => verify(!item(name).enabled, name));
        }

        // ---- The voice test

        function test_voiceTestIsActive_data() {
            return [
                { tag: "another tab", leave: () => { voiceSettings.current = false; } },
                { tag: "closed sheet", leave: () => { fakeBar.settingsPanelOpen = false; } },
                { tag: "bubble", leave: () => { fakeBar.compactMode = true; } },
                { tag: "hidden window", leave: () => { fakeBar.visible = false; } }
            ];
        }
        function test_voiceTestIsActive(data) {
            compare(item("voiceTestPanel").active, true);
            compare(fakeVoice.voiceTestActive, true);
            data.leave();
            compare(fakeVoice.voiceTestActive, false);
        }

        // ---- The log

        function test_logSwitch() {
            const control = item("voiceLogSwitch");
            compare(control.label, "<Enable voice logging>");
            mouseClick(control);
            compare(fakeVoice.voiceLogEnabled, true);
            verify(item("voiceLogList").visible);
            fakeVoice.voiceLogEnabled = false;
            compare(control.checked, false);
            tryVerify(() => !findChild(page, "voiceLogList"));
        }

        function test_logHeight_data() {
            return [
                { tag: "0", height: 60 }, { tag: "1", height: 28 }, { tag: "11", height: 188 }, { tag: "12", height: 200 },
                { tag: "200", height: 200 }
            ];
        }
        function test_logHeight(data) {
            fakeVoice.voiceLogEnabled = true;
            fakeVoice.voiceLog = Array.from({ length: Number(data.tag) }, (unused, i) => "line " + i);
            compare(item("voiceLogList").height, data.height);
            compare(item("noVoiceEvents").visible, data.tag === "0");
            compare(item("noVoiceEvents").text, "<No voice events yet. Start speaking to see logs here.>");
        }

        function test_logLines() {
            fakeVoice.voiceLogEnabled = true;
            fakeVoice.voiceLog = ["ERROR <img src='x'>", "CORRECTED a", "TRANSCRIPT \u202eb\nc", "START"];
            const shown = [0, 1, 2, 3].map(i => findChild(logRow(i), "voiceLogLine"));
            compare(shown.map(line => line.text), ["ERROR <img src='x'>", "CORRECTED a", "TRANSCRIPT \ufffdb\ufffdc", "START"]);
            compare(shown.map(line => String(line.color)),
                    ["#ef4444", "#ffd700", "#4ade80", String(Qt.rgba(1, 1, 1, 0.75))]);
            shown.forEach(line => {
                compare(line.textFormat, Text.PlainText);
                compare(line.font.pointSize, 7.5);
                compare(line.font.family, "monospace");
            });
            compare(logRow(2).Accessible.name, "TRANSCRIPT \ufffdb\ufffdc");
        }

        function test_newLineKeepsTheOthers() {
            fakeVoice.voiceLogEnabled = true;
            const lines = Array.from({ length: 200 }, (unused, i) => "line " + (200 - i));
            fakeVoice.voiceLog = lines;
            const view = item("voiceLogList").view;
            const first = logRow(0);
            verify(view.contentItem.children.length < 40);
            fakeVoice.voiceLog = ["line 201"].concat(lines.slice(0, 199));
            tryVerify(() => logRow(0).line === "line 201");
            verify(logRow(1) === first);
            compare(item("voiceLogList").count, 200);
            compare(view.contentY, view.originY);

            view.positionViewAtIndex(100, ListView.Beginning);
            const hundredth = logRow(100);
            const place = hundredth.mapToItem(view, 0, 0).y;
            const shownLine = hundredth.line;
            fakeVoice.voiceLog = ["line 202", "line 201"].concat(lines.slice(0, 198));
            tryVerify(() => view.itemAtIndex(101) === hundredth);
            compare(hundredth.line, shownLine);
            compare(hundredth.mapToItem(view, 0, 0).y, place);
        }

        function test_clearLog() {
            fakeVoice.voiceLogEnabled = true;
            fakeVoice.voiceLog = ["a"];
            compare(item("clearVoiceLogBtn").label, "<Clear log>");
            mouseClick(item("clearVoiceLogBtn"));
            compare(fakeVoice.calls, ["clearVoiceLog()"]);
            fakeVoice.voiceLog = [];
            compare(item("voiceLogList").count, 0);
        }
    }
}
