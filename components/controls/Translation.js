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
