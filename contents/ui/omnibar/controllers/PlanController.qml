// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../../../../components/logic/Native.js" as Native
import "../logic/PlanText.js" as PlanText

//! Plans: requested, waiting for approval, running, and undone. They go through the SDK client. Plans that the bridge
//! makes of prompts are not seen here but only as phases, see PhaseController.
Controller {
    id: plan

    //! The plan that waits for approval: {allowed, plan, requiresApproval, summary, riskLevel}, unchecked.
    property var pendingPlan: null
    property bool planExecuting: false
    //! Whether the progress bar is visible; it lingers after planExecuting turns false, see planBarLingerTimer.
    property bool planExecutingVisible: false
    property string planDoneLabel: ""
    //! The last run in the audit trail, while it can be undone.
    property string lastActionId: ""
    //! The message of a request that waits for the bridge to become ready.
    property string pendingPlanMessage: ""
    //! Not set by anything yet. The prompt to send as chat if the plan can't be executed.
    property string pendingChatAfterPlan: ""
    property bool planRequestInFlight: false

    readonly property bool planCardShown: Boolean(pendingPlan) && !planExecuting
    readonly property bool undoShown: lastActionId !== ""
    readonly property int undoSeconds: 10
    property int undoSecondsLeft: undoSeconds

    property Timer planBarLingerTimer: Timer {
        objectName: "planBarLingerTimer"
        interval: 1800
        onTriggered: {
            plan.planExecutingVisible = false;
            plan.planDoneLabel = "";
        }
    }

    property Timer undoTimer: Timer {
        objectName: "undoTimer"
        interval: 1000
        repeat: true
        running: plan.undoShown
        onTriggered: {
            plan.undoSecondsLeft -= 1;
            if (plan.undoSecondsLeft <= 0)
                plan.lastActionId = "";
        }
    }

    // A further run keeps the bar on the screen and so doesn't restart the countdown.
    onUndoShownChanged: {
        if (undoShown)
            undoSecondsLeft = undoSeconds;
    }

    //! Asks the bridge for a plan. Without the executor, the message is sent as chat. Not called by anything yet: the
    //! caller appends the user's row, because the plan's card is in the panel of the conversation.
    function requestPlan(message) {
        const text = typeof message === "string" ? message : "";
        if (text.trim() === "")
            return;
        if (!Native.offers(bar.sdk, "getPlan") || !bar.sdk.executorPathEnabled) {
            bar.sendToBridge(text);
            return;
        }
        if (!bar.sdk.ready) {
            pendingPlanMessage = text.trim();
            planRequestInFlight = true;
            console.log("[OmniBar] SDK not ready yet, deferring getPlan until ready");
            return;
        }
        sendRequest(text);
    }

    function sendRequest(message) {
        pendingPlanMessage = "";
        pendingPlan = null;
        planRequestInFlight = true;
        bar.sdk.getPlan(message);
    }

    function sendHeldRequest() {
        if (bar.sdk.ready && bar.sdk.executorPathEnabled && pendingPlanMessage !== "")
            sendRequest(pendingPlanMessage);
    }

    function takePlan(payload) {
        planRequestInFlight = false;
        if (!payload)
            return;
        if (payload.allowed === true && PlanText.steps(payload).length > 0) {
            pendingPlan = payload;
            pendingChatAfterPlan = "";
            if (payload.requiresApproval !== true)
                runPlan();
            else
                bar.scrollToBottom();
        } else if (pendingChatAfterPlan !== "") {
            sendHeldChat();
        }
    }

    function sendHeldChat() {
        const prompt = pendingChatAfterPlan;
        pendingChatAfterPlan = "";
        bar.sendToBridge(prompt);
    }

    function runPlan() {
        const steps = PlanText.steps(pendingPlan);
        if (!Native.offers(bar.sdk, "executePlan") || steps.length === 0)
            return;
        planExecuting = true;
        planExecutingVisible = true;
        planDoneLabel = "";
        planBarLingerTimer.stop();
        bar.sdk.executePlan(steps);
    }

    //! Intentional: leaves no row in the conversation, and keeps a request that waits for the bridge.
    function cancelPlan() {
        pendingPlan = null;
        pendingChatAfterPlan = "";
        planRequestInFlight = false;
    }

    function hideProgress() {
        planExecuting = false;
        planExecutingVisible = false;
        planDoneLabel = "";
        planBarLingerTimer.stop();
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
            hideProgress();
        }
    }

    //! Shows the result of a run. It isn't spoken.
    function takeResult(payload) {
        const outcome = PlanText.parseOutcome(payload);
        planExecuting = false;
        cancelPlan();
        planBarLingerTimer.restart();
        // Intentional: also after a run that only read, although its message offers no undo.
        if (outcome.actionId !== "")
            lastActionId = outcome.actionId;
        const light = PlanText.lightChrome(outcome.results);
        if (light !== undefined)
            bar.appearanceStore.lightChrome = light;
        planDoneLabel = PlanText.doneLabel(outcome, bar.tr);
        bar.appendAssistantText(PlanText.message(outcome, bar.tr));
        bar.scrollToBottom();
    }

    function isReadOnlyPlan(results) {
        return PlanText.isReadOnlyPlan(results);
    }

    //! Doesn't wait for the result: what can't be undone is in the audit trail.
    function undoLastAction() {
        if (lastActionId === "" || !Native.offers(bar.sdk, "auditRevert"))
            return;
        bar.sdk.auditRevert(lastActionId);
        lastActionId = "";
        bar.appendAssistantText(bar.tr("Undo requested. Changes reverted if possible."));
        bar.scrollToBottom();
    }

    function dismissUndo() {
        lastActionId = "";
        undoSecondsLeft = undoSeconds;
    }

    //! Errors of the SDK client name no request, so the state decides whether one is about the plan.
    function takeError(error) {
        const words = String(error || "");
        const noPlan = words.includes("Plan had no valid steps") || words.includes("Could not parse plan");
        if (planRequestInFlight && pendingChatAfterPlan !== "" && noPlan) {
            planRequestInFlight = false;
            sendHeldChat();
        } else if (planExecuting || planExecutingVisible) {
            hideProgress();
            pendingPlan = null;
            // Not translated, like the errors of the conversation.
            bar.appendAssistantText("Error: " + (words || "Request failed"));
            bar.scrollToBottom();
        }
    }

    Connections {
        target: plan.bar.sdk

        function onReadyChanged() {
            plan.sendHeldRequest();
        }
        function onPlanReceived(payload) {
            plan.takePlan(payload);
        }
        function onPlanExecuted(payload) {
            plan.takeResult(payload);
        }
        function onError(error) {
            plan.takeError(error);
        }
    }
}
