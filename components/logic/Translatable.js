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

const rightToLeft = /[\u0590-\u08ff\ufb1d-\ufdff\ufe70-\ufefc]/;
const leftToRight = /[A-Za-z\u00c0-\u058f]/;

/**
 * Replaces each {name} by the value of that name. Unknown names are kept. In a text that is written from right to left,
 * values in other letters are isolated, or what is at their ends, such as the first slash of a path, would change sides.
 */
function filled(text, values) {
    const isRightToLeft = rightToLeft.test(text);
    // A value that has isolated parts is itself such a text. LiteralText.printable() knows no nested ones.
    const isIsolated = value => isRightToLeft && typeof value === "string" && leftToRight.test(value)
        && !value.includes("\u2068");
    return text.replace(/\{(\w+)\}/g, (place, name) => {
        if (!values.hasOwnProperty(name))
            return place;
        const value = values[name];
        return isIsolated(value) ? "\u2068" + value + "\u2069" : value;
    });
}
