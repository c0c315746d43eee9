// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/components/logic/Translatable.js" as Translatable

TestCase {
    name: "Translatable"

    function test_mark() {
        compare(Translatable.mark("words"), "words");
    }

    function test_translated() {
        compare(Translatable.translated("words", text => "<" + text + ">"), "<words>");
        compare(Translatable.translated("words"), "words");
        compare(Translatable.translated("", text => "not empty"), "");
    }

    function test_filled_data() {
        return [
            { tag: "one", text: "a {b} c", values: { b: "x" }, filled: "a x c" },
            { tag: "twice and another", text: "{b}{c}{b}", values: { b: "x", c: 2 }, filled: "x2x" },
            { tag: "empty", text: "a{b}", values: { b: "" }, filled: "a" },
            { tag: "unknown", text: "{constructor} {b}", values: {}, filled: "{constructor} {b}" },
            { tag: "values are not looked at", text: "{b}", values: { b: "$& {c} %1", c: "x" }, filled: "$& {c} %1" },
            { tag: "path from right to left", text: "ملف: {b}", values: { b: "/home/me" }, filled: "ملف: \u2068/home/me\u2069" },
            { tag: "same direction", text: "ملف: {b}", values: { b: "صورة" }, filled: "ملف: صورة" },
            { tag: "filled text from right to left", text: "حذف {b}", values: { b: "ملف \u2068/home/me\u2069" },
              filled: "حذف ملف \u2068/home/me\u2069" },
            { tag: "number from right to left", text: "{b} ملف", values: { b: 2 }, filled: "2 ملف" }
        ];
    }
    function test_filled(row) {
        compare(Translatable.filled(row.text, row.values), row.filled);
    }
}
