// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/controllers"

TestCase {
    id: test
    name: "PlanController"

    property FakeBar bar
    property FakeBridge bridge
    property FakeSdk sdk
    property PlanController plan

    Component {
        id: bareClients

        //! Has the signals, but no functions for plans.
        QtObject {
            property bool ready: true
            property bool executorPathEnabled: true

            signal planReceived(var payload)
            signal planExecuted(var payload)
            signal error(string error)
        }
    }
    Component { id: bars; FakeBar {} }
    Component { id: bridges; FakeBridge {} }
    Component { id: sdks; FakeSdk {} }
    Component { id: controllers; PlanController {} }

    function init() {
        bridge = createTemporaryObject(bridges, test);
        sdk = createTemporaryObject(sdks, test);
        bar = createTemporaryObject(bars, test, { "bridge": bridge, "sdk": sdk });
        plan = createTemporaryObject(controllers, test, { "bar": bar });
    }

    function test_firstValues() {
        compare(plan.pendingPlan, null);
        compare(plan.planExecuting, false);
        compare(plan.planExecutingVisible, false);
        compare(plan.planDoneLabel, "");
        compare(plan.pendingChatAfterPlan, "");
        compare(plan.planRequestInFlight, false);
        compare(plan.lastActionId, "");
        compare(plan.pendingPlanMessage, "");
        compare(plan.planCardShown, false);
        compare(plan.undoShown, false);
        compare(plan.undoSecondsLeft, 10);
        compare(plan.undoTimer.interval, 1000);
        compare(plan.undoTimer.repeat, true);
        compare(plan.undoTimer.running, false);
        compare(plan.planBarLingerTimer.interval, 1800);
        compare(plan.planBarLingerTimer.repeat, false);
    }

    function test_processing_data() {
        return [
            { tag: "nothing", set: () => {}, expected: false },
            { tag: "thinking", set: () => { bridge.isThinking = true; }, expected: true },
            { tag: "a plan was asked for", set: () => { plan.planRequestInFlight = true; }, expected: true },
            { tag: "a plan runs", set: () => { plan.planExecuting = true; }, expected: true },
            { tag: "status thinking", set: () => { bridge.status = "thinking"; }, expected: true },
            { tag: "status running", set: () => { bridge.status = "running"; }, expected: true },
            { tag: "status error", set: () => { bridge.status = "error"; }, expected: false },
            { tag: "a plan waits for approval", set: () => { plan.pendingPlan = {}; }, expected: false },
            { tag: "the bar lingers", set: () => { plan.planExecutingVisible = true; }, expected: false }
        ];
    }

    function test_processing(data) {
        data.set();
        compare(plan.isQueryProcessing(), data.expected);
        bar.voiceConfirmPending = true;
        compare(plan.isQueryProcessing(), false);
    }

    function test_processingWithoutABridge() {
        bar.bridge = null;
        compare(plan.isQueryProcessing(), false);
        plan.planExecuting = true;
        compare(plan.isQueryProcessing(), true);
        plan.stopActiveQuery();
        compare(plan.planExecuting, false);
    }

    function test_cancelPlan() {
        plan.pendingPlan = { "plan": [1] };
        plan.pendingChatAfterPlan = "later";
        plan.planRequestInFlight = true;
        plan.planExecuting = true;
        plan.cancelPlan();
        compare(plan.pendingPlan, null);
        compare(plan.pendingChatAfterPlan, "");
        compare(plan.planRequestInFlight, false);
        compare(plan.planExecuting, true);
        compare(bridge.takeCalls(), []);
    }

    function test_stop_data() {
        return [
            { tag: "in flight", set: () => { plan.planRequestInFlight = true; } },
            { tag: "running", set: () => { plan.planExecuting = true; } },
            { tag: "waiting", set: () => { plan.pendingPlan = {}; } }
        ];
    }

    function test_stop(data) {
        plan.planExecutingVisible = true;
        plan.planDoneLabel = "done";
        plan.pendingChatAfterPlan = "later";
        plan.planBarLingerTimer.start();
        data.set();
        plan.stopActiveQuery();
        compare(bridge.takeCalls(), ["cancelRequest()"]);
        compare([plan.pendingPlan, plan.pendingChatAfterPlan, plan.planRequestInFlight, plan.planExecuting,
                 plan.planExecutingVisible, plan.planDoneLabel, plan.planBarLingerTimer.running],
                [null, "", false, false, false, "", false]);
    }

    function test_stopWithoutAPlanLeavesTheBarToLinger() {
        plan.planExecutingVisible = true;
        plan.planDoneLabel = "done";
        plan.planBarLingerTimer.start();
        plan.stopActiveQuery();
        compare(bridge.takeCalls(), ["cancelRequest()"]);
        compare([plan.planExecutingVisible, plan.planDoneLabel, plan.planBarLingerTimer.running], [true, "done", true]);
    }

    function test_linger() {
        plan.planExecutingVisible = true;
        plan.planDoneLabel = "done";
        plan.planBarLingerTimer.triggered();
        compare(plan.planExecutingVisible, false);
        compare(plan.planDoneLabel, "");
    }

    // ---- Requests

    readonly property var step: ({ "capabilityId": "audio.volume.set", "params": { "level": 30 } })
    readonly property string stepJson: JSON.stringify([step])

    //! A plan that waits for approval, with other fields as given.
    function offer(fields) {
        return Object.assign({ "allowed": true, "plan": [step], "requiresApproval": true, "summary": "volume 30" }, fields);
    }

    //! The result of a run that succeeded.
    function success(fields) {
        return Object.assign({ "success": true, "results": [{ "ok": true, "capabilityId": "window.close", "result": {} }],
                               "verificationSummary": { "state": "verified", "verified": 1, "total": 1, "details": [] } }, fields);
    }

    function test_request() {
        plan.pendingPlan = offer();
        plan.pendingPlanMessage = "older";
        plan.requestPlan("  volume 30 ");
        compare(sdk.takeCalls(), ["getPlan(  volume 30 )"]);
        compare([plan.pendingPlan, plan.pendingPlanMessage, plan.planRequestInFlight], [null, "", true]);
        compare(bar.takeCalls(), []);
    }

    function test_requestAsChat_data() {
        return [
            { tag: "no client", change: () => { bar.sdk = null; } },
            { tag: "a client without plans", change: () => { bar.sdk = createTemporaryObject(bareClients, test); } },
            { tag: "desktop tools off", change: () => { sdk.executorPathEnabled = false; } },
            { tag: "tools off, not ready", change: () => { sdk.executorPathEnabled = false; sdk.ready = false; } }
        ];
    }
    function test_requestAsChat(row) {
        row.change();
        plan.requestPlan(" hello ");
        compare(bar.takeCalls(), ["sendToBridge( hello )"]);
        compare(sdk.takeCalls(), []);
        compare(plan.planRequestInFlight, false);
        plan.requestPlan("");
        plan.requestPlan();
        compare(bar.takeCalls(), []);
    }

    function test_requestWithoutAMessage_data() {
        return [{ tag: "empty", message: "" }, { tag: "blank", message: " \n\t" }, { tag: "nothing", message: undefined },
                { tag: "null", message: null }, { tag: "no text", message: { "a": 1 } }];
    }
    function test_requestWithoutAMessage(row) {
        plan.requestPlan(row.message);
        compare([sdk.takeCalls(), bar.takeCalls(), plan.planRequestInFlight], [[], [], false]);
    }

    function test_requestBeforeTheBridgeIsReady() {
        sdk.ready = false;
        plan.requestPlan(" volume 30 ");
        compare([plan.pendingPlanMessage, plan.planRequestInFlight, sdk.takeCalls()], ["volume 30", true, []]);
        plan.pendingPlan = offer();
        sdk.ready = true;
        compare(sdk.takeCalls(), ["getPlan(volume 30)"]);
        compare([plan.pendingPlanMessage, plan.pendingPlan, plan.planRequestInFlight], ["", null, true]);
        // Only once.
        sdk.ready = false;
        sdk.ready = true;
        compare(sdk.takeCalls(), []);
    }

    function test_heldRequestNeedsTheExecutor() {
        plan.pendingPlanMessage = "volume 30";
        sdk.ready = false;
        sdk.executorPathEnabled = false;
        sdk.ready = true;
        compare([sdk.takeCalls(), plan.pendingPlanMessage], [[], "volume 30"]);
    }

    // ---- Plans

    function test_planWaitsForApproval() {
        plan.planRequestInFlight = true;
        plan.pendingChatAfterPlan = "later";
        sdk.planReceived(offer());
        compare([plan.pendingPlan.summary, plan.planRequestInFlight, plan.pendingChatAfterPlan, plan.planCardShown],
                ["volume 30", false, "", true]);
        compare([sdk.takeCalls(), bar.takeCalls()], [[], ["scrollToBottom()"]]);
        compare(plan.isQueryProcessing(), false);
    }

    function test_planRunsAtOnce_data() {
        return [false, undefined, null, 1, "true"].map(value => ({ tag: String(value), value: value }));
    }
    function test_planRunsAtOnce(row) {
        sdk.planReceived(offer({ "requiresApproval": row.value }));
        compare(sdk.takeCalls(), ["executePlan(" + stepJson + ")"]);
        compare([plan.planExecuting, plan.planExecutingVisible, plan.planCardShown], [true, true, false]);
    }

    function test_planIsRefused_data() {
        return [
            { tag: "not allowed", payload: offer({ "allowed": false }) },
            { tag: "allowed by a text", payload: offer({ "allowed": "true" }) },
            { tag: "no steps", payload: offer({ "plan": [] }) },
            { tag: "steps are no list", payload: offer({ "plan": { "length": 1 } }) },
            { tag: "empty", payload: {} },
            { tag: "a text", payload: "plan" }
        ];
    }
    function test_planIsRefused(row) {
        plan.planRequestInFlight = true;
        sdk.planReceived(row.payload);
        compare([plan.planRequestInFlight, plan.pendingPlan, sdk.takeCalls(), bar.takeCalls()], [false, null, [], []]);
        // A held prompt is sent as chat.
        plan.pendingChatAfterPlan = "hello";
        sdk.planReceived(row.payload);
        compare([bar.takeCalls(), plan.pendingChatAfterPlan], [["sendToBridge(hello)"], ""]);
    }

    function test_noPayload() {
        plan.planRequestInFlight = true;
        plan.pendingChatAfterPlan = "later";
        sdk.planReceived(null);
        compare([plan.planRequestInFlight, plan.pendingChatAfterPlan, bar.takeCalls()], [false, "later", []]);
    }

    function test_run() {
        plan.pendingPlan = offer({ "plan": [null, step] });
        plan.planDoneLabel = "old";
        plan.planBarLingerTimer.start();
        plan.runPlan();
        compare(sdk.takeCalls(), ["executePlan(" + JSON.stringify([null, step]) + ")"]);
        compare([plan.planExecuting, plan.planExecutingVisible, plan.planDoneLabel, plan.planBarLingerTimer.running],
                [true, true, "", false]);
        compare([Boolean(plan.pendingPlan), plan.planCardShown], [true, false]);
    }

    function test_nothingToRun_data() {
        return [
            { tag: "no plan", change: () => { plan.pendingPlan = null; } },
            { tag: "no steps", change: () => { plan.pendingPlan = {}; } },
            { tag: "empty steps", change: () => { plan.pendingPlan = { "plan": [] }; } },
            { tag: "no client", change: () => { bar.sdk = null; } },
            { tag: "a client without plans", change: () => { bar.sdk = createTemporaryObject(bareClients, test); } }
        ];
    }
    function test_nothingToRun(row) {
        plan.pendingPlan = offer();
        row.change();
        plan.runPlan();
        compare([sdk.takeCalls(), plan.planExecuting, plan.planExecutingVisible], [[], false, false]);
    }

    // ---- Results

    function test_result() {
        plan.pendingPlan = offer();
        plan.pendingChatAfterPlan = "later";
        plan.planRequestInFlight = true;
        plan.runPlan();
        sdk.planExecuted(success({ "actionId": "act_1" }));
        compare([plan.planExecuting, plan.pendingPlan, plan.pendingChatAfterPlan, plan.planRequestInFlight], [false, null, "", false]);
        compare([plan.planExecutingVisible, plan.planBarLingerTimer.running, plan.planDoneLabel], [true, true, "✓ <Window closed.>"]);
        compare([plan.lastActionId, plan.undoShown, plan.undoTimer.running], ["act_1", true, true]);
        compare(bar.takeCalls(), ["appendAssistantText(<Window closed.> <(Undo available)>)", "scrollToBottom()"]);
        compare(bridge.takeCalls(), []);
    }

    function test_resultWithoutAnAction() {
        plan.lastActionId = "act_1";
        sdk.planExecuted(success());
        compare(plan.lastActionId, "act_1");
        sdk.planExecuted(success({ "actionId": 5 }));
        compare(plan.lastActionId, "act_1");
    }

    //! The undo bar appears although the message offers no undo.
    function test_readOnlyResult() {
        sdk.planExecuted(success({ "actionId": "act_1", "results": [{ "ok": true, "capabilityId": "window.list", "result": { "windows": [] } }] }));
        compare(bar.takeCalls()[0], "appendAssistantText(<0 windows open.>)");
        compare(plan.undoShown, true);
    }

    //! The progress bar and the message differ.
    function test_successWithoutASummary() {
        sdk.planExecuted({ "success": true });
        compare(bar.takeCalls()[0], "appendAssistantText(<Failed: <Execution failed>>)");
        compare(plan.planDoneLabel, "✓ <Done>");
    }

    function test_theme_data() {
        return [{ tag: "Breeze Dark", before: true, after: false }, { tag: "Breeze", before: false, after: true },
                { tag: "Oxygen", before: true, after: true }, { tag: "Oxygen ", before: false, after: false }];
    }
    function test_theme(row) {
        bar.appearanceStore.lightChrome = row.before;
        sdk.planExecuted(success({ "results": [{ "ok": true, "capabilityId": "theme.apply", "result": { "applied": row.tag } }] }));
        compare(bar.appearanceStore.lightChrome, row.after);
    }

    function test_wrongTypes_data() {
        return [null, undefined, 5, "done", [], { "results": 5, "verificationSummary": [], "actionId": {} }]
            .map(payload => ({ tag: JSON.stringify(payload) || "undefined", payload: payload }));
    }
    function test_wrongTypes(row) {
        plan.pendingPlan = offer();
        plan.runPlan();
        sdk.planExecuted(row.payload);
        compare([plan.planExecuting, plan.lastActionId, plan.planDoneLabel], [false, "", "✗ <Failed>"]);
        compare(bar.takeCalls(), ["appendAssistantText(<Failed: <Execution failed>>)", "scrollToBottom()"]);
    }

    function test_isReadOnlyPlan() {
        compare(plan.isReadOnlyPlan([{ "capabilityId": "window.list" }]), true);
        compare(plan.isReadOnlyPlan([]), false);
    }

    // ---- Undo

    function test_countdown() {
        plan.lastActionId = "act_1";
        for (let left = 9; left > 0; --left) {
            plan.undoTimer.triggered();
            compare([plan.undoSecondsLeft, plan.lastActionId], [left, "act_1"]);
        }
        plan.undoTimer.triggered();
        compare([plan.lastActionId, plan.undoShown, plan.undoTimer.running], ["", false, false]);
        plan.lastActionId = "act_2";
        compare(plan.undoSecondsLeft, 10);
    }

    function test_secondRunDoesNotRestartTheCountdown() {
        sdk.planExecuted(success({ "actionId": "act_1" }));
        plan.undoTimer.triggered();
        sdk.planExecuted(success({ "actionId": "act_2" }));
        compare([plan.lastActionId, plan.undoSecondsLeft], ["act_2", 9]);
    }

    function test_undo() {
        plan.lastActionId = "act_1";
        plan.undoLastAction();
        compare(sdk.takeCalls(), ["auditRevert(act_1)"]);
        compare([plan.lastActionId, plan.undoShown], ["", false]);
        compare(bar.takeCalls(), ["appendAssistantText(<Undo requested. Changes reverted if possible.>)", "scrollToBottom()"]);
        plan.undoLastAction();
        compare([sdk.takeCalls(), bar.takeCalls()], [[], []]);
    }

    function test_undoWithoutAClient_data() {
        return [{ tag: "none", client: null }, { tag: "without undo", client: bridge }];
    }
    function test_undoWithoutAClient(row) {
        plan.lastActionId = "act_1";
        bar.sdk = row.client;
        plan.undoLastAction();
        compare([plan.lastActionId, bar.takeCalls()], ["act_1", []]);
    }

    function test_dismissUndo() {
        plan.lastActionId = "act_1";
        plan.undoTimer.triggered();
        plan.dismissUndo();
        compare([plan.lastActionId, plan.undoSecondsLeft, sdk.takeCalls(), bar.takeCalls()], ["", 10, [], []]);
    }

    // ---- Errors

    function test_errorWhileRunning_data() {
        return [
            { tag: "running", change: () => { plan.pendingPlan = offer(); plan.runPlan(); sdk.takeCalls(); }, text: "no way", row: "Error: no way" },
            { tag: "without a text", change: () => { plan.planExecuting = true; }, text: "", row: "Error: Request failed" },
            { tag: "lingering", change: () => { plan.planExecutingVisible = true; plan.planDoneLabel = "✓"; plan.planBarLingerTimer.start(); },
              text: "no way", row: "Error: no way" }
        ];
    }
    function test_errorWhileRunning(row) {
        row.change();
        sdk.error(row.text);
        compare([plan.planExecuting, plan.planExecutingVisible, plan.planDoneLabel, plan.planBarLingerTimer.running, plan.pendingPlan],
                [false, false, "", false, null]);
        compare(bar.takeCalls(), ["appendAssistantText(" + row.row + ")", "scrollToBottom()"]);
    }

    function test_errorOfARequest_data() {
        return [
            { tag: "no steps", text: "Bridge: Plan had no valid steps.", sends: true },
            { tag: "no plan", text: "Could not parse plan", sends: true },
            { tag: "another error", text: "Bridge not ready", sends: false }
        ];
    }
    function test_errorOfARequest(row) {
        plan.planRequestInFlight = true;
        sdk.error(row.text);
        // Until a cancel.
        compare([plan.planRequestInFlight, bar.takeCalls()], [true, []]);
        plan.pendingChatAfterPlan = "hello";
        plan.planExecutingVisible = row.sends;
        sdk.error(row.text);
        compare(bar.takeCalls(), row.sends ? ["sendToBridge(hello)"] : []);
        compare([plan.planRequestInFlight, plan.pendingChatAfterPlan, plan.planExecutingVisible],
                row.sends ? [false, "", true] : [true, "hello", false]);
        plan.cancelPlan();
        compare(plan.planRequestInFlight, false);
    }

    function test_heldChatIsSentForARequestOnly() {
        plan.pendingChatAfterPlan = "hello";
        sdk.error("Could not parse plan");
        compare([bar.takeCalls(), plan.pendingChatAfterPlan], [[], "hello"]);
    }

    function test_otherErrorsAreNotThePlans() {
        plan.pendingPlan = offer();
        sdk.error("models: no way");
        compare([Boolean(plan.pendingPlan), bar.takeCalls()], [true, []]);
    }

    function test_cancelKeepsAHeldRequest() {
        plan.pendingPlanMessage = "volume 30";
        plan.cancelPlan();
        compare(plan.pendingPlanMessage, "volume 30");
    }

    function test_clientIsReplaced() {
        bar.sdk = createTemporaryObject(sdks, test);
        sdk.planReceived(offer());
        compare(plan.pendingPlan, null);
        bar.sdk.planReceived(offer());
        verify(plan.pendingPlan);
    }
}
