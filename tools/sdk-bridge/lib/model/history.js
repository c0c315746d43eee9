// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// What a model gets to read: the instructions, as much of the conversation as fits its context, and the prompt.

const BYTES_PER_TOKEN = 3; // a low estimate: a text is rather cut too early than refused
const TOKENS_PER_MESSAGE = 8; // what the server's template puts around each
const MIN_ROOM = 128;
const MAX_ROOM = 2048;

//! A rough number of tokens of a message.
const estimate = (content) => Math.ceil(Buffer.byteLength(content) / BYTES_PER_TOKEN) + TOKENS_PER_MESSAGE;

//! The tokens of a context that are kept free for the reply.
const roomForReply = (contextTokens) => Math.min(MAX_ROOM, Math.max(MIN_ROOM, Math.floor(contextTokens / 4)));

const seen = ({ role, content, sent }) => ({ role, content: sent ?? content });

//! Joins neighbours of the same role, which some models' templates refuse. They occur where a reply was cancelled.
function alternate(messages) {
    const joined = [];
    for (const { role, content } of messages) {
        const before = joined.at(-1);
        if (before?.role === role)
            before.content += `\n\n${content}`;
        else
            joined.push({ role, content });
    }
    return joined;
}

//! The latest messages that fit into a number of tokens, beginning with one of the user.
function latest(history, tokens) {
    let first = history.length;
    let used = 0;
    while (first > 0) {
        used += estimate(history[first - 1].content);
        if (used > tokens)
            break;
        --first;
    }
    while (first < history.length && history[first].role !== 'user')
        ++first;
    return history.slice(first);
}

//! The messages of a request. `history` is cut at its start to what fits `contextTokens` together with the rest;
//! `instructions` and `prompt` are never cut. `share` (0 to 1) reduces the history further, for a server that counts more
//! tokens than estimated.
function messagesFor({ instructions, history, prompt, contextTokens, share = 1 }) {
    const free = contextTokens - roomForReply(contextTokens) - estimate(instructions) - estimate(prompt);
    const kept = latest(history.map(seen), Math.floor(Math.max(0, free) * share));
    const system = instructions ? [{ role: 'system', content: instructions }] : [];
    return [...system, ...alternate([...kept, { role: 'user', content: prompt }])];
}

module.exports = { estimate, messagesFor, roomForReply };
