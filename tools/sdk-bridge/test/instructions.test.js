// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');

const { FOLLOW_UP, TYPES } = require('../lib/model/documentSchema');
const { instructions } = require('../lib/model/instructions');
const { readReply } = require('../lib/model/document');
const { test } = require('./support/timed');

const MAX_LENGTH = 2000; // about 500 tokens

const EXAMPLES = [...instructions().matchAll(/^```tovi-ui\n(.*)\n```$/gm)];

test('the instructions have examples', () => assert.equal(EXAMPLES.length, 2));

for (const [example, json] of EXAMPLES)
    test(`the example ${json} is valid`, () => {
        const { ui, followUps } = readReply(example);
        const { blocks, followUps: suggestions } = JSON.parse(json);
        assert.deepEqual(ui?.blocks, blocks);
        assert.deepEqual(followUps, suggestions);
    });

test('the instructions list the widgets with their members', () => {
    const rows = [...instructions().matchAll(/^- (\w+): (.*)$/gm)].map(([, type, members]) => [type, members]);
    const widgets = Object.entries(TYPES).filter(([, { isWidget }]) => isWidget).map(([type]) => type);
    assert.deepEqual(rows.map(([type]) => type), widgets);
    for (const [type, members] of rows) {
        const { properties, required } = TYPES[type].schema;
        assert.match(members, /^\w/);
        for (const [, name, optional] of members.matchAll(/(\w+)(\??) \(/g)) {
            assert.ok(name in properties, `${type}: ${name}`);
            assert.equal(optional === '', required.includes(name), `${type}: ${name}`);
        }
        assert.ok(required.every((name) => members.includes(`${name} (`)), type);
    }
    assert.ok(FOLLOW_UP.required.every((name) => instructions().includes(`${name} (string)`)));
});

test('the instructions are short', () => {
    assert.ok(instructions({ inputMode: 'voice', now: new Date() }).length <= MAX_LENGTH);
});

test('the time is in the instructions only if it is given', () => {
    const now = new Date(2026, 10, 2, 9, 5);
    assert.equal(instructions({ now }), `${instructions()}\n\nToday is Mon Nov 02 2026.`);
    assert.doesNotMatch(instructions(), /It is /);
});

test('a spoken prompt gets a short reply', () => {
    const spoken = instructions({ inputMode: 'voice' });
    assert.ok(spoken.startsWith(`${instructions({ inputMode: 'text' })}\n\n`));
    assert.match(spoken, /will hear your reply/);
    assert.equal(instructions({ inputMode: 'text' }), instructions());
    assert.equal(instructions({}), instructions());
});

test('no variable part comes before a fixed one', () => {
    const now = new Date(2026, 10, 2, 9, 5);
    assert.ok(instructions({ now, inputMode: 'voice' }).startsWith(instructions()));
});
