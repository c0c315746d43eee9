// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');
const fs = require('fs');
const http = require('http');
const net = require('net');
const os = require('os');
const path = require('path');
const { once } = require('events');
const WebSocket = require('ws');

const { runBridge, startBridge, withoutIPv6 } = require('./support/child');
const { test } = require('./support/timed');

test('one line tells where it listens, and both addresses serve', { skip: withoutIPv6 }, async (t) => {
    const bridge = await startBridge(t);
    assert.equal(bridge.output, `Bridge listening on ${bridge.url()} and ${bridge.url('[::1]')}\n`);
    for (const host of ['127.0.0.1', '[::1]', 'localhost']) {
        const client = await bridge.connect(host);
        assert.deepEqual(client.messages, [{ type: 'ready', sdkInitialized: true }]);
        assert.equal((await client.chat('plain')).response, 'This is a plain answer.');
    }
    assert.equal(bridge.errors, '');
});

test('every connection gets "ready", also a second one of the same client', async (t) => {
    const bridge = await startBridge(t);
    for (let n = 0; n < 3; ++n) {
        const client = await bridge.connect();
        client.socket.close();
        assert.equal(await client.closed, 1005);
    }
});

test('nothing is reachable from outside the machine', async (t) => {
    const bridge = await startBridge(t);
    const outside = Object.values(os.networkInterfaces()).flat().filter(({ internal, scopeid }) => !internal && !scopeid);
    for (const { address } of outside) {
        const socket = net.connect(bridge.port, address);
        const [error] = await once(socket, 'error');
        assert.equal(error.code, 'ECONNREFUSED');
    }
});

test('a taken port ends it with code 0', async (t) => {
    const first = await startBridge(t);
    const second = await runBridge({ LOOMRA_BRIDGE_PORT: String(first.port) });
    assert.equal(second.code, 0);
    assert.equal(second.output, '');
    assert.equal(second.errors, `Port ${first.port} is taken, so there is nothing to do here\n`);
    assert.equal((await (await first.connect()).chat('plain')).response, 'This is a plain answer.');
});

for (const [variable, value] of [['LOOMRA_BRIDGE_PORT', 'eight'], ['LOOMRA_DEMO_DELAY_MS', '-5']]) {
    test(`${variable}=${value} ends it with code 2 and says why`, async () => {
        const { code, output, errors } = await runBridge({ [variable]: value });
        assert.equal(code, 2);
        assert.equal(output, '');
        assert.match(errors, new RegExp(`^${variable} must be a whole number from 0 to \\d+, not "${value}"\n$`));
    });
}

// Containers often publish all ports.
const firstFreeForAll = Number(fs.readFileSync('/proc/sys/net/ipv4/ip_unprivileged_port_start', 'utf8'));
const mayListenAnywhere = process.getuid() === 0 || firstFreeForAll <= 1;

test('a port that may not be had ends it with code 1', { skip: mayListenAnywhere }, async () => {
    const { code, errors } = await runBridge({ LOOMRA_BRIDGE_PORT: '1' });
    assert.equal(code, 1);
    assert.match(errors, /cannot listen on port 1/);
});

test('without its package it says what to do', async () => {
    const preload = path.join(__dirname, 'support', 'without-ws.js');
    const { code, errors } = await runBridge({ LOOMRA_BRIDGE_PORT: '0', NODE_OPTIONS: `--require "${preload}"` });
    assert.equal(code, 1);
    assert.match(errors, /^The package "ws" is missing: run "npm ci" in .+ first\n$/);
});

for (const signal of ['SIGTERM', 'SIGINT']) {
    test(`${signal} ends it with code 0, whatever its clients do`, async (t) => {
        const bridge = await startBridge(t, { LOOMRA_DEMO_DELAY_MS: '60000' });
        const working = await bridge.connect();
        working.post('chat', { message: 'slow' });
        await working.until(({ type }) => type === 'event');
        const idle = await bridge.connect(bridge.otherHost);

        // A client without the closing handshake, a silent one, and one with half a request.
        const deaf = await bridge.connect();
        deaf.socket._socket.pause();
        const mute = net.connect(bridge.port, '127.0.0.1');
        const half = net.connect(bridge.port, '127.0.0.1');
        for (const socket of [mute, half]) {
            socket.on('error', () => {});
            await once(socket, 'connect');
        }
        half.write('GET /ws HTTP/1.1\r\nHost: x\r\n');

        // Waiting for any of them, or for the chat's pause, would exceed the timeout.
        assert.deepEqual(await bridge.stop(signal), { code: 0, signal: null });
        assert.equal(await idle.closed, 1001);
        assert.equal(await working.closed, 1001);
        deaf.socket.terminate();
        mute.destroy();
        half.destroy();
    });
}

test('a second signal changes nothing', async (t) => {
    const bridge = await startBridge(t);
    const deaf = await bridge.connect();
    deaf.socket._socket.pause();
    bridge.process.kill('SIGTERM');
    assert.deepEqual(await bridge.stop('SIGTERM'), { code: 0, signal: null });
    deaf.socket.terminate();
});

test('it survives the end of the process that read its output', async (t) => {
    const bridge = await startBridge(t);
    bridge.process.stdout.destroy();
    bridge.process.stderr.destroy();
    const client = await bridge.connect();
    for (let n = 0; n < 5; ++n)
        client.raw('not JSON');
    assert.equal((await client.chat('plain')).response, 'This is a plain answer.');
});

//! The status of a refused upgrade, after the connection is closed.
async function refusal(url, options) {
    const socket = new WebSocket(url, options);
    const [request, response] = await once(socket, 'unexpected-response');
    response.resume();
    if (!request.socket.destroyed)
        await once(request.socket, 'close');
    return response.statusCode;
}

test('a wrong path is refused with 404', async (t) => {
    const bridge = await startBridge(t);
    for (const wrong of ['/', '/ws/', '/WS', '/ws2', '/other?x=/ws', '//ws'])
        assert.equal(await refusal(bridge.url('127.0.0.1', wrong)), 404, wrong);
    const client = await bridge.connect();
    assert.equal((await client.chat('plain')).response, 'This is a plain answer.');
});

test('any origin is refused with 403', async (t) => {
    const bridge = await startBridge(t);
    for (const origin of ['http://127.0.0.1', 'http://example.org', 'null', 'file://'])
        assert.equal(await refusal(bridge.url(), { origin }), 403, origin);
    assert.equal(await refusal(bridge.url(bridge.otherHost), { headers: { Origin: '' } }), 403);
});

test('a plain request gets a plain refusal', async (t) => {
    const bridge = await startBridge(t);
    for (const [wanted, where, headers] of [[426, '/ws', {}], [404, '/', {}], [403, '/ws', { Origin: 'http://x' }]]) {
        const request = http.get({ host: '127.0.0.1', port: bridge.port, path: where, headers });
        const [response] = await once(request, 'response');
        response.resume();
        assert.equal(response.statusCode, wanted, where);
        assert.equal(response.headers.connection, 'close');
    }
});
