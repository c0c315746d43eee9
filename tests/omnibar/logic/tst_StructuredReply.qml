// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/StructuredReply.js" as StructuredReply

TestCase {
    name: "StructuredReply"

    function test_needsBlocks_data() {
        return [
            { tag: "list", blocks: [{ "type": "list" }], needs: true },
            { tag: "two texts", blocks: [{ "type": "text" }, { "type": "text" }], needs: true },
            { tag: "one text", blocks: [{ "type": "text", "content": "a" }], needs: false },
            { tag: "one without type", blocks: [{ "content": "a" }], needs: false },
            { tag: "one that is no object", blocks: [null], needs: true },
            { tag: "none", blocks: [], needs: false },
            { tag: "no array", blocks: "list", needs: false },
            { tag: "missing", blocks: undefined, needs: false }
        ];
    }
    function test_needsBlocks(row) {
        compare(StructuredReply.needsBlocks(row.blocks), row.needs);
    }

    function test_rowsOf_data() {
        const unserializable = { "type": "list" };
        unserializable.items = unserializable;
        const unknown = { "type": "hologram", "content": "a" };
        const list = { "type": "list", "items": ["a"] };
        const blockRow = (block, text) => ({ text: text, messageType: block.type, payload: JSON.stringify(block) });
        const plain = text => ({ text: text, messageType: "text", payload: "" });
        return [
            { tag: "list", blocks: [list], rows: [blockRow(list, "reply")] },
            { tag: "in order", blocks: [list, { "type": "table" }, list],
              rows: [blockRow(list, "reply"), blockRow({ "type": "table" }, "reply"), blockRow(list, "reply")] },
            { tag: "no array", blocks: "list", rows: [plain("reply")] },
            { tag: "missing", blocks: undefined, rows: [plain("reply")] },
            { tag: "empty", blocks: [], rows: [plain("reply")] },
            { tag: "empty, no fallback", blocks: [], fallback: "", rows: [plain("(empty response)")] },
            { tag: "no objects are skipped", blocks: [null, 3, "a", [], true, list], rows: [blockRow(list, "reply")] },
            { tag: "only no objects", blocks: [null, 3], rows: [plain("reply")] },
            { tag: "unknown type", blocks: [unknown], rows: [plain("reply")] },
            { tag: "unknown types", blocks: [unknown, unknown], rows: [plain("reply"), plain("reply")] },
            { tag: "unknown, no fallback", blocks: [unknown], fallback: "", rows: [plain(JSON.stringify(unknown))] },
            { tag: "type that is no string", blocks: [{ "type": 9 }], rows: [plain("reply")] },
            { tag: "name of JavaScript", blocks: [{ "type": "constructor" }], rows: [plain("reply")] },
            { tag: "no type", blocks: [{ "content": "a" }],
              rows: [{ text: "a", messageType: "text", payload: '{"content":"a"}' }] },
            { tag: "can't be serialised", blocks: [unserializable], rows: [plain("reply")] },
            { tag: "can't be serialised, no fallback", blocks: [unserializable], fallback: "", rows: [plain("(render error)")] },
            { tag: "neither known nor serialisable", blocks: [Object.assign({}, { "a": unserializable, "type": "x" })],
              fallback: "", rows: [plain("(render error)")] }
        ].concat(["text", "code", "callout"].map(type => ({
            tag: type + " with content",
            blocks: [{ "type": type, "content": "own" }],
            rows: [blockRow({ "type": type, "content": "own" }, "own")]
        }))).concat(["text", "code", "callout"].map(type => ({
            tag: type + " without content",
            blocks: [{ "type": type, "content": "" }],
            rows: [blockRow({ "type": type, "content": "" }, "reply")]
        }))).concat([null, 5, {}, ["a"]].map(content => ({
            tag: "content " + JSON.stringify(content),
            blocks: [{ "type": "callout", "content": content }],
            rows: [blockRow({ "type": "callout", "content": content }, "reply")]
        }))).concat(["list", "table", "options", "slider"].map(type => ({
            tag: type + " with content",
            blocks: [{ "type": type, "content": "own" }],
            rows: [blockRow({ "type": type, "content": "own" }, "reply")]
        })));
    }
    function test_rowsOf(row) {
        const rows = StructuredReply.rowsOf(row.blocks, row.fallback === undefined ? "reply" : row.fallback);
        compare(rows.map(made => ({ text: made.text, messageType: made.messageType, payload: made.payload })), row.rows);
        rows.forEach(made => compare(made.fallbackText, made.text));
    }

    function test_manyBlocks() {
        const blocks = Array.from({ length: 10000 }, (_, index) => index % 2 ? { "type": "list" } : null);
        compare(StructuredReply.rowsOf(blocks, "reply").length, 5000);
    }
}
