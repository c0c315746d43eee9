// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');
const Ajv = require('ajv');

const { FOLLOW_UP, LIMITS, TYPES } = require('../lib/model/documentSchema');
const { readReply } = require('../lib/model/document');
const { test } = require('./support/timed');

const fence = (document) =>
    `\`\`\`tovi-ui\n${typeof document === 'string' ? document : JSON.stringify(document)}\n\`\`\``;

const many = (count, entry) => Array.from({ length: count }, () => entry);
const chars = (count) => '😀'.repeat(count);

//! Whether a document was accepted. Otherwise the reply must be its text.
function isAccepted(document) {
    const reply = fence(document);
    const { response, ui, followUps } = readReply(reply);
    if (response !== reply)
        return true;
    assert.equal(ui, undefined);
    assert.equal(followUps, undefined);
    return false;
}

test('the schemas are valid', () => {
    const ajv = new Ajv({ $data: true, allowUnionTypes: true, strict: true, validateSchema: true });
    for (const { schema } of [...Object.values(TYPES), { schema: FOLLOW_UP }])
        assert.ok(ajv.validateSchema(schema), ajv.errorsText());
});

const text = (count) => ({ type: 'text', content: chars(count) });
const list = (member) => ({ type: 'list', items: ['a'], ...member });
const table = (member) => ({ type: 'table', columns: ['a'], ...member });
const options = (member) => ({ type: 'options', choices: [{ label: 'a' }], ...member });
const slider = (member) => ({ type: 'slider', ...member });
const code = (member) => ({ type: 'code', content: 'a', ...member });
const callout = (member) => ({ type: 'callout', content: 'a', ...member });

// [limit, the document with that many]
const MAXIMUMS = {
    'blocks': [20, (n) => ({ blocks: many(n, list()) })],
    'characters of text': [20000, text],
    'characters of code': [20000, (n) => code({ content: chars(n) })],
    'characters of a language': [100, (n) => code({ language: chars(n) })],
    'characters of a callout': [20000, (n) => callout({ content: chars(n) })],
    'characters of a variant': [100, (n) => callout({ variant: chars(n) })],
    'items': [100, (n) => list({ items: many(n, 'a') })],
    'characters of an item': [1000, (n) => list({ items: [chars(n)] })],
    'characters of a label': [1000, (n) => list({ items: [{ label: chars(n) }] })],
    'characters of an id': [100, (n) => list({ items: [{ label: 'a', id: chars(n) }] })],
    'characters of a title': [200, (n) => list({ title: chars(n) })],
    'columns': [12, (n) => table({ columns: many(n, 'a') })],
    'characters of a header': [200, (n) => table({ columns: [chars(n)] })],
    'rows': [200, (n) => table({ rows: many(n, ['a']) })],
    'cells of a row': [12, (n) => table({ rows: [many(n, 'a')] })],
    'characters of a cell': [200, (n) => table({ rows: [[chars(n)]] })],
    'choices': [12, (n) => options({ choices: many(n, { label: 'a' }) })],
    'characters of a choice': [200, (n) => options({ choices: [{ label: chars(n) }] })],
    'characters of the id of a choice': [100, (n) => options({ choices: [{ label: 'a', id: chars(n) }] })],
    'characters of a question': [1000, (n) => options({ prompt: chars(n) })],
    'characters of the label of a slider': [200, (n) => slider({ label: chars(n) })],
    'characters of an action': [100, (n) => slider({ action: chars(n) })],
    'characters of JSON': [65536, (n) => {
        const json = JSON.stringify({ blocks: [list()] });
        return json + ' '.repeat(n - json.length - 1); // the line break before the fence counts
    }],
};

for (const [what, [limit, documentOf]] of Object.entries(MAXIMUMS))
    test(`${limit} ${what} are accepted, one more is not`, () => {
        assert.equal(isAccepted(documentOf(limit)), true);
        assert.equal(isAccepted(documentOf(limit + 1)), false);
    });

const FOLLOW_UP_MAXIMUMS = [['title', 200], ['subtitle', 200], ['prompt', 1000]];

for (const [member, limit] of FOLLOW_UP_MAXIMUMS)
    test(`a follow-up whose ${member} has more than ${limit} characters is left out`, () => {
        const followUp = (count) => ({ prompt: 'a', [member]: chars(count) });
        const followUps = [followUp(limit), followUp(limit + 1)];
        assert.deepEqual(readReply(fence({ followUps })).followUps, [followUp(limit)]);
    });

test('a reply has up to four follow-ups', () => {
    const followUps = (count) => readReply(fence({ followUps: many(count, { prompt: 'a' }) })).followUps.length;
    assert.equal(followUps(4), 4);
    assert.equal(followUps(5), 4);
});

