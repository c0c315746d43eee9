// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');
const net = require('net');
const { once } = require('events');

const { readRequest } = require('../lib/frames');
const { startBridge } = require('./support/child');
const { test } = require('./support/timed');

const read = (value) => readRequest(Buffer.from(typeof value === 'string' ? value : JSON.stringify(value)), false);

test('a request is read', () => {
    assert.deepEqual(read({ id: 1, method: 'ping', params: {}, more: 1 }), { request: { id: 1, method: 'ping', params: {} } });
    assert.equal(read({ id: Number.MAX_SAFE_INTEGER, method: 'x', params: {} }).request.id, Number.MAX_SAFE_INTEGER);
});

const UNANSWERABLE = ['', 'no', '{', 'null', '1', '"x"', '[]', '[{"id":1}]', '{}', '{"id":0,"method":"ping","params":{}}',
    '{"id":-1,"method":"ping","params":{}}', '{"id":1.5,"method":"ping","params":{}}', '{"id":"1","method":"ping","params":{}}',
    '{"id":null,"method":"ping","params":{}}', '{"id":1e300,"method":"ping","params":{}}', '{"method":"ping","params":{}}',
    '{"type":"response","id":1,"payload":{}}', '{"type":"error","id":1}', `${'['.repeat(100000)}`];

const FAULTY = ['{"id":7}', '{"id":7,"method":5,"params":{}}', '{"id":7,"method":"","params":{}}', '{"id":7,"method":"ping"}',
    '{"id":7,"method":"ping","params":[]}', '{"id":7,"method":"ping","params":null}', '{"id":7,"method":"ping","params":"x"}'];

test('what can\'t be answered has no id', () => {
    for (const text of UNANSWERABLE) {
        const { fault, id, request } = read(text);
        assert.ok(fault && !id && !request, text.slice(0, 100));
    }
    assert.ok(readRequest(Buffer.from('{"id":1,"method":"ping","params":{}}'), true).fault);
});

test('a faulty request is answered by its id', () => {
    for (const text of FAULTY) {
        const { fault, id, request } = read(text);
        assert.ok(fault && id === 7 && !request, text);
    }
});

test('it survives every frame, and answers those that have an id', async (t) => {
    const bridge = await startBridge(t);
    const client = await bridge.connect();
    for (const text of UNANSWERABLE)
        client.raw(text);
    client.raw(Buffer.from([0, 255, 1, 2]), { binary: true });
    client.raw(Buffer.from('{"id":5,"method":"ping","params":{}}'), { binary: true });
    client.raw(Buffer.alloc(0), { binary: true });
    client.socket.ping();
    for (const text of FAULTY)
        client.raw(text);
    client.raw('a-secret\u001b[31m');
    client.raw('{"id":8,"method":"ping","params":{}}');
    await client.reply(8);

    const [ready, ...replies] = client.messages;
    assert.equal(ready.type, 'ready');
    assert.deepEqual(replies.map(({ id }) => id), [...FAULTY.map(() => 7), 8]);
    for (const { type, error, payload } of replies.slice(0, -1)) {
        assert.equal(type, 'response');
        assert.equal(error.code, 'INVALID_REQUEST');
        assert.equal(payload, null);
    }
    await bridge.complains(/Binary frames are not read/);
    await bridge.complains(/A frame is not JSON/);
    assert.doesNotMatch(bridge.errors, /secret|\u001b/);
});

test('names that every object has are unknown methods', async (t) => {
    const client = await (await startBridge(t)).connect();
    for (const name of ['__proto__', 'constructor', 'toString', 'no such\nmethod', 'x'.repeat(5000)]) {
        const { error, method } = await client.request(name);
        assert.equal(error.code, 'UNKNOWN_METHOD');
        assert.ok(method.length <= 101);
        assert.ok(error.message.length < 200);
    }
});

