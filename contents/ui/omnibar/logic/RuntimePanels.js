// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library
.import "../../../../components/logic/Translatable.js" as Translatable
.import "../../../../components/logic/Untrusted.js" as Untrusted

// What the bridge reports about pattern learning and the AI runtime. It is untrusted: any field may be missing or of
// another type.

const mark = Translatable.mark;

// By index. The first is the default.
var gatings = [
    { value: "require_approval", text: mark("Require approval") },
    { value: "auto_safe", text: mark("Auto-safe (low risk)") },
    { value: "off", text: mark("Gating off") }
];

function objectOr(value) {
    return Untrusted.isObject(value) ? value : {};
}

/** A value as text, "?" if there is none. */
function shown(value) {
    const isText = typeof value === "string" && value !== "";
    return isText || typeof value === "number" ? String(value) : "?";
}

/** Whether a setting of the bridge is on. Older ones keep settings as texts. */
function isOn(value) {
    return value === true || value === "true";
}

/** The index of a gating mode, 0 for unknown ones. */
function gatingIndex(mode) {
    return Math.max(0, gatings.findIndex(gating => gating.value === mode));
}

/** The rows {value, text} of the choice of gating. */
function gatingChoices(tr) {
    return gatings.map(gating => ({ value: gating.value, text: Translatable.translated(gating.text, tr) }));
}

/** What was learned from the apps that the user had open. */
function dwellText(summary, tr) {
    const dwell = objectOr(summary);
    if (typeof dwell.topApp !== "string" || dwell.topApp === "") {
        return Translatable.translated(mark("Dwell data builds from app open/close events while observation is on."), tr);
    }
    return Translatable.filled(Translatable.translated(mark("Top app: {app} ({hours}h tracked). {count} apps in window."), tr),
                               { app: dwell.topApp, hours: shown(dwell.topAppHours), count: shown(dwell.uniqueApps) });
}

/** The state of the AI runtime in one line. */
function statusLine(payload, tr) {
    const gate = objectOr(payload.gateStatus);
    return Translatable.filled(Translatable.translated(mark("State: {state} · executions this hour: {count}/{maximum}"), tr),
                               { state: shown(payload.state), count: shown(gate.executionsThisHour), maximum: shown(gate.maxPerHour) });
}
