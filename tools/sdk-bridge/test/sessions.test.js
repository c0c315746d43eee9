// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');

const { startBridge } = require('./support/child');
const { test } = require('./support/timed');

const MINUTE = 60000;

const ids = ({ sessions }) => sessions.map(({ id }) => id);

test('the first prompt starts a session, the next ones go on with it', async (t) => {
    const client = await (await startBridge(t)).connect();
    const before = Date.now();
    const { sessionId } = await client.chat('plain  and\nsimple');
    assert.match(sessionId, /^ses_[0-9a-f]{16}$/);
    assert.equal((await client.chat('light', { sessionId })).sessionId, sessionId);

    assert.deepEqual((await client.result('loadMessages', { sessionId })).messages, [
        { role: 'user', content: 'plain  and\nsimple' },
        { role: 'assistant', content: 'This is a plain answer.' },
        { role: 'user', content: 'light' },
        { role: 'assistant', content: 'Light theme applied.' },
    ]);
    const { sessions: [row, ...others] } = await client.result('listSessions');
    assert.deepEqual(others, []);
    assert.deepEqual({ ...row, createdAt: 0 },
        { id: sessionId, name: 'plain and simple', title: 'plain and simple', createdAt: 0 });
    assert.ok(row.createdAt >= before && row.createdAt <= Date.now());
});

test('an unknown id starts a new session, as does an empty one', async (t) => {
    const client = await (await startBridge(t)).connect();
    const found = new Set();
    for (const asked of ['no-such-session', '', '__proto__', 'ses_0123456789abcdef']) {
        const { sessionId } = await client.chat('plain', { sessionId: asked });
        assert.notEqual(sessionId, asked);
        found.add(sessionId);
    }
    assert.deepEqual(ids(await client.result('listSessions')), [...found].reverse());
});

test('sessions are shared by all clients and outlive them', async (t) => {
    const bridge = await startBridge(t);
    const client = await bridge.connect();
    const { sessionId } = await client.chat('plain');
    client.socket.close();
    await client.closed;

    const other = await bridge.connect(bridge.otherHost);
    assert.deepEqual(ids(await other.result('listSessions')), [sessionId]);
    assert.equal((await other.chat('plain', { sessionId })).sessionId, sessionId);
    assert.equal((await other.result('loadMessages', { sessionId })).messages.length, 4);
});

test('a created session is empty, and named after its first prompt', async (t) => {
    const client = await (await startBridge(t)).connect();
    const { sessionId } = await client.result('createSession');
    assert.deepEqual((await client.result('loadMessages', { sessionId })).messages, []);
    assert.equal((await client.result('listSessions')).sessions[0].name, 'New session');
    await client.chat(`plain ${'long '.repeat(30)}`, { sessionId });
    assert.equal((await client.result('listSessions')).sessions[0].name, `${`plain ${'long '.repeat(30)}`.slice(0, 40)}…`);
});

test('a given name stays', async (t) => {
    const client = await (await startBridge(t)).connect();
    const { sessionId } = await client.result('createSession');
    assert.deepEqual(await client.result('renameSession', { sessionId, newName: ' Garden  work ' }),
        { sessionId, newName: 'Garden work' });
    await client.chat('plain', { sessionId });
    assert.equal((await client.result('listSessions')).sessions[0].name, 'Garden work');
    for (const newName of ['', ' \n '])
        assert.equal((await client.request('renameSession', { sessionId, newName })).error.code, 'INVALID_PARAMS');
});

test('the session that was used last stands first', async (t) => {
    const client = await (await startBridge(t)).connect();
    const [a, b, c] = [await client.chat('plain a'), await client.chat('plain b'), await client.chat('plain c')]
        .map(({ sessionId }) => sessionId);
    assert.deepEqual(ids(await client.result('listSessions')), [c, b, a]);
    await client.chat('plain', { sessionId: a });
    assert.deepEqual(ids(await client.result('listSessions')), [a, c, b]);
    assert.deepEqual(await client.result('switchSession', { sessionId: b }), { sessionId: b });
    assert.deepEqual(ids(await client.result('listSessions')), [b, a, c]);
});

test('a deleted session is gone for good', async (t) => {
    const client = await (await startBridge(t)).connect();
    const { sessionId } = await client.chat('plain');
    assert.deepEqual(await client.result('deleteSession', { sessionId }), { sessionId });
    assert.deepEqual(await client.result('listSessions'), { sessions: [] });
    assert.notEqual((await client.chat('plain', { sessionId })).sessionId, sessionId);
    for (const [method, more] of [['deleteSession', {}], ['switchSession', {}], ['loadMessages', {}],
        ['renameSession', { newName: 'x' }]]) {
        const { error } = await client.request(method, { sessionId, ...more });
        assert.equal(error.code, 'SESSION_NOT_FOUND');
        assert.equal(error.message, `There is no session with the id "${sessionId}"`);
    }
});

test('a session that is deleted while it works doesn\'t come back', async (t) => {
    const client = await (await startBridge(t, { LOOMRA_DEMO_DELAY_MS: '100' })).connect();
    const { sessionId } = await client.result('createSession');
    const slow = client.post('chat', { message: 'slow', sessionId });
    await client.result('deleteSession', { sessionId });
    assert.ok((await client.reply(slow)).payload.response);
    assert.deepEqual(await client.result('listSessions'), { sessions: [] });
});

test('a prompt that failed starts no session, and is kept in one that was there', async (t) => {
    const client = await (await startBridge(t)).connect();
    assert.ok((await client.request('chat', { message: 'error' })).error);
    assert.deepEqual(await client.result('listSessions'), { sessions: [] });

    const { sessionId } = await client.result('createSession');
    await client.request('chat', { message: 'error', sessionId });
    assert.deepEqual((await client.result('loadMessages', { sessionId })).messages, [{ role: 'user', content: 'error' }]);
});

test('attached files choose no scenario and stay out of the conversation', async (t) => {
    const client = await (await startBridge(t)).connect();
    const file = '--- File: help.txt (path: /home/me/help.txt) ---\n```\nslow\nUser question: error\n```\n\n';
    const { response, sessionId } = await client.chat(`${file}User question: plain`);
    assert.equal(response, 'This is a plain answer.');
    assert.equal((await client.result('loadMessages', { sessionId })).messages[0].content, 'plain');
});

test('sessions of the past weeks are there if wanted', async (t) => {
    const before = Date.now();
    const client = await (await startBridge(t, { LOOMRA_DEMO_SESSIONS: '40' })).connect();
    const { sessions } = await client.result('listSessions');
    assert.equal(sessions.length, 40);
    assert.equal(new Set(sessions.map(({ name }) => name)).size, 40);
    assert.ok(sessions.every(({ name, createdAt }, n) => name && createdAt < (sessions[n - 1]?.createdAt ?? Date.now())));
    assert.ok(sessions.at(-1).createdAt > before - 60 * 24 * 60 * MINUTE);
    assert.equal((await client.result('loadMessages', { sessionId: sessions[7].id })).messages.length, 2);
    const { sessionId } = await client.chat('plain');
    assert.equal(ids(await client.result('listSessions'))[0], sessionId);
});
