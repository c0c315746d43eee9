// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// Script libraries have no QML context and so no i18n object: they mark their texts for the catalogue, and the caller
// passes the translating function. Placeholders are written as {name}, because KI18n adds an error message to a text
// with %1 but no argument.

/** Marks a text for the catalogue and returns it unchanged. */
function mark(text) {
    return text;
}

/** Translates a text by tr. Returns it unchanged if it is empty or tr is not a function. */
function translated(text, tr) {
    return text !== "" && typeof tr === "function" ? tr(text) : text;
}

/** Replaces each {name} by the value of that name. Unknown names are kept. */
function filled(text, values) {
    return text.replace(/\{(\w+)\}/g, (place, name) => values.hasOwnProperty(name) ? values[name] : place);
}
