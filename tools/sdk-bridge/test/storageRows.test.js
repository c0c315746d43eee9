// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');

const { Loaded, MAX_BYTES, Newest } = require('../lib/storage/conversation');
const { MAX_LINE, encodeLine, parseLines } = require('../lib/storage/lines');
const { idOfFile, mergeIndex, messageOf, nameOf, readIndexRow, readLine } = require('../lib/storage/rows');
const { test } = require('./support/timed');

const ID = 'ses_0123456789abcdef';
const OTHER = 'ses_fedcba9876543210';

const any = (value) => value ?? null;

test('a line holds its value, whatever the text', () => {
    const value = { role: 'user', content: 'a\n"\\\u0000\u2028\ud800 😀' };
    const line = encodeLine(value);
    assert.equal(line.indexOf(0x0a), line.length - 1);
    assert.deepEqual(parseLines(line, any), { rows: [value], damaged: 0 });
});

const LINES = [
    ['nothing', '', [], 0],
    ['whole lines', '1\n2\n', [1, 2], 0],
    ['no line break at the end', '1\n2', [1, 2], 0],
    ['empty lines', '\n\n1\n\n', [1], 0],
    ['line breaks of another system', '{"a":1}\r\n2\r\n', [{ a: 1 }, 2], 0],
    ['a torn end', '1\n{"a', [1], 1],
    ['a torn line in the middle', '1\n{"a\n2\n', [1, 2], 1],
    ['two lines in one', '1\n{"a":1}{"a":2}\n2\n', [1, 2], 1],
    ['NUL bytes', '1\n\0\0\0\0\n2\n', [1, 2], 1],
    ['NUL bytes before a line', '1\n\0\0{"a":1}\n2\n', [1, 2], 1],
    ['a byte order mark', '\ufeff1\n2\n', [2], 1],
    ['deep nesting', `${'['.repeat(500000)}\n2\n`, [2], 1],
    ['a huge line', `"${'x'.repeat(MAX_LINE)}"\n2\n`, [2], 1],
];

for (const [what, text, rows, damaged] of LINES)
    test(`lines: ${what}`, () => assert.deepEqual(parseLines(Buffer.from(text), any), { rows, damaged }));

test('lines: invalid UTF-8 costs a character', () => {
    const line = Buffer.concat([Buffer.from('{"a":"b'), Buffer.of(0xff, 0xc3), Buffer.from('"}\n')]);
    assert.deepEqual(parseLines(line, any), { rows: [{ a: 'b\ufffd\ufffd' }], damaged: 0 });
});

const ROW = { id: ID, name: 'Tea', createdAt: 1, usedAt: 2 };

test('rows of the index are checked', () => {
    assert.deepEqual(readIndexRow({ ...ROW, more: 1 }), ROW);
    assert.deepEqual(readIndexRow({ id: ID, deleted: true, name: 1 }), { id: ID, deleted: true });
    assert.equal(readIndexRow({ ...ROW, name: ` a\n${'b'.repeat(300)}` }).name.length, 201);
    assert.equal(readIndexRow({ ...ROW, name: ' ' }).name, 'New session');
    for (const bad of [undefined, null, 1, 'x', [], [ROW], {}, { deleted: true }, { ...ROW, id: '../../x' },
        { ...ROW, id: `${ID}0` }, { ...ROW, id: `${ID}\n` }, { ...ROW, id: ID.toUpperCase() }, { ...ROW, id: [ID] },
        { ...ROW, name: 1 }, { ...ROW, name: undefined }, { ...ROW, createdAt: '1' }, { ...ROW, createdAt: -1 },
        { ...ROW, usedAt: 1.5 }, { ...ROW, usedAt: 1e300 }, { id: ID, deleted: 'true' }])
        assert.equal(readIndexRow(bad), null, JSON.stringify(bad));
});

test('lines of a conversation are checked', () => {
    assert.deepEqual(readLine({ role: 'user', content: '', at: 'x' }, 9),
        { message: { role: 'user', content: '' }, bytes: 9 });
    assert.deepEqual(readLine({ format: 1, id: 'x', createdAt: 5 }, 9), { head: { createdAt: 5 } });
    assert.equal(readLine({ role: 'assistant', content: 'x'.repeat(200000) }, 9).message.content.length, 100001);
    const polluted = JSON.parse('{"role":"user","content":"x","__proto__":{"a":1}}');
    assert.deepEqual(Object.keys(readLine(polluted, 9).message), ['role', 'content']);
    for (const bad of [undefined, null, 1, 'x', [], {}, { role: 'system', content: 'x' }, { role: '__proto__', content: 'x' },
        { role: 'user' }, { role: 'user', content: 1 }, { role: 'user', content: ['x'] }, { content: 'x' },
        { format: 2, createdAt: 5 }, { format: 1, createdAt: '5' }])
        assert.equal(readLine(bad, 9), null, JSON.stringify(bad));
});

test('the last row of a session counts', () => {
    const other = { ...ROW, id: OTHER };
    const gone = { id: ID, deleted: true };
    for (const [rows, left, deleted] of [
        [[], [], []],
        [[ROW, other, { ...ROW, name: 'B' }], [other, { ...ROW, name: 'B' }], []],
        [[ROW, gone], [], [ID]],
        [[gone], [], [ID]],
        [[ROW, gone, ROW], [ROW], []],
    ]) {
        const merged = mergeIndex(rows);
        assert.deepEqual([...merged.rows.values()], left);
        assert.deepEqual([...merged.deleted], deleted);
    }
});

test('only files of the own form belong to a session', () => {
    assert.equal(idOfFile(`${ID}.jsonl`), ID);
    for (const name of ['', '.jsonl', ID, `${ID}.jsonl~`, `.${ID}.jsonl`, `x${ID}.jsonl`, `${ID}.jsonl\n`, 'ses_x.jsonl'])
        assert.equal(idOfFile(name), null, name);
});

test('a session is named after its prompt', () => {
    assert.equal(nameOf(' plain  and\nsimple '), 'plain and simple');
    assert.equal(nameOf('x'.repeat(41)), `${'x'.repeat(40)}…`);
    assert.equal(nameOf(' \n'), 'New session');
});

test('the newest messages are kept, within the limit', () => {
    const newest = new Newest();
    const { entries } = newest;
    for (const entry of ['a', 'b', 'c'])
        newest.add(entry, MAX_BYTES / 2);
    assert.deepEqual(entries, ['b', 'c']);
    assert.equal(newest.bytes, MAX_BYTES);
    newest.add('d', MAX_BYTES + 1);
    assert.deepEqual(entries, ['d']);
    newest.add('e', 1);
    assert.deepEqual(entries, ['e']);
});

test('the conversations in memory are bounded in number and size', () => {
    const unloadedOf = (count, bytes) => {
        const unloaded = [];
        const loaded = new Loaded();
        const all = Array.from({ length: count }, (_, n) => ({ bytes, unload: () => unloaded.push(n) }));
        all.forEach((conversation) => {
            loaded.touch(all[0]);
            loaded.touch(conversation);
        });
        return unloaded;
    };
    assert.deepEqual(unloadedOf(50, 1), []);
    assert.deepEqual(unloadedOf(52, 1), [1, 2]);
    assert.deepEqual(unloadedOf(5, MAX_BYTES), [1]);
    assert.deepEqual(unloadedOf(1, 10 * MAX_BYTES), []);
});

test('the longest message fits on a line', () => {
    const message = messageOf({ role: 'user', content: '\0'.repeat(200000), sent: '\u0001'.repeat(200000) });
    assert.equal(parseLines(encodeLine(message), readLine).damaged, 0);
});