test('documents beyond the fourth stay text', () => {
    const document = fence(list());
    assert.equal(readReply(many(4, document).join('\n')).response, many(4, '- a').join('\n\n'));
    const { response, ui } = readReply(`${many(5, document).join('\n')}\nEnd`);
    assert.equal(response, `${many(4, '- a').join('\n\n')}\n\n${document}\nEnd`);
    assert.deepEqual(ui.blocks, [...many(4, list()), { type: 'text', content: `${document}\nEnd` }]);
    const invalid = many(4, fence('')).join('\n');
    assert.equal(readReply(`${invalid}\n${document}`).response, `${invalid}\n${document}`);
});

// [rejected block, accepted block next to it]
const REJECTED = {
    'no content': [{ type: 'text' }, text(1)],
    'blank content': [{ type: 'text', content: ' \n' }, text(1)],
    'content of invisible characters': [{ type: 'text', content: '\u0007\u202e' }, text(1)],
    'blank code': [code({ content: '\n' }), code()],
    'a blank callout': [callout({ content: '' }), callout()],
    'content that is no string': [{ type: 'text', content: 1 }, { type: 'text', content: '1' }],
    'no items': [list({ items: [] }), list()],
    'a blank item': [list({ items: [' '] }), list()],
    'an item without label': [list({ items: [{ id: 'a' }] }), list({ items: [{ label: 'a' }] })],
    'an item that is null': [list({ items: [null] }), list()],
    'items that are no array': [list({ items: { 0: 'a' } }), list()],
    'a title that is null': [list({ title: null }), list({ title: '' })],
    'no columns': [{ type: 'table', rows: [['a']] }, table()],
    'an empty array of columns': [table({ columns: [] }), table({ columns: [''] })],
    'a column that is a number': [table({ columns: [1] }), table({ columns: ['1'] })],
    'a row that is no array': [table({ rows: ['a'] }), table({ rows: [['a']] })],
    'a cell that is null': [table({ rows: [[null]] }), table({ rows: [['']] })],
    'a cell that is an array': [table({ rows: [[[]]] }), table({ rows: [[]] })],
    'no choices': [options({ choices: [] }), options()],
    'a choice that is a string': [options({ choices: ['a'] }), options()],
    'a choice that is blank': [options({ choices: [{ label: '\t' }] }), options()],
    'a range that is empty': [slider({ min: 1, max: 1 }), slider({ min: 1, max: 1.5 })],
    'a range that is reversed': [slider({ min: 2, max: 1 }), slider({ min: 1, max: 2 })],
    'a minimum above the default maximum': [slider({ min: 100 }), slider({ min: 99 })],
    'a maximum below the default minimum': [slider({ max: 0 }), slider({ max: 1 })],
    'a minimum that is too low': [slider({ min: -1.1e15 }), slider({ min: -1e15 })],
    'a maximum that is too high': [slider({ max: 1.1e15 }), slider({ max: 1e15 })],
    'a value that is too high': [slider({ value: 1.1e15 }), slider({ value: 1e15 })],
    'a step of 0': [slider({ step: 0 }), slider({ step: 0.001 })],
    'a negative step': [slider({ step: -1 }), slider({ step: 1 })],
    'a number as text': [slider({ value: '5' }), slider({ value: 5 })],
    'the name of a built-in member as type': [{ type: 'constructor', content: 'a' }, { type: 'text', content: 'a' }],
    'a type that is an array': [{ type: ['text'], content: 'a' }, { type: 'text', content: 'a' }],
};

for (const [what, [bad, good]] of Object.entries(REJECTED))
    test(`a block with ${what} is not accepted`, () => {
        assert.equal(isAccepted({ blocks: [list(), bad] }), false);
        assert.equal(isAccepted({ blocks: [list(), good] }), true);
    });

test('every type is among the tests', () => {
    const types = Object.values(REJECTED).map(([, { type }]) => type);
    assert.deepEqual(Object.keys(TYPES).filter((type) => !types.includes(type)), []);
});

test('headers that a table repeats as text don\'t make a reply longer and longer', () => {
    const wide = { type: 'table', columns: many(12, 'c'.repeat(200)), rows: many(200, many(12, 1)) };
    const { response, ui } = readReply(fence({ blocks: many(8, wide) }));
    assert.equal(ui.blocks.length, 8);
    assert.equal(response.length, LIMITS.response + 1);

    // Code is closed where it is cut off.
    const code = '```\n' + 'x\n'.repeat(LIMITS.response / 2) + '```';
    const cut = readReply(`${fence({ blocks: [{ type: 'list', items: ['a'] }] })}\n${code}`).response;
    assert.match(cut, /…\n```$/);
});
