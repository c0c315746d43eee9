// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library
.import "../../../../components/logic/LiteralText.js" as LiteralText
.import "../../../../components/logic/Untrusted.js" as Untrusted

// The bridge's reports as values of the window's properties. Reports are untrusted: any field may be missing or of
// another type.

const maxTextLength = 200;
const maxMessageLength = 1000;
const maxEntries = 100;
const maxSummaryEntries = 8;
const maxProfiles = 12;
const bytesPerMegabyte = 1048576;
const summaryLevels = ["error", "warn"];

const fallbackLogDirectory = "/tmp/loomra-bridge/logs";

// ---- Fields

function number(value) {
    return typeof value === "number" && isFinite(value) ? value : 0;
}

function megabytes(value) {
    return Math.round(number(value) / bytesPerMegabyte);
}

/** A time in milliseconds since 1970, 0 if it is missing or no date. */
function time(value) {
    const stamp = typeof value === "string" ? Date.parse(value) : number(value);
    return stamp > 0 && !isNaN(new Date(stamp).getTime()) ? stamp : 0;
}

/** Reads a text that has a default. An empty one counts as missing. */
function textOr(fallback) {
    return value => typeof value === "string" && value !== "" ? value.substring(0, maxTextLength) : fallback;
}

function message(value) {
    return typeof value === "string" ? value.substring(0, maxMessageLength) : "";
}

/** The latest objects of a list, each turned into a row. */
function rows(value, count, makeRow) {
    return Array.isArray(value) ? value.slice(-count).filter(Untrusted.isObject).map(makeRow) : [];
}

/** The errors and warnings of the dashboard, oldest first. */
function logEntries(value) {
    return rows(value, maxEntries, entry => ({
        level: textOr("")(entry.level),
        message: message(entry.message),
        ts: time(entry.ts)
    }));
}

/** The errors and warnings among the latest entries of the log's summary, oldest first. */
function summaryEntries(value) {
    return rows(value, maxSummaryEntries, entry => ({
        level: textOr("")(entry.level),
        event: textOr("")(entry.event),
        message: message(entry.message),
        ts: time(entry.timestamp)
    })).filter(row => summaryLevels.includes(row.level));
}

/** Names of power profiles. One that can't be part of a prompt is dropped. */
function profiles(value) {
    const names = Array.isArray(value) ? value : [];
    return names
        .filter(name => typeof name === "string" && name.trim() !== "" && LiteralText.oneLine(name) === name)
        .filter((name, i, all) => all.indexOf(name) === i)
        .slice(0, maxProfiles);
}

// ---- Reports: [property, path in the report, how the field is read]

const metricsFields = [
    ["dashReqCount", ["requestCount"], number],
    ["dashActionCount", ["actionCount"], number],
    ["dashUptimeMs", ["uptimeMs"], number],
    ["appErrorCount", ["errorCount"], number],
    ["appAvgLatencyMs", ["avgLatencyMs"], number],
    ["appP95LatencyMs", ["p95LatencyMs"], number],
    ["appLastRequestMs", ["lastRequestMs"], number]
];

const serviceFields = [
    ["serviceActive", ["active"], textOr("unknown")],
    ["serviceSub", ["sub"], textOr("unknown")],
    ["serviceEnabled", ["enabled"], textOr("unknown")],
    ["serviceUptimeSec", ["uptimeSec"], number],
    ["serviceRestarts", ["restartCount"], number]
];

/** The fields of a report that is a part of a larger one. */
function below(key, fields) {
    return fields.map(([property, path, read]) => [property, [key].concat(path), read]);
}

