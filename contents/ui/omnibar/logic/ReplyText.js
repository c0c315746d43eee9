// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// What a plain reply may carry beside its words. Replies come from outside and may be of any size: everything
// here runs in linear time: tags end at the next "<", no pattern looks for its end twice, and case is ignored by
// patterns instead of lower-casing whole replies (a megabyte of dotted capital I takes minutes to lower-case).

const toolMarkers = ["<invoke ", "<tool_call", "</tool_call>", "</function>", "minimax:tool_call", "<function_call>",
                     "<function="];

// Elements that go together with their content. needs is what the attributes of the opening tag must hold.
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

/** Whether a reply holds tool-call markup that a model should have kept to itself. */
function holdsToolMarkup(text) {
    return toolMarkers.some(marker => text.indexOf(marker) >= 0);
}

/** The text without the elements that a row of toolElements names; one that is never closed stays. */
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
 * The reply without tool-call markup, "Done." when nothing else is left. A reply that holds none is returned
 * untouched.
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

/** One "[KEY: value]" that starts at from, after optional blanks: {value, end}, or null. */
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
 * Finds "[TOOL: name] [STATUS: status] [RESULT: result] rest" anywhere in a reply and gives
 * {hasTool, toolName, toolStatus, text}. The text is the rest ("Action completed." when there is none); what
 * stands before the tag is lost. Without a tag it is the reply as it came.
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
 * What a reply says about the theme: false for dark, true for light, undefined when it says nothing.
 * As loose as it looks, on purpose: the reply is the only word of a theme that the assistant has just applied.
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
