// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../logic/Native.js" as Native

//! The state of a plan: requested, waiting for approval, running.
Controller {
    id: plan

    property var pendingPlan: null
    property bool planExecuting: false
    //! Whether the progress bar is visible; it lingers after planExecuting turns false, see planBarLingerTimer.
    property bool planExecutingVisible: false
    property string planDoneLabel: ""
    //! Not set by anything yet. The prompt to send as chat if the plan can't be executed.
    property string pendingChatAfterPlan: ""
    property bool planRequestInFlight: false

    property Timer planBarLingerTimer: Timer {
        objectName: "planBarLingerTimer"
        interval: 1800
        onTriggered: {
            plan.planExecutingVisible = false;
            plan.planDoneLabel = "";
        }
    }

    function cancelPlan() {
        pendingPlan = null;
        pendingChatAfterPlan = "";
        planRequestInFlight = false;
    }

    function isQueryProcessing() {
        if (bar.voiceConfirmPending)
            return false;
        const thinking = bar.bridge ? bar.bridge.isThinking : false;
        return thinking || planRequestInFlight || planExecuting || ["thinking", "running"].includes(bar.bridgeStatus);
    }

    function stopActiveQuery() {
        Native.call(bar.bridge, "cancelRequest");
        if (planRequestInFlight || planExecuting || pendingPlan) {
            cancelPlan();
            planExecuting = false;
            planExecutingVisible = false;
            planDoneLabel = "";
            planBarLingerTimer.stop();
        }
    }
}
