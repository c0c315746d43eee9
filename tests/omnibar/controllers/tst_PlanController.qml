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
    property PlanController plan

    Component { id: bars; FakeBar {} }
    Component { id: bridges; FakeBridge {} }
    Component { id: controllers; PlanController {} }

    function init() {
        bridge = createTemporaryObject(bridges, test);
        bar = createTemporaryObject(bars, test, { "bridge": bridge });
        plan = createTemporaryObject(controllers, test, { "bar": bar });
    }

    function test_firstValues() {
        compare(plan.pendingPlan, null);
        compare(plan.planExecuting, false);
        compare(plan.planExecutingVisible, false);
        compare(plan.planDoneLabel, "");
        compare(plan.pendingChatAfterPlan, "");
        compare(plan.planRequestInFlight, false);
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
}
