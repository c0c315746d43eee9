// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const http = require('http');

//! Clients come by both: one by the address itself, another by the name "localhost", which may mean either.
//! The order is fixed: of two bridges that start at once, one loses at the first address and leaves the second alone.
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

//! Opens one HTTP server an address, all on the same port. Gives `port`, `servers`, `shown` (addresses as they stand in
//! a URL) and `missing` (optional addresses that this machine does not have). Rejects with the system's error, with
//! all closed again.
async function openListeners(port, addresses = LOOPBACK) {
    for (let attempt = 1; ; ++attempt) {
        try {
            return await listenOnAll(port, addresses);
        } catch (error) {
            // A port that is free at the first address may be taken at the second; another one will do then.
            if (port !== 0 || error.code !== 'EADDRINUSE' || attempt === ATTEMPTS_AT_ANY_PORT)
                throw error;
        }
    }
}

module.exports = { openListeners };
