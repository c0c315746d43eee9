// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// No library, because it uses the context property of the file that imports it.

/**
 * Translates a text of the user interface. Empty texts are not passed on because KI18n complains about them. If our
 * object is missing, "i18n" is the function of that name from Plasma's modules, hence the test for "tr".
 */
function tr(text) {
    const translates = typeof i18n !== "undefined" && i18n && typeof i18n.tr === "function";
    return translates && text !== "" ? i18n.tr(text) : text;
}

const maxInt = 2147483647;

/**
 * Translates a text with a number, in the form that the language has for that count. The texts are the English forms,
 * with a place such as {count}, which the caller fills.
 */
function trn(singular, plural, count) {
    // The disambiguation is the key in our catalogue, see CatalogueTranslator. Without a catalogue Qt returns the text.
    const number = Math.min(Math.max(0, Math.round(count)), maxInt);
    return qsTranslate("Plural", number === 1 ? singular : plural, singular, number);
}
