// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/VoiceText.js" as VoiceText

TestCase {
    name: "VoiceText"

    function test_joined_data() {
        return [
            { base: "open", segment: "the browser", joined: "open the browser" },
            { base: "  open ", segment: "\tthe  browser\n", joined: "open the  browser" },
            { base: "open", segment: " ", joined: "open" },
            { base: " ", segment: "open ", joined: "open" },
            { base: "", segment: "", joined: "" }
        ].map(row => Object.assign({ "tag": JSON.stringify([row.base, row.segment]) }, row));
    }

    function test_joined(data) {
        compare(VoiceText.joined(data.base, data.segment), data.joined);
    }

    function test_isCancellation_data() {
        const row = (tag, expected) => ({ "tag": tag, "expected": expected });
        return ["cancel that", "cancel", "stop", "never mind", "nevermind", "no", " Cancel THAT\n"].map(text => row(text, true))
            .concat(["", "stop it", "cancel.", "no no", "not", "cancelthat"].map(text => row(text, false)));
    }

    function test_isCancellation(data) {
        compare(VoiceText.isCancellation(data.tag), data.expected);
    }

    function tr(text) { return "<" + text + ">"; }

    function test_sentences() {
        compare(VoiceText.sentencePlace(2, 18, "command", tr), "<Sentence 3 / 18 · command>");
        compare(VoiceText.sentencePlace(0, 1, "{total}"), "Sentence 1 / 1 · {total}");
        compare(VoiceText.quoted("go back"), "“go back”");
    }

    function test_spoken() {
        compare(VoiceText.listening(true, tr), "<Listening...>");
        compare(VoiceText.listening(false, tr), "<Listening ended>");
        compare(VoiceText.understood(" go\n <b>back</b> {text} ", tr), "<Understood: go <b>back</b> {text}>");
        const cut = VoiceText.understood("word ".repeat(1000), tr);
        verify(cut.startsWith("<Understood: word word ") && cut.length < 550);
    }
}
