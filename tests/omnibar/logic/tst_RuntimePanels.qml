// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/RuntimePanels.js" as RuntimePanels

TestCase {
    name: "RuntimePanels"

    readonly property string noDwell: "Dwell data builds from app open/close events while observation is on."

    function tr(text) { return "<" + text + ">"; }

    function test_isOn_data() {
        return [
            { tag: "true", value: true, on: true },
            { tag: "text", value: "true", on: true },
            { tag: "false", value: false, on: false },
            { tag: "text false", value: "false", on: false },
            { tag: "other letters", value: "True", on: false },
            { tag: "number", value: 1, on: false },
            { tag: "missing", value: undefined, on: false }
        ];
    }
    function test_isOn(data) {
        compare(RuntimePanels.isOn(data.value), data.on);
    }

    function test_gatingIndex_data() {
        return [
            { tag: "approval", mode: "require_approval", index: 0 },
            { tag: "safe", mode: "auto_safe", index: 1 },
            { tag: "off", mode: "off", index: 2 },
            { tag: "unknown", mode: "always", index: 0 },
            { tag: "missing", mode: undefined, index: 0 },
            { tag: "number", mode: 2, index: 0 }
        ];
    }
    function test_gatingIndex(data) {
        compare(RuntimePanels.gatingIndex(data.mode), data.index);
    }

    function test_gatingChoices() {
        compare(RuntimePanels.gatingChoices(tr), [
            { "value": "require_approval", "text": "<Require approval>" },
            { "value": "auto_safe", "text": "<Auto-safe (low risk)>" },
            { "value": "off", "text": "<Gating off>" }
        ]);
    }

    function test_dwellText_data() {
        return [
            { tag: "all", dwell: { "topApp": "Editor", "topAppHours": 44.8, "uniqueApps": 4 },
              text: "Top app: Editor (44.8h tracked). 4 apps in window." },
            { tag: "zeros", dwell: { "topApp": "Editor", "topAppHours": 0, "uniqueApps": 0 },
              text: "Top app: Editor (0h tracked). 0 apps in window." },
            { tag: "only an app", dwell: { "topApp": "Editor" }, text: "Top app: Editor (?h tracked). ? apps in window." },
            { tag: "null and wrong types", dwell: { "topApp": "Editor", "topAppHours": null, "uniqueApps": {} },
              text: "Top app: Editor (?h tracked). ? apps in window." },
            { tag: "numbers as text", dwell: { "topApp": "Editor", "topAppHours": "44", "uniqueApps": "" },
              text: "Top app: Editor (44h tracked). ? apps in window." },
            { tag: "placeholders", dwell: { "topApp": "{hours} $&", "topAppHours": 1, "uniqueApps": 2 },
              text: "Top app: {hours} $& (1h tracked). 2 apps in window." },
            { tag: "no app", dwell: { "topAppHours": 3, "uniqueApps": 4 }, text: noDwell },
            { tag: "empty app", dwell: { "topApp": "" }, text: noDwell },
            { tag: "number as app", dwell: { "topApp": 5 }, text: noDwell },
            { tag: "null", dwell: null, text: noDwell },
            { tag: "missing", dwell: undefined, text: noDwell },
            { tag: "text", dwell: "Editor", text: noDwell }
        ];
    }
    function test_dwellText(data) {
        compare(RuntimePanels.dwellText(data.dwell), data.text);
    }

    function test_statusLine_data() {
        return [
            { tag: "all", payload: { "state": "idle", "gateStatus": { "executionsThisHour": 3, "maxPerHour": 20 } },
              text: "State: idle · executions this hour: 3/20" },
            { tag: "zeros", payload: { "state": "idle", "gateStatus": { "executionsThisHour": 0, "maxPerHour": 0 } },
              text: "State: idle · executions this hour: 0/0" },
            { tag: "nothing", payload: {}, text: "State: ? · executions this hour: ?/?" },
            { tag: "wrong types", payload: { "state": {}, "gateStatus": "full" }, text: "State: ? · executions this hour: ?/?" },
            { tag: "null", payload: { "state": null, "gateStatus": null }, text: "State: ? · executions this hour: ?/?" }
        ];
    }
    function test_statusLine(data) {
        compare(RuntimePanels.statusLine(data.payload), data.text);
    }
}
