// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library
.import "LiteralText.js" as LiteralText
.import "PlanText.js" as PlanText
.import "Translatable.js" as Translatable

// The wording of a check for workspace suggestions, and the content of the suggestion dialog. Both come from the bridge,
// so the type of every field is checked.

const mark = Translatable.mark;

const separator = " — ";
const maxLineLength = 130;
const cutLineLength = 127;
// In characters: more than anybody reads, and still quick to lay out.
const maxBodyLength = 10000;
const maxActions = 8;

function isObject(value) {
    return typeof value === "object" && value !== null;
}

function textOf(value) {
    return typeof value === "string" || typeof value === "number" ? String(value) : "";
}

function isSet(value) {
    return value !== undefined && value !== null;
}

// Each row that holds adds its part.
const cases = [
    { holds: payload => payload.notified === true && payload.notificationChannel === "freedesktop-actions",
      text: mark("System notification (Plasma) with actions. Set LOOMRA_WORKSPACE_NOTIFY_INAPP=1 to also show the in-app dialog.") },
    { holds: payload => payload.notified === true && payload.notificationChannel !== "freedesktop-actions",
      text: mark("Desktop notification sent.") },
    { holds: payload => payload.reason === "no_suggestions", text: mark("No suggestions right now (run observation / analysis first).") },
    { holds: payload => payload.reason === "low_confidence", text: mark("Top suggestion is below the confidence threshold.") },
    { holds: payload => payload.reason === "dnd", text: mark("Do Not Disturb is on; notification skipped.") },
    { holds: payload => payload.reason === "notification_failed", text: mark("Could not show notification: {error}") },
    { holds: payload => payload.reason === "dry_run", text: mark("Dry run — would notify.") }
];

function analysisPart(analysis, tr) {
    if (!isObject(analysis) || !(isSet(analysis.clustersCreated) || isSet(analysis.candidatesDetected))) {
        return "";
    }
    return Translatable.filled(Translatable.translated(mark("Δ clusters {clusters}, candidates {candidates}"), tr),
                               { clusters: textOf(analysis.clustersCreated) || "?", candidates: textOf(analysis.candidatesDetected) || "?" });
}

/** The result of a check as a sentence or several, "" if there is nothing to say. */
function statusText(payload, tr) {
    const wording = cases.filter(row => row.holds(payload))
        .map(row => Translatable.filled(Translatable.translated(row.text, tr), { error: textOf(payload.notificationError) }));
    const title = isObject(payload.topSuggestion) ? textOf(payload.topSuggestion.title) : "";
    return wording.concat(title, analysisPart(payload.analysis, tr)).filter(part => part !== "").join(separator);
}

/** The same, short enough for the line below the bar. */
function barLine(text) {
    return text.length > maxLineLength ? PlanText.cut(text, cutLineLength) : text;
}

/** The object in a notification's JSON. @throws SyntaxError if there is none */
function parsed(json) {
    const notification = JSON.parse(json);
    if (!isObject(notification)) {
        throw new SyntaxError("not an object");
    }
    return notification;
}

function title(notification) {
    return LiteralText.oneLine(textOf(notification.title));
}

function body(notification) {
    return PlanText.cut(textOf(notification.body), maxBodyLength);
}

/** The buttons {id, label}. Actions without an id have no effect and are left out. */
function actions(notification) {
    const list = Array.isArray(notification.actions) ? notification.actions : [];
    return list.filter(action => isObject(action) && textOf(action.id) !== "")
        .slice(0, maxActions)
        .map(action => ({ id: textOf(action.id), label: LiteralText.oneLine(textOf(action.label) || textOf(action.id)) }));
}
