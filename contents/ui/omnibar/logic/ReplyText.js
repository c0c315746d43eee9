// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// Markup in plain text replies. Replies are untrusted and may have any size, so everything here runs in linear time:
// tags end at the next "<", no pattern scans for its end twice, and patterns ignore case because lower-casing a reply
// may be slow (minutes for a megabyte of dotted capital I).

const toolMarkers = ["<invoke ", "<tool_call", "</tool_call>", "</function>", "minimax:tool_call", "<function_call>",
                     "<function="];

// Elements that are removed with their content. If given, needs must match the attributes of the opening tag.
const toolElements = [
    { open: /<invoke\s([^<>]*)>/g, close: /<\/invoke\s*>/g, needs: /(?:^|\s)name\s*=/ },
    { open: /<tool_call(\s[^<>]*)?>/g, close: /<\/tool_call\s*>/g },
    { open: /<function_call(\s[^<>]*)?>/g, close: /<\/function_call\s*>/g },
    { open: /<function=([^<>]*)>/g, close: /<\/function\s*>/g }
];

const wrapperTag = /<\/?minimax:tool_call(?:\s[^<>]*)?>/g;
const remainingTag = /<\/?(?:tool_call|function_call|function|parameter|invoke)(?:[\s=\/][^<>]*)?>/gi;

const nextWord = /\S|$/g;

const emptyReplyText = "Done.";
const emptyToolRestText = "Action completed.";

/** Whether a reply contains tool-call markup, which some models leak into their text. */
function holdsToolMarkup(text) {
    return toolMarkers.some(marker => text.indexOf(marker) >= 0);
}

/** The text without the elements of a row of toolElements. An element that is not closed is kept. */
function withoutElements(text, element) {
    const kept = [];
    let position = 0;
    element.open.lastIndex = 0;
    for (let open = element.open.exec(text); open; open = element.open.exec(text)) {
        const attributes = open[1] || "";
        if (attributes.endsWith("/") || (element.needs && !element.needs.test(attributes))) {
            continue;
        }
        element.close.lastIndex = element.open.lastIndex;
        if (!element.close.test(text)) {
            break;
        }
        kept.push(text.substring(position, open.index));
        position = element.close.lastIndex;
        element.open.lastIndex = position;
    }
    kept.push(text.substring(position));
    return kept.join("");
}

/**
 * The reply without tool-call markup, "Done." if nothing else is left. A reply without such markup is returned
 * unchanged.
 */
function stripToolMarkup(text) {
    if (!holdsToolMarkup(text)) {
        return text;
    }
    const plain = toolElements.reduce(withoutElements, text.replace(wrapperTag, ""))
        .replace(remainingTag, "")
        .replace(/\n{3,}/g, "\n\n")
        .trim();
    return plain || emptyReplyText;
}

/** Parses "[KEY: value]" at position from, after optional whitespace. @return {value, end} or null */
function readField(text, key, from) {
    const opening = "[" + key + ":";
    nextWord.lastIndex = from;
    const start = nextWord.exec(text).index;
    if (!text.startsWith(opening, start)) {
        return null;
    }
    const end = text.indexOf("]", start);
    return end < 0 ? null : { value: text.substring(start + opening.length, end).trim(), end: end + 1 };
}

/**
 * Finds "[TOOL: name] [STATUS: status] [RESULT: result] rest" anywhere in a reply.
 * @return {hasTool, toolName, toolStatus, text}. The text is the rest, "Action completed." if that is empty; text
 * before the tag is dropped. Without a tag it is the whole reply.
 */
function parseToolTag(text) {
    let from = text.indexOf("[TOOL:");
    while (from >= 0) {
        const tool = readField(text, "TOOL", from);
        if (!tool) {
            break;
        }
        const status = readField(text, "STATUS", tool.end);
        const result = status && readField(text, "RESULT", status.end);
        if (result) {
            return {
                hasTool: true,
                toolName: tool.value,
                toolStatus: status.value,
                text: text.substring(result.end).trim() || emptyToolRestText
            };
        }
        from = text.indexOf("[TOOL:", tool.end);
    }
    return { hasTool: false, toolName: "", toolStatus: "", text: text };
}

/**
 * Whether a reply says that a light theme was applied: true for light, false for dark, undefined if it is not about
 * that. Intentional: the test is loose, because the reply is the only notification of a theme change.
 */
function lightChromeFromWording(text) {
    if (!/applied/i.test(text)) {
        return undefined;
    }
    if (/dark/i.test(text)) {
        return false;
    }
    return /light/i.test(text) ? true : undefined;
}
