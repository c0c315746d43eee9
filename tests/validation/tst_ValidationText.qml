// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/validation/ValidationText.js" as ValidationText

TestCase {
    name: "ValidationText"

    function tr(text) { return "<" + text + ">"; }

    readonly property var allFlags: ({ "whisperSmallAvailable": true, "whisperSmallQ5Available": true, "moonshineAvailable": true, "nemotronAvailable": true })

    function test_offeredEngines_data() {
        const whisper = { value: "whisper", text: "Whisper base.en (~142 MB)" };
        const small = { value: "whisper-small", text: "Whisper small.en (~466 MB)" };
        const quantised = { value: "whisper-small-q5", text: "Whisper small.en Q5_1 (~182 MB) ★" };
        const moonshine = { value: "moonshine", text: "Moonshine v2 Tiny (~43 MB)" };
        const nemotron = { value: "nemotron", text: "Nemotron 0.6B 560ms (~630 MB)" };
        const forMoonshine = "Moonshine: setup-moonshine.sh";
        const forNemotron = "Nemotron: setup-nemotron.sh";
        return [
            { tag: "no voice", voice: null, rows: [whisper], hints: forMoonshine + "\n" + forNemotron },
            { tag: "none", voice: {}, rows: [whisper], hints: forMoonshine + "\n" + forNemotron },
            { tag: "small", voice: { whisperSmallAvailable: true }, rows: [whisper, small], hints: forMoonshine + "\n" + forNemotron },
            { tag: "quantised", voice: { whisperSmallQ5Available: true }, rows: [whisper, quantised], hints: forMoonshine + "\n" + forNemotron },
            { tag: "moonshine", voice: { moonshineAvailable: true }, rows: [whisper, moonshine], hints: forNemotron },
            { tag: "nemotron", voice: { nemotronAvailable: true }, rows: [whisper, nemotron], hints: forMoonshine },
            { tag: "all", voice: allFlags, rows: [whisper, small, quantised, moonshine, nemotron], hints: "" }
        ];
    }

    function test_offeredEngines(data) {
        compare(ValidationText.offeredEngines(data.voice), data.rows);
        compare(ValidationText.engineHints(data.voice), data.hints);
    }

    // Each row has everything that the later rows test for, too.
    function test_stateOf_data() {
        const voice = (isListening, isTranscribing, isModelLoaded) => ({ isListening, isTranscribing, isModelLoaded });
        return [
            { tag: "no bridge", voice: null, error: "broken", text: "Unavailable", color: "#888" },
            { tag: "listening", voice: voice(true, true, true), error: "broken", text: "Listening", color: "#e53935" },
            { tag: "transcribing", voice: voice(false, true, true), error: "broken", text: "Transcribing", color: "#fb8c00" },
            { tag: "error", voice: voice(false, false, true), error: "broken", text: "Error", color: "#ef5350" },
            { tag: "ready", voice: voice(false, false, true), error: "", text: "Ready", color: "#43a047" },
            { tag: "no model", voice: voice(false, false, false), error: "", text: "No model", color: "#888" }
        ];
    }

    function test_stateOf(data) {
        const state = ValidationText.stateOf(data.voice, data.error);
        compare([state.text, state.color], [data.text, data.color]);
    }

    function test_captureLine() {
        const batch = "Stops after ~1.5 s silence · 16 kHz mono";
        compare(ValidationText.captureLine(null), batch);
        compare(ValidationText.captureLine({ liveSttAvailable: false, silenceTimeoutMs: 700 }), batch);
        compare(ValidationText.captureLine({ liveSttAvailable: true }), "Live partials enabled (Nemotron streaming)");
        compare(ValidationText.captureLine(null, text => "(" + text + ")"), "(" + batch + ")");
    }

    function test_levelShare() {
        compare([0, 0.01, 0.04, 0.05, 1].map(ValidationText.levelShare), [0, 0.25, 1, 1, 1]);
    }

    function test_lines() {
        compare(ValidationText.missingEngine("foo"), "foo is not installed");
        compare(ValidationText.missingEngine("a\n" + "b".repeat(50)), "a\ufffd" + "b".repeat(38) + "… is not installed");
        compare(ValidationText.historyHeading({ time: "14:03:22", backend: "moonshine", text: "x", ms: 340 }), "14:03:22 · moonshine · 340 ms");
        compare(ValidationText.resultHeading({ accuracy: 0.75, sentenceId: "s02", category: "command", backend: "whisper", ms: 12 }),
                "75% · s02 · command · whisper · 12 ms");
        compare(ValidationText.historyHeading({ time: "14:03:22", backend: "moonshine", ms: 340 }, tr), "14:03:22 · moonshine · <340 ms>");
        compare(ValidationText.resultHeading({ accuracy: 0.75, sentenceId: "s02", category: "command", backend: "whisper", ms: 12 }, tr),
                "75% · s02 · command · whisper · <12 ms>");
    }

    function test_scoresLine() {
        const results = [
            { backend: "whisper", accuracy: 1, ms: 100 },
            { backend: "moonshine", accuracy: 0.5, ms: 40 },
            { backend: "whisper", accuracy: 0.75, ms: 201 }
        ];
        compare(ValidationText.summary(results, "whisper"), "88% avg · 151 ms");
        compare(ValidationText.summary(results, "nemotron"), "—");
        const rows = [{ value: "whisper" }, { value: "moonshine" }, { value: "nemotron" }];
        compare(ValidationText.scoresLine(rows, results), "Scores · whisper 88% avg · 151 ms  |  moonshine 50% avg · 40 ms  |  nemotron —");
        compare(ValidationText.scoresLine(rows.slice(0, 1), []), "Scores · whisper —");
        compare(ValidationText.scoresLine(rows.slice(0, 1), results, tr), "<Scores · whisper <88% avg · 151 ms>>");
    }
}
