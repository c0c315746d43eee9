// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');

const { LIMITS, isBlock, isFollowUp } = require('../lib/model/documentSchema');
const { readReply } = require('../lib/model/document');
const { test } = require('./support/timed');

const SLOWEST_MS = 2000; // generous: the replies below take some ten milliseconds, backtracking on them takes minutes

const fence = (json) => `\`\`\`tovi-ui\n${json}\n\`\`\``;

const listOf = (json) => fence(`{"blocks":[{"type":"list","items":${json}}]}`);
const LIST = listOf('["a"]');

function readQuickly(reply) {
    const start = process.hrtime.bigint();
    const result = readReply(reply);
    assert.ok(Number(process.hrtime.bigint() - start) / 1e6 < SLOWEST_MS, `slow: ${reply.slice(0, 40)}`);
    return result;
}

const LONG = 2000000;
const repeat = (bit) => bit.repeat(LONG / bit.length);

const STAYS = {
    'deep arrays': fence('['.repeat(30000) + ']'.repeat(30000)),
    'deep arrays beyond the limit': fence('['.repeat(100000) + ']'.repeat(100000)),
    'arrays without an end': fence('['.repeat(60000)),
    'deep objects': fence('{"blocks":'.repeat(6000) + '1' + '}'.repeat(6000)),
    'deep items': listOf('['.repeat(30000) + ']'.repeat(30000)),
    'an infinite number': fence('{"type":"slider","max":1e999}'),
    'an infinite cell': fence('{"type":"table","columns":["a"],"rows":[[-1e999]]}'),
    'a huge string': listOf(`["${repeat('a')}"]`),
    'a huge reply without documents': repeat('word '),
    'endless backticks': repeat('`'),
    'many fences': repeat('```tovi-ui\n'),
    'many fences that are closed': repeat('```tovi-ui\n```\n'),
    'many words in a fence': `\`\`\`${repeat('tovi-ui ')}\n{}\n\`\`\``,
    'many spaces': `\`\`\`tovi-ui\n{}\n\`\`\`${repeat(' ')}a`,
    'many spaces before': `${repeat(' ')}a\n${fence('{}')}`,
    'backticks with gaps': repeat('``` '),
};

for (const [what, reply] of Object.entries(STAYS))
    test(`a reply with ${what} stays text`, () => {
        const { response, ui, followUps } = readQuickly(reply);
        assert.ok(response === reply); // not printed as a whole
        assert.equal(ui, undefined);
        assert.equal(followUps, undefined);
    });

const READ = {
    'a huge text before its document': [`${repeat('word ')}\n${LIST}`, ['a']],
    'a huge text after its document': [`${LIST}\n${repeat('\n')}.`, ['a']],
    'deep members that are not used': [
        fence(`{"type":"list","x":${'['.repeat(30000)}${']'.repeat(30000)},"items":["a"]}`), ['a'],
    ],
    'a member twice': [fence('{"type":"text","type":"list","items":["b"],"items":["a"]}'), ['a']],
    'members named __proto__': [
        fence('{"__proto__":{"polluted":1},"blocks":[{"type":"list","__proto__":{"polluted":1},' +
            '"constructor":{"prototype":{"polluted":1}},"items":["a"]}]}'),
        ['a'],
    ],
    'an item with __proto__': [listOf('[{"__proto__":{"polluted":1},"label":"a","toString":1}]'), [{ label: 'a' }]],
};

for (const [what, [reply, items]] of Object.entries(READ))
    test(`a reply with ${what} is read`, () => {
        const { ui } = readQuickly(reply);
        assert.deepEqual(ui.blocks.filter(({ type }) => type !== 'text'), [{ type: 'list', items }]);
        assert.equal({}.polluted, undefined);
    });

test('a type must be the own member of a block', () => {
    const reply = fence('{"blocks":[{"__proto__":{"type":"list","items":["a"]}}]}');
    assert.equal(readReply(reply).response, reply);
});

test('nothing in a widget ends or begins code in the response', () => {
    const { response } = readReply(listOf(JSON.stringify(['```js', 'a\n```', '~~~'])));
    assert.equal(response, '- ```js\n- a ```\n- ~~~');
});

// ---- Random replies

//! Pseudo-random numbers in [0, 1), the same ones for the same seed.
function randomFrom(seed) {
    let state = seed;
    return () => {
        state = (state + 0x6d2b79f5) | 0;
        let bits = Math.imul(state ^ (state >>> 15), 1 | state);
        bits = (bits + Math.imul(bits ^ (bits >>> 7), 61 | bits)) ^ bits;
        return ((bits ^ (bits >>> 14)) >>> 0) / 4294967296;
    };
}

const DOCUMENT = {
    blocks: [
        { type: 'text', content: 'Some **text**\n\n```js\nlet a;\n```' },
        { type: 'list', title: 'Fruit', items: ['Apples', { id: 'p', label: 'Pears' }] },
        { type: 'table', columns: ['Place', 'Used'], rows: [['Home', '18%'], ['Camera', 2]] },
        { type: 'options', prompt: 'Which?', choices: [{ id: 'a', label: 'One' }] },
        { type: 'slider', label: 'Size', min: -1, max: 1, value: 0.5, step: 0.1, action: 'size' },
        { type: 'code', language: 'c', content: 'int a;' },
        { type: 'callout', variant: 'tip', content: 'One\nTwo' },
    ],
    followUps: [{ title: 'More', subtitle: 'Go on', prompt: 'Tell me more' }],
};

