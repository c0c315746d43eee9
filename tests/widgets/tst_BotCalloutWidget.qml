// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/components"

Item {
    width: 600
    height: 800

    Component { id: callouts; BotCalloutWidget {} }

    WidgetCase {
        name: "BotCalloutWidget"
        widgets: callouts

        function test_firstValues() {
            const callout = make();
            compare([JSON.stringify(callout.payload), callout.lightChrome, callout.content], ["{}", false, ""]);
            compareColor(callout.accent, "#c084fc");
        }

        //! As long as no row shows it.
        function test_isNotInTheModule() {
            let error = "";
            try {
                Qt.createQmlObject("import org.kde.loomra 1.0; BotCalloutWidget {}", parent);
            } catch (failure) {
                error = failure.message;
            }
            verify(error.includes("BotCalloutWidget is not a type"), error);
        }

        function test_looks() {
            const callout = withPayload({ "content": "Good to <b>know</b>" });
            const words = one(callout, "words");
            compare([words.text, words.font.pixelSize, words.lineHeight, words.textFormat],
                    ["Good to <b>know</b>", 13, 1.4, Text.PlainText]);
            const fill = one(callout, "calloutFill");
            compare([fill.radius, place(fill, callout).x, fill.width], [8, 12, 520 - 24]);
            const bar = one(callout, "accentBar");
            compare([bar.width, place(bar, callout).x], [3, 12]);
            verify(place(words, callout).x + words.leftPadding > 15);
            verifyInside(callout);
        }

        function test_colors_data() {
            const amber = "#fbbf24";
            const green = "#4ade80";
            return [
                { tag: "warning", light: false, accent: amber, fill: Qt.rgba(0.98, 0.75, 0, 0.14) },
                { tag: "warning", light: true, accent: amber, fill: Qt.rgba(0.98, 0.75, 0, 0.12) },
                { tag: "tip", light: false, accent: green, fill: Qt.rgba(0.2, 0.7, 0.4, 0.12) },
                { tag: "tip", light: true, accent: green, fill: Qt.rgba(0.2, 0.7, 0.4, 0.10) },
                { tag: "info", light: false, accent: "#c084fc", fill: Qt.rgba(0.60, 0.20, 0.98, 0.14) },
                { tag: "info", light: true, accent: "#7c3aed", fill: Qt.rgba(0.55, 0.28, 0.92, 0.10) },
                { tag: "unknown", light: false, accent: "#c084fc", fill: Qt.rgba(0.60, 0.20, 0.98, 0.14) },
                { tag: "constructor", light: true, accent: "#7c3aed", fill: Qt.rgba(0.55, 0.28, 0.92, 0.10) }
            ].map(row => Object.assign(row, { variant: row.tag, tag: row.tag + (row.light ? ", light" : "") }));
        }
        function test_colors(row) {
            const callout = withPayload({ "variant": row.variant, "content": "a" }, { "lightChrome": row.light });
            compareColor(one(callout, "accentBar").color, row.accent);
            compareColor(one(callout, "calloutFill").color, row.fill);
            const accent = Qt.lighter(row.accent, 1);
            compareColor(one(callout, "calloutFill").border.color, Qt.rgba(accent.r, accent.g, accent.b, 0.35));
            compareColor(one(callout, "words").color, row.light ? Qt.rgba(0, 0, 0, 0.88) : Qt.rgba(1, 1, 1, 0.95));
        }

        function test_wraps_data() {
            return [{ tag: "words", text: "word ".repeat(100) }, { tag: "one word", text: "w".repeat(500) }];
        }
        function test_wraps(row) {
            const callout = withPayload({ "content": row.text });
            verify(one(callout, "words").lineCount > 4);
            verifyInside(callout);
        }

        function test_leavesTheCornerFree() {
            const payload = { "content": "lorem ipsum ".repeat(5) };
            compare(one(withPayload(payload), "words").lineCount, 1);
            const callout = withPayload(payload, { "freeCorner": Qt.size(92, 32) });
            compare(one(callout, "words").lineCount, 2);
            verifyCornerIsFree(callout);
        }

        function test_hostile_data() {
            // Long content is shown as a whole, see test_longContent().
            return hostileRows(value => [{ "variant": value, "content": "a" }, { "content": isLong(value) ? "" : value }]);
        }
        function test_hostile(row) {
            verifyHarmless(row.payloads);
        }

        function test_longContent() {
            const text = "x".repeat(262144);
            compare(one(withPayload({ "content": text }), "words").text, text);
        }
    }
}
