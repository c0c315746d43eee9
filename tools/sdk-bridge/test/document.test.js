// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');

const { readReply } = require('../lib/model/document');
const { test } = require('./support/timed');

const fence = (document, word = 'tovi-ui') =>
    `\`\`\`${word}\n${typeof document === 'string' ? document : JSON.stringify(document)}\n\`\`\``;

const plain = (response) => ({ response, ui: undefined, followUps: undefined });
const withBlocks = (response, ...blocks) => ({ response, ui: { blocks }, followUps: undefined });

const text = (content) => ({ type: 'text', content });

const LIST = { type: 'list', title: 'Fruit', items: ['Apples', { id: 'p', label: 'Pears' }] };
const LIST_TEXT = '**Fruit**\n\n- Apples\n- Pears';

const UNCHANGED = {
    'no fence': 'Hello.\n\n- *one*\n- two \n',
    'nothing': '',
    'whitespace': ' \n',
    'a fence of another language': fence({ blocks: [LIST] }, 'json'),
    'a fence without a language': fence({ blocks: [LIST] }, ''),
    'a longer word': fence({ blocks: [LIST] }, 'tovi-uix'),
    'a fence of tildes': fence({ blocks: [LIST] }).replaceAll('```', '~~~'),
    'a fence in a longer fence': `\`\`\`\`markdown\n${fence({ blocks: [LIST] })}\n\`\`\`\``,
    'a fence in a longer fence with a shorter one': `\`\`\`\`\n\`\`\`\n${fence({ blocks: [LIST] })}\n\`\`\`\``,
    'a fence in code without an end': `\`\`\`js\nlet a;\n\`\`\`js\n${JSON.stringify({ blocks: [LIST] })}`,
    'a fence in a quote': `> ${fence({ blocks: [LIST] }).replaceAll('\n', '\n> ')}`,
    'a fence within a line': `See ${fence({ blocks: [LIST] })}`,
    'a fence without an end': `Fruit:\n\n\`\`\`tovi-ui\n{"blocks":[{"type":"list","items":["Apples"]}]}`,
    'a fence that ends in its last line': '```tovi-ui\n{"type":"text","content":"a"}```',
    'a document that is cut off': fence('{"blocks":[{"type":"li'),
    'no JSON': fence('blocks: []'),
    'two documents': fence('{"blocks":[]}{"blocks":[]}'),
    'an empty fence': fence(''),
    'a string': fence('"text"'),
    'null': fence('null'),
    'an object that is no document': fence({ title: 'Fruit', items: ['Apples'] }),
    'blocks that are no array': fence({ blocks: LIST }),
    'follow-ups that are no array': fence({ blocks: [LIST], followUps: 'more' }),
    'a block that is no object': fence({ blocks: [LIST, 'more'] }),
    'an array as a block': fence([[LIST]]),
    'a block of an unknown type': fence({ blocks: [LIST, { type: 'hologram', content: 'a' }] }),
    'an object without members': fence({}),
    'only empty documents': `${fence([])}\n${fence({ blocks: [], followUps: [] })}`,
};

for (const [what, reply] of Object.entries(UNCHANGED))
    test(`a reply with ${what} stays as it is`, () => assert.deepEqual(readReply(reply), plain(reply)));

const DOCUMENTS = {
    'a document': { blocks: [LIST] },
    'a single block': LIST,
    'an array of blocks': [LIST],
    'a document with a type': { type: 'document', blocks: [LIST] },
    'a document with other members': { version: 2, blocks: [{ ...LIST, color: 'red', icon: { x: [] } }] },
};

for (const [what, document] of Object.entries(DOCUMENTS))
    test(`${what} becomes widgets`, () => assert.deepEqual(readReply(fence(document)), withBlocks(LIST_TEXT, LIST)));

const SPELLINGS = {
    'indented': fence({ blocks: [LIST] }).replace(/^/gm, '   '),
    'with CRLF': fence(JSON.stringify({ blocks: [LIST] }, null, 2)).replaceAll('\n', '\r\n'),
    'with a longer fence': fence({ blocks: [LIST] }).replaceAll('```', '`````'),
    'with another word after the first': fence({ blocks: [LIST] }, ' tovi-ui json'),
};