const VALUES = [null, true, 0, -1, 1e300, '', ' ', 'a', '\u202e', '\ud800', '```', '```tovi-ui\n{}\n```',
    'a'.repeat(30000), [], [[]], {}, { type: 'list' }, { label: 'a' }, [1, 'a', {}]];
const KEYS = ['type', 'content', 'items', 'label', 'rows', '__proto__', 'toString', 'x'];
const SCRAPS = ['`', '```', '\n```\n', '\n```tovi-ui\n', '```json\n', '~~~\n', '\r', '\n', '"', '\\', '{', ']', ',',
    '\0', '1e999', '"__proto__":', '\u2028', '> '];

//! Adds a member, even one that is called "__proto__".
const own = (parent, key, value) =>
    Object.defineProperty(parent, key, { value, configurable: true, enumerable: true, writable: true });

//! Changes a random member of a JSON value.
function changeValue(root, random, pick) {
    const places = [];
    const visit = (value) => {
        for (const key of Object.keys(value)) {
            places.push([value, key]);
            if (typeof value[key] === 'object' && value[key] !== null)
                visit(value[key]);
        }
    };
    visit(root);
    if (!places.length)
        return;
    const [parent, key] = pick(places);
    const change = pick([
        () => { parent[key] = structuredClone(pick(VALUES)); },
        () => { parent[key] = structuredClone(pick(places)[0]); },
        () => { own(parent, pick(KEYS), parent[key]); },
        () => { delete parent[key]; },
        () => { parent[key] = [parent[key]]; },
    ]);
    change();
}

//! Changes a text at a random place.
function changeText(text, random, pick) {
    const at = Math.floor(random() * (text.length + 1));
    const end = at + Math.floor(random() * 20);
    return pick([
        () => text.slice(0, at) + pick(SCRAPS) + text.slice(at),
        () => text.slice(0, at) + text.slice(end),
        () => text.slice(0, at) + text.slice(at, end).repeat(3) + text.slice(end),
        () => text.slice(0, at),
    ])();
}

function randomReply(random) {
    const pick = (list) => list[Math.floor(random() * list.length)];
    const times = (most, action) => {
        for (let n = Math.floor(random() * (most + 1)); n > 0; --n)
            action();
    };
    const parts = [];
    const addDocument = () => {
        const document = structuredClone(DOCUMENT);
        document.blocks = document.blocks.filter(() => random() < 0.5);
        times(2, () => changeValue(document, random, pick));
        parts.push(pick(['', 'Prose\n', '```js\n']), fence(JSON.stringify(document)), pick(['', '\n', '\nMore']));
    };
    addDocument();
    times(3, addDocument);
    let text = parts.join('\n');
    if (random() < 0.5)
        times(4, () => { text = changeText(text, random, pick); });
    return text;
}

const isUnchanged = (value, isValid) => {
    const copy = structuredClone(value);
    return isValid(copy) && assert.deepEqual(copy, value) === undefined;
};

function checkReply(text, { response, ui, followUps }) {
    assert.equal(typeof response, 'string');
    assert.equal(response.trim() === '', text.trim() === '');
    if (ui) {
        assert.deepEqual(Object.keys(ui), ['blocks']);
        assert.ok(ui.blocks.some(({ type }) => type !== 'text'));
        assert.ok(ui.blocks.length <= LIMITS.documents * (LIMITS.blocks + 1) + 1);
    }
    for (const block of ui?.blocks ?? []) {
        if (block.type === 'text') {
            assert.deepEqual(Object.keys(block), ['type', 'content']);
            assert.notEqual(block.content.trim(), '');
        } else {
            assert.ok(['list', 'table', 'options', 'slider'].includes(block.type));
            assert.ok(isUnchanged(block, isBlock));
            assert.doesNotMatch(JSON.stringify(block), /[\u202a-\u202e\u2066-\u2069]|\\u00[01]|\\n|\\ud/);
        }
    }
    if (followUps) {
        assert.ok(followUps.length > 0 && followUps.length <= LIMITS.followUps);
        assert.ok(followUps.every((followUp) => isUnchanged(followUp, isFollowUp)));
    }
    assert.doesNotThrow(() => JSON.stringify({ response, ui, followUps }));
}

test('random replies give valid results', () => {
    const random = randomFrom(14);
    const counts = { changed: 0, ui: 0, followUps: 0 };
    const replies = 4000;
    for (let n = 0; n < replies; ++n) {
        const text = randomReply(random);
        try {
            const result = readReply(text);
            checkReply(text, result);
            counts.changed += result.response !== text;
            counts.ui += Boolean(result.ui);
            counts.followUps += Boolean(result.followUps);
        } catch (error) {
            error.message = `reply ${n}, ${JSON.stringify(text.slice(0, 2000))}: ${error.message}`;
            throw error;
        }
    }
    // Otherwise the loop would test only one of the ways.
    for (const [what, count] of Object.entries(counts))
        assert.ok(count > replies * 0.2 && count < replies * 0.9, `${what}: ${count}`);
});
