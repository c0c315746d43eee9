// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/Models.js" as Models

TestCase {
    name: "Models"

    readonly property var models: Models.rows([
        { fullId: "demo/Small", id: "small", displayName: "Demo Small" },
        { fullId: "work/large-free", id: "large-free" },
        { id: "alone", name: "Tiny One" }
    ])

    function tr(text) { return "<" + text + ">"; }

    function test_rows_data() {
        const row = (id, name, fullId, free) => [{ "id": id, "name": name, "fullId": fullId, "free": free }];
        return [
            { tag: "all fields", model: { id: "a", fullId: "p/a", displayName: "D", name: "N", free: true }, rows: row("a", "D", "p/a", true) },
            { tag: "name", model: { id: "a", fullId: "p/a", name: "N" }, rows: row("a", "N", "p/a", false) },
            { tag: "no name", model: { id: "a", fullId: "p/a" }, rows: row("a", "a", "p/a", false) },
            { tag: "only an id", model: { id: "a" }, rows: row("a", "a", "a", false) },
            { tag: "only a full id", model: { fullId: "p/a" }, rows: row("p/a", "", "p/a", false) },
            { tag: "wrong types", model: { id: "a", fullId: 7, displayName: {}, name: [], free: "true" }, rows: row("a", "a", "a", false) },
            { tag: "no id", model: { displayName: "D" }, rows: [] },
            { tag: "empty ids", model: { id: "", fullId: "" }, rows: [] },
            { tag: "null", model: null, rows: [] },
            { tag: "text", model: "a", rows: [] },
            { tag: "huge", model: { id: "x".repeat(100000) }, rows: row("x".repeat(1000), "x".repeat(1000), "x".repeat(1000), false) }
        ];
    }
    function test_rows(data) {
        compare(Models.rows([data.model]), data.rows);
    }

    function test_isFree_data() {
        return [
            { tag: "gpt-free-1", free: true }, { tag: "freedom", free: false }, { tag: "free", free: true }, { tag: "FREE", free: true },
            { tag: "a free one", free: true }, { tag: "a_free", free: true }, { tag: "free:a", free: true }, { tag: "a/free", free: true },
            { tag: "a\tfree\nb", free: true }, { tag: "carefree", free: false }, { tag: "free2", free: false }, { tag: "a.free", free: false },
            { tag: "", free: false }
        ];
    }
    function test_isFree(data) {
        compare(Models.isFree(data.tag), data.free);
    }

    function test_freeByAnyName_data() {
        return [
            { tag: "id", model: { id: "a-free", fullId: "p/a" } },
            { tag: "full id", model: { id: "a", fullId: "free/a" } },
            { tag: "name", model: { id: "a", fullId: "p/a", displayName: "Free model" } }
        ];
    }
    function test_freeByAnyName(data) {
        verify(Models.rows([data.model])[0].free);
    }

    function test_chosenId() {
        compare(Models.chosenId({ id: "a", fullId: "p/a" }), "p/a");
        compare(Models.chosenId({ id: "a", fullId: "" }), "a");
        compare(Models.chosenId({ fullId: "p/a" }), "p/a");
    }

    function test_matching_data() {
        return [
            { tag: "no filter", filter: "", rows: ["demo/Small", "work/large-free", "alone"] },
            { tag: "only whitespace", filter: " \t", rows: ["demo/Small", "work/large-free", "alone"] },
            { tag: "full id", filter: "work/", rows: ["work/large-free"] },
            { tag: "name", filter: "tiny", rows: ["alone"] },
            { tag: "case and whitespace", filter: "  dEmO s ", rows: ["demo/Small"] },
            { tag: "no pattern", filter: ".*", rows: [] },
            { tag: "nothing", filter: "x", rows: [] }
        ];
    }
    function test_matching(data) {
        compare(Models.matching(Models.searchable(models), data.filter).map(row => row.mfullId), data.rows);
    }

    function test_matchingRow() {
        compare(Models.matching(Models.searchable(models), "large"), [{ mid: "large-free", mfullId: "work/large-free", mname: "large-free", mfree: true }]);
        // An id without its provider counts too.
        compare(Models.matching(Models.searchable([{ id: "short", name: "n", fullId: "other", free: false }]), "short").length, 1);
    }

    function test_checkRows() {
        compare(Models.checkRows({
            results: [
                { model: "p/a", displayName: "A", ok: true, responseMs: 120, response: "Hi", error: "" },
                { model: "p/b", ok: "yes", responseMs: "7", response: 1, error: "no token" },
                null, "text"
            ]
        }), [
            { model: "p/a", displayName: "A", ok: true, responseMs: 120, response: "Hi", error: "" },
            { model: "p/b", displayName: "p/b", ok: false, responseMs: 0, response: "", error: "no token" }
        ]);
        compare(Models.checkRows({}), []);
        compare(Models.checkRows({ results: "none" }), []);
    }

    function test_isCheckResult() {
        compare([null, undefined, "", {}].map(Models.isCheckResult), [false, false, false, false]);
        verify(Models.isCheckResult({ results: [] }));
    }

    function test_checkStatus_data() {
        const rows = (...states) => states.map(ok => ({ ok: ok }));
        return [
            { tag: "none", rows: [], status: "<No free models found.>" },
            { tag: "none works", rows: rows(false, false), status: "<2 free model(s) tested — none responded. Check Loomra server.>" },
            { tag: "one works", rows: rows(true, false, false), status: "<1 of 3 free model(s) responded.>" },
            { tag: "all work", rows: rows(true), status: "<1 of 1 free model(s) responded.>" }
        ];
    }
    function test_checkStatus(data) {
        compare(Models.checkStatus(data.rows, tr), data.status);
    }

    function test_checkOutcome_data() {
        const failed = error => ({ ok: false, responseMs: 5, error: error });
        return [
            { tag: "success", row: { ok: true, responseMs: 119.6, error: "" }, text: "120ms" },
            { tag: "error", row: failed("No token"), text: "No token" },
            { tag: "long error", row: failed("x".repeat(41)), text: "x".repeat(40) },
            { tag: "lines", row: failed("a\nb"), text: "a\ufffdb" },
            { tag: "no error", row: failed(""), text: "<failed>" }
        ];
    }
    function test_checkOutcome(data) {
        compare(Models.checkOutcome(data.row, tr), data.text);
    }
}
