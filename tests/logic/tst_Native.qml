// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.2

import "qrc:/org/kde/loomra/components/logic/Native.js" as Native

TestCase {
    name: "Native"

    QtObject {
        id: object

        property var seen: []
        property string word: "no function"

        function add(a, b) {
            seen = [a, b];
            return a + b;
        }
    }

    function test_offers_data() {
        return [
            { tag: "function", object: object, name: "add", offers: true },
            { tag: "no function", object: object, name: "word", offers: false },
            { tag: "nothing of that name", object: object, name: "missing", offers: false },
            { tag: "null", object: null, name: "add", offers: false },
            { tag: "undefined", object: undefined, name: "add", offers: false }
        ];
    }
    function test_offers(row) {
        compare(Native.offers(row.object, row.name), row.offers);
    }

    function test_call() {
        compare(Native.call(object, "add", 2, 3), 5);
        compare(object.seen, [2, 3]);
        compare(Native.call(object, "missing", 1), undefined);
        compare(Native.call(null, "add", 1, 2), undefined);
    }
}
