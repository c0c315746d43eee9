// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library
.import "../../../../components/logic/LiteralText.js" as LiteralText
.import "../../../../components/logic/Translatable.js" as Translatable

// Wording and colours of the dashboard. Each function that makes a text takes the translating function last.

const mark = Translatable.mark;

const msPerMinute = 60000;
const secondsPerMinute = 60;
const minutesPerHour = 60;

const red = "#ef4444";
const yellow = "#FFD700";
const green = "#4ade80";

function text(marked, values, tr) {
    return Translatable.filled(Translatable.translated(marked, tr), values);
}

function figure(value) {
    return Math.round(value);
}

// ---- The banner

const looks = {
    bad: { fill: [0.9, 0.22, 0.21, 0.18], dot: red },
    warned: { fill: [0.98, 0.55, 0, 0.15], dot: yellow },
    healthy: { fill: [0.26, 0.63, 0.28, 0.1], dot: green }
};

// The first row that applies counts.
const banners = [
    { applies: state => isDown(state.bridgeStatus), look: looks.bad, text: mark("Bridge disconnected") },
    { applies: state => state.errors > 0, look: looks.bad, text: mark("{errors} error(s)") },
    { applies: state => state.warnings > 0, look: looks.warned, text: mark("{warnings} warning(s)") },
    { applies: () => true, look: looks.healthy, text: mark("Healthy") }
];

/** Whether a status of the chat client means that the bridge can't be used. */
function isDown(bridgeStatus) {
    return bridgeStatus === "disconnected" || bridgeStatus === "error";
}

function bannerRow(state) {
    return banners.find(row => row.applies(state));
}

/** state: {bridgeStatus, errors, warnings} @return {fill: [red, green, blue, alpha], dot: colour} */
function bannerLook(state) {
    return bannerRow(state).look;
}

function bannerText(state, tr) {
    return text(bannerRow(state).text, { errors: figure(state.errors), warnings: figure(state.warnings) }, tr);
}

/** Whether the tab's title should draw attention. state as for the banner */
function needsAttention(state) {
    return bannerRow(state).look !== looks.healthy;
}

// ---- Process and memory

/** The colour of a high load in percent, "" for a normal one. */
function loadColor(percent) {
    if (percent > 80) {
        return red;
    }
    return percent > 50 ? yellow : "";
}

function hoursAndMinutes(seconds) {
    const minutes = Math.floor(Math.max(0, seconds) / secondsPerMinute);
    return { hours: Math.floor(minutes / minutesPerHour), minutes: minutes % minutesPerHour };
}

function uptime(seconds, tr) {
    return text(mark("Uptime {hours}h {minutes}m"), hoursAndMinutes(seconds), tr);
}

/** A text with the place {count} and perhaps {total}. */
function counted(translated, count, total) {
    return Translatable.filled(translated, { count: figure(count), total: figure(total) });
}

// ---- Errors and warnings

const arrows = { up: "\u2191", down: "\u2193" };

function arrow(direction) {
    return arrows.hasOwnProperty(direction) ? arrows[direction] : "\u2192";
}

/** When the last error occurred, "" without one. ts and now are in ms since 1970; a later ts counts as now. */
function lastError(ts, now, tr) {
    if (ts <= 0) {
        return "";
    }
    const minutes = Math.floor((now - ts) / msPerMinute);
    return minutes < 1 ? text(mark("Last error: just now"), {}, tr)
                       : text(mark("Last error: {minutes} min ago"), { minutes: minutes }, tr);
}

function isError(level) {
    return level === "error";
}

function twoDigits(value) {
    return (value < 10 ? "0" : "") + value;
}

/** A log entry as one line. ts is 0 if the entry has none. */
function logLine(level, ts, message) {
    const date = new Date(ts);
    const parts = [date.getHours(), date.getMinutes(), date.getSeconds()];
    const stamp = ts > 0 ? "[" + parts.map(twoDigits).join(":") + "] " : "";
    return (isError(level) ? "\u2715 " : "\u26a0 ") + stamp + LiteralText.printable(message);
}

// ---- The service

/** What the service does: {state, label, dot}. ready: whether the bridge answers */
function service(active, sub, ready, tr) {
    if (active === "active") {
        return { state: "active", label: text(mark("active ({sub})"), { sub: LiteralText.oneLine(sub) }, tr), dot: green };
    }
    if (ready) {
        return { state: "running", label: text(mark("running (standalone)"), {}, tr), dot: green };
    }
    if (active === "failed") {
        return { state: "failed", label: text(mark("failed"), {}, tr), dot: red };
    }
    return { state: active, label: LiteralText.oneLine(active), dot: yellow };
}

function serviceLine(uptimeSec, restarts, memoryMb, tr) {
    const values = Object.assign(hoursAndMinutes(uptimeSec), { restarts: figure(restarts), memory: figure(memoryMb) });
    return text(mark("Uptime {hours}h {minutes}m · Restarts {restarts} · Mem {memory} MB"), values, tr);
}

// ---- The runtime

/** pid: 0 if unknown */
function runtimeLine(mode, pid, connected, tr) {
    const parts = [text(mark("Mode: {mode}"), { mode: LiteralText.oneLine(mode) }, tr)];
    if (pid > 0) {
        parts.push(text(mark("PID: {pid}"), { pid: pid }, tr));
    }
    parts.push(text(connected ? mark("Connected") : mark("Disconnected"), {}, tr));
    return parts.join(" · ");
}

function remindersStatus(count, tr) {
    return count === 0 ? text(mark("No pending reminders."), {}, tr)
                       : text(mark("{count} reminder(s) pending."), { count: count }, tr);
}
