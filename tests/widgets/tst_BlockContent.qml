// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/components/BlockContent.js" as BlockContent

TestCase {
    name: "BlockContent"

    function tr(text) { return "<" + text + ">"; }

    //! An array in an array, and so on.
    function nested(depth) {
        return JSON.parse("[".repeat(depth) + "]".repeat(depth));
    }

    function test_listEntries_data() {
        return [
            { tag: "string", item: "one", shown: "one" },
            { tag: "empty string", item: "", shown: "" },
            { tag: "object", item: { "id": "a", "label": "one" }, shown: "one" },
            { tag: "null", item: null, shown: "<(empty)>" },
            { tag: "object without label", item: { "id": "a" }, shown: "<(empty)>" },
            { tag: "number", item: 42, shown: "42" },
            { tag: "false", item: false, shown: "false" },
            { tag: "array", item: [1, "a"], shown: "1,a" },
            { tag: "label of another type", item: { "label": 7 }, shown: "7" },
            { tag: "label that is an object", item: { "label": { "a": 1 } }, shown: "{\"a\":1}" },
            { tag: "hidden toString", item: [{ "toString": 1 }], shown: "[{\"toString\":1}]" },
            { tag: "hidden hasOwnProperty", item: { "hasOwnProperty": 1, "label": "a" }, shown: "a" },
            { tag: "name of JavaScript", item: "constructor", shown: "constructor" },
            { tag: "HTML", item: "<b>a</b>", shown: "<b>a</b>" },
            { tag: "nested", item: nested(900), shown: "" },
            { tag: "longest", item: "a".repeat(1000), shown: "a".repeat(1000) },
            { tag: "long", item: "a".repeat(1048576), shown: "a".repeat(1000) + "…" },
            { tag: "long of emoji", item: "a" + "\ud83d\ude00".repeat(1000), shown: "a" + "\ud83d\ude00".repeat(499) + "…" }
        ];
    }
    function test_listEntries(row) {
        compare(BlockContent.listEntries({ "items": [row.item] }, tr), [row.shown]);
    }

    function test_otherPayloads_data() {
        return [undefined, null, 5, "items", true, [], {}, { "items": "a", "columns": "a", "rows": "a", "choices": "a" },
                { "items": { "length": 5 }, "columns": { "0": 1 }, "rows": null, "choices": 7, "content": [], "title": {},
                  "min": "1", "max": [], "value": {}, "step": null, "action": 9, "variant": [], "language": 3 }]
            .map(payload => ({ tag: String(JSON.stringify(payload)), payload: payload }));
    }
    function test_otherPayloads(row) {
        compare(BlockContent.listEntries(row.payload, tr), []);
        compare(BlockContent.tableColumns(row.payload), []);
        compare(BlockContent.tableRows(row.payload, 2), []);
        compare(BlockContent.optionChoices(row.payload, tr), []);
        compare(BlockContent.sliderRange(row.payload), { "from": 0, "to": 100, "value": 0, "step": 1 });
        compare(BlockContent.sliderAction(row.payload), "");
        compare(BlockContent.contentOf(row.payload), "");
        compare(BlockContent.languageOf(row.payload), "");
        compare(BlockContent.calloutVariant(row.payload), "info");
        compare(BlockContent.textField(BlockContent.objectOf(row.payload).title), "");
    }

    function test_tableRows_data() {
        return [
            { tag: "complete", row: ["a", 1], cells: ["a", "1"] },
            { tag: "missing cells", row: ["a"], cells: ["a", ""] },
            { tag: "too many cells", row: ["a", "b", "c"], cells: ["a", "b"] },
            { tag: "no array", row: "ab", cells: ["", ""] },
            { tag: "null", row: null, cells: ["", ""] },
            { tag: "other types", row: [null, { "a": 1 }], cells: ["", "{\"a\":1}"] },
            { tag: "long", row: ["a".repeat(1048576), 0.5], cells: ["a".repeat(200) + "…", "0.5"] }
        ];
    }
    function test_tableRows(row) {
        compare(BlockContent.tableRows({ "rows": [row.row] }, 2), [row.cells]);
    }

    function test_limits() {
        const many = Array.from({ length: 5000 }, (_, index) => String(index));
        compare(BlockContent.listEntries({ "items": many }, tr).length, 200);
        compare(BlockContent.optionChoices({ "choices": many }, tr).length, 200);
        compare(BlockContent.tableColumns({ "columns": many }).length, 24);
        compare(BlockContent.tableRows({ "rows": many }, 1).length, 50);
        compare(BlockContent.hiddenCount(many, 50), 4950);
        compare(BlockContent.hiddenCount(many, 5000), 0);
        compare(BlockContent.hiddenCount(["a"], 50), 0);
        compare(BlockContent.hiddenCount("a".repeat(99), 50), 0);
    }

    function test_spokenRow_data() {
        return [
            { tag: "names", columns: ["Name", "Used"], cells: ["Home", "18%"], text: "Name: Home, Used: 18%" },
            { tag: "empty cell", columns: ["Name", "Used"], cells: ["Home", ""], text: "Name: Home" },
            { tag: "empty header", columns: ["", "Used"], cells: ["Home", "1"], text: "Home, Used: 1" },
            { tag: "nothing", columns: ["Name"], cells: [""], text: "" }
        ];
    }
    function test_spokenRow(row) {
        compare(BlockContent.spokenRow(row.columns, row.cells), row.text);
    }

    function test_optionChoices_data() {
        return [
            { tag: "complete", choice: { "id": "a", "label": "A" }, expected: { "id": "a", "label": "A" } },
            { tag: "no object", choice: "A", expected: { "id": "0", "label": "<(option)>" } },
            { tag: "null", choice: null, expected: { "id": "0", "label": "<(option)>" } },
            { tag: "array", choice: ["A"], expected: { "id": "0", "label": "<(option)>" } },
            { tag: "no id", choice: { "label": "A" }, expected: { "id": "0", "label": "A" } },
            { tag: "no label", choice: { "id": "a" }, expected: { "id": "a", "label": "<(option)>" } },
            { tag: "empty", choice: { "id": "", "label": "" }, expected: { "id": "0", "label": "<(option)>" } },
            { tag: "numbers", choice: { "id": 0, "label": 7 }, expected: { "id": "0", "label": "7" } }
        ];
    }
    function test_optionChoices(row) {
        compare(BlockContent.optionChoices({ "choices": [row.choice] }, tr), [row.expected]);
    }

    function test_sliderRange_data() {
        return [
            { tag: "complete", fields: { "min": 10, "max": 90, "value": 40, "step": 5 }, expected: [10, 90, 40, 5] },
            { tag: "default value", fields: { "min": 10 }, expected: [10, 100, 10, 1] },
            { tag: "fractions", fields: { "min": -0.5, "max": 0.5, "value": 0.1, "step": 0.1 }, expected: [-0.5, 0.5, 0.1, 0.1] },
            { tag: "value above", fields: { "value": 500 }, expected: [0, 100, 100, 1] },
            { tag: "value below", fields: { "value": -5 }, expected: [0, 100, 0, 1] },
            { tag: "reversed", fields: { "min": 9, "max": 3 }, expected: [3, 9, 3, 1] },
            { tag: "no range", fields: { "min": 7, "max": 7 }, expected: [7, 7, 7, 1] },
            { tag: "no step", fields: { "step": 0 }, expected: [0, 100, 0, 1] },
            { tag: "negative step", fields: { "step": -2 }, expected: [0, 100, 0, 1] },
            { tag: "huge", fields: { "min": -1e308, "max": 1e308, "step": 1e300 }, expected: [0, 100, 0, 1] },
            { tag: "infinite", fields: { "max": Infinity, "value": NaN }, expected: [0, 100, 0, 1] },
            { tag: "too many steps", fields: { "max": 1e12, "step": 1e-9 }, expected: [0, 1e12, 0, 1e3] },
            { tag: "too many on both sides", fields: { "min": -1e12, "max": 1e12 }, expected: [-1e12, 1e12, -1e12, 2e3] }
        ];
    }
    function test_sliderRange(row) {
        const range = BlockContent.sliderRange(row.fields);
        compare([range.from, range.to, range.value, range.step], row.expected);
    }

    function test_rounded_data() {
        return [{ tag: "5", number: 5 }, { tag: "0.3", number: 0.1 + 0.2 }, { tag: "33.33", number: 100 / 3 },
                { tag: "0.13", number: 0.126 }, { tag: "0", number: 0.004 }, { tag: "-2.5", number: -2.5 }];
    }
    function test_rounded(row) {
        compare(BlockContent.rounded(row.number), row.tag);
    }

    function test_wholeTexts() {
        const text = "a\n".repeat(100000);
        compare(BlockContent.contentOf({ "content": text }), text);
        compare(BlockContent.sliderAction({ "action": text }), text);
    }

    function test_language_data() {
        return [{ tag: "python", language: "python", shown: "PYTHON" }, { tag: "C++", language: "C++", shown: "C++" },
                { tag: "none", language: "", shown: "" },
                { tag: "long", language: "\u0130".repeat(1048576), shown: "\u0130".repeat(40) + "…" }];
    }
    function test_language(row) {
        compare(BlockContent.languageOf({ "language": row.language }), row.shown);
    }

    function test_variant_data() {
        return [{ tag: "info", is: "info" }, { tag: "warning", is: "warning" }, { tag: "tip", is: "tip" },
                { tag: "error", is: "info" }, { tag: "Warning", is: "info" }, { tag: "constructor", is: "info" },
                { tag: "__proto__", is: "info" }];
    }
    function test_variant(row) {
        compare(BlockContent.calloutVariant({ "variant": row.tag }), row.is);
    }

    function test_hasEndlessWord_data() {
        return [{ tag: "short", text: "a b", is: false }, { tag: "long prose", text: "word ".repeat(10000), is: false },
                { tag: "long word", text: "a " + "b".repeat(1001), is: true }, { tag: "lines", text: "a\n".repeat(2000), is: false }];
    }
    function test_hasEndlessWord(row) {
        compare(BlockContent.hasEndlessWord(row.text), row.is);
    }
}
