// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/components/mainwindow/logic/Choices.js" as Choices

TestCase {
    name: "Choices"

    function test_configAgents() {
        const agents = {
            "build": {}, "plan": { description: "Plans things", model: "a/b", mode: "subagent", prompt: "You plan" },
            "off": { disable: true }, "offToo": { disabled: true }, "on": { disable: false, disabled: false },
            "text": "no agent", "list": [], "nothing": null, "odd": { description: 7, mode: {}, model: [] }
        };
        compare(Choices.configAgents(agents), [
            { id: "build", name: "Build", description: "", model: "", mode: "primary", prompt: "", fromConfig: true },
            { id: "plan", name: "Plans things", description: "Plans things", model: "a/b", mode: "subagent", prompt: "You plan", fromConfig: true },
            { id: "on", name: "On", description: "", model: "", mode: "primary", prompt: "", fromConfig: true },
            { id: "odd", name: "7", description: "7", model: "", mode: "primary", prompt: "", fromConfig: true }
        ]);
    }

    function test_noConfigAgents_data() {
        return [{ tag: "undefined", agents: undefined }, { tag: "null", agents: null }, { tag: "text", agents: "x" }, { tag: "empty", agents: {} }];
    }

    function test_noConfigAgents(data) {
        compare(Choices.configAgents(data.agents), []);
    }

    function test_merge() {
        const config = Choices.configAgents({ "plan": { description: "Mine" } });
        const merged = Choices.mergedAgents(config, [
            { id: "build", name: "Builder" }, { id: "plan", name: "The bridge's" }, { id: "build", name: "Again" },
            { id: "nameless" }, { name: "without id" }, null, "text", { id: 5, name: {} }
        ]);
        compare(merged.map(row => row.id + " " + row.name), ["plan Mine", "build Builder", "nameless nameless", "5 5"]);
        compare(merged[0].fromConfig, true);
        compare(merged[1].fromConfig, undefined);
    }

    function test_models() {
        compare(Choices.models([
            { id: "m", name: "M", provider: "p", fullId: "p/m", displayName: "Model M" }, { id: "n", name: "N" }, { id: "o" },
            { name: "no id" }, 5, null, { fullId: "p/q" }
        ]), [{ id: "p/m", name: "Model M" }, { id: "n", name: "N" }, { id: "o", name: "o" }, { id: "p/q", name: "p/q" }]);
    }

    function test_names() {
        const rows = [{ id: "a", name: "A" }, { id: "b", name: "B" }];
        compare(Choices.nameOf(rows, "b"), "B");
        compare(Choices.nameOf(rows, "c"), "c");
        compare(Choices.indexOf(rows, "b"), 1);
        compare(Choices.indexOf(rows, "c"), 0);
    }

    function test_buttonText_data() {
        return [
            { tag: "20", name: "12345678901234567890", text: "12345678901234567890" },
            { tag: "21", name: "123456789012345678901", text: "12345678901234567..." },
            { tag: "line breaks", name: "a\nb", text: "a\ufffdb" },
            { tag: "markup", name: "<b>&x</b>", text: "<b>&x</b>" }
        ];
    }

    function test_buttonText(data) {
        compare(Choices.buttonText(data.name), data.text);
    }
}
