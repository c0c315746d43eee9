// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/voice/sttSentenceScoring.js" as Scoring

TestCase {
    name: "SentenceScoring"

    function test_words_data() {
        return [
            { tag: "nothing", text: undefined, words: [] },
            { tag: "null", text: null, words: [] },
            { tag: "empty", text: "", words: [] },
            { tag: "whitespace", text: " \t\n ", words: [] },
            { tag: "only punctuation", text: "?!. -", words: [] },
            { tag: "plain", text: "open the browser", words: ["open", "the", "browser"] },
            { tag: "case and edges", text: "  Open THE\tbrowser.\n", words: ["open", "the", "browser"] },
            { tag: "apostrophe", text: "What's up?", words: ["what's", "up"] },
            { tag: "another apostrophe", text: "what’s", words: ["what", "s"] },
            { tag: "hyphen", text: "twenty-five", words: ["twenty", "five"] },
            { tag: "underscore and digits", text: "open_it 25%", words: ["open_it", "25"] },
            { tag: "accents", text: "café olé", words: ["caf", "ol"] }
        ];
    }

    function test_words(data) {
        compare(Scoring.words(data.text), data.words);
        compare(Scoring.normalize(data.text), data.words.join(" "));
    }

    function test_wordAccuracy_data() {
        return [
            { tag: "both empty", reference: "", hypothesis: "", score: 1 },
            { tag: "both without words", reference: "...", hypothesis: "?", score: 1 },
            { tag: "no reference", reference: "", hypothesis: "x", score: 0 },
            { tag: "no hypothesis", reference: "a", hypothesis: "", score: 0 },
            { tag: "equal", reference: "What's up?", hypothesis: "what's up", score: 1 },
            { tag: "one substitution", reference: "a b c d", hypothesis: "a b x d", score: 0.75 },
            { tag: "one deletion", reference: "a b c d", hypothesis: "a c d", score: 0.75 },
            { tag: "one insertion", reference: "a b c d", hypothesis: "a b x c d", score: 0.75 },
            { tag: "an insertion before", reference: "a b", hypothesis: "x a b", score: 0.5 },
            { tag: "swapped", reference: "a b c d", hypothesis: "b a c d", score: 0.5 },
            { tag: "all wrong", reference: "a b", hypothesis: "c d", score: 0 },
            { tag: "three insertions to two words", reference: "a b", hypothesis: "a x y z b", score: 0 },
            { tag: "similar words are different", reference: "dolphin", hypothesis: "dolphins", score: 0 }
        ];
    }

    function test_wordAccuracy(data) {
        compare(Scoring.wordAccuracy(data.reference, data.hypothesis), data.score);
    }

    function test_aThirdIsNotRounded() {
        fuzzyCompare(Scoring.wordAccuracy("a b c", "a b x"), 2 / 3, 1e-9);
    }

    function test_formatPercent() {
        compare([0, 0.004, 0.005, 0.5, 2 / 3, 0.845, 0.995, 1].map(Scoring.formatPercent), ["0%", "0%", "1%", "50%", "67%", "85%", "100%", "100%"]);
    }

    function test_isGood() {
        compare([0, 0.8499, 0.85, 1].map(Scoring.isGood), [false, false, true, true]);
    }
}
