// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/voice/sentenceSuite.js" as SentenceSuite

TestCase {
    id: test
    name: "SentenceSuite"

    property var loaded: null

    function test_parse_data() {
        const go = { "id": "v06", "category": "short", "text": "go back" };
        return [
            { tag: "a suite", content: JSON.stringify({ version: 1, sentences: [go, go] }), sentences: [go, go] },
            { tag: "nothing", content: "", sentences: [] },
            { tag: "broken", content: "{\"sentences\": [", sentences: [] },
            { tag: "null", content: "null", sentences: [] },
            { tag: "a list", content: JSON.stringify([go]), sentences: [] },
            { tag: "no list", content: JSON.stringify({ sentences: go }), sentences: [] },
            { tag: "incomplete sentences", content: JSON.stringify({ sentences: [null, "go", { id: "a", category: "b" }, { id: "", category: "b", text: "c" }, { id: 1, category: "b", text: "c" }, go] }), sentences: [go] }
        ];
    }

    function test_parse(data) {
        compare(SentenceSuite.parse(data.content), data.sentences);
    }

    function test_load_data() {
        return [
            { tag: "stt-sentence-suite.json", count: 18, first: "open the browser" },
            { tag: "stt-live-validation-suite.json", count: 10, first: "open the file manager and go to downloads" },
            { tag: "missing.json", count: 0 }
        ];
    }

    function test_load(data) {
        loaded = null;
        SentenceSuite.load("qrc:///org/kde/loomra/voice/" + data.tag, sentences => { test.loaded = sentences; });
        tryVerify(() => test.loaded !== null);
        compare(loaded.length, data.count);
        if (data.count > 0)
            compare(loaded[0].text, data.first);
    }
}
