// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library
.import "../../../../components/logic/LiteralText.js" as LiteralText
.import "PlanText.js" as PlanText
.import "../../../../components/logic/Translatable.js" as Translatable
.import "../../../../components/logic/Untrusted.js" as Untrusted

// The wording of a check for workspace suggestions, and the content of the suggestion dialog. Both come from the bridge,
// so the type of every field is checked.

const mark = Translatable.mark;

const separator = " — ";
const maxLineLength = 130;
const cutLineLength = 127;
// In characters: more than anybody reads, and still quick to lay out.
const maxBodyLength = 10000;
const maxActions = 8;

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
    if (!Untrusted.isObject(analysis) || !(isSet(analysis.clustersCreated) || isSet(analysis.candidatesDetected))) {
        return "";
    }
    return Translatable.filled(Translatable.translated(mark("Δ clusters {clusters}, candidates {candidates}"), tr),
                               { clusters: Untrusted.textOf(analysis.clustersCreated) || "?", candidates: Untrusted.textOf(analysis.candidatesDetected) || "?" });
}

/** The result of a check as a sentence or several, "" if there is nothing to say. */
function statusText(payload, tr) {
    const wording = cases.filter(row => row.holds(payload))
        .map(row => Translatable.filled(Translatable.translated(row.text, tr), { error: Untrusted.textOf(payload.notificationError) }));
    const title = Untrusted.isObject(payload.topSuggestion) ? Untrusted.textOf(payload.topSuggestion.title) : "";
    return wording.concat(title, analysisPart(payload.analysis, tr)).filter(part => part !== "").join(separator);
}

/** The same, short enough for the line below the bar. */
function barLine(text) {
    return text.length > maxLineLength ? PlanText.cut(text, cutLineLength) : text;
}

/** The object in a notification's JSON. @throws SyntaxError if there is none */
function parsed(json) {
    const notification = JSON.parse(json);
    if (!Untrusted.isObject(notification)) {
        throw new SyntaxError("not an object");
    }
    return notification;
}

function title(notification) {
    return LiteralText.oneLine(Untrusted.textOf(notification.title));
}

function body(notification) {
    return PlanText.cut(Untrusted.textOf(notification.body), maxBodyLength);
}

/** The buttons {id, label}. Actions without an id have no effect and are left out. */
function actions(notification) {
    const list = Array.isArray(notification.actions) ? notification.actions : [];
    return list.filter(action => Untrusted.isObject(action) && Untrusted.textOf(action.id) !== "")
        .slice(0, maxActions)
        .map(action => ({ id: Untrusted.textOf(action.id), label: LiteralText.oneLine(Untrusted.textOf(action.label) || Untrusted.textOf(action.id)) }));
}
