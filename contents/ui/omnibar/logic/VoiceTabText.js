// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library
.import "../../../../components/logic/Translatable.js" as Translatable
.import "../../../../voice/sttSentenceScoring.js" as Scoring

// Wording, ranges and colours of the Voice tab. Each function that makes a text takes the translating function last.

const mark = Translatable.mark;

function text(marked, values, tr) {
    return Translatable.filled(Translatable.translated(marked, tr), values);
}

// ---- Sliders

/** The pause that ends an utterance, in ms. */
const silence = { from: 200, to: 3000, step: 50, fallback: 700 };
/** The time until a transcript is sent, in s. */
const delay = { from: 0, to: 15, step: 1, fallback: 4 };

/** A value limited to a slider's range; the fallback if there is no value. */
function inRange(value, range) {
    return typeof value === "number" ? Math.max(range.from, Math.min(range.to, value)) : range.fallback;
}

function silenceText(ms, tr) {
    return text(mark("{count} ms"), { count: ms }, tr);
}

function delayText(seconds, tr) {
    return seconds === 0 ? text(mark("Instant"), {}, tr) : text(mark("{count} s"), { count: seconds }, tr);
}

// ---- The voice log

// The first row whose word the line contains counts.
const lineKinds = [
    { word: "ERROR", kind: "error" },
    { word: "CORRECTED", kind: "corrected" },
    { word: "TRANSCRIPT", kind: "transcript" }
];

/** What a line of the log is about: "error", "corrected", "transcript" or "other". */
function lineKind(line) {
    const row = lineKinds.find(candidate => line.includes(candidate.word));
    return row ? row.kind : "other";
}

/** The rows of a list that shows the log. */
function logRows(lines) {
    return Array.from(lines, line => ({ line: line }));
}

// ---- The voice test

// The first row that applies counts. A problem is reported while the voice path still listens, if there is no
// microphone.
const testStates = [
    { applies: state => !state.available, text: mark("Voice input unavailable") },
    { applies: state => state.problem !== "", text: "" },
    { applies: state => state.listening, text: mark("Listening...") },
    { applies: state => state.transcribing, text: mark("Transcribing...") },
    { applies: state => !state.modelLoaded, text: mark("No speech model is loaded.") },
    { applies: () => true, text: mark("Start listening, then read the sentence aloud.") }
];

/** What the user may expect or do. state: {available, problem, listening, transcribing, modelLoaded} */
function testState(state, tr) {
    return text(testStates.find(row => row.applies(state)).text, {}, tr) || state.problem;
}

/** The results with one more, in the place of an earlier one of the same sentence. */
function withResult(results, result) {
    const index = results.findIndex(other => other.id === result.id);
    return index < 0 ? results.concat([result]) : results.map((other, i) => i === index ? result : other);
}

/** The rows of a list that shows results: their fields with a prefix, because "id" is a keyword of QML. */
function resultRows(results) {
    return results.map(result => ({
        rid: result.id,
        rhypothesis: result.hypothesis,
        raccuracy: result.accuracy,
        rlatency: result.latencyMs
    }));
}

/** A line of the voice log. Not translated, like the other lines. */
function resultLine(result) {
    return "TEST " + result.id + " " + Scoring.formatPercent(result.accuracy) + " · " + result.latencyMs + "ms · \""
        + result.hypothesis + "\"";
}
