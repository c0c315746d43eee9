// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { once } = require('events');
const WebSocket = require('ws');

//! A client of the bridge that keeps all received frames in order, and finds the reply to a request by its id.
class Client {
    frames = []; // texts
    #lastId = 0;
    #waiting = new Set();

    //! Connects and waits for "ready".
    static async open(url) {
        const client = new Client(new WebSocket(url));
        await client.until((frame) => frame.type === 'ready');
        return client;
    }

    constructor(socket) {
        this.socket = socket;
        this.closed = once(socket, 'close').then(([code]) => code);
        socket.on('message', (data) => {
            this.frames.push(data.toString());
            this.#check();
        });
        socket.on('close', () => this.#check());
        socket.on('error', () => {}); // a cut connection shows as `closed`
    }

    //! The frames that are JSON objects.
    get messages() {
        return this.frames.flatMap((text) => {
            try {
                const value = JSON.parse(text);
                return value && !Array.isArray(value) ? [value] : [];
            } catch {
                return [];
            }
        });
    }

    //! The payloads of the received events, without those of `name` if given.
    get events() {
        return this.messages.filter(({ type }) => type === 'event').map(({ payload }) => payload);
    }

    //! Waits for a message that matches, including received ones. Fails if the connection closes before.
    until(fits) {
        return new Promise((resolve, reject) => {
            const waiter = { fits, resolve, reject };
            this.#waiting.add(waiter);
            this.#check();
        });
    }

    //! Sends a frame as it is.
    raw(data, options) {
        this.socket.send(data, options);
    }

    //! Sends a request and returns its id.
    post(method, params = {}) {
        const id = ++this.#lastId;
        this.raw(JSON.stringify({ id, method, params }));
        return id;
    }

    //! The first reply to a request.
    reply(id) {
        return this.until((message) => message.id === id);
    }

    //! Sends a request and waits for its reply.
    request(method, params) {
        return this.reply(this.post(method, params));
    }

    //! The result of a request that must succeed.
    async result(method, params) {
        const message = await this.request(method, params);
        if (message.error)
            throw new Error(`${method} failed: ${JSON.stringify(message.error)}`);
        return message.payload;
    }

    //! The result of a prompt that must succeed.
    chat(message, params = {}) {
        return this.result('chat', { message, ...params });
    }

    #check() {
        const messages = this.messages;
        for (const waiter of this.#waiting) {
            const found = messages.find(waiter.fits);
            if (found === undefined && this.socket.readyState !== WebSocket.CLOSED)
                continue;
            this.#waiting.delete(waiter);
            if (found === undefined)
                waiter.reject(new Error('The connection closed before what was waited for came'));
            else
                waiter.resolve(found);
        }
    }
}

module.exports = { Client };
