// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/controllers"

TestCase {
    id: test
    name: "RuntimeController"

    property FakeSdk sdk
    property RuntimeController runtime

    Component { id: bars; FakeBar {} }
    Component { id: clients; FakeSdk {} }
    Component { id: runtimes; RuntimeController {} }
    Component { id: spies; SignalSpy {} }

    function init() {
        sdk = createTemporaryObject(clients, test);
        const bar = createTemporaryObject(bars, test, { "sdk": sdk });
        runtime = createTemporaryObject(runtimes, test, { "bar": bar });
    }

    function test_atTheStart() {
        compare([runtime.runtimeMode, runtime.runtimePid, runtime.runtimeConnected, runtime.runtimeHealthLine], ["embedded", 0, false, ""]);
        compare([runtime.runtimeJobs, runtime.reminders, runtime.remindersStatus], [[], [], ""]);
        compare(sdk.takeCalls(), []);
    }

    function test_health_data() {
        return [
            { tag: "connected", payload: { "mode": "external", "runtimePid": 7, "connected": true },
              values: ["external", 7, true, "<Mode: external> · <PID: 7> · <Connected>"] },
            { tag: "empty", payload: {}, values: ["embedded", 0, false, "<Mode: embedded> · <Disconnected>"] },
            { tag: "wrong types", payload: { "mode": 5, "runtimePid": "7", "connected": "true" },
              values: ["embedded", 0, false, "<Mode: embedded> · <Disconnected>"] }
        ];
    }
    function test_health(row) {
        sdk.runtimeHealthUpdated(row.payload);
        compare([runtime.runtimeMode, runtime.runtimePid, runtime.runtimeConnected, runtime.runtimeHealthLine], row.values);
    }

    function test_jobs() {
        const jobs = [{ "id": "j1", "kind": "analysis", "state": "failed", "lastError": "no" }, { "id": "j2" }];
        sdk.runtimeJobsUpdated(jobs);
        compare(runtime.runtimeJobs, [{ "jid": "j1", "jkind": "analysis", "jstate": "failed", "jerror": "no" },
                                      { "jid": "j2", "jkind": "", "jstate": "unknown", "jerror": "" }]);
        const spy = createTemporaryObject(spies, test, { "target": runtime, "signalName": "runtimeJobsChanged" });
        sdk.runtimeJobsUpdated(jobs.slice());
        compare(spy.count, 0);
    }

    function test_reminders() {
        sdk.remindersListed([{ "id": "r1", "title": "Tea", "message": "m", "fire_at": 9, "remaining_ms": 4 }, { "id": "r2" }]);
        compare(runtime.reminders, [{ "rid": "r1", "rtitle": "Tea", "rmessage": "m", "rfireAt": 9, "rremainingMs": 4 },
                                    { "rid": "r2", "rtitle": "<Reminder>", "rmessage": "", "rfireAt": 0, "rremainingMs": 0 }]);
        compare(runtime.remindersStatus, "<2 reminder(s) pending.>");
        sdk.remindersListed([]);
        compare([runtime.reminders, runtime.remindersStatus], [[], "<No pending reminders.>"]);
        compare(sdk.takeCalls(), []);
    }

    function test_cancelledReminderListsAgain() {
        sdk.reminderCancelled("r1");
        compare(sdk.takeCalls(), ["reminderList()"]);
    }
}
