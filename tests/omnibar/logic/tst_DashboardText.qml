// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/DashboardText.js" as DashboardText

TestCase {
    name: "DashboardText"

    readonly property var now: new Date(2026, 4, 6, 15, 0, 30).getTime()

    // Puts translated texts in angle brackets.
    function tr(text) {
        return "<" + text + ">";
    }

    function test_banner_data() {
        const bad = { fill: [0.9, 0.22, 0.21, 0.18], dot: "#ef4444" };
        const warned = { fill: [0.98, 0.55, 0, 0.15], dot: "#FFD700" };
        const healthy = { fill: [0.26, 0.63, 0.28, 0.1], dot: "#4ade80" };
        const row = (tag, bridgeStatus, errors, warnings, text, look) =>
            ({ tag: tag, state: { bridgeStatus: bridgeStatus, errors: errors, warnings: warnings }, text: text, look: look });
        return [
            row("dead bridge", "disconnected", 0, 0, "Bridge disconnected", bad),
            row("broken bridge", "error", 0, 0, "Bridge disconnected", bad),
            row("dead bridge with errors", "disconnected", 3, 2, "Bridge disconnected", bad),
            row("broken bridge with errors", "error", 3, 2, "Bridge disconnected", bad),
            row("an error", "idle", 1, 0, "1 error(s)", bad),
            row("errors and warnings", "thinking", 3, 2, "3 error(s)", bad),
            row("warnings", "idle", 0, 2, "2 warning(s)", warned),
            row("nothing", "idle", 0, 0, "Healthy", healthy),
            row("negative", "idle", -1, -1, "Healthy", healthy)
        ];
    }
    function test_banner(row) {
        compare(DashboardText.bannerText(row.state, null), row.text);
        compare(DashboardText.bannerLook(row.state), row.look);
        compare(DashboardText.needsAttention(row.state), row.text !== "Healthy");
        compare(DashboardText.bannerText(row.state, tr), "<" + row.text + ">");
    }

    function test_load_data() {
        return [
            { tag: "none", percent: 0, color: "" }, { tag: "50", percent: 50, color: "" },
            { tag: "above 50", percent: 50.1, color: "#FFD700" }, { tag: "80", percent: 80, color: "#FFD700" },
            { tag: "above 80", percent: 80.1, color: "#ef4444" }, { tag: "400", percent: 400, color: "#ef4444" }
        ];
    }
    function test_load(row) {
        compare(DashboardText.loadColor(row.percent), row.color);
    }

    function test_uptime_data() {
        return [
            { tag: "none", seconds: 0, text: "Uptime 0h 0m" }, { tag: "59 s", seconds: 59.9, text: "Uptime 0h 0m" },
            { tag: "a minute", seconds: 60, text: "Uptime 0h 1m" }, { tag: "an hour", seconds: 3600, text: "Uptime 1h 0m" },
            { tag: "days", seconds: 2 * 86400 + 59 * 60, text: "Uptime 48h 59m" },
            { tag: "negative", seconds: -90, text: "Uptime 0h 0m" }
        ];
    }
    function test_uptime(row) {
        compare(DashboardText.uptime(row.seconds, null), row.text);
    }

    function test_counted() {
        compare(DashboardText.counted("{count} / {total} MB", 1.4, 2.5), "1 / 3 MB");
        compare(DashboardText.counted("{count}%", 99.6), "100%");
    }

    function test_arrow_data() {
        return [
            { tag: "up", arrow: "\u2191" }, { tag: "down", arrow: "\u2193" }, { tag: "stable", arrow: "\u2192" },
            { tag: "", arrow: "\u2192" }, { tag: "constructor", arrow: "\u2192" }, { tag: "UP", arrow: "\u2192" }
        ];
    }
    function test_arrow(row) {
        compare(DashboardText.arrow(row.tag), row.arrow);
    }

    function test_lastError_data() {
        return [
            { tag: "never", ago: undefined, text: "" },
            { tag: "now", ago: 0, text: "Last error: just now" },
            { tag: "59 s", ago: 59999, text: "Last error: just now" },
            { tag: "a minute", ago: 60000, text: "Last error: 1 min ago" },
            { tag: "two hours", ago: 7200000, text: "Last error: 120 min ago" },
            { tag: "clock put back", ago: -3600000, text: "Last error: just now" }
        ];
    }
    function test_lastError(row) {
        compare(DashboardText.lastError(row.ago === undefined ? 0 : now - row.ago, now, null), row.text);
    }

    function test_logLine_data() {
        const morning = new Date(2026, 4, 6, 9, 5, 7).getTime();
        return [
            { tag: "error", level: "error", ts: now, message: "It broke", line: "\u2715 [15:00:30] It broke" },
            { tag: "warning", level: "warn", ts: morning, message: "It creaks", line: "\u26a0 [09:05:07] It creaks" },
            { tag: "no stamp", level: "error", ts: 0, message: "It broke", line: "\u2715 It broke" },
            { tag: "unknown level", level: "", ts: 0, message: "x", line: "\u26a0 x" },
            { tag: "several lines", level: "warn", ts: 0, message: "a\nb\tc\u202ed", line: "\u26a0 a\ufffdb\ufffdc\ufffdd" },
            { tag: "markup", level: "warn", ts: 0, message: "<b>x</b> {count}", line: "\u26a0 <b>x</b> {count}" }
        ];
    }
    function test_logLine(row) {
        compare(DashboardText.logLine(row.level, row.ts, row.message), row.line);
    }

    function test_service_data() {
        const row = (tag, active, sub, ready, state, label, dot) =>
            ({ tag: tag, active: active, sub: sub, ready: ready, found: { state: state, label: label, dot: dot } });
        return [
            row("unit", "active", "running", true, "active", "active (running)", "#4ade80"),
            row("unit without an answer", "active", "running", false, "active", "active (running)", "#4ade80"),
            row("standalone", "inactive", "dead", true, "running", "running (standalone)", "#4ade80"),
            row("failed unit, but it answers", "failed", "failed", true, "running", "running (standalone)", "#4ade80"),
            row("failed", "failed", "failed", false, "failed", "failed", "#ef4444"),
            row("inactive", "inactive", "dead", false, "inactive", "inactive", "#FFD700"),
            row("unknown", "unknown", "unknown", false, "unknown", "unknown", "#FFD700"),
            row("hostile", "a\nb", "", false, "a\nb", "a\ufffdb", "#FFD700"),
            row("hostile sub", "active", "{sub}\n", false, "active", "active ({sub}\ufffd)", "#4ade80")
        ];
    }
    function test_service(row) {
        compare(DashboardText.service(row.active, row.sub, row.ready, null), row.found);
    }

    function test_serviceLine() {
        compare(DashboardText.serviceLine(3720, 2, 41.6, null), "Uptime 1h 2m · Restarts 2 · Mem 42 MB");
    }

    function test_runtimeLine_data() {
        return [
            { tag: "embedded", mode: "embedded", pid: 0, connected: false, line: "Mode: embedded · Disconnected" },
            { tag: "own process", mode: "external", pid: 12, connected: true, line: "Mode: external · PID: 12 · Connected" },
            { tag: "negative pid", mode: "a\nb", pid: -1, connected: true, line: "Mode: a\ufffdb · Connected" }
        ];
    }
    function test_runtimeLine(row) {
        compare(DashboardText.runtimeLine(row.mode, row.pid, row.connected, null), row.line);
    }

    function test_remindersStatus() {
        compare(DashboardText.remindersStatus(0, null), "No pending reminders.");
        compare(DashboardText.remindersStatus(2, null), "2 reminder(s) pending.");
    }
}
