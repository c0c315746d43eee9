// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library
.import "../../../components/logic/LiteralText.js" as LiteralText
.import "../../../components/logic/Translatable.js" as Translatable
.import "qrc:/org/kde/loomra/voice/sttSentenceScoring.js" as Scoring

// The wording and the tables of the voice validation window. "tr" is the translating function. "voice" is the native
// object, which may be null.

const mark = Translatable.mark;

// Names of products, files and scripts aren't translated. An engine without a flag is always offered, because its model
// is easy to get.
const engines = [
    { id: "whisper", label: "Whisper base.en (~142 MB)", flag: "" },
    { id: "whisper-small", label: "Whisper small.en (~466 MB)", flag: "whisperSmallAvailable" },
    { id: "whisper-small-q5", label: "Whisper small.en Q5_1 (~182 MB) ★", flag: "whisperSmallQ5Available" },
    { id: "moonshine", label: "Moonshine v2 Tiny (~43 MB)", flag: "moonshineAvailable", hint: "Moonshine: setup-moonshine.sh" },
    { id: "nemotron", label: "Nemotron 0.6B 560ms (~630 MB)", flag: "nemotronAvailable", hint: "Nemotron: setup-nemotron.sh" }
];

const states = {
    unavailable: { text: mark("Unavailable"), color: "#888" },
    listening: { text: mark("Listening"), color: "#e53935" },
    transcribing: { text: mark("Transcribing"), color: "#fb8c00" },
    error: { text: mark("Error"), color: "#ef5350" },
    ready: { text: mark("Ready"), color: "#43a047" },
    noModel: { text: mark("No model"), color: "#888" }
};

function isInstalled(engine, voice) {
    return engine.flag === "" || Boolean(voice && voice[engine.flag]);
}

/** The engines to choose from, as rows of a combo box. */
function offeredEngines(voice) {
    return engines.filter(engine => isInstalled(engine, voice)).map(engine => ({ value: engine.id, text: engine.label }));
}

/** How to install the engines that are missing, one line each. */
function engineHints(voice) {
    return engines.filter(engine => engine.hint && !isInstalled(engine, voice)).map(engine => engine.hint).join("\n");
}

/** What the box shows if the engine that the settings name isn't offered. */
function missingEngine(id, tr) {
    return Translatable.filled(Translatable.translated(mark("{engine} is not installed"), tr),
                               { engine: LiteralText.oneLine(id, 40) });
}

/** Text and colour of the state. */
function stateOf(voice, lastError) {
    if (!voice) {
        return states.unavailable;
    }
    return voice.isListening ? states.listening
         : voice.isTranscribing ? states.transcribing
         : lastError !== "" ? states.error
         : voice.isModelLoaded ? states.ready
         : states.noModel;
}

/**
 * How an utterance ends. Intentional: 1.5 s is a fixed text and not the silence timeout of the settings.
 */
function captureLine(voice, tr) {
    return Translatable.translated(voice && voice.liveSttAvailable ? mark("Live partials enabled (Nemotron streaming)")
                                                                   : mark("Stops after ~1.5 s silence · 16 kHz mono"), tr);
}

/** The width of the level bar as a share of its track. @param level RMS, 0 to 1 */
function levelShare(level) {
    return Math.min(level * 25, 1);
}

function duration(ms, tr) {
    return Translatable.filled(Translatable.translated(mark("{count} ms"), tr), { count: ms });
}

/** The first line of a row of the history. */
function historyHeading(row, tr) {
    return [row.time, row.backend, duration(row.ms, tr)].join(" · ");
}

/** The first line of a result. */
function resultHeading(row, tr) {
    return [Scoring.formatPercent(row.accuracy), row.sentenceId, row.category, row.backend, duration(row.ms, tr)].join(" · ");
}

/** The mean accuracy and time of an engine's results, "—" without results. */
function summary(results, backend, tr) {
    const own = results.filter(result => result.backend === backend);
    if (own.length === 0) {
        return "—";
    }
    const mean = key => own.reduce((sum, result) => sum + result[key], 0) / own.length;
    return Translatable.filled(Translatable.translated(mark("{accuracy} avg · {ms} ms"), tr),
                               { accuracy: Scoring.formatPercent(mean("accuracy")), ms: Math.round(mean("ms")) });
}

/** The summaries of all offered engines in one line. @param rows of offeredEngines() */
function scoresLine(rows, results, tr) {
    const scores = rows.map(row => row.value + " " + summary(results, row.value, tr)).join("  |  ");
    return Translatable.filled(Translatable.translated(mark("Scores · {scores}"), tr), { scores: scores });
}
