// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/controllers"

TestCase {
    id: test
    name: "DashboardController"

    property FakeBar bar
    property FakeSdk sdk
    property DashboardController dashboard

    readonly property string tick: "getSystemDashboard()"
    readonly property string power: "refreshPowerProfile()"

    Component { id: bars; FakeBar {} }
    Component { id: clients; FakeSdk {} }
    Component { id: dashboards; DashboardController {} }
    Component { id: spies; SignalSpy {} }

    function init() {
        bar = createTemporaryObject(bars, test);
        sdk = createTemporaryObject(clients, test);
        bar.sdk = sdk;
        dashboard = createTemporaryObject(dashboards, test, { "bar": bar });
    }

    // What the tab does when it becomes the current one of the open sheet.
    function enter() {
        dashboard.dashboardPageCreated();
        dashboard.enterDashboard();
    }
    function leave() {
        dashboard.dashboardPageDestroyed();
        dashboard.leaveDashboard();
    }
    function tickFor(minutes) {
        for (let i = 0; i < minutes * 60000 / dashboard.dashPollTimer.interval && dashboard.dashPollTimer.running; ++i)
            dashboard.dashPollTimer.triggered();
    }

    // ---- Polling

    function test_atTheStart() {
        compare(dashboard.dashboardPolling, false);
        compare(dashboard.dashPollTimer.running, false);
        compare([dashboard.dashPollTimer.interval, dashboard.dashPollTimer.repeat], [4000, true]);
        compare(sdk.takeCalls(), []);
    }

    function test_firstValues() {
        const texts = ["dashErrorDir", "dashWarnDir", "serviceActive", "serviceSub", "serviceEnabled", "powerProfileActive"];
        compare(texts.map(name => dashboard[name]), ["stable", "stable", "unknown", "unknown", "unknown", ""]);
        const numbers = Object.keys(dashboard).filter(name => typeof dashboard[name] === "number");
        verify(numbers.length > 20);
        compare(numbers.filter(name => dashboard[name] !== 0), []);
        compare([dashboard.dashLogEntries, dashboard.appLogEntries, dashboard.powerProfileAvailable], [[], [], []]);
        compare([dashboard.systemReportData, dashboard.systemReportLoading], [{}, false]);
    }

    function test_entering() {
        enter();
        compare(sdk.takeCalls(), [tick, tick, power]);
        compare([dashboard.dashboardPolling, dashboard.dashPollTimer.running], [true, true]);
        compare(dashboard.systemReportLoading, true);
    }

    function test_aMinute() {
        enter();
        sdk.takeCalls();
        tickFor(1);
        compare(sdk.takeCalls(), Array(15).fill(tick));
    }

    function test_leaving() {
        enter();
        sdk.takeCalls();
        leave();
        compare([dashboard.dashboardPolling, dashboard.dashPollTimer.running], [false, false]);
        tickFor(1);
        compare(sdk.takeCalls(), []);
    }

    function test_closedSheet() {
        enter();
        dashboard.dashboardPageDestroyed();
        compare(dashboard.dashPollTimer.running, false);
        sdk.takeCalls();
        // The tab is still the current one when the sheet opens again.
        dashboard.dashboardPageCreated();
        compare(sdk.takeCalls(), [tick]);
        compare(dashboard.dashPollTimer.running, true);
    }

    function test_bridgeGoneAndBack() {
        enter();
        sdk.takeCalls();
        sdk.ready = false;
        compare(dashboard.systemReportLoading, false);
        tickFor(1);
        compare(sdk.takeCalls(), []);
        compare(dashboard.dashPollTimer.running, true);
        sdk.ready = true;
        tickFor(1);
        compare(sdk.takeCalls(), Array(15).fill(tick));
    }

    function test_enteredWithoutABridge_data() {
        return [{ tag: "not ready", sdk: "not ready" }, { tag: "no client", sdk: "none" }];
    }
    function test_enteredWithoutABridge(row) {
        sdk.ready = false;
        if (row.sdk === "none")
            bar.sdk = null;
        enter();
        tickFor(1);
        compare(sdk.takeCalls(), []);
        compare(dashboard.systemReportLoading, false);
        compare(dashboard.dashPollTimer.running, true);
    }

    // As after suspend: the event loop doesn't run for many intervals.
    function test_noBurstAfterAPause() {
        const missed = 20;
        dashboard.dashPollTimer.interval = 20;
        enter();
        sdk.takeCalls();
        const ticks = createTemporaryObject(spies, test, { "target": dashboard.dashPollTimer, "signalName": "triggered" });
        const end = Date.now() + missed * dashboard.dashPollTimer.interval;
        while (Date.now() < end) {
        }
        ticks.wait();
        // Perhaps a few more ticks until wait() returns, but not those that were missed.
        verify(ticks.count < missed / 2);
        compare(sdk.takeCalls().length, ticks.count);
    }

    function test_timeGoesOnWithoutABridge() {
        sdk.ready = false;
        const before = Date.now();
        enter();
        verify(dashboard.dashNow >= before);
        dashboard.dashNow = 0;
        tickFor(1);
        verify(dashboard.dashNow >= before);
    }

    function test_loadingEnds_data() {
        return [
            { tag: "dashboard", end: () => sdk.systemDashboardReceived({}) },
            { tag: "report", end: () => sdk.systemReportReceived({}) },
            { tag: "error", end: () => sdk.error("no") },
            { tag: "connection lost", end: () => { sdk.ready = false; } }
        ];
    }
    function test_loadingEnds(row) {
        dashboard.dashboardPageCreated();
        compare(dashboard.systemReportLoading, true);
        row.end();
        compare(dashboard.systemReportLoading, false);
    }

    // ---- Reports

    function test_dashboard() {
        sdk.systemDashboardReceived({
            "memory": { "bridgeRssMb": 90, "toviServiceMb": 120 },
            "errors": { "total": 2, "direction": "up", "lastTs": 5 },
            "warnings": { "total": 3 },
            "logEntries": [{ "level": "error", "message": "m", "ts": 5 }],
            "service": { "active": "active", "sub": "running" }
        });
        compare([dashboard.dashBridgeRssMb, dashboard.dashToviServiceMb, dashboard.serviceMemoryMB], [90, 120, 120]);
        compare([dashboard.dashErrorTotal, dashboard.appLogErrors, dashboard.dashErrorDir, dashboard.appLastErrorTs], [2, 2, "up", 5]);
        compare([dashboard.dashWarnTotal, dashboard.appLogWarnings, dashboard.dashWarnDir], [3, 3, "stable"]);
        compare(dashboard.dashLogEntries, [{ "level": "error", "message": "m", "ts": 5 }]);
        compare([dashboard.serviceActive, dashboard.serviceSub, dashboard.serviceEnabled], ["active", "running", "unknown"]);
    }

    function test_otherReports_data() {
        return [
            { tag: "system report", emit: () => sdk.systemReportReceived({ "appLogs": { "totalErrors": 1, "totalWarnings": 2 } }),
              values: { appLogErrors: 1, appLogWarnings: 2, systemReportData: { "appLogs": { "totalErrors": 1, "totalWarnings": 2 } } } },
            { tag: "log summary", emit: () => sdk.appLogSummaryReceived({ "totalErrors": 1, "totalWarnings": 2, "lastErrorTs": 3,
                  "lastWarnTs": 4, "entries": [{ "level": "info" }, { "level": "warn", "event": "e", "message": "m", "timestamp": 5 }] }),
              values: { appLogErrors: 1, appLogWarnings: 2, appLastErrorTs: 3, appLastWarnTs: 4,
                        appLogEntries: [{ "level": "warn", "event": "e", "message": "m", "ts": 5 }] } },
            { tag: "metrics", emit: () => sdk.appMetricsReceived({ "requestCount": 1, "errorCount": 2, "p95LatencyMs": 3 }),
              values: { dashReqCount: 1, appErrorCount: 2, appP95LatencyMs: 3 } },
            { tag: "service", emit: () => sdk.serviceHealthReceived({ "active": "failed", "memoryBytes": 2 * 1048576 }),
              values: { serviceActive: "failed", serviceMemoryMB: 2 } },
            { tag: "power", emit: () => sdk.powerProfileReceived({ "active": "balanced", "available": ["balanced"] }),
              values: { powerProfileActive: "balanced", powerProfileAvailable: ["balanced"] } },
            { tag: "quick status is ignored", emit: () => sdk.quickStatusReceived({ "severity": "error", "totalErrors": 5 }),
              values: { appLogErrors: 0, dashNeedsAttention: true, systemReportData: {} } }
        ];
    }
    function test_otherReports(row) {
        row.emit();
        Object.keys(row.values).forEach(name => compare(dashboard[name], row.values[name], name));
    }

    function test_reportWithNothingNewChangesNothing() {
        const report = {
            "errors": { "total": 1, "lastTs": 5 },
            "logEntries": [{ "level": "error", "message": "m", "ts": 5 }]
        };
        sdk.systemDashboardReceived(report);
        sdk.powerProfileReceived({ "active": "a", "available": ["a", "b"] });
        const names = ["dashLogEntries", "powerProfileAvailable", "dashErrorTotal", "appLastErrorTs", "dashState"];
        const watched = names.map(name => createTemporaryObject(spies, test, { "target": dashboard, "signalName": name + "Changed" }));
        const rows = createTemporaryObject(spies, test, { "target": dashboard.dashLogRows, "signalName": "dataChanged" });
        sdk.systemDashboardReceived(JSON.parse(JSON.stringify(report)));
        sdk.powerProfileReceived({ "active": "a", "available": ["a", "b"] });
        compare(watched.map(spy => spy.count), [0, 0, 0, 0, 0]);
        compare(rows.count, 0);
    }

    function test_rowsOfTheViewStay() {
        const entry = n => ({ "level": "warn", "message": "m" + n, "ts": n });
        sdk.systemDashboardReceived({ "logEntries": [entry(1), entry(2), entry(3)] });
        compare(dashboard.dashLogRows.count, 3);
        const removed = createTemporaryObject(spies, test, { "target": dashboard.dashLogRows, "signalName": "rowsRemoved" });
        const inserted = createTemporaryObject(spies, test, { "target": dashboard.dashLogRows, "signalName": "rowsInserted" });
        sdk.systemDashboardReceived({ "logEntries": [entry(2), entry(3), entry(4)] });
        compare([removed.count, inserted.count, dashboard.dashLogRows.count], [1, 1, 3]);
        compare(dashboard.dashLogRows.get(2).lmessage, "m4");
    }

    function test_attention_data() {
        return [
            { tag: "healthy", status: "idle", errors: 0, warnings: 0, wanted: false },
            { tag: "thinking", status: "thinking", errors: 0, warnings: 0, wanted: false },
            { tag: "errors", status: "idle", errors: 1, warnings: 0, wanted: true },
            { tag: "warnings", status: "idle", errors: 0, warnings: 1, wanted: true },
            { tag: "disconnected", status: "disconnected", errors: 0, warnings: 0, wanted: true },
            { tag: "error", status: "error", errors: 0, warnings: 0, wanted: true }
        ];
    }
    function test_attention(row) {
        bar.bridgeStatus = row.status;
        sdk.systemDashboardReceived({ "errors": { "total": row.errors }, "warnings": { "total": row.warnings } });
        compare(dashboard.dashNeedsAttention, row.wanted);
    }

    // ---- Actions

    function test_powerProfile() {
        sdk.powerProfileReceived({ "active": "balanced", "available": ["balanced", "power-saver"] });
        dashboard.choosePowerProfile("balanced");
        compare(bar.takeCalls(), []);
        dashboard.choosePowerProfile("power-saver");
        compare(bar.takeCalls(), ["sendToBridge(switch to power-saver power profile)"]);
        compare(sdk.takeCalls(), []);
    }

    function test_reconnecting() {
        dashboard.reconnectBridge();
        compare(sdk.takeCalls(), ["reconnectBridge()"]);
        bar.sdk = null;
        dashboard.reconnectBridge();
    }

    function test_openLogs_data() {
        return [
            { tag: "client", client: true, directory: "/home/me/my #1 logs", opened: "/home/me/my #1 logs" },
            { tag: "no directory", client: true, directory: "", opened: "/tmp/loomra-bridge/logs" },
            { tag: "no client", client: false, opened: "/tmp/loomra-bridge/logs" }
        ];
    }
    function test_openLogs(row) {
        const opened = [];
        dashboard.openDirectory = path => opened.push(path);
        if (row.client)
            sdk.answers.eventLogDir = row.directory;
        else
            bar.sdk = null;
        dashboard.openLogs();
        compare(opened, [row.opened]);
    }
}
