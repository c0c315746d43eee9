// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/components"

Item {
    width: 600
    height: 800

    Component { id: blocks; BotCodeBlock {} }

    WidgetCase {
        name: "BotCodeBlock"
        widgets: blocks

        function test_firstValues() {
            const code = make();
            compare([JSON.stringify(code.payload), code.lightChrome, code.content], ["{}", false, ""]);
            compare(textsOf(code, "language"), []);
            verify(code.implicitHeight >= 30);
        }

        //! As long as no row shows it.
        function test_isNotInTheModule() {
            let error = "";
            try {
                Qt.createQmlObject("import org.kde.loomra 1.0; BotCodeBlock {}", parent);
            } catch (failure) {
                error = failure.message;
            }
            verify(error.includes("BotCodeBlock is not a type"), error);
        }

        function test_looks() {
            const code = withPayload({ "language": "python", "content": "def a():\n    pass" });
            compare(textsOf(code, "language"), ["PYTHON"]);
            compare(one(code, "language").font.pixelSize, 10);
            const words = one(code, "words");
            compare([words.text, words.font.pixelSize, words.font.family, words.lineHeight, words.textFormat],
                    ["def a():\n    pass", 12, "monospace", 1.35, Text.PlainText]);
            const fill = one(code, "codeFill");
            compare([fill.radius, place(fill, code).x, fill.width], [8, 12, 520 - 24]);
            verifyInside(code);
        }

        function test_colors_data() {
            return [
                { tag: "dark", light: false, text: Qt.rgba(0.85, 0.9, 1.0, 0.95), fill: Qt.rgba(1, 1, 1, 0.10),
                  language: Qt.rgba(1, 1, 1, 0.65) },
                { tag: "light", light: true, text: Qt.rgba(0.15, 0.2, 0.35, 0.95), fill: Qt.rgba(0, 0, 0, 0.06),
                  language: Qt.rgba(0, 0, 0, 0.55) }
            ];
        }
        function test_colors(row) {
            const code = withPayload({ "language": "c", "content": "a" }, { "lightChrome": row.light });
            compareColor(one(code, "words").color, row.text);
            compareColor(one(code, "codeFill").color, row.fill);
            compareColor(one(code, "language").color, row.language);
        }

        function test_wraps_data() {
            return [{ tag: "words", text: "word ".repeat(100) }, { tag: "one word", text: "w".repeat(500) }];
        }
        function test_wraps(row) {
            const code = withPayload({ "content": row.text });
            verify(one(code, "words").lineCount > 4);
            verifyInside(code);
        }

        function test_startsBelowTheFreeCorner_data() {
            return [{ tag: "language", payload: { "language": "c", "content": "a" } }, { tag: "no language", payload: { "content": "a" } }];
        }
        function test_startsBelowTheFreeCorner(row) {
            const code = withPayload(row.payload, { "freeCorner": Qt.size(92, 32) });
            verify(place(one(code, "codeFill"), code).y + 9 >= 32);
            verify(one(code, "language").width <= 520 - 12 - 92);
        }

        function test_hostile_data() {
            // Long content is shown as a whole, see test_longCode().
            return hostileRows(value => [{ "language": value, "content": "a" }, { "content": isLong(value) ? "" : value }]);
        }
        function test_hostile(row) {
            verifyHarmless(row.payloads);
        }

        //! Code of any length is shown as a whole.
        function test_longCode_data() {
            return [{ tag: "one word", text: "x".repeat(262144) }, { tag: "lines", text: "line();\n".repeat(5000) },
                    { tag: "HTML", text: "<b>".repeat(50000) }];
        }
        function test_longCode(row) {
            const code = withPayload({ "content": row.text });
            compare(one(code, "words").text, row.text);
            verify(code.implicitHeight > 1000);
        }
    }
}
