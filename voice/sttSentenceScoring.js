// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// Compares a transcript with the sentence that was read aloud, word by word. A score is 0 to 1.

const goodScore = 0.85;

/**
 * The text in lower case, words separated by single blanks. Punctuation separates words, except for the apostrophe.
 * Intentional: so do accented letters, because the sentences are English and recorded results depend on it.
 */
function normalize(text) {
    if (!text) {
        return "";
    }
    return String(text).toLowerCase().replace(/[^\w\s']/g, " ").replace(/\s+/g, " ").trim();
}

/** The words of the normalized text. */
function words(text) {
    const normalized = normalize(text);
    return normalized === "" ? [] : normalized.split(" ");
}

/** The number of words to insert, delete or substitute to get from one list of words to the other. */
function distance(from, to) {
    let previous = Array.from({ length: to.length + 1 }, (unused, column) => column);
    for (let row = 1; row <= from.length; ++row) {
        const current = [row];
        for (let column = 1; column <= to.length; ++column) {
            const substitution = previous[column - 1] + (from[row - 1] === to[column - 1] ? 0 : 1);
            current.push(Math.min(previous[column] + 1, current[column - 1] + 1, substitution));
        }
        previous = current;
    }
    return previous[to.length];
}

/** 1 minus the share of wrong words; 0 if more words are wrong than the reference has. */
function wordAccuracy(reference, hypothesis) {
    const ref = words(reference);
    const hyp = words(hypothesis);
    if (ref.length === 0) {
        return hyp.length > 0 ? 0 : 1;
    }
    return Math.max(0, 1 - distance(ref, hyp) / ref.length);
}

/** A score as a whole percentage, such as "86%". */
function formatPercent(score) {
    return Math.round(score * 100) + "%";
}

/** Whether a score is good enough to be shown as a success. */
function isGood(score) {
    return score >= goodScore;
}
