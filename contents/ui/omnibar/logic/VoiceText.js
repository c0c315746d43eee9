// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library
.import "../../../../components/logic/LiteralText.js" as LiteralText
.import "../../../../components/logic/Translatable.js" as Translatable

const mark = Translatable.mark;

const cancellations = ["cancel that", "cancel", "stop", "never mind", "nevermind", "no"];

/** A text with the next utterance after it. */
function joined(base, segment) {
    return [base.trim(), segment.trim()].filter(part => part !== "").join(" ");
}

/** Whether an utterance says that the previous one should not be sent. */
function isCancellation(utterance) {
    return cancellations.includes(utterance.trim().toLowerCase());
}

// ---- Sentences to read aloud

/** Which sentence, such as "Sentence 3 / 18 · command". @param index from 0 */
function sentencePlace(index, total, category, tr) {
    return Translatable.filled(Translatable.translated(mark("Sentence {number} / {total} · {category}"), tr),
                               { number: index + 1, total: total, category: category });
}

/** A sentence in quotation marks. */
function quoted(sentence) {
    return "“" + sentence + "”";
}

// ---- What screen readers speak. Each function takes the translating function last.

const longestSpoken = 500; // in characters

/** That listening began or ended. */
function listening(begins, tr) {
    return Translatable.translated(begins ? mark("Listening...") : mark("Listening ended"), tr);
}

/** The transcript; a long one is cut. */
function understood(transcript, tr) {
    const line = LiteralText.oneLine(transcript.trim().replace(/\s+/g, " "), longestSpoken);
    return Translatable.filled(Translatable.translated(mark("Understood: {text}"), tr), { text: line });
}
