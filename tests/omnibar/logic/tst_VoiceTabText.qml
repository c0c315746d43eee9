// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/VoiceTabText.js" as VoiceTabText

TestCase {
    name: "VoiceTabText"

    function tr(text) { return "<" + text + ">"; }

    function test_ranges() {
        compare(VoiceTabText.silence, { from: 200, to: 3000, step: 50, fallback: 700 });
        compare(VoiceTabText.delay, { from: 0, to: 15, step: 1, fallback: 4 });
    }

    function test_inRange_data() {
        return [
            { tag: "inside", value: 725, result: 725 },
            { tag: "minimum", value: 200, result: 200 },
            { tag: "maximum", value: 3000, result: 3000 },
            { tag: "too small", value: -1, result: 200 },
            { tag: "too large", value: 5000, result: 3000 },
            { tag: "none", value: undefined, result: 700 }
        ];
    }
    function test_inRange(data) {
        compare(VoiceTabText.inRange(data.value, VoiceTabText.silence), data.result);
    }

    function test_sliderTexts() {
        compare(VoiceTabText.silenceText(700, tr), "<700 ms>");
        compare(VoiceTabText.silenceText(200, null), "200 ms");
        compare(VoiceTabText.delayText(0, tr), "<Instant>");
        compare(VoiceTabText.delayText(1, tr), "<1 s>");
        compare(VoiceTabText.delayText(15, null), "15 s");
    }

    function test_lineKind_data() {
        return [
            { tag: "ERROR no speech engine", kind: "error" },
            { tag: "[12:00:00.000] ERROR x", kind: "error" },
            { tag: "CORRECTED \"a\" -> \"b\"", kind: "corrected" },
            { tag: "TRANSCRIPT \"a\"  latency=12ms", kind: "transcript" },
            { tag: "TRANSCRIPT \"ERROR\"  latency=12ms", kind: "error" },
            { tag: "CORRECTED \"TRANSCRIPT\" -> \"b\"", kind: "corrected" },
            { tag: "TRANSCRIBING (batch)  backend=whisper", kind: "other" },
            { tag: "an error that was transcribed and corrected", kind: "other" },
            { tag: "", kind: "other" }
        ];
    }
    function test_lineKind(data) {
        compare(VoiceTabText.lineKind(data.tag), data.kind);
    }

    function test_logRows() {
        compare(VoiceTabText.logRows([]), []);
        compare(VoiceTabText.logRows(["b", "a"]), [{ line: "b" }, { line: "a" }]);
    }

    function test_testState_data() {
        const ready = { available: true, problem: "", listening: false, transcribing: false, modelLoaded: true };
        const row = (tag, state, text) => ({ tag: tag, state: Object.assign({}, ready, state), text: text });
        return [
            row("ready", {}, "<Start listening, then read the sentence aloud.>"),
            row("no voice path", { available: false, problem: "x", listening: true }, "<Voice input unavailable>"),
            row("no model", { modelLoaded: false }, "<No speech model is loaded.>"),
            row("listening", { listening: true }, "<Listening...>"),
            row("transcribing", { transcribing: true }, "<Transcribing...>"),
            row("listening without a model", { listening: true, modelLoaded: false }, "<Listening...>"),
            row("problem", { problem: "Model {broken}", modelLoaded: false }, "Model {broken}"),
            row("problem while listening", { problem: "No microphone", listening: true }, "No microphone")
        ];
    }
    function test_testState(data) {
        compare(VoiceTabText.testState(data.state, tr), data.text);
    }

    function test_withResult() {
        const first = { id: "a", hypothesis: "1" };
        const second = { id: "b", hypothesis: "2" };
        const better = { id: "a", hypothesis: "3" };
        compare(VoiceTabText.withResult([], first), [first]);
        compare(VoiceTabText.withResult([first], second), [first, second]);
        const results = [first, second];
        compare(VoiceTabText.withResult(results, better), [better, second]);
        compare(results, [first, second]);
    }

    function test_resultRows() {
        const result = { id: "v01", category: "command", reference: "open", hypothesis: "oben", accuracy: 0.5, latencyMs: 120 };
        compare(VoiceTabText.resultRows([result]), [{ rid: "v01", rhypothesis: "oben", raccuracy: 0.5, rlatency: 120 }]);
    }

    function test_resultLine() {
        compare(VoiceTabText.resultLine({ id: "v01", hypothesis: "go back", accuracy: 0.857, latencyMs: 120 }),
                "TEST v01 86% · 120ms · \"go back\"");
    }
}
