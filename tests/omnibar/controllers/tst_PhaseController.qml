// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/controllers"

TestCase {
    id: test
    name: "PhaseController"

    property FakeBar bar
    property FakeBridge bridge
    property PhaseController phases

    Component { id: bars; FakeBar {} }
    Component { id: bridges; FakeBridge {} }
    Component { id: controllers; PhaseController {} }

    function init() {
        bridge = createTemporaryObject(bridges, test);
        bar = createTemporaryObject(bars, test, { "bridge": bridge });
        phases = createTemporaryObject(controllers, test, { "bar": bar });
    }

    function test_firstValues() {
        compare(phases.stickyPhaseLabel, "");
        compare(phases.activePhaseLabel, "");
        compare(phases.phaseLabelHoldTimer.interval, 1200);
        compare(phases.phaseLabelHoldTimer.repeat, false);
        compare(phases.phaseLabelHoldTimer.running, false);
    }

    function test_phases_data() {
        return [
            { tag: "routing", phase: "routing", agent: "planner", label: "<Planner>" },
            { tag: "routing to an unknown agent", phase: "routing", agent: "my-agent", label: "my-agent" },
            { tag: "creating", phase: "creating", agent: "", label: "<Planning…>" },
            { tag: "executing", phase: "executing", agent: "planner", label: "<Executing…>" },
            { tag: "another", phase: "Looking around", agent: "planner", label: "Looking around" },
            { tag: "a name of the language", phase: "constructor", agent: "", label: "constructor" }
        ];
    }

    function test_phases(data) {
        bridge.routedAgent = data.agent;
        bridge.activePhase = data.phase;
        compare(phases.stickyPhaseLabel, data.label);
        compare(phases.activePhaseLabel, data.label);
    }

    function test_labelOutlivesItsPhase() {
        bridge.activePhase = "executing";
        bridge.activePhase = "";
        compare(phases.activePhaseLabel, "<Executing…>");
        verify(phases.phaseLabelHoldTimer.running);
        phases.phaseLabelHoldTimer.triggered();
        compare(phases.activePhaseLabel, "");
    }

    function test_holdTimerRestarts() {
        bridge.activePhase = "executing";
        bridge.activePhase = "";
        verify(phases.phaseLabelHoldTimer.running);
        bridge.activePhase = "creating";
        compare(phases.phaseLabelHoldTimer.running, false);
        bridge.activePhase = "";
        verify(phases.phaseLabelHoldTimer.running);
    }

    function test_aPhaseThatCameBackKeepsItsLabel() {
        bridge.activePhase = "executing";
        phases.phaseLabelHoldTimer.triggered();
        compare(phases.activePhaseLabel, "<Executing…>");
    }

    function test_thinkingBeforeAnyEvent() {
        bridge.activePhase = "executing";
        bridge.activePhase = "";
        bridge.status = "thinking";
        compare(phases.activePhaseLabel, "<Thinking…>");
        compare(phases.phaseLabelHoldTimer.running, false);
    }

    function test_otherStatesLeaveTheLabel_data() {
        return ["idle", "error", "connecting", "disconnected"].map(status => ({ tag: status, status: status }));
    }

    function test_otherStatesLeaveTheLabel(data) {
        bridge.status = "thinking";
        bridge.status = data.status;
        compare(phases.activePhaseLabel, "<Thinking…>");
    }

    function test_steps_data() {
        return [
            { tag: "one step", capability: "theme.apply", index: 0, total: 1,
              name: "<Apply theme>", step: "" },
            { tag: "second of three", capability: "kde.set_volume", index: 1, total: 3, name: "<Set volume>", step: " (2/3)" },
            { tag: "unknown", capability: "my.own_thing", index: 0, total: 0, name: "my own thing", step: "" }
        ];
    }

    function test_steps(data) {
        bridge.status = "thinking";
        bridge.planStepCapability = data.capability;
        bridge.planStepIndex = data.index;
        bridge.planStepTotal = data.total;
        phases.phaseLabelHoldTimer.restart();
        bridge.planStepChanged();
        compare(phases.activePhaseLabel, "<Running “" + data.name + "”" + data.step + "…>");
        compare(phases.phaseLabelHoldTimer.running, false);
    }

    function test_stepsWithoutALabel_data() {
        return [
            { tag: "no capability", status: "thinking", capability: "" },
            { tag: "not thinking", status: "idle", capability: "theme.apply" }
        ];
    }

    function test_stepsWithoutALabel(data) {
        bridge.status = data.status;
        bridge.planStepCapability = data.capability;
        const before = phases.activePhaseLabel;
        bridge.planStepChanged();
        compare(phases.activePhaseLabel, before);
    }

    function test_withoutABridge() {
        bridge.activePhase = "executing";
        bar.bridge = null;
        phases.phaseLabelHoldTimer.triggered();
        compare(phases.activePhaseLabel, "");
    }
}
