// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// What the widgets show of a block of a structured reply. Blocks are untrusted: any field may have any type and size.
// Each function here replaces wrong types by defaults and limits what is drawn, so that its result can be shown as it
// is. Parameters named tr translate a text of the user interface.

const maxTextLength = 1000;
const maxCellLength = 200;
// Short enough that the value after it is visible.
const maxSliderLabelLength = 200;
const maxLanguageLength = 40;
var maxTextLines = 20;
var maxCellLines = 8;

//! Of a list or of options.
var maxEntries = 200;
var maxRows = 50;
const maxColumns = 24;

// Beyond, a slider can't tell neighbouring values apart.
const maxNumber = 1e15;
const maxSteps = 1e9;

const endlessWordLength = 1000;

/** The block as an object, {} if it is something else. */
function objectOf(payload) {
    return isObject(payload) ? payload : {};
}

function isObject(value) {
    return typeof value === "object" && value !== null && !Array.isArray(value);
}

function arrayOf(value) {
    return Array.isArray(value) ? value : [];
}

/** Cuts a text that is longer than a widget shows, without splitting a surrogate pair. */
function shortened(text, maximum) {
    if (text.length <= maximum) {
        return text;
    }
    const cut = text.substring(0, maximum);
    return (/[\ud800-\udbff]$/.test(cut) ? cut.slice(0, -1) : cut) + "…";
}

/** A field that must be a string, "" if it isn't. */
function textField(value) {
    return typeof value === "string" ? shortened(value, maxTextLength) : "";
}

function isMissing(value) {
    return value === null || value === undefined;
}

/** The string form of any JSON value, "" for null and for a missing one. */
function stringForm(value) {
    if (isMissing(value)) {
        return "";
    }
    if (isObject(value)) {
        return JSON.stringify(value);
    }
    try {
        return String(value);
    } catch (error) {
        // An array with an object whose key "toString" hides the function.
        return JSON.stringify(value);
    }
}

/**
 * Whether a text contains a word so long that wrapping at word boundaries takes minutes, because it searches for the
 * word's end on each line.
 */
function hasEndlessWord(text) {
    return text.length > endlessWordLength && text.split(/\s+/).some(word => word.length > endlessWordLength);
}

/** The text of code and callouts, which may have any length. */
function contentOf(payload) {
    const content = objectOf(payload).content;
    return typeof content === "string" ? content : "";
}

/** The language of code, in capitals. */
function languageOf(payload) {
    const language = objectOf(payload).language;
    return typeof language === "string" ? shortened(language, maxLanguageLength).toUpperCase() : "";
}

/** "info", "warning" or "tip". */
function calloutVariant(payload) {
    const variant = objectOf(payload).variant;
    return ["info", "warning", "tip"].includes(variant) ? variant : "info";
}

// ---- List

/** The entries of a list as texts, as many as are drawn. */
function listEntries(payload, tr) {
    return arrayOf(objectOf(payload).items).slice(0, maxEntries)
        .map(item => {
            const value = isObject(item) ? item.label : item;
            return isMissing(value) ? tr("(empty)") : shortened(stringForm(value), maxTextLength);
        });
}

/** The number of entries of an array field that are not drawn. */
function hiddenCount(array, maximum) {
    return Math.max(0, arrayOf(array).length - maximum);
}

// ---- Table

/** The headers of a table. */
function tableColumns(payload) {
    return arrayOf(objectOf(payload).columns).slice(0, maxColumns).map(cellText);
}

/** The rows that are drawn. Each has one text per column, "" for missing cells. */
function tableRows(payload, columnCount) {
    return arrayOf(objectOf(payload).rows).slice(0, maxRows).map(row => {
        const cells = arrayOf(row).slice(0, columnCount).map(cellText);
        while (cells.length < columnCount) {
            cells.push("");
        }
        return cells;
    });
}

function cellText(value) {
    return shortened(stringForm(value), maxCellLength);
}

/** How a screen reader reads a row of a table: "Name: Home, Used: 18%". Empty cells are left out. */
function spokenRow(columns, cells) {
    return cells.map((cell, index) => columns[index] && cell ? columns[index] + ": " + cell : cell)
        .filter(cell => cell !== "")
        .join(", ");
}

// ---- Options

/** The choices that are drawn: {id, label}, both strings. */
function optionChoices(payload, tr) {
    return arrayOf(objectOf(payload).choices).slice(0, maxEntries).map((choice, index) => {
        const fields = objectOf(choice);
        return { id: stringForm(fields.id) || String(index), label: stringForm(fields.label) || tr("(option)") };
    });
}

// ---- Slider

function numberOr(value, fallback) {
    return typeof value === "number" && Math.abs(value) <= maxNumber ? value : fallback;
}

/** The range of a slider: {from, to, value, step}, with from <= value <= to. */
function sliderRange(payload) {
    const fields = objectOf(payload);
    const ends = [numberOr(fields.min, 0), numberOr(fields.max, 100)];
    const from = Math.min(ends[0], ends[1]);
    const to = Math.max(ends[0], ends[1]);
    const step = numberOr(fields.step, 1);
    return {
        from: from,
        to: to,
        value: Math.min(to, Math.max(from, numberOr(fields.value, from))),
        step: Math.max(step > 0 ? step : 1, (to - from) / maxSteps)
    };
}

/** The label of a slider, "" if it has none. */
function sliderLabel(payload) {
    const label = objectOf(payload).label;
    return typeof label === "string" ? shortened(label.replace(/\s+/g, " "), maxSliderLabelLength) : "";
}

/** What the user's choice on a slider does, passed back unchanged. */
function sliderAction(payload) {
    const action = objectOf(payload).action;
    return typeof action === "string" ? action : "";
}

/** A number as text, rounded to two places. */
function rounded(number) {
    return String(Math.round(number * 100) / 100);
}
