// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// Turns the blocks of a structured reply into rows of the conversation. Blocks are untrusted: what can't be shown as a
// block is shown as text.

const supportedBlockTypes = ["text", "list", "table", "options", "slider", "code", "callout"];
// Blocks whose own text is the row's text.
const textTypes = ["text", "code", "callout"];

const emptyResponseText = "(empty response)";
const renderErrorText = "(render error)";

function isObject(value) {
    return typeof value === "object" && value !== null && !Array.isArray(value);
}

function typeOf(block) {
    return block.type || "text";
}

/** Whether a reply is shown as blocks. A single block of text is an ordinary reply. */
function needsBlocks(blocks) {
    return Array.isArray(blocks) && blocks.length > 0
        && !(blocks.length === 1 && isObject(blocks[0]) && typeOf(blocks[0]) === "text");
}

function plainRow(text) {
    return { text: text, messageType: "text", payload: "", fallbackText: text };
}

/** The block as JSON, "" if it can't be converted. */
function serialized(block) {
    try {
        return JSON.stringify(block) || "";
    } catch (error) {
        return "";
    }
}

function rowOf(block, fallback) {
    const type = typeOf(block);
    const payload = serialized(block);
    if (!supportedBlockTypes.includes(type)) {
        return plainRow(fallback || payload || renderErrorText);
    }
    if (payload === "") {
        return plainRow(fallback || renderErrorText);
    }
    const ownText = textTypes.includes(type) && typeof block.content === "string" ? block.content : "";
    const text = ownText || fallback;
    return { text: text, messageType: type, payload: payload, fallbackText: text };
}

/**
 * The rows of a reply: {text, messageType, payload, fallbackText}, one for each block. Entries that are no objects are
 * left out. Without any block it is a row with the fallback, the text of the reply.
 */
function rowsOf(blocks, fallback) {
    const rows = Array.isArray(blocks) ? blocks.filter(isObject).map(block => rowOf(block, fallback)) : [];
    return rows.length > 0 ? rows : [plainRow(fallback || emptyResponseText)];
}
