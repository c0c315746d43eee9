// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// node last-reply.js PROMPT SECONDS: waits until the bridge has replied to the prompt and prints the reply, which
// the window must then show.

'use strict';

const path = require('path');
const WebSocket = require(path.join(__dirname, '../tools/sdk-bridge/node_modules/ws'));

const POLL_INTERVAL = 100; // ms

const [prompt, seconds] = process.argv.slice(2);
const socket = new WebSocket('ws://127.0.0.1:8765/ws');
const open = new Map();

function ask(method, params = {}) {
    const id = open.size + 1;
    socket.send(JSON.stringify({ id, method, params }));
    return new Promise((resolve, reject) => open.set(id, { resolve, reject }));
}

//! The reply to the prompt in one of the sessions, or undefined.
async function lastReply() {
    const { sessions } = await ask('listSessions');
    for (const session of sessions) {
        const { messages } = await ask('loadMessages', { sessionId: session.id ?? session.sessionId });
        const at = messages.findIndex((message) => message.role === 'user' && message.content === prompt);
        if (at >= 0 && messages[at + 1]?.role === 'assistant')
            return messages[at + 1].content;
    }
    return undefined;
}

function giveUp(reason) {
    process.stderr.write(`${reason}\n`);
    process.exit(1);
}

async function watch() {
    const reply = await lastReply();
    if (reply === undefined) {
        setTimeout(() => watch().catch((error) => giveUp(error.message)), POLL_INTERVAL);
        return;
    }
    process.stdout.write(reply);
    socket.close();
    clearTimeout(timeout);
}

const timeout = setTimeout(() => giveUp(`The bridge has not replied to "${prompt}" in ${seconds} s`), seconds * 1000);

socket.on('error', (error) => giveUp(`Cannot connect to the bridge: ${error.message}`));
socket.on('message', (data) => {
    const frame = JSON.parse(data);
    if (frame.type === 'ready') {
        watch().catch((error) => giveUp(error.message));
        return;
    }
    const request = open.get(frame.id);
    if (frame.error)
        request?.reject(new Error(frame.error.message));
    else
        request?.resolve(frame.payload);
});