for (const [what, reply] of Object.entries(SPELLINGS))
    test(`a document ${what} is found`, () => assert.deepEqual(readReply(reply), withBlocks(LIST_TEXT, LIST)));

test('prose is shown in its place', () => {
    const other = { type: 'list', items: ['Nuts'] };
    const reply = `Look:\n\n${fence(LIST)}\nAnd\n\n${fence({ blocks: [other] })}\n\nThat *was* all.\n`;
    assert.deepEqual(readReply(reply), withBlocks(`Look:\n\n${LIST_TEXT}\n\nAnd\n\n- Nuts\n\nThat *was* all.`,
        text('Look:'), LIST, text('And'), other, text('That *was* all.')));
});

test('a document that is not valid stays in the prose beside one that is', () => {
    const bad = fence({ type: 'list' });
    assert.deepEqual(readReply(`${bad}\n${fence(LIST)}`), withBlocks(`${bad}\n\n${LIST_TEXT}`, text(bad), LIST));
});

test('code before a document is no document', () => {
    const code = fence('{"a":1}', 'json');
    assert.deepEqual(readReply(`${code}\n${fence(LIST)}`), withBlocks(`${code}\n\n${LIST_TEXT}`, text(code), LIST));
});

test('inline code with three backticks begins no block of code', () => {
    const line = '```js``` is a word.';
    assert.deepEqual(readReply(`${line}\n${fence(LIST)}`).ui.blocks[1], LIST);
});

test('an empty document leaves only the prose', () => {
    assert.deepEqual(readReply(`Hello.\n${fence({ blocks: [], followUps: [] })}`), plain('Hello.'));
});

// [block, block in the window or null for text, Markdown]
const BLOCKS = {
    'text': [text('Some *text*\nin lines'), null, 'Some *text*\nin lines'],
    'a block without type': [{ content: 'Text' }, null, 'Text'],
    'text with unfinished code': [text('```js\nlet a;'), null, '```js\nlet a;\n```'],
    'a list without title': [{ type: 'list', items: [{ label: 'a', id: 1 }] }, undefined, '- a'],
    'a table': [
        { type: 'table', columns: ['Place', 'Used', 'GB'], rows: [['Home', '18%', 0], ['Camera'], ['', '', 2.5], []] },
        undefined,
        '- Place: Home, Used: 18%, GB: 0\n- Place: Camera\n- GB: 2.5',
    ],
    'a table without rows': [
        { type: 'table', columns: ['Place', 'Used'] },
        { type: 'table', columns: ['Place', 'Used'], rows: [] },
        'Place, Used',
    ],
    'a table whose rows have more cells than it has headers': [
        { type: 'table', columns: ['A'], rows: [[1], [2, 3, 4]] },
        { type: 'table', columns: ['A', '', ''], rows: [[1], [2, 3, 4]] },
        '- A: 1\n- A: 2, 3, 4',
    ],
    'options': [
        { type: 'options', prompt: 'Which?', choices: [{ label: 'One' }, { id: 'b', label: 'Two' }] },
        undefined,
        'Which?\n\n- One\n- Two',
    ],
    'a slider': [{ type: 'slider', label: 'Size', min: -1, max: 1, value: 0.5, step: 0.1 }, undefined,
        'Size: 0.5 (-1 – 1)'],
    'a slider without anything': [{ type: 'slider' }, { type: 'slider', min: 0, max: 100, value: 0, step: 1 },
        'Value: 0 (0 – 100)'],
    'a slider beyond its range': [{ type: 'slider', min: 5, max: 10, value: 11, step: 1 },
        { type: 'slider', min: 5, max: 10, value: 10, step: 1 }, 'Value: 10 (5 – 10)'],
    'code': [{ type: 'code', language: 'c++', content: 'int a;\n\nint b;\n' }, null, '```c++\nint a;\n\nint b;\n```'],
    'code of a language with a strange name': [{ type: 'code', language: 'a `b`', content: 'x' }, null, '```\nx\n```'],
    'code with fences': [{ type: 'code', content: 'a\n```js\nb\n  ````\n`` `' }, null,
        '```\na\n~~~js\nb\n  ~~~~\n`` `\n```'],
    'a callout': [{ type: 'callout', variant: 'tip', content: 'One\n\n```\nTwo' }, null, '> One\n>\n> ```\n> Two'],
};

