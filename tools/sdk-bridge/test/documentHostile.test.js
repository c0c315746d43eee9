// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');

const { LIMITS, isBlock, isFollowUp } = require('../lib/model/documentSchema');
const { readReply } = require('../lib/model/document');
const { changeValue, changedText, forRandom, pickFrom, times } = require('./support/random');
const { processorMs } = require('./support/processorTime');
const { test } = require('./support/timed');

const SLOWEST_MS = 2000; // generous: the replies below take some ten milliseconds, backtracking on them takes minutes

const fence = (json) => `\`\`\`tovi-ui\n${json}\n\`\`\``;

const listOf = (json) => fence(`{"blocks":[{"type":"list","items":${json}}]}`);
const LIST = listOf('["a"]');

function readQuickly(reply) {
    let result;
    const ms = processorMs(() => {
        result = readReply(reply);
    });
    assert.ok(ms < SLOWEST_MS, `slow: ${reply.slice(0, 40)}`);
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

function randomReply(random) {
    const pick = pickFrom(random);
    const parts = [];
    const addDocument = () => {
        const document = structuredClone(DOCUMENT);
        document.blocks = document.blocks.filter(() => random() < 0.5);
        times(random, 2, () => changeValue(document, random));
        parts.push(pick(['', 'Prose\n', '```js\n']), fence(JSON.stringify(document)), pick(['', '\n', '\nMore']));
    };
    addDocument();
    times(random, 3, addDocument);
    const text = parts.join('\n');
    return random() < 0.5 ? changedText(text, random, 4) : text;
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
    const counts = { changed: 0, ui: 0, followUps: 0 };
    const count = 4000;
    forRandom({ seed: 14, count }, randomReply, (text) => {
        const result = readReply(text);
        checkReply(text, result);
        counts.changed += result.response !== text;
        counts.ui += Boolean(result.ui);
        counts.followUps += Boolean(result.followUps);
    });
    // Otherwise the loop would test only one of the ways.
    for (const [what, found] of Object.entries(counts))
        assert.ok(found > count * 0.2 && found < count * 0.9, `${what}: ${found}`);
});
