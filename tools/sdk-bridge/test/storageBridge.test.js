// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Conversations of a real bridge, which is killed and started again.

const assert = require('assert/strict');
const fs = require('fs');
const path = require('path');
const { execFileSync, spawnSync } = require('child_process');

const { runBridge, startBridge, temporaryFolder } = require('./support/child');
const { mode } = require('./support/stored');
const { test } = require('./support/timed');

const PROMPTS = 190; // fewer than may be open at once
const LONG_BEAT = { LOOMRA_DEMO_DELAY_MS: '60000' };

const withoutPrlimit = spawnSync('prlimit', ['--version']).error ? 'prlimit is missing' : false;

//! Makes writing beyond a file size fail, as on a full disk.
const limitFiles = ({ process: { pid } }, bytes) => execFileSync('prlimit', ['--pid', pid, `--fsize=${bytes}:`]);

const messagesOf = async (client, sessionId) => (await client.result('loadMessages', { sessionId })).messages;
const rowsOf = async (client) => (await client.result('listSessions')).sessions;

test('sessions are there after the bridge ended, and go on', async (t) => {
    const env = { XDG_STATE_HOME: temporaryFolder(t) };
    const first = await startBridge(t, env);
    let client = await first.connect();
    const { sessionId } = await client.chat('plain');
    const { sessionId: other } = await client.chat('light');
    await client.result('renameSession', { sessionId, newName: 'Garden' });
    const rows = await rowsOf(client);
    assert.deepEqual(await first.stop(), { code: 0, signal: null });

    const second = await startBridge(t, env);
    client = await second.connect();
    assert.deepEqual(await rowsOf(client), rows);
    assert.equal((await client.chat('light', { sessionId })).sessionId, sessionId);
    assert.equal((await messagesOf(client, sessionId)).length, 4);
    await client.result('deleteSession', { sessionId: other });
    await second.stop('SIGKILL');

    const third = await startBridge(t, env);
    assert.deepEqual((await rowsOf(await third.connect())).map(({ name }) => name), ['Garden']);
    assert.equal(third.errors, '');
});

test('a bridge that is killed while it writes loses nothing that was answered', async (t) => {
    const env = { XDG_STATE_HOME: temporaryFolder(t) };
    const answered = new Map(); // session: number of prompts
    for (let round = 0; round < 4; ++round) {
        const bridge = await startBridge(t, env);
        const client = await bridge.connect();
        for (const [sessionId, count] of answered) {
            const messages = await messagesOf(client, sessionId);
            const prompts = messages.filter(({ role }) => role === 'user').map(({ content }) => content);
            assert.deepEqual(prompts.slice(0, count), Array.from({ length: count }, (_, n) => `plain ${sessionId} ${n}`));
            assert.ok(messages.length >= 2 * count, 'with their replies');
        }
        const { sessionId } = await client.result('createSession');
        const sent = Array.from({ length: PROMPTS }, (_, n) =>
            client.post('chat', { message: `plain ${sessionId} ${n}`, sessionId }));
        // Killed in the middle, at another place each time.
        await client.reply(sent[5 + 40 * round]);
        await bridge.stop('SIGKILL');
        await client.closed;
        const replied = new Set(client.messages.map(({ id }) => id));
        const count = sent.filter((id) => replied.has(id)).length;
        assert.ok(count > 0);
        answered.set(sessionId, count);
    }
    const last = await startBridge(t, env);
    assert.equal((await rowsOf(await last.connect())).length, 4);
});

test('a first prompt whose reply never came is found after the start', async (t) => {
    const env = { XDG_STATE_HOME: temporaryFolder(t) };
    const first = await startBridge(t, { ...env, ...LONG_BEAT });
    let client = await first.connect();
    client.post('chat', { message: 'slow  and steady' });
    await client.until(({ type }) => type === 'event');
    assert.deepEqual(await rowsOf(client), []);
    await first.stop('SIGKILL');

    client = await (await startBridge(t, env)).connect();
    const [{ id, name }, ...others] = await rowsOf(client);
    assert.equal(name, 'slow and steady');
    assert.deepEqual(others, []);
    assert.deepEqual(await messagesOf(client, id), [{ role: 'user', content: 'slow  and steady' }]);
    assert.equal((await client.chat('plain', { sessionId: id })).sessionId, id);
});

test('a session that is deleted while its prompt runs leaves nothing on disk', async (t) => {
    const state = temporaryFolder(t);
    const bridge = await startBridge(t, { XDG_STATE_HOME: state, LOOMRA_DEMO_DELAY_MS: '100' });
    const client = await bridge.connect();
    const { sessionId } = await client.result('createSession');
    const slow = client.post('chat', { message: 'slow', sessionId });
    await client.result('deleteSession', { sessionId });
    assert.ok((await client.reply(slow)).payload.response);
    assert.deepEqual(fs.readdirSync(path.join(state, 'loomra-bridge', 'sessions')), []);
    await bridge.stop('SIGKILL');
    assert.deepEqual(await rowsOf(await (await startBridge(t, { XDG_STATE_HOME: state })).connect()), []);
});

