// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library
.import "../logic/Untrusted.js" as Untrusted

// The fields of the bridge's records, which may be missing or of another type, as the panels show them.

//! Longer names would only slow down the layout. In characters.
const longestName = 300;

const shortFormat = 1; // Locale.ShortFormat, which libraries don't know

/** The rows of a list, "[]" if it isn't one. */
function listOf(value) {
    return Array.isArray(value) ? value : [];
}

/** A field of a record, undefined if that isn't an object. */
function field(record, name) {
    return Untrusted.isObject(record) ? record[name] : undefined;
}

/** A point in time, as a text that Date accepts or in milliseconds since 1970, in local time; "" if it is neither. */
function localTime(value) {
    if (value === "" || (typeof value !== "string" && typeof value !== "number")) {
        return "";
    }
    const date = new Date(value);
    return isNaN(date.getTime()) ? "" : date.toLocaleString(Qt.locale(), shortFormat);
}

/** When an automation ran: a local time; never if it has no value; unknown if that is no time. */
function lastRun(value, never, unknown) {
    return value ? localTime(value) || unknown : never;
}

/** The number of entries in the list container[name]. */
function countOf(container, name) {
    return listOf(field(container, name)).length;
}

/** The name of the theme in a desktop state, otherwise the fallback. */
function themeOf(state, fallback) {
    return Untrusted.textOr(field(state, "theme"), fallback).substring(0, longestName);
}

/** The rows of the audit trail: {recordId, name, at}. */
function actionRows(actions) {
    return listOf(actions).map(action => {
        const id = Untrusted.textOf(field(action, "id"));
        return { recordId: id, name: id.substring(0, longestName), at: localTime(field(action, "at")) };
    });
}

/** The rows of the automations: {recordId, name, isEnabled, ran}. */
function automationRows(automations, never, unknown) {
    return listOf(automations).map(automation => {
        const id = Untrusted.textOf(field(automation, "id"));
        return {
            recordId: id,
            name: id.substring(0, longestName),
            isEnabled: field(automation, "enabled") === true,
            ran: lastRun(field(automation, "lastRun"), never, unknown)
        };
    });
}
