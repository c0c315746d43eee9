// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/Names.js" as Names

TestCase {
    name: "Names"

    property var translated: []

    //! A fake translation function, which fails for texts that KI18n complains about.
    function translate(text) {
        verify(text !== "" && text.indexOf("%") < 0, "not translatable: " + text);
        translated.push(text);
        return text.toUpperCase().replace("{CAPABILITY}", "{capability}").replace("{STEP}", "{step}");
    }

    function init() {
        translated = [];
    }

    readonly property var agents: ({
        "kde-desktop-agent": "Desktop Agent", "plasma-panel": "Panel Agent", "planner": "Planner", "chat": "Chat",
        "safe-executor-agent": "Safe Executor", "system-settings-agent": "Settings Agent",
        "automation-agent": "Automation Agent", "desktop-diagnosis-agent": "Diagnosis Agent",
        "panel-customizer-agent": "Panel Customizer"
    })
    readonly property var capabilities: ({
        "theme.apply": "Apply theme", "theme.preview": "Preview theme", "panel.theme.set": "Set panel theme",
        "panel.opacity.set": "Set panel opacity", "panel.get_layout": "Read panel layout",
        "power.screen_off_timeout.set": "Screen timeout", "power.screenlock_timeout.set": "Screen lock timeout",
        "power.lock_screen": "Lock screen", "power.profile.set": "Power profile",
        "power.profile.get": "Read power profile", "settings.write": "Write setting", "settings.read": "Read setting",
        "display.brightness.set": "Set brightness", "display.brightness.get": "Get brightness",
        "kde.launch_app": "Launch app", "kde.close_window": "Close window", "kde.move_window": "Move window",
        "kde.resize_window": "Resize window", "kde.set_wallpaper": "Set wallpaper", "kde.notify": "Send notification",
        "kde.lock_screen": "Lock screen", "kde.mute_audio": "Mute audio", "kde.set_volume": "Set volume",
        "kde.get_volume": "Get volume"
    })
    //! Members of every JavaScript object, which must not count as known ids.
    readonly property var foreign: ["constructor", "__proto__", "toString", "hasOwnProperty", "valueOf"]

    function rows(names) {
        return Object.keys(names).map(id => ({ tag: id, id: id, name: names[id] }));
    }

    function test_agentDisplayName_data() {
        return rows(agents);
    }
    function test_agentDisplayName(row) {
        compare(Names.agentDisplayName(row.id), row.name);
        compare(Names.agentDisplayName(row.id, translate), row.name.toUpperCase());
    }

    function test_unknownAgents_data() {
        return foreign.concat("my-agent", "CHAT", "agent %1").map(id => ({ tag: id }));
    }
    function test_unknownAgents(row) {
        compare(Names.agentDisplayName(row.tag, translate), row.tag);
        compare(translated, []);
    }

    function test_friendlyCapabilityName_data() {
        return rows(capabilities);
    }
    function test_friendlyCapabilityName(row) {
        compare(Names.friendlyCapabilityName(row.id), row.name);
        compare(Names.friendlyCapabilityName(row.id, translate), row.name.toUpperCase());
    }

    function test_unknownCapabilities_data() {
        return [
            { tag: "input.touchpad.set_enabled", name: "input touchpad set enabled" },
            { tag: "a..b__c", name: "a  b  c" },
            { tag: "my-own", name: "my-own" },
            { tag: "50%1", name: "50%1" },
            { tag: "constructor", name: "constructor" },
            { tag: "__proto__", name: "  proto  " }
        ];
    }
    function test_unknownCapabilities(row) {
        compare(Names.friendlyCapabilityName(row.tag, translate), row.name);
        compare(translated, []);
    }

    function test_nothing_data() {
        return [{ tag: "empty", id: "" }, { tag: "undefined", id: undefined }, { tag: "null", id: null }];
    }
    function test_nothing(row) {
        compare(Names.agentDisplayName(row.id, translate), "");
        compare(Names.friendlyCapabilityName(row.id, translate), "");
        compare(Names.phaseLabel(row.id, "chat", translate), "");
        compare(Names.phaseLabel("routing", row.id, translate), "");
        compare(translated, []);
    }

    function test_phaseLabel_data() {
        return [
            { tag: "routing", agent: "planner", label: "Planner" },
            { tag: "routing", agent: "nobody", label: "nobody" },
            { tag: "creating", agent: "planner", label: "Planning…" },
            { tag: "executing", agent: "", label: "Executing…" },
            { tag: "verifying %1", agent: "", label: "verifying %1" },
            { tag: "constructor", agent: "", label: "constructor" }
        ];
    }
    function test_phaseLabel(row) {
        compare(Names.phaseLabel(row.tag, row.agent), row.label);
    }
    function test_phaseLabelTranslated() {
        compare(Names.phaseLabel("routing", "planner", translate), "PLANNER");
        compare(Names.phaseLabel("creating", "", translate), "PLANNING…");
        compare(Names.phaseLabel("executing", "", translate), "EXECUTING…");
        compare(Names.phaseLabel("100%", "", translate), "100%");
    }

    function test_runningLabel_data() {
        return [
            { tag: "one step", capability: "kde.notify", index: 0, total: 1, label: "Running “Send notification”…" },
            { tag: "no count", capability: "kde.notify", index: -1, total: 0, label: "Running “Send notification”…" },
            { tag: "first of three", capability: "kde.notify", index: 0, total: 3,
              label: "Running “Send notification” (1/3)…" },
            { tag: "last of three", capability: "theme.apply", index: 2, total: 3, label: "Running “Apply theme” (3/3)…" },
            { tag: "unknown", capability: "my.own_tool", index: 1, total: 2, label: "Running “my own tool” (2/2)…" },
            { tag: "hostile", capability: "$& %1 {step}", index: 0, total: 2, label: "Running “$& %1 {step}” (1/2)…" }
        ];
    }
    function test_runningLabel(row) {
        compare(Names.runningLabel(row.capability, row.index, row.total), row.label);
    }
    function test_runningLabelTranslated() {
        compare(Names.runningLabel("kde.notify", 0, 2, translate), "RUNNING “SEND NOTIFICATION” (1/2)…");
        compare(Names.runningLabel("100%1", 0, 1, translate), "RUNNING “100%1”…");
    }
}
