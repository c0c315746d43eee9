// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// Libraries have no context and so no i18n: they mark their texts for the catalogue, and who calls them passes
// the function that translates. Places to fill in are written as {name}, because the catalogue answers a text
// with %1 and no argument by a complaint of its own.

/** Marks a text for the catalogue and returns it as it is. */
function mark(text) {
    return text;
}

/** The text through tr, a function from text to text; as it is without one or when empty. */
function translated(text, tr) {
    return text !== "" && typeof tr === "function" ? tr(text) : text;
}

/** The text with every {name} replaced by the value of that name; an unknown one stays. */
function filled(text, values) {
    return text.replace(/\{(\w+)\}/g, (place, name) => values.hasOwnProperty(name) ? values[name] : place);
}
