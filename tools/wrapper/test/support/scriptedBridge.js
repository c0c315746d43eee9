// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { once } = require('events');

const { WebSocketServer } = require('../../../sdk-bridge/node_modules/ws');

const PORT = 8765;

//! A scripted peer on the bridge's port, for what the bundled bridge never does.
class ScriptedBridge {
    //! The received requests, in order.
    requests = [];
    #waiting = new Set();

    //! `answer(request, send)` is called with each request, `connected(send)` with each connection.
    static async start(t, answer = () => {},
        { greeting = { type: 'ready', sdkInitialized: true }, connected = () => {} } = {}) {
        const bridge = new ScriptedBridge();
        const server = new WebSocketServer({ host: '127.0.0.1', port: PORT, path: '/ws' });
        t.after(() => {
            server.clients.forEach((client) => client.terminate());
            return new Promise((resolve) => server.close(resolve));
        });
        server.on('connection', (socket) => {
            const send = (frame) => socket.send(typeof frame === 'string' ? frame : JSON.stringify(frame));
            if (greeting)
                send(greeting);
            connected(send);
            socket.on('message', (data) => {
                const request = JSON.parse(data);
                bridge.requests.push(request);
                answer(request, send, socket);
                bridge.#waiting.forEach((check) => check());
            });
        });
        await once(server, 'listening');
        return bridge;
    }

    //! Waits for a request with this method.
    received(method) {
        return new Promise((resolve) => {
            const check = () => {
                const request = this.requests.find((each) => each.method === method);
                if (request) {
                    this.#waiting.delete(check);
                    resolve(request);
                }
            };
            this.#waiting.add(check);
            check();
        });
    }
}

module.exports = { PORT, ScriptedBridge };
