// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// The system prompt. It is sent with every prompt and small models have little context, so it is short.

const { FENCE_WORD } = require('./document');
const { FOLLOW_UP, LIMITS, TYPES } = require('./documentSchema');

const fence = (document) => ['```' + FENCE_WORD, JSON.stringify(document), '```'].join('\n');

const TABLE = {
    blocks: [{ type: 'table', columns: ['Unit', 'Bytes'], rows: [['KiB', 1024], ['MiB', 1048576]] }],
};

const SUGGESTIONS = { followUps: [{ title: 'Larger units', prompt: 'Which units are larger than a MiB?' }] };

//! The members of an object for the model: "title? (string), items (array of strings)".
const members = ({ properties, required }) => Object.entries(properties).filter(([, { description }]) => description)
    .map(([name, { description }]) => `${name}${required.includes(name) ? '' : '?'} (${description})`)
    .join(', ');

// A model writes text, code and quotes as Markdown anyway, so it only needs to know the widgets.
const WIDGETS = Object.entries(TYPES).filter(([, { isWidget }]) => isWidget)
    .map(([type, { schema }]) => `- ${type}: ${members(schema)}`)
    .join('\n');

const ALWAYS = `You are Tovi, the assistant of the KeldaOS desktop. You can talk, but you can't see the screen, open \
or change anything, or look anything up. If you are asked to, say so and tell the user how to do it. Answer briefly, \
in the language of the user. If you don't know something, say so.

Write Markdown: headings (# to ###), lists with "-" or "1.", quotes (>), fenced code, **bold**, *italic*, \`code\`. No \
Markdown tables, images, links or HTML.

Only if it helps, add a widget: a fenced block "${FENCE_WORD}" with JSON, for example a table:

${fence(TABLE)}

Types of blocks (? is optional, all strings are plain text):
${WIDGETS}

You don't learn what the user picks in options or sets on a slider: they only show something. To offer choices or \
next steps, end a reply without blocks with followUps, at most ${LIMITS.followUps}, each with ${members(FOLLOW_UP)}. \
The user sees the title; a click sends the prompt to you:

${fence(SUGGESTIONS)}`;

const SPOKEN = `The user is speaking and will hear your reply: answer in one to three short, plain sentences, without \
blocks, lists or code unless asked for them.`;


//! The system prompt. `inputMode` is "voice" for a spoken prompt; `now` is a Date, without which the model doesn't know
//! the day. Servers reuse their work on a prompt up to its first difference from the one before, and the conversation
//! follows: with the time of day, they would read all of it again each minute.
function instructions({ inputMode, now } = {}) {
    const parts = [ALWAYS];
    if (now)
        parts.push(`Today is ${now.toDateString()}.`);
    if (inputMode === 'voice')
        parts.push(SPOKEN);
    return parts.join('\n\n');
}

module.exports = { instructions };
