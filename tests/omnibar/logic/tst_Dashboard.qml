// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/Dashboard.js" as Dashboard

TestCase {
    name: "Dashboard"

    readonly property var fullDashboard: ({
        memory: { sessionHeapMb: 1, sessionHeapTotalMb: 2, bridgeRssMb: 3, bridgeExternalMb: 4, toviServiceMb: 5 },
        cpu: { bridgePercent: 6.5 },
        feedback: { likes: 7, dislikes: 8, total: 15 },
        errors: { total: 9, direction: "up", lastTs: 1773068700000 },
        warnings: { total: 10, direction: "down" },
        logEntries: [{ level: "error", message: "m", ts: 11 }],
        metrics: { requestCount: 12, actionCount: 13, uptimeMs: 14, errorCount: 15, avgLatencyMs: 16, p95LatencyMs: 17,
                   lastRequestMs: 18 },
        service: { active: "active", sub: "running", enabled: "disabled", uptimeSec: 19, restartCount: 20 }
    })

    // Property, its value from the full report, its default.
    readonly property var dashboardTable: [
        ["dashSessionHeapMb", 1, 0], ["dashSessionHeapTotalMb", 2, 0], ["dashBridgeRssMb", 3, 0],
        ["dashBridgeExternalMb", 4, 0], ["dashToviServiceMb", 5, 0], ["serviceMemoryMB", 5, 0],
        ["dashCpuPercent", 6.5, 0],
        ["dashFeedbackLikes", 7, 0], ["dashFeedbackDislikes", 8, 0], ["dashFeedbackTotal", 15, 0],
        ["dashErrorTotal", 9, 0], ["appLogErrors", 9, 0], ["dashErrorDir", "up", "stable"],
        ["appLastErrorTs", 1773068700000, 0],
        ["dashWarnTotal", 10, 0], ["appLogWarnings", 10, 0], ["dashWarnDir", "down", "stable"],
        ["dashLogEntries", [{ level: "error", message: "m", ts: 11 }], []],
        ["dashReqCount", 12, 0], ["dashActionCount", 13, 0], ["dashUptimeMs", 14, 0], ["appErrorCount", 15, 0],
        ["appAvgLatencyMs", 16, 0], ["appP95LatencyMs", 17, 0], ["appLastRequestMs", 18, 0],
        ["serviceActive", "active", "unknown"], ["serviceSub", "running", "unknown"],
        ["serviceEnabled", "disabled", "unknown"], ["serviceUptimeSec", 19, 0], ["serviceRestarts", 20, 0]
    ]

    function expected(table, column) {
        const values = {};
        table.forEach(row => { values[row[0]] = row[column]; });
        return values;
    }

    function test_dashboard_data() {
        const wrong = value => {
            const report = {};
            Object.keys(fullDashboard).forEach(key => { report[key] = value; });
            return report;
        };
        const wrongFields = {};
        Object.keys(fullDashboard).forEach(key => {
            wrongFields[key] = {};
            Object.keys(fullDashboard[key]).forEach(field => { wrongFields[key][field] = { "x": 1 }; });
        });
        return [
            { tag: "full", report: fullDashboard, column: 1 },
            { tag: "empty", report: {}, column: 2 },
            { tag: "empty parts", report: wrong({}), column: 2 },
            { tag: "parts are null", report: wrong(null), column: 2 },
            { tag: "parts are numbers", report: wrong(5), column: 2 },
            { tag: "parts are texts", report: wrong("total"), column: 2 },
            { tag: "parts are lists", report: wrong([]), column: 2 },
            { tag: "fields are objects", report: wrongFields, column: 2 },
            { tag: "null", report: null, column: 2 },
            { tag: "undefined", report: undefined, column: 2 },
            { tag: "a text", report: "report", column: 2 }
        ];
    }
    function test_dashboard(data) {
        compare(Dashboard.values("dashboard", data.report), expected(dashboardTable, data.column));
    }

    function test_number_data() {
        return [
            { tag: "number", value: 2.5, number: 2.5 }, { tag: "negative", value: -1, number: -1 },
            { tag: "text", value: "5", number: 0 }, { tag: "true", value: true, number: 0 },
            { tag: "list", value: [5], number: 0 }, { tag: "null", value: null, number: 0 },
            { tag: "missing", value: undefined, number: 0 }, { tag: "NaN", value: NaN, number: 0 },
            { tag: "infinite", value: Infinity, number: 0 }
        ];
    }
    function test_number(row) {
        compare(Dashboard.values("dashboard", { cpu: { bridgePercent: row.value } }).dashCpuPercent, row.number);
    }

    function test_time_data() {
        return [
            { tag: "milliseconds", value: 1773068700000, time: 1773068700000 },
            { tag: "ISO date", value: "2026-03-09T15:05:00.000Z", time: Date.UTC(2026, 2, 9, 15, 5) },
            { tag: "words", value: "yesterday", time: 0 }, { tag: "empty", value: "", time: 0 },
            { tag: "0", value: 0, time: 0 }, { tag: "negative", value: -5, time: 0 },
            { tag: "beyond all dates", value: 1e300, time: 0 }, { tag: "null", value: null, time: 0 },
            { tag: "object", value: {}, time: 0 }
        ];
    }
    function test_time(row) {
        compare(Dashboard.values("dashboard", { errors: { lastTs: row.value } }).appLastErrorTs, row.time);
    }

    function test_otherReports_data() {
        return [
            { tag: "system report", kind: "systemReport", report: { appLogs: { totalErrors: 1, totalWarnings: 2 } },
              table: [["appLogErrors", 1, 0], ["appLogWarnings", 2, 0]] },
            { tag: "log summary", kind: "appLogSummary",
              report: { totalErrors: 1, totalWarnings: 2, lastErrorTs: 3, lastWarnTs: 4,
                        entries: [{ level: "warn", event: "e", message: "m", timestamp: 5 }] },
              table: [["appLogErrors", 1, 0], ["appLogWarnings", 2, 0], ["appLastErrorTs", 3, 0], ["appLastWarnTs", 4, 0],
                      ["appLogEntries", [{ level: "warn", event: "e", message: "m", ts: 5 }], []]] },
            { tag: "metrics", kind: "appMetrics", report: fullDashboard.metrics,
              table: [["dashReqCount", 12, 0], ["dashActionCount", 13, 0], ["dashUptimeMs", 14, 0], ["appErrorCount", 15, 0],
                      ["appAvgLatencyMs", 16, 0], ["appP95LatencyMs", 17, 0], ["appLastRequestMs", 18, 0]] },
            { tag: "service", kind: "serviceHealth",
              report: Object.assign({ memoryBytes: 5 * 1048576 + 600000 }, fullDashboard.service),
              table: [["serviceActive", "active", "unknown"], ["serviceSub", "running", "unknown"],
                      ["serviceEnabled", "disabled", "unknown"], ["serviceUptimeSec", 19, 0], ["serviceRestarts", 20, 0],
                      ["serviceMemoryMB", 6, 0]] },
            { tag: "power", kind: "powerProfile", report: { active: "balanced", available: ["balanced", "performance"] },
              table: [["powerProfileActive", "balanced", ""], ["powerProfileAvailable", ["balanced", "performance"], []]] },
            { tag: "runtime", kind: "runtimeHealth", report: { mode: "external", runtimePid: 7, connected: true },
              table: [["runtimeMode", "external", "embedded"], ["runtimePid", 7, 0], ["runtimeConnected", true, false]] }
        ];
    }
    function test_otherReports(row) {
        compare(Dashboard.values(row.kind, row.report), expected(row.table, 1));
        [{}, null, undefined, 5, "x", []].forEach(report => {
            compare(Dashboard.values(row.kind, report), expected(row.table, 2));
        });
    }

    function test_summaryEntries() {
        const entries = ["error", "error", "info", "warn", "debug", "ERROR", "error", "", "warn", "warn"]
            .map((level, i) => ({ level: level, event: "e", message: String(i), timestamp: i }));
        // Of the last eight.
        compare(Dashboard.values("appLogSummary", { entries: entries }).appLogEntries.map(row => row.message), ["3", "6", "8", "9"]);
    }

    function test_logEntries() {
        const read = list => Dashboard.values("dashboard", { logEntries: list }).dashLogEntries;
        compare(read([null, 5, "x", [], {}, { level: 1, message: {}, ts: "x" }]).length, 3);
        compare(read([{}]), [{ level: "", message: "", ts: 0 }]);
        compare(read([{ message: "x".repeat(5000) }])[0].message.length, 1000);
        const many = [];
        for (let i = 0; i < 5000; ++i)
            many.push({ level: "warn", message: String(i), ts: i });
        compare(read(many).length, 100);
        compare(read(many)[99].message, "4999");
    }

    function test_profiles_data() {
        return [
            { tag: "several", value: ["power-saver", "balanced"], names: ["power-saver", "balanced"] },
            { tag: "twice", value: ["a", "b", "a"], names: ["a", "b"] },
            { tag: "wrong types", value: [null, 5, {}, ["a"], "a"], names: ["a"] },
            { tag: "empty", value: ["", "  "], names: [] },
            { tag: "line break", value: ["a\nb", "a\u202eb", "c"], names: ["c"] },
            { tag: "too long", value: ["x".repeat(201), "c"], names: ["c"] },
            { tag: "no list", value: "balanced", names: [] }
        ];
    }
    function test_profiles(row) {
        compare(Dashboard.values("powerProfile", { available: row.value }).powerProfileAvailable, row.names);
    }

    function test_manyProfiles() {
        const names = Array.from({ length: 100 }, (_, i) => "p" + i);
        compare(Dashboard.values("powerProfile", { available: names }).powerProfileAvailable.length, 12);
    }

    function test_sameContentIsKept() {
        const entries = [{ level: "error", message: "m", ts: 1 }];
        const target = { list: entries, count: 1, gone: null };
        Dashboard.assign(target, { list: [{ level: "error", message: "m", ts: 1 }], count: 2 });
        verify(target.list === entries);
        compare(target.count, 2);
        Dashboard.assign(target, { list: [] });
        compare(target.list, []);
    }

    function test_jobs() {
        compare(Dashboard.jobRows([{ id: "j1", kind: "k", state: "done", lastError: "e" }, {}, null, 5]),
                [{ jid: "j1", jkind: "k", jstate: "done", jerror: "e" }, { jid: "", jkind: "", jstate: "unknown", jerror: "" }]);
        compare(Dashboard.jobRows("jobs"), []);
    }

    function test_reminders() {
        compare(Dashboard.reminderRows([{ id: "r1", title: "Tea", message: "m", fire_at: 5, remaining_ms: 4 }, {}], "Reminder"),
                [{ rid: "r1", rtitle: "Tea", rmessage: "m", rfireAt: 5, rremainingMs: 4 },
                 { rid: "", rtitle: "Reminder", rmessage: "", rfireAt: 0, rremainingMs: 0 }]);
        compare(Dashboard.reminderRows(null, "Reminder"), []);
    }

    function test_modelRows() {
        const rows = Dashboard.modelRows([{ level: "error", message: "m", ts: 5 }, { level: "warn", message: "m", ts: 5 }]);
        compare([rows[0].llevel, rows[0].lmessage, rows[0].lts], ["error", "m", 5]);
        verify(rows[0].lkey !== rows[1].lkey);
    }

    function test_directoryUrl_data() {
        return [
            { tag: "plain", path: "/tmp/loomra-bridge/logs", url: "file:///tmp/loomra-bridge/logs" },
            { tag: "space", path: "/home/me/my logs", url: "file:///home/me/my%20logs" },
            { tag: "marks", path: "/a#b/c?d/e%20f", url: "file:///a%23b/c%3Fd/e%2520f" },
            { tag: "letters", path: "/Büro", url: "file:///B%C3%BCro" }
        ];
    }
    function test_directoryUrl(row) {
        compare(Dashboard.directoryUrl(row.path), row.url);
        // It is read back as the same path.
        compare(decodeURIComponent(String(Qt.resolvedUrl(row.url)).replace("file://", "")), row.path);
    }
}
