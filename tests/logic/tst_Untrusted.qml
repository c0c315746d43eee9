// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/components/logic/Untrusted.js" as Untrusted

TestCase {
    name: "Untrusted"

    function test_fields_data() {
        return [
            { tag: "text", value: "a", isObject: false, textOf: "a", textOr: "a" },
            { tag: "empty text", value: "", isObject: false, textOf: "", textOr: "fallback" },
            { tag: "number", value: 7, isObject: false, textOf: "7", textOr: "fallback" },
            { tag: "zero", value: 0, isObject: false, textOf: "0", textOr: "fallback" },
            { tag: "bool", value: true, isObject: false, textOf: "", textOr: "fallback" },
            { tag: "null", value: null, isObject: false, textOf: "", textOr: "fallback" },
            { tag: "missing", value: undefined, isObject: false, textOf: "", textOr: "fallback" },
            { tag: "object", value: { "a": 1 }, isObject: true, textOf: "", textOr: "fallback" },
            { tag: "list", value: ["a"], isObject: true, textOf: "", textOr: "fallback" }
        ];
    }
    function test_fields(data) {
        compare(Untrusted.isObject(data.value), data.isObject);
        compare(Untrusted.textOf(data.value), data.textOf);
        compare(Untrusted.textOr(data.value, "fallback"), data.textOr);
    }
}