const reports = {
    dashboard: [
        ["dashSessionHeapMb", ["memory", "sessionHeapMb"], number],
        ["dashSessionHeapTotalMb", ["memory", "sessionHeapTotalMb"], number],
        ["dashBridgeRssMb", ["memory", "bridgeRssMb"], number],
        ["dashBridgeExternalMb", ["memory", "bridgeExternalMb"], number],
        ["dashToviServiceMb", ["memory", "toviServiceMb"], number],
        ["serviceMemoryMB", ["memory", "toviServiceMb"], number],
        ["dashCpuPercent", ["cpu", "bridgePercent"], number],
        ["dashFeedbackLikes", ["feedback", "likes"], number],
        ["dashFeedbackDislikes", ["feedback", "dislikes"], number],
        ["dashFeedbackTotal", ["feedback", "total"], number],
        ["dashErrorTotal", ["errors", "total"], number],
        ["appLogErrors", ["errors", "total"], number],
        ["dashErrorDir", ["errors", "direction"], textOr("stable")],
        ["appLastErrorTs", ["errors", "lastTs"], time],
        ["dashWarnTotal", ["warnings", "total"], number],
        ["appLogWarnings", ["warnings", "total"], number],
        ["dashWarnDir", ["warnings", "direction"], textOr("stable")],
        ["dashLogEntries", ["logEntries"], logEntries]
    ].concat(below("metrics", metricsFields), below("service", serviceFields)),
    systemReport: [
        ["appLogErrors", ["appLogs", "totalErrors"], number],
        ["appLogWarnings", ["appLogs", "totalWarnings"], number]
    ],
    appLogSummary: [
        ["appLogErrors", ["totalErrors"], number],
        ["appLogWarnings", ["totalWarnings"], number],
        ["appLastErrorTs", ["lastErrorTs"], time],
        ["appLastWarnTs", ["lastWarnTs"], time],
        ["appLogEntries", ["entries"], summaryEntries]
    ],
    appMetrics: metricsFields,
    serviceHealth: serviceFields.concat([["serviceMemoryMB", ["memoryBytes"], megabytes]]),
    powerProfile: [
        ["powerProfileActive", ["active"], textOr("")],
        ["powerProfileAvailable", ["available"], profiles]
    ],
    runtimeHealth: [
        ["runtimeMode", ["mode"], textOr("embedded")],
        ["runtimePid", ["runtimePid"], number],
        ["runtimeConnected", ["connected"], value => value === true]
    ]
};

/** The values of the properties that a report sets, by their names. kind: a key of reports */
function values(kind, report) {
    const found = {};
    reports[kind].forEach(([property, path, read]) => {
        found[property] = read(path.reduce((value, key) => Untrusted.isObject(value) ? value[key] : undefined, report));
    });
    return found;
}

/**
 * Sets properties of an object. A list with the same content is left alone, because a new one would be drawn again.
 */
function assign(target, properties) {
    Object.keys(properties).forEach(name => {
        const value = properties[name];
        if (!Untrusted.isObject(value) || JSON.stringify(value) !== JSON.stringify(target[name])) {
            target[name] = value;
        }
    });
}

// ---- Lists that come alone

/** The jobs of the runtime as rows {jid, jkind, jstate, jerror}. */
function jobRows(jobs) {
    return rows(jobs, maxEntries, job => ({
        jid: textOr("")(job.id),
        jkind: textOr("")(job.kind),
        jstate: textOr("unknown")(job.state),
        jerror: message(job.lastError)
    }));
}

/** Pending reminders as rows {rid, rtitle, rmessage, rfireAt (ms since 1970), rremainingMs}. */
function reminderRows(reminders, defaultTitle) {
    return rows(reminders, maxEntries, reminder => ({
        rid: textOr("")(reminder.id),
        rtitle: textOr(defaultTitle)(reminder.title),
        rmessage: message(reminder.message),
        rfireAt: number(reminder.fire_at),
        rremainingMs: number(reminder.remaining_ms)
    }));
}

/** Log entries for a list model, see ListSync.js: their content is the key. */
function modelRows(entries) {
    return entries.map(entry => ({
        lkey: JSON.stringify([entry.level, entry.ts, entry.message]),
        llevel: entry.level,
        lmessage: entry.message,
        lts: entry.ts
    }));
}

/** The URL of a local directory, whose name may contain any characters. */
function directoryUrl(path) {
    return "file://" + path.split("/").map(encodeURIComponent).join("/");
}
