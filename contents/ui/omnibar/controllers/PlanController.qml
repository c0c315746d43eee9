// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../logic/Native.js" as Native

//! Plans on their way: asked for, waiting for approval, running.
Controller {
    id: plan

    property var pendingPlan: null
    property bool planExecuting: false
    //! The progress bar; it outlives planExecuting by the linger.
    property bool planExecutingVisible: false
    property string planDoneLabel: ""
    //! Nothing sets it yet; when set, chat is sent only if the plan can't be executed.
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