for (const [what, [block, shown, markdown]] of Object.entries(BLOCKS))
    test(`${what} has its widget or is text`, () => {
        const expected = shown === null ? plain(markdown) : withBlocks(markdown, shown ?? block);
        assert.deepEqual(readReply(fence({ blocks: [block] })), expected);
    });

test('code and callouts share a bubble with the text around them', () => {
    const blocks = [text('One'), { type: 'code', content: 'two' }, LIST, { type: 'callout', content: 'Three' }];
    assert.deepEqual(readReply(`${fence({ blocks })}\nFour`), withBlocks(
        `One\n\n\`\`\`\ntwo\n\`\`\`\n\n${LIST_TEXT}\n\n> Three\n\nFour`,
        text('One\n\n```\ntwo\n```'), LIST, text('> Three\n\nFour')));
});

const FOLLOW_UPS = [
    ['all members', { title: 'More', subtitle: 'Go on', prompt: 'Tell me more' }],
    ['only a prompt', { prompt: 'More' }],
    ['an icon and colours', { prompt: 'More', icon: 'x', iconColor: 'red', iconBg: '1,1,1' }, { prompt: 'More' }],
    ['several lines', { title: ' a\tb ', prompt: 'a\n\nb\u2028c\r\n' }, { title: 'a b', prompt: 'a b c' }],
    ['no prompt', { title: 'More', label: 'More' }, null],
    ['a blank prompt', { prompt: ' \n' }, null],
    ['a prompt of invisible characters', { prompt: '\u0000\u202e' }, null],
    ['a prompt that is no string', { prompt: ['More'] }, null],
    ['a title that is no string', { title: null, prompt: 'More' }, null],
];

for (const [what, followUp, kept = followUp] of FOLLOW_UPS)
    test(`a follow-up with ${what} is ${kept ? 'kept' : 'left out'}`, () => {
        const expected = { response: 'Yes.', ui: undefined, followUps: kept ? [kept] : undefined };
        assert.deepEqual(readReply(`Yes.\n${fence({ followUps: [followUp] })}`), expected);
    });

test('the follow-ups of all documents count', () => {
    const [a, b, c, d, e] = ['a', 'b', 'c', 'd', 'e'].map((prompt) => ({ prompt }));
    const { followUps } = readReply([[a, 1, b], [c], [d, e]].map((list) => fence({ followUps: list })).join('\n'));
    assert.deepEqual(followUps, [a, b, c, d]);
});

test('a reply of follow-ups only has a text', () => {
    const followUps = [{ title: 'Yes', prompt: 'Do it' }, { prompt: 'Don’t' }];
    assert.deepEqual(readReply(fence({ followUps })), { response: '- Yes\n- Don’t', ui: undefined, followUps });
});

test('labels are one line without invisible characters', () => {
    const bad = '\u202e\u0007 a\n\n\tb\u2066\u2028c\u009b\ud800 ';
    const choices = [{ id: bad, label: bad }];
    const good = 'a b c\ufffd';
    const shown = { type: 'options', prompt: good, choices: [{ id: good, label: good }] };
    const reply = fence({ type: 'options', prompt: bad, choices });
    assert.deepEqual(readReply(reply), withBlocks(`${good}\n\n- ${good}`, shown));
});

test('content keeps its lines, and words their joiners and marks', () => {
    const content = 'a\r\n\tb\rc\u0000\u202ed 👩\u200d💻 \u05d0\u200f!';
    assert.equal(readReply(fence(text(content))).response, 'a\n\tb\ncd 👩\u200d💻 \u05d0\u200f!');
});
