// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const fs = require('fs');
const path = require('path');

const URL = 'ws://127.0.0.1:8765/ws';
const CONNECT_TIMEOUT_MS = 5000;
const READY_TIMEOUT_MS = 10000;
const MAX_FRAME_BYTES = 16 * 1024 * 1024;

//! The bundled bridge: in an installation, in the source tree.
const BRIDGE_FOLDERS = [path.join(__dirname, '..', 'sdk-bridge'), path.join(__dirname, '..', '..', 'sdk-bridge')];

const isObject = (value) => typeof value === 'object' && value !== null && !Array.isArray(value);
const textOf = (value) => (typeof value === 'string' ? value : '');

//! An error of the bridge, with a message for the user. `isUnreachable` if there is no bridge to talk to.
class BridgeError extends Error {
    constructor(message, { isUnreachable = false, isTimeout = false } = {}) {
        super(message);
        this.isUnreachable = isUnreachable;
        this.isTimeout = isTimeout;
    }
}

//! The folder of the bundled bridge, or '' if it isn't installed.
const bundledBridge = () => BRIDGE_FOLDERS.find((folder) => fs.existsSync(path.join(folder, 'bridge.js'))) ?? '';

//! The commands that start a bridge, for people.
function waysToStart() {
    const ways = ['systemctl --user start tovi-bridge.service'];
    const folder = bundledBridge();
    if (folder)
        ways.push(`node ${path.join(folder, 'bridge.js')}`);
    return ways;
}

//! The package "ws": the bridge's own, or the system's.
function loadWebSocket() {
    try {
        return require(require.resolve('ws', { paths: [...BRIDGE_FOLDERS, __dirname] }));
    } catch (error) {
        if (error.code !== 'MODULE_NOT_FOUND')
            throw error;
        throw new BridgeError(`The package "ws" is missing: run "npm ci" in ${bundledBridge() || BRIDGE_FOLDERS[0]}`);
    }
}

//! Why a request failed, by its reply: '' if it didn't.
function errorIn({ type, error }) {
    if (type === 'error')
        return textOf(error?.message) || textOf(error?.code) || 'The bridge failed without giving a reason';
    if (type === 'response')
        return isObject(error) ? textOf(error.message) || textOf(error.code) : '';
    return textOf(error);
}

//! A connection to the bridge. Its requests fail with a BridgeError.
class BridgeClient {
    #socket;
    #open = new Map();
    #lastId = 0;
    #ready;
    #fault = null;

    //! Resolves when the bridge is ready.
    static async open() {
        const client = new BridgeClient();
        await client.#connect(loadWebSocket());
        return client;
    }

    //! Sends a request. Resolves to its result; without `timeoutMs` there is no limit.
    request(method, params = {}, { timeoutMs = 0 } = {}) {
        const id = ++this.#lastId;
        return new Promise((resolve, reject) => {
            if (this.#fault) {
                reject(this.#fault);
                return;
            }
            const timer = timeoutMs > 0 && setTimeout(() => {
                this.#open.delete(id);
                reject(new BridgeError(`The bridge has not replied in ${timeoutMs / 1000} s`, { isTimeout: true }));
            }, timeoutMs);
            this.#open.set(id, {
                resolve: (value) => { clearTimeout(timer); resolve(value); },
                reject: (error) => { clearTimeout(timer); reject(error); },
            });
            this.#socket.send(JSON.stringify({ id, method, params }));
        });
    }

    //! Stops the running prompts. Resolves when the bridge has confirmed it, or has not within `timeoutMs`.
    async cancel(timeoutMs) {
        await this.request('cancel', {}, { timeoutMs }).catch(() => {});
    }

    close() {
        this.#fail(new BridgeError('The connection was closed'));
        this.#socket.terminate();
    }

    #connect(WebSocket) {
        return new Promise((resolve, reject) => {
            let isConnected = false;
            const timer = setTimeout(() => end(new BridgeError('The bridge accepts connections but is not ready')),
                READY_TIMEOUT_MS);
            const end = (error) => {
                clearTimeout(timer);
                if (!error) {
                    resolve();
                    return;
                }
                this.#fail(error);
                reject(error);
                this.#socket.terminate();
            };
            const failed = (detail) =>
                (isConnected ? new BridgeError('The bridge closed the connection before it replied')
                    : new BridgeError(`No bridge answers at ${URL}${detail ? `: ${detail}` : ''}`, { isUnreachable: true }));

            this.#ready = () => end();
            this.#socket = new WebSocket(URL, {
                handshakeTimeout: CONNECT_TIMEOUT_MS, maxPayload: MAX_FRAME_BYTES, perMessageDeflate: false,
            });
            this.#socket.on('open', () => { isConnected = true; });
            this.#socket.on('message', (data, isBinary) => this.#receive(data, isBinary));
            this.#socket.on('error', ({ code, message }) => end(failed(code === 'ECONNREFUSED' ? '' : message)));
            this.#socket.on('close', () => end(failed('')));
        });
    }

    #receive(data, isBinary) {
        let frame = null;
        try {
            frame = isBinary ? null : JSON.parse(data.toString('utf8'));
        } catch {
            // Malformed frames are no fault of a request.
        }
        if (!isObject(frame))
            return;
        if (frame.type === 'ready' || (frame.type === 'event' && frame.payload?.event === 'ready')) {
            this.#ready();
            return;
        }
        if (frame.type === 'event' || frame.type === 'stream')
            return;
        // A failure that names no request can only mean the one that is open.
        const id = frame.type === 'error' && !frame.id && this.#open.size === 1 ? [...this.#open.keys()][0] : frame.id;
        const request = this.#open.get(id);
        if (!request)
            return;
        this.#open.delete(id);
        const error = errorIn(frame);
        if (error)
            request.reject(new BridgeError(error));
        else
            request.resolve(frame.type === 'response' ? frame.payload : frame.result);
    }

    //! Fails all requests, the open ones and those to come. The first reason counts.
    #fail(error) {
        this.#fault ??= error;
        const open = [...this.#open.values()];
        this.#open.clear();
        open.forEach(({ reject }) => reject(this.#fault));
    }
}

//! Sends a prompt in a new conversation. Resolves to {text, sessionId}.
async function chat(client, message, { model = '', timeoutMs = 0 } = {}) {
    const params = { message, agent: 'auto', inputMode: 'text', ...(model && { model }) };
    const result = await client.request('chat', params, { timeoutMs });
    if (!isObject(result) || typeof result.response !== 'string')
        throw new BridgeError('The reply of the bridge cannot be read');
    if (result.response === '')
        throw new BridgeError('The reply is empty');
    return { text: result.response, sessionId: textOf(result.sessionId) };
}

module.exports = { BridgeClient, BridgeError, URL, bundledBridge, chat, isObject, waysToStart };
