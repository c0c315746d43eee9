// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Requests to a model server. They follow no redirection and use no proxy, so that a prompt goes nowhere else.

const dns = require('dns');
const http = require('http');
const https = require('https');

const { isLoopbackAddress } = require('./address');

const MAX_JSON_BYTES = 4 * 1024 * 1024;

// A new connection for each request: on this machine it costs nothing, and no request meets a connection that the server
// has just closed.
const AGENTS = { 'http:': new http.Agent({ keepAlive: false }), 'https:': new https.Agent({ keepAlive: false }) };

//! Resolves names, but only to this machine.
function lookupLoopback(host, options, done) {
    dns.lookup(host, options, (error, found, family) => {
        const addresses = Array.isArray(found) ? found.map(({ address }) => address) : [found];
        if (!error && !addresses.every(isLoopbackAddress))
            done(Object.assign(new Error(`${host} is another machine`), { code: 'ENOTLOOPBACK' }));
        else
            done(error, found, family);
    });
}

//! Sends a request and resolves to the response, an http.IncomingMessage. `body` is sent as JSON. Rejects with the
//! system's error, also when `signal` is aborted.
function send({ base, allowRemote, key }, path, { body, signal } = {}) {
    const url = new URL(base + path);
    const payload = body === undefined ? null : Buffer.from(JSON.stringify(body));
    return new Promise((resolve, reject) => {
        const request = (url.protocol === 'https:' ? https : http).request(url, {
            method: payload ? 'POST' : 'GET',
            agent: AGENTS[url.protocol],
            lookup: allowRemote ? undefined : lookupLoopback,
            // "localhost" may be two addresses, of which the server uses one. By default node 18 tries the first only.
            autoSelectFamily: true,
            signal,
            headers: {
                accept: 'text/event-stream, application/json',
                ...(payload && { 'content-type': 'application/json', 'content-length': payload.length }),
                ...(key && { authorization: `Bearer ${key}` }),
            },
        }, resolve);
        request.on('error', reject);
        // A response that changes the protocol is dropped without an error.
        request.on('close', () => reject(new Error('The server sent no response')));
        request.setNoDelay(true);
        request.end(payload);
    });
}

//! The body of a response as text, truncated to `limit` bytes.
async function readText(response, limit) {
    const chunks = [];
    let size = 0;
    for await (const chunk of response) {
        chunks.push(chunk);
        size += chunk.length;
        if (size >= limit)
            break; // which destroys the response
    }
    return Buffer.concat(chunks).subarray(0, limit).toString('utf8');
}

//! Resolves to {status, value}: the status, and the JSON value at a path. Both are undefined without a server, and the
//! value if it is something else or too long.
async function readJson(server, path, signal) {
    try {
        const response = await send(server, path, { signal });
        const status = response.statusCode;
        const text = await readText(response, MAX_JSON_BYTES);
        try {
            return { status, value: JSON.parse(text) };
        } catch {
            return { status };
        }
    } catch {
        return {};
    }
}

module.exports = { readJson, readText, send };