test('params of wrong types are refused by name', async (t) => {
    const client = await (await startBridge(t)).connect();
    const table = [
        ['chat', {}, 'message'], ['chat', { message: 5 }, 'message'], ['chat', { message: ['help'] }, 'message'],
        ['chat', { message: 'help', sessionId: 5 }, 'sessionId'], ['chat', { message: 'help', context: [] }, 'context'],
        ['cancel', { sessionId: {} }, 'sessionId'], ['switchSession', {}, 'sessionId'],
        ['renameSession', { sessionId: 'x', newName: null }, 'newName'], ['loadMessages', { sessionId: true }, 'sessionId'],
        ['messageFeedback', { vote: 'up', messageIndex: 'x', messageText: '' }, 'messageIndex'],
        ['handleStructuredUiAction', { actionType: 'x', data: [] }, 'data'],
    ];
    for (const [method, params, name] of table) {
        const { error } = await client.request(method, params);
        assert.equal(error.code, 'INVALID_PARAMS', method);
        assert.match(error.message, new RegExp(`"${name}"`));
    }
});

test('a large prompt is answered, one beyond the limit closes only its own connection', async (t) => {
    const bridge = await startBridge(t);
    const [client, other] = [await bridge.connect(), await bridge.connect()];
    const { response, sessionId } = await client.chat('y'.repeat(15 * 1024 * 1024));
    assert.ok(response.length < 3000);
    const { messages } = await client.result('loadMessages', { sessionId });
    assert.equal(messages[0].content.length, 100001);

    client.raw('z'.repeat(17 * 1024 * 1024));
    assert.equal(await client.closed, 1009);
    assert.equal((await other.chat('plain')).response, 'This is a plain answer.');
});

test('a result that can\'t be written down is an error, not an end', async (t) => {
    const client = await (await startBridge(t)).connect();
    const depth = 200000;
    client.raw(`{"id":9,"method":"chat","params":{"message":"request","context":{"a":${'['.repeat(depth)}${']'.repeat(depth)}}}}`);
    const { error } = await client.reply(9);
    assert.equal(error.code, 'INTERNAL');
    assert.equal((await client.chat('plain')).response, 'This is a plain answer.');
});

test('bytes that break the protocol close only their own connection', async (t) => {
    const bridge = await startBridge(t);
    const other = await bridge.connect();
    const HANDSHAKE = 'GET /ws HTTP/1.1\r\nHost: x\r\nConnection: Upgrade\r\nUpgrade: websocket\r\n' +
        'Sec-WebSocket-Version: 13\r\nSec-WebSocket-Key: AAAAAAAAAAAAAAAAAAAAAA==\r\n\r\n';
    const rubbish = [
        'rubbish\r\n\r\n',
        HANDSHAKE.replace('13', '99'),
        HANDSHAKE.replace('AAAAAAAAAAAAAAAAAAAAAA==', '?'),
        `${HANDSHAKE}\x81\x05hello`, // not masked
        `${HANDSHAKE}\xff\xff\xff\xff\xff\xff\xff\xff`,
        `${HANDSHAKE}\x81\x82\x00\x00\x00\x00\xc3\x28`, // not UTF-8
    ];
    for (const bytes of rubbish) {
        const socket = net.connect(bridge.port, '127.0.0.1');
        socket.on('error', () => {});
        socket.write(Buffer.from(bytes, 'latin1'));
        socket.resume();
        // Our own end would close the socket too, so wait for the bridge's.
        await Promise.race([once(socket, 'end'), once(socket, 'close')]);
        socket.destroy();
    }
    assert.equal((await other.chat('plain')).response, 'This is a plain answer.');
});

test('one client can keep only so many prompts open', async (t) => {
    const bridge = await startBridge(t, { LOOMRA_DEMO_DELAY_MS: '60000' });
    const client = await bridge.connect();
    for (let n = 0; n < 200; ++n)
        client.post('chat', { message: 'plain' });
    const { error } = await client.request('chat', { message: 'plain' });
    assert.equal(error.code, 'BUSY');
    assert.deepEqual(await client.result('cancel'), { ok: true, cancelled: 200 });
});

test('a client that leaves in the middle of work leaves nothing behind', async (t) => {
    const bridge = await startBridge(t, { LOOMRA_DEMO_DELAY_MS: '60000' });
    const client = await bridge.connect();
    for (const message of ['slow', 'late', 'plain'])
        client.post('chat', { message });
    await client.until(({ type }) => type === 'event');
    client.socket.terminate();
    await bridge.complains(/(cancelled[^]*){3}/);
    const other = await bridge.connect();
    assert.deepEqual(await other.result('listSessions'), { sessions: [] });
});