test('a full disk is logged, and what was said meanwhile is written later', { skip: withoutPrlimit }, async (t) => {
    const env = { XDG_STATE_HOME: temporaryFolder(t) };
    const bridge = await startBridge(t, env);
    const client = await bridge.connect();
    const { sessionId } = await client.chat('plain');

    const long = `plain ${'x'.repeat(5000)}`;
    limitFiles(bridge, 2000);
    await client.chat(long, { sessionId });
    await client.chat('light', { sessionId });
    await bridge.complains(/New messages are not saved: a limit for the size of files is reached/);
    assert.equal(bridge.errors.match(/not saved/g).length, 1);
    assert.equal((await messagesOf(client, sessionId)).length, 6);
    const { entries } = await client.result('getAppLogSummary');
    assert.ok(entries.some(({ level, message }) => level === 'warn' && /not saved/.test(message)));

    limitFiles(bridge, 'unlimited');
    await client.chat('dark', { sessionId });
    await bridge.complains(/Conversations are saved again/);
    const messages = await messagesOf(client, sessionId);
    await bridge.stop('SIGKILL');

    const again = await startBridge(t, env);
    assert.deepEqual(await messagesOf(await again.connect(), sessionId), messages);
    await again.complains(/Damaged lines of the conversation ses_\w+, which were skipped: \d/);
});

test('what could not be written is tried again at the end', { skip: withoutPrlimit }, async (t) => {
    const env = { XDG_STATE_HOME: temporaryFolder(t) };
    const bridge = await startBridge(t, env);
    const client = await bridge.connect();
    limitFiles(bridge, 0);
    const { sessionId } = await client.chat('plain');
    limitFiles(bridge, 'unlimited');
    await bridge.stop();
    assert.equal((await messagesOf(await (await startBridge(t, env)).connect(), sessionId)).length, 2);
});

test('without a folder it works, and says that nothing is kept', async (t) => {
    const bridge = await startBridge(t, { XDG_STATE_HOME: 'relative', HOME: '' });
    const client = await bridge.connect();
    const { sessionId } = await client.chat('plain');
    assert.equal((await messagesOf(client, sessionId)).length, 2);
    assert.match(bridge.errors, /^Conversations are kept in memory only, .*\n$/);
});

test('a bridge that finds its port taken doesn\'t touch the folder', async (t) => {
    const state = temporaryFolder(t);
    const first = await startBridge(t);
    const { code } = await runBridge({ LOOMRA_BRIDGE_PORT: String(first.port), XDG_STATE_HOME: state });
    assert.equal(code, 0);
    assert.deepEqual(fs.readdirSync(state), []);
});

test('two bridges on one folder keep each other\'s sessions', async (t) => {
    const env = { XDG_STATE_HOME: temporaryFolder(t) };
    const bridges = [await startBridge(t, env), await startBridge(t, env)];
    const clients = await Promise.all(bridges.map((bridge) => bridge.connect()));
    const { sessionId } = await clients[0].chat('plain');
    const chats = Array.from({ length: 40 }, (_, n) => clients[n % 2].chat('plain', n % 2 ? {} : { sessionId }));
    await Promise.all(chats);
    await Promise.all(bridges.map((bridge) => bridge.stop('SIGKILL')));

    const third = await startBridge(t, env);
    const client = await third.connect();
    assert.equal((await rowsOf(client)).length, 21);
    assert.equal((await messagesOf(client, sessionId)).length, 42);
    assert.equal(third.errors, '');
});

test('a conversation of any length is one frame that clients accept', async (t) => {
    const state = temporaryFolder(t);
    const bridge = await startBridge(t, { XDG_STATE_HOME: state });
    const { sessionId } = await (await bridge.connect()).result('createSession');
    await bridge.stop();
    const content = '\u0001'.repeat(100000); // the longest text as JSON
    const line = `${JSON.stringify({ role: 'user', content })}\n`;
    const file = path.join(state, 'loomra-bridge', 'sessions', `${sessionId}.jsonl`);
    fs.writeFileSync(file, line.repeat(200));

    const client = await (await startBridge(t, { XDG_STATE_HOME: state })).connect();
    assert.ok((await messagesOf(client, sessionId)).length > 20);
    const longest = Math.max(...client.frames.map((text) => Buffer.byteLength(text)));
    assert.ok(longest < 17 * 1024 * 1024, `${longest} bytes`);
    assert.equal(mode(file), 0o600);
});
