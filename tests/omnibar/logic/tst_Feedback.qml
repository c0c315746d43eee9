// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/Feedback.js" as Feedback

TestCase {
    name: "Feedback"

    readonly property var rows: [
        { role: "assistant", text: "hello" },
        { role: "user", text: "first" },
        { role: "assistant", text: "answer" },
        { role: "system", text: "note" },
        { role: "assistant", text: "more" },
        { role: "user", text: "" },
        { role: "assistant", text: "pardon" },
        { role: "user", text: "second" }
    ]

    function test_nearestUserQuery_data() {
        return [
            { tag: "nobody asked", index: 0, query: "" },
            { tag: "just before", index: 2, query: "first" },
            { tag: "over rows of others", index: 4, query: "first" },
            { tag: "over an empty question", index: 6, query: "first" },
            { tag: "not the row itself", index: 7, query: "first" },
            { tag: "beyond the end", index: 99, query: "second" },
            { tag: "before the beginning", index: -1, query: "" }
        ];
    }
    function test_nearestUserQuery(row) {
        compare(Feedback.nearestUserQuery(rows, row.index), row.query);
    }
}
