// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/RowContent.js" as RowContent

TestCase {
    name: "RowContent"

    function test_isStructured_data() {
        return [
            { tag: "block", role: "assistant", type: "table", payload: "{}", is: true },
            { tag: "unknown type", role: "assistant", type: "chart", payload: "{}", is: true },
            { tag: "text", role: "assistant", type: "text", payload: "{}", is: false },
            { tag: "no payload", role: "assistant", type: "table", payload: "", is: false },
            { tag: "user", role: "user", type: "table", payload: "{}", is: false },
            { tag: "system", role: "system", type: "table", payload: "{}", is: false }
        ];
    }
    function test_isStructured(row) {
        compare(RowContent.isStructured(row.role, row.type, row.payload), row.is);
    }

    function test_parseObject_data() {
        return [
            { tag: "object", json: '{"a":[1]}', value: { "a": [1] } },
            { tag: "empty", json: "", value: {} },
            { tag: "broken", json: "{", value: {} },
            { tag: "null", json: "null", value: {} },
            { tag: "array", json: "[1]", value: {} },
            { tag: "string", json: '"a"', value: {} },
            { tag: "number", json: "1", value: {} }
        ];
    }
    function test_parseObject(row) {
        compare(JSON.stringify(RowContent.parseObject(row.json)), JSON.stringify(row.value));
    }

    function test_textOf_data() {
        return [
            { tag: "content", payload: '{"content":"a"}', fallback: "b", text: "c", shown: "a" },
            { tag: "empty content", payload: '{"content":""}', fallback: "b", text: "c", shown: "b" },
            { tag: "content that is no text", payload: '{"content":{}}', fallback: "b", text: "c", shown: "b" },
            { tag: "broken payload", payload: "{", fallback: "b", text: "c", shown: "b" },
            { tag: "no payload", payload: "", fallback: "b", text: "c", shown: "b" },
            { tag: "no fallback", payload: "", fallback: "", text: "c", shown: "c" },
            { tag: "nothing", payload: "", fallback: "", text: "", shown: "" }
        ];
    }
    function test_textOf(row) {
        compare(RowContent.textOf(row.payload, row.fallback, row.text), row.shown);
    }
}
