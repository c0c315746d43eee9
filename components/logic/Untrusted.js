// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// Fields of the bridge's messages, which may be missing or of another type.

/** Whether a value has fields. Lists count too. */
function isObject(value) {
    return typeof value === "object" && value !== null;
}

/** A text or number as text, "" for anything else. */
function textOf(value) {
    return typeof value === "string" || typeof value === "number" ? String(value) : "";
}

/** A text that isn't empty, otherwise the fallback. */
function textOr(value, fallback) {
    return typeof value === "string" && value !== "" ? value : fallback;
}
