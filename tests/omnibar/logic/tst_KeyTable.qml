// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/KeyTable.js" as KeyTable

TestCase {
    name: "KeyTable"

    property bool open: false
    readonly property var rows: [
        { "name": "close", "key": Qt.Key_Escape, "holds": () => open },
        { "name": "clear", "key": Qt.Key_L, "modifiers": Qt.ControlModifier },
        { "name": "leave", "key": Qt.Key_Escape },
        { "name": "never", "key": Qt.Key_Escape }
    ]

    function test_find_data() {
        return [
            { tag: "first that applies", key: Qt.Key_Escape, modifiers: 0, open: false, name: "leave" },
            { tag: "first of all", key: Qt.Key_Escape, modifiers: 0, open: true, name: "close" },
            { tag: "modifier", key: Qt.Key_L, modifiers: Qt.ControlModifier, open: false, name: "clear" },
            { tag: "without the modifier", key: Qt.Key_L, modifiers: 0, open: false, name: null },
            { tag: "more modifiers", key: Qt.Key_L, modifiers: Qt.ControlModifier | Qt.ShiftModifier, open: false, name: null },
            { tag: "modifier of a row for any", key: Qt.Key_Escape, modifiers: Qt.ShiftModifier, open: true, name: "close" },
            { tag: "keypad", key: Qt.Key_Escape, modifiers: Qt.KeypadModifier, open: false, name: "leave" },
            { tag: "other key", key: Qt.Key_Tab, modifiers: 0, open: true, name: null }
        ];
    }
    function test_find(data) {
        open = data.open;
        const row = KeyTable.find(rows, data.key, data.modifiers);
        compare(row ? row.name : null, data.name);
    }

    function test_emptyTable() {
        compare(KeyTable.find([], Qt.Key_Escape, 0), null);
    }
}
