// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/components/logic/ListSync.js" as ListSync

TestCase {
    id: test
    name: "ListSync"

    Component {
        id: models

        ListModel {}
    }

    //! A ListModel that counts what is done to it.
    function spyOn(model) {
        const calls = [];
        return {
            calls: calls,
            insert: (i, rows) => { calls.push("insert"); model.insert(i, rows); },
            remove: (i, count) => { calls.push("remove"); model.remove(i, count === undefined ? 1 : count); },
            move: (from, to, count) => { calls.push("move"); model.move(from, to, count); },
            set: (i, row) => { calls.push("set"); model.set(i, row); }
        };
    }

    //! "ab2" stands for the rows a, b and a b whose text is "2".
    function rowsOf(text) {
        return (text.match(/[a-z]\d?/g) || []).map(word => ({ sid: word.charAt(0), sname: word.substring(1) }));
    }
    function textOf(model) {
        let text = "";
        for (let i = 0; i < model.count; ++i)
            text += model.get(i).sid + model.get(i).sname;
        return text;
    }

    function test_update_data() {
        return [
            { tag: "nothing at all", from: "", to: "", calls: [] },
            { tag: "the same", from: "abc", to: "abc", calls: [] },
            { tag: "first rows", from: "", to: "abc", calls: ["insert", "insert", "insert"] },
            { tag: "all removed", from: "abc", to: "", calls: ["remove", "remove", "remove"] },
            { tag: "one more at the end", from: "abc", to: "abcd", calls: ["insert"] },
            { tag: "one more at the start", from: "abc", to: "dabc", calls: ["insert"] },
            { tag: "one less", from: "abc", to: "ac", calls: ["remove"] },
            { tag: "changed text", from: "abc", to: "ab2c", calls: ["set"] },
            { tag: "moved up", from: "abcd", to: "dabc", calls: ["move"] },
            { tag: "swapped", from: "abcd", to: "adcb", calls: ["move", "move"] },
            { tag: "all others", from: "abc", to: "xyz", calls: ["remove", "remove", "remove", "insert", "insert", "insert"] },
            { tag: "scattered", from: "abcdef", to: "ac3xfd", calls: ["remove", "remove", "set", "insert", "move"] },
            { tag: "same key twice", from: "ab", to: "aab", calls: ["insert"] },
            { tag: "same key once", from: "aab", to: "ab", calls: ["remove"] },
            { tag: "same key less often, not at the end", from: "abaa2", to: "xba", calls: ["insert", "move", "remove"] }
        ];
    }
    function test_update(data) {
        const model = createTemporaryObject(models, test);
        rowsOf(data.from).forEach(row => model.append(row));
        const spy = spyOn(model);
        ListSync.update(spy, rowsOf(data.from), rowsOf(data.to), "sid");
        compare(textOf(model), data.to);
        compare(spy.calls, data.calls);
    }

    //! Every list to every other, of those that the letters and texts below form.
    function test_allPairs() {
        const lists = ["", "a", "b", "ab", "ba", "a1b", "abc", "cab", "bc2a", "aa", "aba", "cc1c2", "abcd", "dcba", "bd"];
        for (const from of lists) {
            for (const to of lists) {
                const model = createTemporaryObject(models, test);
                rowsOf(from).forEach(row => model.append(row));
                ListSync.update(model, rowsOf(from), rowsOf(to), "sid");
                compare(textOf(model), to);
            }
        }
    }

    function test_longListsAreReplaced() {
        const many = (first, count) => Array.from({ length: count }, (_, i) => ({ sid: "k" + (first + i), sname: "" }));
        const model = createTemporaryObject(models, test);
        model.append(many(0, 5000));
        const spy = spyOn(model);
        // The same rows at both ends stay.
        const wanted = many(0, 10).concat(many(6000, 3000), many(4990, 10));
        ListSync.update(spy, many(0, 5000), wanted, "sid");
        compare(spy.calls, ["remove", "insert"]);
        compare(model.count, 3020);
        compare([0, 9, 10, 3009, 3010, 3019].map(i => model.get(i).sid), ["k0", "k9", "k6000", "k8999", "k4990", "k4999"]);
        ListSync.update(spy, wanted, [], "sid");
        compare(model.count, 0);
        ListSync.update(spy, [], many(0, 2000), "sid");
        compare(model.count, 2000);
        compare(spy.calls, ["remove", "insert", "remove", "insert"]);
    }
}
