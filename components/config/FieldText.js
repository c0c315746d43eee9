// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

.import "ConfigObject.js" as ConfigObject

// How text fields show values, and what they make of a text. A row of a page's table names the format.
//   shown(value)  the text of a value
//   parse(text)   { valid, value }; the value undefined removes the key

function list(text) {
    const parts = text.split(",").map(part => part.trim()).filter(part => part !== "");
    return parts.length > 0 ? parts : undefined;
}

function words(text) {
    const parts = text.split(/\s+/).filter(part => part !== "");
    return parts.length > 0 ? parts : undefined;
}

function parsedObject(text) {
    if (text.trim() === "")
        return { valid: true, value: undefined };
    try {
        const value = JSON.parse(text);
        return { valid: ConfigObject.isObject(value), value: value };
    } catch (error) {
        return { valid: false, value: undefined };
    }
}

const formats = {
    text: {
        shown: value => ConfigObject.asText(value),
        parse: text => ({ valid: true, value: text })
    },
    list: {
        shown: value => ConfigObject.asText(value, ", "),
        parse: text => ({ valid: true, value: list(text) })
    },
    words: {
        shown: value => ConfigObject.asText(value, " "),
        parse: text => ({ valid: true, value: words(text) })
    },
    json: {
        shown: value => value === undefined || value === null ? "" : ConfigObject.asJson(value),
        parse: parsedObject
    }
};

/** The format of a row; plain text by default. */
function formatOf(row) {
    return formats[row.format || "text"];
}
