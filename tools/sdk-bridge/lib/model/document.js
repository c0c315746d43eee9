// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Finds the documents in a model's reply. A model's words are untrusted: a document that isn't valid in every part
// stays in the text as it came, so that nothing is lost.

const { LIMITS, TYPES, isBlock, isDocument, isFollowUp } = require('./documentSchema');
const { closed, markdownOf, paragraphs, suggestionsText } = require('./blockText');
const { isObject } = require('../frames');
const { cut, oneLine } = require('../text');

//! The first word after the backticks of a document's fence.
const FENCE_WORD = 'tovi-ui';

const OPENING = /^[ \t]*(`{3,}(?=[^`]*$)|~{3,})[ \t]*(\S*)/;
const CLOSING = /^[ \t]*(`{3,}|~{3,})\s*$/;

// Control characters, and those that change the direction of what follows them: a choice must not look like another
// one. Marks of direction and the joiners of emoji and scripts stay.
const CONTROLS = /[\u0000-\u0008\u000e-\u001f\u007f-\u0084\u0086-\u009f\u202a-\u202e\u2066-\u2069]/g;
const LINE_BREAKS = /\r\n?|[\v\f\u0085\u2028\u2029]/g;
const LONE_SURROGATES = /\p{Surrogate}/gu;

//! The lines of a text with their positions: {line, start, end}, where the end is behind the line break.
function* linesOf(text) {
    for (let start = 0; start < text.length;) {
        const lineBreak = text.indexOf('\n', start);
        const end = lineBreak < 0 ? text.length : lineBreak + 1;
        yield { line: text.slice(start, end), start, end };
        start = end;
    }
}

//! The fenced documents of a text: {start, end, json}. What other fences contain is code, even if it looks like a
//! document, and a fence without an end is cut off.
function* fencedDocuments(text) {
    let open = null;
    for (const { line, start, end } of linesOf(text)) {
        if (!open) {
            const opening = OPENING.exec(line.trimEnd());
            if (opening)
                open = { marks: opening[1], word: opening[2], start, content: end };
            continue;
        }
        const closing = CLOSING.exec(line);
        if (!closing || !closing[1].startsWith(open.marks))
            continue;
        if (open.word === FENCE_WORD && open.marks[0] === '`')
            yield { start: open.start, end, json: text.slice(open.content, start) };
        open = null;
    }
}

//! A string of a document without invisible characters: several lines for content, otherwise one.
function cleanString(string, key) {
    const clean = string.replace(CONTROLS, '').replace(LINE_BREAKS, '\n').replace(LONE_SURROGATES, '\ufffd');
    return key === 'content' ? clean : oneLine(clean);
}

//! A valid value with clean strings. Validating has limited its depth.
function cleaned(value, key) {
    if (typeof value === 'string')
        return cleanString(value, key);
    if (Array.isArray(value))
        return value.map((entry) => cleaned(entry, key));
    if (isObject(value))
        return Object.fromEntries(Object.entries(value).map(([name, member]) => [name, cleaned(member, name)]));
    return value;
}

//! The cleaned value, or null if it isn't valid. Cleaning can leave a text blank, so its result is validated too.
function validated(value, isValid) {
    if (!isValid(value))
        return null;
    const clean = cleaned(value);
    return isValid(clean) ? clean : null;
}

//! What the schema can't say about a block.
const COMPLETE = {
    //! The window draws only as many cells as there are headers.
    table(block) {
        const width = Math.max(block.columns.length, ...block.rows.map((cells) => cells.length));
        const columns = Array.from({ length: width }, (_, index) => block.columns[index] ?? '');
        return { ...block, columns };
    },
    slider(block) {
        const { min, max, value = min } = block;
        return { ...block, value: Math.min(max, Math.max(min, value)) };
    },
};

function readBlock(value) {
    const block = validated(isObject(value) ? { ...value, type: value.type ?? 'text' } : value, isBlock);
    return block && (COMPLETE[block.type]?.(block) ?? block);
}

//! A document, which may also be a single block or an array of blocks.
function wrapped(value) {
    if (Array.isArray(value))
        return { blocks: value };
    const isSingle = isObject(value) && 'type' in value && !('blocks' in value) && !('followUps' in value);
    return isSingle ? { blocks: [value] } : value;
}

//! Parses a document: {blocks, followUps}, or null if it isn't valid. A follow-up that isn't valid is left out instead,
//! because it is a mere offer.
function readDocument(json) {
    if (json.length > LIMITS.json)
        return null;
    let value;
    try {
        value = wrapped(JSON.parse(json));
    } catch {
        return null;
    }
    if (!isDocument(value))
        return null;
    const blocks = (value.blocks ?? []).map(readBlock);
    if (blocks.includes(null))
        return null;
    const followUps = (value.followUps ?? []).map((entry) => validated(entry, isFollowUp)).filter(Boolean);
    return { blocks, followUps };
}

//! The valid documents of a text, with their positions: {start, end, blocks, followUps}.
function documentsOf(text) {
    const documents = [];
    let read = 0;
    for (const { start, end, json } of fencedDocuments(text)) {
        if (++read > LIMITS.documents)
            break;
        const document = readDocument(json);
        if (document)
            documents.push({ start, end, ...document });
    }
    return documents;
}

//! The blocks of a reply, in order. Clients show only the blocks of a reply that has any, so the prose between the
//! documents is among them.
function blocksOf(text, documents) {
    const prose = (start, end) => {
        const content = text.slice(start, end).trim();
        return content ? [{ type: 'text', content }] : [];
    };
    const before = (index) => prose(index ? documents[index - 1].end : 0, documents[index].start);
    return [
        ...documents.flatMap(({ blocks }, index) => [...before(index), ...blocks]),
        ...prose(documents.at(-1).end),
    ];
}

//! The blocks as the window can show them: text and widgets. Code and callouts become text, because the window has no
//! widget for them and would show an empty bubble. Neighbouring texts share one bubble.
function shownBlocks(blocks) {
    const shown = [];
    for (const block of blocks) {
        if (TYPES[block.type].isWidget) {
            shown.push(block);
            continue;
        }
        const content = markdownOf(block);
        if (shown.at(-1)?.type === 'text')
            shown.at(-1).content += `\n\n${content}`;
        else
            shown.push({ type: 'text', content });
    }
    return shown;
}

//! Turns the text of a model into the parts of a reply: `response`, the whole reply as Markdown; `ui`, if it has
//! widgets; `followUps`, if it has suggestions. A text without documents is returned as it is. The response is blank
//! only if the text is. Never throws.
function readReply(text) {
    const documents = documentsOf(text);
    if (!documents.length)
        return { response: text, ui: undefined, followUps: undefined };

    const blocks = shownBlocks(blocksOf(text, documents));
    const followUps = documents.flatMap((document) => document.followUps).slice(0, LIMITS.followUps);
    // A table as text repeats its headers in each row.
    const whole = paragraphs(blocks.map(markdownOf)) || suggestionsText(followUps) || text;
    const response = whole.length > LIMITS.response ? closed(cut(whole, LIMITS.response)) : whole;
    return {
        response,
        ui: blocks.some(({ type }) => TYPES[type].isWidget) ? { blocks } : undefined,
        followUps: followUps.length ? followUps : undefined,
    };
}

module.exports = { FENCE_WORD, readReply };
