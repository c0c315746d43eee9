// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import org.kde.loomra 1.0

Item {
    width: 600
    height: 800

    Component { id: tables; BotTableWidget {} }

    WidgetCase {
        name: "BotTableWidget"
        widgets: tables

        function rows(count) {
            return Array.from({ length: count }, (_, index) => ["row " + index, index]);
        }

        function test_firstValues() {
            const table = make();
            compare([JSON.stringify(table.payload), table.lightChrome, table.messageIndex], ["{}", false, -1]);
            compare(textsOf(table, "noColumns"), ["(table: no columns)"]);
            compare(all(table, "grid")[0].visible, false);
        }

        function test_noColumns() {
            const table = withPayload({ "rows": rows(60) });
            compare(textsOf(table, "noColumns"), ["(table: no columns)"]);
            compare(all(table, "cell").length, 0);
            compare(textsOf(table, "footer"), []);
        }

        function test_cells() {
            const table = withPayload({ "columns": ["Name", "Used"], "rows": [["Home", "18%"], ["System"], [1, 2, 3]] });
            compare(textsOf(table, "headerCell"), ["Name", "Used"]);
            compare(textsOf(table, "cell"), ["Home", "18%", "System", "", "1", "2"]);
            compare(textsOf(table, "noColumns"), []);
            all(table, "headerCell").forEach(cell => compare([cell.font.pointSize, cell.font.bold], [11, true]));
            all(table, "cell").forEach(cell => compare([cell.font.pointSize, cell.font.bold], [11, false]));
            verifyInside(table);
        }

        function test_columnsOfEqualWidth_data() {
            return [{ tag: "1" }, { tag: "2" }, { tag: "3" }, { tag: "7" }];
        }
        function test_columnsOfEqualWidth(row) {
            const count = Number(row.tag);
            const table = withPayload({ "columns": Array.from({ length: count }, (_, i) => "c" + i), "rows": [["x"]] });
            all(table, "headerCell").concat(all(table, "cell")).forEach((cell, index) => {
                fuzzyCompare(cell.width, (520 - 24) / count, 0.01);
                fuzzyCompare(place(cell, table).x, 12 + (index % count) * (520 - 24) / count, 0.01);
            });
        }

        function test_colors_data() {
            return [
                { tag: "dark", light: false, header: Qt.rgba(1, 1, 1, 0.08), line: Qt.rgba(1, 1, 1, 0.12),
                  text: Qt.rgba(1, 1, 1, 0.95) },
                { tag: "light", light: true, header: Qt.rgba(0, 0, 0, 0.06), line: Qt.rgba(0, 0, 0, 0.10),
                  text: Qt.rgba(0, 0, 0, 0.88) }
            ];
        }
        function test_colors(row) {
            const table = withPayload({ "columns": ["a", "b", "c"], "rows": [["1", "2", "3"]] }, { "lightChrome": row.light });
            compareColor(one(table, "header").color, row.header);
            compareColor(one(table, "frame").border.color, row.line);
            all(table, "rowLine").concat(all(table, "columnLine")).forEach(line => compareColor(line.color, row.line));
            compareColor(all(table, "cell")[0].color, row.text);
            compareColor(all(table, "headerCell")[0].color, row.text);
            // A faint fill on even columns.
            compare(all(table, "columnFill").map(fill => fill.visible), [true, false, true]);
            const alpha = all(table, "columnFill")[0].color.a;
            verify(alpha > 0 && alpha < row.header.a);
        }

        function test_percentages_data() {
            return [
                { tag: "20%", color: "#f87171" }, { tag: "20.5%", color: "#fbbf24" }, { tag: "50%", color: "#fbbf24" },
                { tag: "51%", color: "#4ade80" }, { tag: "0%", color: "#f87171" }, { tag: "100%", color: "#4ade80" },
                { tag: "7 of 9, 60% and 10%", color: "#4ade80" }, { tag: "60", color: "" }, { tag: "%", color: "" },
                { tag: "60 %", color: "" }, { tag: "", color: "" }
            ];
        }
        function test_percentages(row) {
            const table = withPayload({ "columns": ["50%"], "rows": [[row.tag]] });
            compareColor(one(table, "cell").color, row.color || Qt.rgba(1, 1, 1, 0.95));
            compareColor(one(table, "headerCell").color, Qt.rgba(1, 1, 1, 0.95));
        }

        //! Rows that are not drawn cost nothing: no items are created for them.
        function test_footer_data() {
            return [{ tag: "50", footer: [] }, { tag: "51", footer: ["... 1 more rows"] }, { tag: "5000", footer: ["... 4950 more rows"] }];
        }
        function test_footer(row) {
            const table = withPayload({ "columns": ["a", "b"], "rows": rows(Number(row.tag)) });
            compare(all(table, "tableRow").length, 50);
            compare(all(table, "cell").length, 100);
            compare(textsOf(table, "footer"), row.footer);
            compare(textsOf(table, "cell")[98], "row 49");
        }

        function test_manyColumns() {
            const names = Array.from({ length: 1000 }, (_, index) => "column " + index);
            const table = withPayload({ "columns": names, "rows": [names] });
            compare(all(table, "headerCell").length, 24);
            compare(textsOf(table, "columnFooter"), ["... 976 more columns"]);
            verifyInside(table);
        }

        function test_longWordsWrap() {
            const table = withPayload({ "columns": ["a", "b"], "rows": [["x".repeat(100), "y"]] });
            const cells = all(table, "cell");
            verify(cells[0].lineCount > 2);
            compare(one(table, "tableRow").height, cells[0].height);
            verifyInside(table);
        }

        function test_startsBelowTheFreeCorner() {
            const payload = { "columns": ["a"], "rows": [["b"]] };
            const before = withPayload(payload);
            compare(place(one(before, "grid"), before).y, 3);
            const table = withPayload(payload, { "freeCorner": Qt.size(92, 32) });
            verify(place(one(table, "grid"), table).y + 9 >= 32);
            verifyCornerIsFree(withPayload({}, { "freeCorner": Qt.size(92, 32) }));
        }

        function test_accessibleRowByRow() {
            const table = withPayload({ "columns": ["Name", "Used"], "rows": [["Home", "18%"], ["System"]] });
            compare([table.Accessible.role, table.Accessible.name], [Accessible.Table, "Table"]);
            compare([one(table, "header").Accessible.role, one(table, "header").Accessible.name], [Accessible.Row, "Name, Used"]);
            compare(all(table, "tableRow").map(row => [row.Accessible.role, row.Accessible.name]),
                    [[Accessible.Row, "Name: Home, Used: 18%"], [Accessible.Row, "Name: System"]]);
            verify(all(table, "cell").every(cell => cell.Accessible.ignored));
        }

        function test_hostile_data() {
            return hostileRows(value => [{ "columns": value, "rows": [["a"]] }, { "columns": ["a", "b"], "rows": value },
                                         { "columns": [value, "a"], "rows": [[value, value], value] }]);
        }
        function test_hostile(row) {
            verifyHarmless(row.payloads);
        }
    }
}
