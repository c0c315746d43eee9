// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const http = require('http');
const { WebSocketServer } = require('ws');

const log = require('./log');
const { Connection } = require('./connection');
const { House } = require('./house');
const { openListeners } = require('./listeners');

const PATH = '/ws';
const MAX_FRAME_BYTES = 16 * 1024 * 1024;
const GOING_AWAY = 1001;
const GRACE_MS = 250; // for the closing handshake, before connections are closed

//! The HTTP status with which an upgrade request is refused, or 0.
function refusal(request) {
    if (request.url.split('?', 1)[0] !== PATH)
        return 404;
    // Only browsers send an origin, and web pages must not connect.
    if (request.headers.origin !== undefined)
        return 403;
    return 0;
}

function refuse(socket, status) {
    socket.once('finish', () => socket.destroy());
    socket.end(`HTTP/1.1 ${status} ${http.STATUS_CODES[status]}\r\nConnection: close\r\nContent-Length: 0\r\n\r\n`);
}

function answerPlainRequest(request, response) {
    const status = refusal(request) || 426;
    response.writeHead(status, { Connection: 'close', 'Content-Type': 'text/plain' });
    response.end(`${http.STATUS_CODES[status]}\n`);
}

//! Starts the server. Resolves to `urls` and `stop()`; rejects with the system's error if the port is in use.
async function start(settings) {
    const { port, servers, shown, missing } = await openListeners(settings.port);
    const house = new House(settings);
    house.model.search();
    const webSockets = new WebSocketServer({ noServer: true, maxPayload: MAX_FRAME_BYTES });
    const sockets = new Set();

    webSockets.on('connection', (socket) => new Connection(socket, house));

    for (const server of servers) {
        server.on('connection', (socket) => {
            sockets.add(socket);
            socket.once('close', () => sockets.delete(socket));
        });
        server.on('request', answerPlainRequest);
        server.on('upgrade', (request, socket, head) => {
            socket.on('error', (error) => log.note(`A connection broke: ${error.message}`));
            const status = refusal(request);
            if (status)
                refuse(socket, status);
            else
                webSockets.handleUpgrade(request, socket, head, (client) => webSockets.emit('connection', client));
        });
    }

    for (const address of missing)
        log.note(`${address} is not available on this machine, so the bridge does without it`);

    //! Stops within GRACE_MS, whatever the clients do.
    async function stop() {
        house.close();
        const closed = servers.map((server) => new Promise((resolve) => server.close(resolve)));
        for (const client of webSockets.clients)
            client.close(GOING_AWAY, 'The bridge ends');
        const cutOff = setTimeout(() => sockets.forEach((socket) => socket.destroy()), GRACE_MS);
        await Promise.all(closed);
        clearTimeout(cutOff);
    }

    return { urls: shown.map((address) => `ws://${address}:${port}${PATH}`), stop };
}

module.exports = { start };
