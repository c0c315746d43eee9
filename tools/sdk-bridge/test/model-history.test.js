// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');

const { estimate, messagesFor, roomForReply } = require('../lib/model/history');
const { test } = require('./support/timed');

const user = (content) => ({ role: 'user', content });
const assistant = (content) => ({ role: 'assistant', content });
const facts = { instructions: 'Be brief.', prompt: 'And now?', contextTokens: 4096, history: [] };
const contents = (messages) => messages.map(({ content }) => content);

test('a prompt comes after the instructions and the conversation', () => {
    const history = [user('Hello'), assistant('Good day.')];
    assert.deepEqual(messagesFor({ ...facts, history }),
        [{ role: 'system', content: 'Be brief.' }, user('Hello'), assistant('Good day.'), user('And now?')]);
    assert.deepEqual(messagesFor({ ...facts, instructions: '' }), [user('And now?')]);
    assert.deepEqual(history, [user('Hello'), assistant('Good day.')]);
});

test('roles alternate, also after a reply that never came', () => {
    const history = [user('One'), user('Two'), assistant('Three'), assistant('Four'), user('Five')];
    assert.deepEqual(messagesFor({ ...facts, history }).slice(1),
        [user('One\n\nTwo'), assistant('Three\n\nFour'), user('Five\n\nAnd now?')]);
});

test('the latest messages that fit are kept, beginning with the user', () => {
    const long = 'x'.repeat(297); // 107 tokens
    assert.equal(estimate(long), 107);
    const history = Array.from({ length: 100 }, (_, n) => (n % 2 ? assistant(`${n}${long}`) : user(`${n}${long}`)));
    const free = 4096 - 1024 - estimate('Be brief.') - estimate('And now?');
    const kept = messagesFor({ ...facts, history }).slice(1, -1);
    assert.equal(kept[0].role, 'user');
    assert.deepEqual(contents(kept), contents(history.slice(-kept.length)));
    const used = kept.reduce((sum, { content }) => sum + estimate(content), 0);
    assert.ok(used <= free && used + 2 * 108 > free - 108, `${used} of ${free}`);

    const half = messagesFor({ ...facts, history, share: 0.5 }).length;
    assert.ok(half < kept.length && half > kept.length / 3, `${half} of ${kept.length}`);
    assert.equal(messagesFor({ ...facts, history, share: 0 }).length, 2);
});

test('a message fits exactly or not at all', () => {
    const content = 'x'.repeat(300);
    const needed = estimate('And now?') + estimate(content);
    let enough = 128;
    while (enough - roomForReply(enough) < needed + estimate(''))
        ++enough;
    const kept = (contextTokens) =>
        messagesFor({ ...facts, instructions: '', history: [user(content)], contextTokens }).at(-1).content.includes('xxx');
    assert.equal(kept(enough), true);
    assert.equal(kept(enough - 1), false);
});

test('a conversation does not begin with a reply, even if the prompt before it does not fit', () => {
    const history = [user('x'.repeat(30000)), assistant('Good day.'), user('Hello'), assistant('Yes?')];
    assert.deepEqual(contents(messagesFor({ ...facts, history })), ['Be brief.', 'Hello', 'Yes?', 'And now?']);
    assert.deepEqual(contents(messagesFor({ ...facts, history: [user('x'.repeat(30000)), assistant('Good day.')] })),
        ['Be brief.', 'And now?']);
});

test('the prompt and the instructions are never cut', () => {
    const prompt = 'x'.repeat(100000);
    assert.deepEqual(contents(messagesFor({ ...facts, prompt, history: [user('Hello'), assistant('Good day.')] })),
        ['Be brief.', prompt]);
});

test('room for a reply is kept, but not more than replies take', () => {
    assert.deepEqual([256, 1024, 4096, 8192, 131072].map(roomForReply), [128, 256, 1024, 2048, 2048]);
});

test('text beyond ASCII counts by its bytes', () => {
    assert.deepEqual(['', 'abc', 'abcd', 'ü', '你好', '👍'].map(estimate), [8, 9, 10, 9, 10, 10]);
});
