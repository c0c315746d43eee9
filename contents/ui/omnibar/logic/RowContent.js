// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// How a row of the conversation shows its content.

/** Whether a row shows a block of a structured reply, in the widget for its type. */
function isStructured(role, messageType, payload) {
    return role === "assistant" && messageType !== "text" && payload !== "";
}

/** The object in a JSON text, an empty one if there is none: payloads come from the bridge. */
function parseObject(json) {
    if (json === "") {
        return {};
    }
    try {
        const value = JSON.parse(json);
        return typeof value === "object" && value !== null && !Array.isArray(value) ? value : {};
    } catch (error) {
        return {};
    }
}

/** What a text bubble shows of a row: the block's own text, or else the text of the reply. */
function textOf(payload, fallbackText, text) {
    const content = parseObject(payload).content;
    return (typeof content === "string" && content) || fallbackText || text;
}
