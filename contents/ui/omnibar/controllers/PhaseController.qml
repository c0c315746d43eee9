// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../logic/Names.js" as Names

//! The label for what the bridge is currently doing. It stays for a moment after the phase has ended, so that the user
//! can read it even if the action is fast.
Controller {
    id: phases

    property string stickyPhaseLabel: ""
    readonly property string activePhaseLabel: stickyPhaseLabel

    property Timer phaseLabelHoldTimer: Timer {
        objectName: "phaseLabelHoldTimer"
        interval: 1200
        onTriggered: {
            if (!phases.bar.bridge || phases.bar.bridge.activePhase === "")
                phases.stickyPhaseLabel = "";
        }
    }

    function show(label) {
        phaseLabelHoldTimer.stop();
        stickyPhaseLabel = label;
    }

    Connections {
        target: phases.bar.bridge

        function onActivePhaseChanged() {
            const bridge = phases.bar.bridge;
            if (bridge.activePhase === "")
                phases.phaseLabelHoldTimer.restart();
            else
                phases.show(Names.phaseLabel(bridge.activePhase, bridge.routedAgent, phases.bar.tr));
        }
        function onStatusChanged() {
            if (phases.bar.bridge.status === "thinking")
                phases.show(phases.bar.tr("Thinking…"));
        }
        function onPlanStepChanged() {
            const bridge = phases.bar.bridge;
            if (bridge.planStepCapability === "" || bridge.status !== "thinking")
                return;
            phases.show(Names.runningLabel(bridge.planStepCapability, bridge.planStepIndex, bridge.planStepTotal,
                                           phases.bar.tr));
        }
    }
}
