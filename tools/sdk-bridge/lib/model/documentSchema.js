// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// The block document: widgets and suggestions that a model sends besides its prose. The tables below are both the JSON
// schema, by which documents are validated, and what the instructions tell the model about them.

//! Limits of a reply. Lengths are in characters.
const LIMITS = {
    response: 200000, // the whole reply as Markdown; the longest text of a model is half of it
    documents: 4, // per reply, with those that aren't valid
    json: 64 * 1024, // the text of one document, before parsing
    blocks: 20, // per document
    followUps: 4, // per reply: the window has room for four cards
    items: 100,
    columns: 12,
    rows: 200,
    choices: 12,
    caption: 200, // titles, cells, labels
    line: 1000, // entries of a list, questions and prompts
    name: 100, // ids, actions, the language of code
    content: 20000,
    number: 1e15, // the window's sliders go no further
};

// A description tells the model what to write; a member without one isn't worth telling.

//! A text that may be blank.
const text = (maxLength, description) => ({ type: 'string', maxLength, ...(description && { description }) });

//! A text with something to see.
const visible = (maxLength, description) => ({ ...text(maxLength, description), pattern: '\\S' });

const number = { type: 'number', minimum: -LIMITS.number, maximum: LIMITS.number, description: 'number' };

//! An object without other members: validating removes them.
const object = (required, properties) => ({ type: 'object', required, properties, additionalProperties: false });

const id = { type: ['string', 'number'], maxLength: LIMITS.name };

//! The block types. `isWidget` tells whether the window has a widget for it; the others become Markdown.
const TYPES = {
    text: {
        isWidget: false,
        schema: object(['content'], { content: visible(LIMITS.content) }),
    },
    list: {
        isWidget: true,
        schema: object(['items'], {
            title: text(LIMITS.caption, 'string'),
            items: {
                type: 'array',
                minItems: 1,
                maxItems: LIMITS.items,
                items: {
                    anyOf: [
                        visible(LIMITS.line),
                        object(['label'], { id, label: visible(LIMITS.line) }),
                    ],
                },
                description: 'array of strings',
            },
        }),
    },
    table: {
        isWidget: true,
        schema: object(['columns'], {
            columns: {
                type: 'array',
                minItems: 1,
                maxItems: LIMITS.columns,
                items: text(LIMITS.caption),
                description: `array of at most ${LIMITS.columns} strings`,
            },
            rows: {
                type: 'array',
                maxItems: LIMITS.rows,
                items: {
                    type: 'array',
                    maxItems: LIMITS.columns,
                    items: { type: ['string', 'number'], maxLength: LIMITS.caption },
                },
                default: [],
                description: 'array of arrays of strings or numbers',
            },
        }),
    },
    options: {
        isWidget: true,
        schema: object(['choices'], {
            prompt: text(LIMITS.line, 'string'),
            choices: {
                type: 'array',
                minItems: 1,
                maxItems: LIMITS.choices,
                items: object(['label'], { id, label: visible(LIMITS.caption) }),
                description: `array of at most ${LIMITS.choices} objects {"label": string}`,
            },
        }),
    },
    slider: {
        isWidget: true,
        schema: object([], {
            label: text(LIMITS.caption, 'string'),
            min: { ...number, default: 0 },
            max: { ...number, default: 100, exclusiveMinimum: { $data: '1/min' } },
            value: number,
            step: { ...number, default: 1, exclusiveMinimum: 0 },
            action: text(LIMITS.name),
        }),
    },
    code: {
        isWidget: false,
        schema: object(['content'], {
            content: visible(LIMITS.content),
            language: text(LIMITS.name),
        }),
    },
    callout: {
        isWidget: false,
        schema: object(['content'], {
            content: visible(LIMITS.content),
            variant: text(LIMITS.name),
        }),
    },
};

const FOLLOW_UP = object(['prompt'], {
    title: text(LIMITS.caption, 'string'),
    subtitle: text(LIMITS.caption, 'string'),
    prompt: visible(LIMITS.line, 'string'),
});

//! Blocks and follow-ups are validated one by one.
const DOCUMENT = {
    ...object([], { blocks: { type: 'array', maxItems: LIMITS.blocks }, followUps: { type: 'array' } }),
    anyOf: [{ required: ['blocks'] }, { required: ['followUps'] }],
};

let compiled;

//! The validators. Compiled at first use: this takes some 60 ms, and many replies have no document. A test checks the
//! schemas themselves, which would take as long again.
function validators() {
    if (!compiled) {
        const Ajv = require('ajv');
        const ajv = new Ajv({
            removeAdditional: true, useDefaults: true, $data: true, allowUnionTypes: true,
            meta: false, validateSchema: false,
        });
        const ofBlock = ([type, { schema: { properties, ...rest } }]) =>
            [type, ajv.compile({ ...rest, properties: { type: { const: type }, ...properties } })];
        compiled = {
            blocks: new Map(Object.entries(TYPES).map(ofBlock)),
            followUp: ajv.compile(FOLLOW_UP),
            document: ajv.compile(DOCUMENT),
        };
    }
    return compiled;
}

// These three remove unknown members from their argument and add defaults to it.

//! Whether a value is a valid block. Its type must be given.
const isBlock = (value) => Boolean(validators().blocks.get(value?.type)?.(value));

//! Whether a value is a valid follow-up.
const isFollowUp = (value) => validators().followUp(value);

//! Whether a value is a document with arrays in the right places; what they contain isn't validated.
const isDocument = (value) => validators().document(value);

module.exports = { LIMITS, TYPES, FOLLOW_UP, isBlock, isDocument, isFollowUp };
