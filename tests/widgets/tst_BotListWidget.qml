// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import org.kde.loomra 1.0

Item {
    width: 600
    height: 800

    Component { id: lists; BotListWidget {} }

    WidgetCase {
        name: "BotListWidget"
        widgets: lists

        function test_firstValues() {
            const list = make();
            compare([JSON.stringify(list.payload), list.lightChrome, list.messageIndex], ["{}", false, -1]);
            compare(textsOf(list, "nothing"), ["(empty)"]);
            compare(textsOf(list, "title"), []);
            compare(list.implicitHeight, 30);
        }

        function test_titleAndEntries() {
            const list = withPayload({ "title": "Shopping", "items": ["a", { "id": 1, "label": "b" }, null, 42] });
            compare(textsOf(list, "title"), ["Shopping"]);
            compare(textsOf(list, "entry"), ["a", "b", "(empty)", "42"]);
            compare(textsOf(list, "nothing"), []);
            compare(textsOf(list, "footer"), []);
            const title = one(list, "title");
            compare([title.font.pointSize, title.font.bold], [13, true]);
            const entries = all(list, "entry");
            compare(entries[0].font.pointSize, 11.5);
            compare(place(title, list).x, 12);
            compare(place(title, list).y, 3);
            compare(title.width, 520 - 24);
            compare(entries[0].y, title.height + 6);
            compare(entries[1].y, entries[0].y + entries[0].height + 6);
            verifyInside(list);
        }

        function test_colors_data() {
            return [
                { tag: "dark", light: false, dot: Qt.rgba(0.75, 0.55, 1.0, 0.90), text: Qt.rgba(1, 1, 1, 0.95) },
                { tag: "light", light: true, dot: Qt.rgba(0.45, 0.22, 0.65, 0.85), text: Qt.rgba(0, 0, 0, 0.88) }
            ];
        }
        function test_colors(row) {
            const list = withPayload({ "title": "t", "items": ["a"] }, { "lightChrome": row.light });
            const dot = one(list, "dot");
            compare([dot.width, dot.height, dot.radius], [6, 6, 3]);
            compareColor(dot.color, row.dot);
            compareColor(one(list, "title").color, row.text);
            compareColor(one(list, "entry").color, row.text);
        }

        function test_dotIsBesideTheFirstLine_data() {
            return [{ tag: "short", text: "a" }, { tag: "wrapped", text: "word ".repeat(60) }, { tag: "one word", text: "w".repeat(300) }];
        }
        function test_dotIsBesideTheFirstLine(row) {
            const list = withPayload({ "items": [row.text] });
            const dot = one(list, "dot");
            verify(dot.y > 4 && dot.y < 14, "y: " + dot.y);
            verify(dot.x + dot.width < one(list, "entry").leftPadding);
            verifyInside(list);
        }

        function test_rightToLeft() {
            const list = withPayload({ "items": ["\u0645\u0631\u062d\u0628\u0627"] });
            const entry = one(list, "entry");
            compare([entry.leftPadding, entry.rightPadding], [0, 16]);
            verify(one(list, "dot").x > entry.width - 16);
        }

        function test_firstLineLeavesTheCornerFree_data() {
            const words = "lorem ipsum ".repeat(30);
            return [{ tag: "title", payload: { "title": words, "items": ["a"] }, part: "title" },
                    { tag: "first entry", payload: { "items": [words] }, part: "entry" }];
        }
        function test_firstLineLeavesTheCornerFree(row) {
            const list = withPayload(row.payload, { "freeCorner": Qt.size(92, 32) });
            verify(one(list, row.part).contentWidth > 520 - 92 - 12, "later lines have the whole width");
            verifyCornerIsFree(list);
        }

        function test_manyEntries_data() {
            return [{ tag: "200", footer: [] }, { tag: "201", footer: ["... 1 more entry"] },
                    { tag: "5000", footer: ["... 4800 more entries"] }];
        }
        function test_manyEntries(row) {
            const list = withPayload({ "items": Array.from({ length: Number(row.tag) }, (_, index) => index) });
            compare(all(list, "entry").length, 200);
            compare(textsOf(list, "footer"), row.footer);
        }

        function test_accessibleEntryByEntry() {
            const list = withPayload({ "title": "Shopping", "items": ["a", "b"] });
            compare([list.Accessible.role, list.Accessible.name], [Accessible.List, "Shopping"]);
            compare(withPayload({ "items": ["a"] }).Accessible.name, "List");
            verify(one(list, "title").Accessible.ignored, "the name of the list is read once");
            all(list, "entry").forEach(entry => {
                compare([entry.Accessible.role, entry.Accessible.name], [Accessible.ListItem, entry.text]);
            });
        }

        function test_hostile_data() {
            return hostileRows(value => [{ "title": value }, { "items": value }, { "items": [value, { "label": value }] }]);
        }
        function test_hostile(row) {
            verifyHarmless(row.payloads);
        }
    }
}
