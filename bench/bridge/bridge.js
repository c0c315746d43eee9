// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// What the bridge adds to a prompt. The bridge is a process of its own; the client and the model server are here, so one
// clock serves both ends.

const fs = require('fs');
const http = require('http');
const os = require('os');
const path = require('path');
const readline = require('readline');
const { once } = require('events');
const { spawn } = require('child_process');

const { bounded, median, plain } = require('./figures');

const BRIDGE = path.join(__dirname, '../../tools/sdk-bridge');
const WebSocket = require(path.join(BRIDGE, 'node_modules/ws'));

const PROMPTS = 200;
const WARM_UP = 20;
const MAX_MS = 5;

const now = () => performance.now();
const event = (value) => `data: ${JSON.stringify(value)}\n\n`;
const words = (content) => event({ choices: [{ index: 0, delta: { content }, finish_reason: null }] });
const END = event({ choices: [{ index: 0, delta: {}, finish_reason: 'stop' }] }) +
    event({ choices: [], usage: { prompt_tokens: 20, completion_tokens: 5 } }) + 'data: [DONE]\n\n';

//! A model server that takes the time of each request and of the last event of its reply.
async function startModelServer(times) {
    const server = http.createServer(async (request, response) => {
        for await (const part of request)
            void part;
        if (request.method === 'GET') {
            response.setHeader('content-type', 'application/json');
            response.end(JSON.stringify({ data: [{ id: 'bench', meta: { n_ctx: 8192 } }] }));
            return;
        }
        times.request = now();
        response.writeHead(200, { 'content-type': 'text/event-stream' });
        for (const word of ['Good', ' day', ' to', ' you'])
            response.write(words(word));
        // The last event alone, when the others have been read.
        setTimeout(() => {
            times.lastEvent = now();
            response.end(words('.') + END);
        }, 5);
    });
    server.listen(0, '127.0.0.1');
    await once(server, 'listening');
    return server;
}

async function startBridge(port, state) {
    // Arguments are options of node for the bridge, such as --cpu-prof.
    const bridge = spawn(process.execPath, [...process.argv.slice(2), path.join(BRIDGE, 'bridge.js')], {
        env: {
            ...process.env,
            LOOMRA_BRIDGE_PORT: '0',
            LOOMRA_MODEL_URL: `http://127.0.0.1:${port}`,
            XDG_STATE_HOME: state,
        },
        stdio: ['ignore', 'pipe', 'inherit'],
    });
    const [line] = await once(readline.createInterface({ input: bridge.stdout }), 'line');
    return { bridge, url: /ws:\S+/.exec(line)[0] };
}

//! Sends a prompt and resolves to the time when its reply is here.
function chat(socket, id, params) {
    socket.send(JSON.stringify({ id, method: 'chat', params }));
    return new Promise((resolve) => {
        socket.on('message', function read(data) {
            const frame = JSON.parse(data);
            if (frame.id !== id)
                return;
            const time = now();
            socket.off('message', read);
            resolve({ time, ...frame.payload });
        });
    });
}

async function main() {
    const times = {};
    const state = fs.mkdtempSync(path.join(os.tmpdir(), 'bench-bridge-'));
    const server = await startModelServer(times);
    const { bridge, url } = await startBridge(server.address().port, state);
    const socket = new WebSocket(url);
    await once(socket, 'message');

    const [toRequest, toReply] = [[], []];
    let sessionId;
    for (let n = 1; n <= WARM_UP + PROMPTS; ++n) {
        const sent = now();
        const reply = await chat(socket, n, { message: `Prompt ${n} of a conversation that goes on`, sessionId });
        if (reply.response !== 'Good day to you.')
            throw new Error(`Unexpected: ${reply.response}`);
        sessionId = reply.sessionId;
        if (n > WARM_UP) {
            toRequest.push(times.request - sent);
            toReply.push(reply.time - times.lastEvent);
        }
    }
    socket.close();
    server.close();
    bridge.kill();
    await once(bridge, 'close');
    fs.rmSync(state, { recursive: true });

    bounded('bridge.chat-to-request', median(toRequest), 'ms', MAX_MS);
    plain('bridge.chat-to-request.p99', toRequest.sort((a, b) => a - b)[Math.floor(PROMPTS * 0.99)], 'ms');
    bounded('bridge.last-event-to-reply', median(toReply), 'ms', MAX_MS);
    plain('bridge.last-event-to-reply.p99', toReply.sort((a, b) => a - b)[Math.floor(PROMPTS * 0.99)], 'ms');
}

main().catch((error) => {
    process.stderr.write(`not measured: ${error.stack}\n`);
    process.exit(1);
});
