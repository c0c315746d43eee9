// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');
const net = require('net');
const timers = require('timers/promises');
const { EventEmitter, once } = require('events');

const rephrase = require('../lib/rephrase');
const { Connection } = require('../lib/connection');
const { House } = require('../lib/house');
const { Pace } = require('../lib/pace');
const { Turns } = require('../lib/turns');
const { checkParams } = require('../lib/params');
const { cut } = require('../lib/text');
const { openListeners } = require('../lib/listeners');
const { quote } = require('../lib/log');
const { readSettings } = require('../lib/settings');
const { withoutIPv6 } = require('./support/child');
const { test } = require('./support/timed');

test('cutting leaves no half of a character', () => {
    assert.equal(cut('abc', 3), 'abc');
    assert.equal(cut('abcd', 3), 'abc…');
    assert.equal(cut('a😀b', 2), 'a…');
    assert.equal(cut('a😀b', 3), 'a😀…');
});

test('untrusted text fits on one log line', () => {
    assert.equal(quote('a\nb\u001b[31m\u009b\u2028'), '"a\\nb\\u001b[31m??"');
    assert.equal(quote('x'.repeat(1000)).length, 203);
});

test('params are checked by their rules', () => {
    const rules = { name: 'string', count: 'integer?', more: 'object?' };
    checkParams(rules, { name: '', unknown: 1 });
    checkParams(rules, { name: 'a', count: 0, more: {} });
    for (const bad of [{}, { name: null }, { name: 'a', count: 1.5 }, { name: 'a', count: '1' }, { name: 'a', more: [] },
        { name: 'a', more: null }])
        assert.throws(() => checkParams(rules, bad), { code: 'INVALID_PARAMS' }, JSON.stringify(bad));
});

const REQUEST = 'You are a text-only assistant. Do NOT execute any actions or tools. Rephrase the following ' +
    'voice-transcribed command into a clear, concise instruction. Return ONLY the rephrased sentence, nothing else. ' +
    'If it is already clear, return it unchanged.\n\n"';

test('a rephrase is distinguished from a chat by its agent and its frame', () => {
    const message = `${REQUEST}say "hi"\nthere"`;
    assert.equal(rephrase.transcriptOf({ message, agent: 'chat' }), 'say "hi"\nthere');
    assert.equal(rephrase.transcriptOf({ message, agent: 'auto' }), null);
    assert.equal(rephrase.transcriptOf({ message: ` ${message}`, agent: 'chat' }), null);
    assert.equal(rephrase.transcriptOf({ message: 'hello', agent: 'chat' }), null);
});

const SENTENCES = [
    ['um open the the file manager uh please', 'Open the file manager please.'],
    ['  Open   it. ', 'Open it.'],
    ['is it, er, late?', 'Is it, late?'],
    ['umbrella hmm', 'Umbrella.'],
    ['öffne das fenster', 'Öffne das fenster.'],
    ['say “yes.”', 'Say “yes.”'],
    ['𐐨𐐨 go', '𐐀𐐨 go.'],
    ['um', 'um'],
    ['', ''],
];

for (const [heard, clean] of SENTENCES)
    test(`the transcript "${heard}" is cleaned up`, () => assert.equal(rephrase.cleanUp(heard), clean));

// Backtracking on such a text would exceed the timeout or the stack.
test('cleaning up comes to its end, whatever was said', () => {
    const many = (bit) => bit.repeat(200000);
    for (const [said, clean] of [
        [many('u'), `U${many('u').slice(1)}.`],
        [many('um '), many('um ').trim()],
        [many('a a '), 'A.'],
        [many('.'), many('.')],
        [many('."'), many('."').slice(1)],
        [many(' ,'), many(', ').trim()],
        [many('uh,'), many('uh,')],
        [many('I mean'), 'I meanI mean.'],
        [many('\n'), ''],
    ])
        assert.ok(rephrase.cleanUp(said) === clean, said.slice(0, 6)); // not printed as a whole
});

const closeAll = (servers) => Promise.all(servers.map((server) => new Promise((resolve) => server.close(resolve))));

test('a missing optional address is reported, any other one fails', async () => {
    const nowhere = { host: '2001:db8::1', shown: 'nowhere' };
    const here = { host: '127.0.0.1', shown: 'here' };
    const opened = await openListeners(0, [here, { ...nowhere, optional: true }]);
    assert.deepEqual(opened.shown, ['here']);
    assert.deepEqual(opened.missing, ['nowhere']);
    await closeAll(opened.servers);
    await assert.rejects(openListeners(0, [here, nowhere]), /EADDRNOTAVAIL|EAFNOSUPPORT|ENETUNREACH/);
});

test('a port that is taken at the second address is taken', { skip: withoutIPv6 }, async (t) => {
    const other = net.createServer().listen(0, '::1');
    t.after(() => other.close());
    await once(other, 'listening');
    const { port } = other.address();
    await assert.rejects(openListeners(port), { code: 'EADDRINUSE' });

    // The first address was released.
    const again = net.createServer().listen(port, '127.0.0.1');
    await once(again, 'listening');
    await closeAll([again]);
});

test('a client that has left gets no more notices', () => {
    const house = new House(readSettings({ LOOMRA_MODEL_URL: 'none' }));
    const open = () => Object.assign(new EventEmitter(), { OPEN: 1, readyState: 1, bufferedAmount: 0, sent: [],
        send(text) { this.sent.push(JSON.parse(text)); } });
    const [stays, leaves] = [open(), open()];
    [stays, leaves].forEach((socket) => new Connection(socket, house));
    leaves.emit('close');
    assert.equal(house.clients.size, 1);
    house.broadcast('plan.phase', { phase: 'executing' });
    assert.deepEqual(stays.sent.at(-1), { type: 'event', payload: { event: 'plan.phase', phase: 'executing' } });
    assert.equal(leaves.sent.length, 1);
});

test('pauses follow the beat', async (t) => {
    const wait = t.mock.method(timers, 'setTimeout', async () => {});
    await new Turns({}, 50).run({ session: { messages: [] } }, (turn) => turn.pause(6));
    await new Pace(40).pass(2);
    assert.deepEqual(wait.mock.calls.map(({ arguments: [ms] }) => ms), [300, 80]);
});

test('beats pass, unless a signal or the end cuts them short', async () => {
    const pace = new Pace(60000);
    const stop = new AbortController();
    assert.equal(await pace.pass(0, stop.signal), true);
    const stopped = pace.pass(1, stop.signal);
    stop.abort();
    assert.equal(await stopped, false);
    assert.equal(await pace.pass(1, stop.signal), false);
    const ended = pace.pass(1);
    pace.close();
    assert.equal(await ended, false);
    assert.equal(await pace.pass(1), false);
});
