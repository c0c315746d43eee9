// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const http = require('http');

//! Clients use both: one connects to the IPv4 address, the other to "localhost", which may be either.
//! The order is fixed: if two bridges start at once, one of them fails at the first address and doesn't try the second.
const LOOPBACK = [
    { host: '127.0.0.1', shown: '127.0.0.1' },
    { host: '::1', shown: '[::1]', optional: true },
];

const UNAVAILABLE = new Set(['EADDRNOTAVAIL', 'EAFNOSUPPORT']);
const ATTEMPTS_AT_ANY_PORT = 20;

function listen(host, port) {
    return new Promise((resolve, reject) => {
        const server = http.createServer();
        server.once('error', reject);
        server.listen({ host, port, exclusive: true }, () => {
            server.off('error', reject);
            resolve(server);
        });
    });
}

async function listenOnAll(port, addresses) {
    const opened = { port, servers: [], shown: [], missing: [] };
    try {
        for (const address of addresses) {
            try {
                const server = await listen(address.host, opened.port);
                opened.servers.push(server);
                opened.shown.push(address.shown);
                opened.port = server.address().port;
            } catch (error) {
                if (!address.optional || !UNAVAILABLE.has(error.code))
                    throw error;
                opened.missing.push(address.shown);
            }
        }
    } catch (error) {
        for (const server of opened.servers)
            server.close();
        throw error;
    }
    return opened;
}

//! Opens an HTTP server for each address, all on the same port. Resolves to `port`, `servers`, `shown` (addresses as
//! written in a URL) and `missing` (optional addresses that this machine doesn't have). Rejects with the system's error
//! after closing all servers.
async function openListeners(port, addresses = LOOPBACK) {
    for (let attempt = 1; ; ++attempt) {
        try {
            return await listenOnAll(port, addresses);
        } catch (error) {
            // A port that is free at the first address may be in use at the second: try another one.
            if (port !== 0 || error.code !== 'EADDRINUSE' || attempt === ATTEMPTS_AT_ANY_PORT)
                throw error;
        }
    }
}

module.exports = { openListeners };
