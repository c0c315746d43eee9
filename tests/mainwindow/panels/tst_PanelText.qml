// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "../../../components/panels/PanelText.js" as PanelText

TestCase {
    name: "PanelText"

    readonly property double someTime: new Date(2026, 10, 22, 9, 54).getTime()
    readonly property string someText: new Date(someTime).toLocaleString(Qt.locale(), Locale.ShortFormat)

    function test_localTime_data() {
        return [
            { tag: "milliseconds", value: someTime, text: someText },
            { tag: "universal time", value: new Date(someTime).toISOString(), text: someText },
            { tag: "no time", value: "yesterday", text: "" },
            { tag: "too late", value: 1e300, text: "" },
            { tag: "empty", value: "", text: "" },
            { tag: "null", value: null, text: "" },
            { tag: "missing", value: undefined, text: "" },
            { tag: "true", value: true, text: "" },
            { tag: "object", value: {}, text: "" },
            { tag: "list", value: [2026], text: "" }
        ];
    }

    function test_localTime(data) {
        compare(PanelText.localTime(data.value), data.text);
        verify(someText.includes("54"));
    }

    function test_lastRun_data() {
        return [
            { tag: "a time", value: someTime, text: someText },
            { tag: "null", value: null, text: "Never" },
            { tag: "missing", value: undefined, text: "Never" },
            { tag: "empty", value: "", text: "Never" },
            { tag: "0", value: 0, text: "Never" },
            { tag: "no time", value: "yesterday", text: "—" },
            { tag: "object", value: {}, text: "—" }
        ];
    }

    function test_lastRun(data) {
        compare(PanelText.lastRun(data.value, "Never", "—"), data.text);
    }

    function test_countOf_data() {
        return [
            { tag: "two", container: { windows: [1, null] }, count: 2 },
            { tag: "none", container: { windows: [] }, count: 0 },
            { tag: "text", container: { windows: "abc" }, count: 0 },
            { tag: "object", container: { windows: { length: 7 } }, count: 0 },
            { tag: "missing", container: {}, count: 0 },
            { tag: "null", container: null, count: 0 },
            { tag: "no object", container: "windows", count: 0 }
        ];
    }

    function test_countOf(data) {
        compare(PanelText.countOf(data.container, "windows"), data.count);
    }

    function test_themeOf_data() {
        return [
            { tag: "a theme", state: { theme: "Breeze Dark" }, text: "Breeze Dark" },
            { tag: "long", state: { theme: "x".repeat(1000) }, text: "x".repeat(300) },
            { tag: "empty", state: { theme: "" }, text: "—" },
            { tag: "object", state: { theme: {} }, text: "—" },
            { tag: "missing", state: {}, text: "—" },
            { tag: "null", state: null, text: "—" }
        ];
    }

    function test_themeOf(data) {
        compare(PanelText.themeOf(data.state, "—"), data.text);
    }

    function test_rows() {
        compare(PanelText.actionRows([{ id: "a", at: someTime }, { id: 7 }, null, "text", [], { id: {} }]), [
            { recordId: "a", name: "a", at: someText },
            { recordId: "7", name: "7", at: "" },
            { recordId: "", name: "", at: "" },
            { recordId: "", name: "", at: "" },
            { recordId: "", name: "", at: "" },
            { recordId: "", name: "", at: "" }
        ]);
        compare(PanelText.actionRows(null), []);
        const name = "x".repeat(1000);
        compare(PanelText.automationRows([{ id: name, enabled: true }, { enabled: "true", lastRun: someTime }], "Never", "—"), [
            { recordId: name, name: "x".repeat(300), isEnabled: true, ran: "Never" },
            { recordId: "", name: "", isEnabled: false, ran: someText }
        ]);
        compare(PanelText.automationRows("x"), []);
    }
}
