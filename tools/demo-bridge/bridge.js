// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const log = require('./lib/log');
const { readSettings } = require('./lib/settings');

const EXIT_FAILURE = 1;
const EXIT_USAGE = 2;

//! Loads the server, or tells what to do where its one dependency was never installed.
function loadServer() {
    try {
        return require('./lib/server');
    } catch (error) {
        if (error.code !== 'MODULE_NOT_FOUND' || !/'ws'/.test(error.message))
            throw error;
        log.note(`The package "ws" is missing: run "npm ci" in ${__dirname} first`);
        return null;
    }
}

async function main() {
    let settings;
    try {
        settings = readSettings(process.env);
    } catch (error) {
        log.note(error.message);
        return EXIT_USAGE;
    }

    const server = loadServer();
    if (!server)
        return EXIT_FAILURE;

    // Before the first listener, and for good: the default action of a signal would end with another code.
    const asked = new Promise((resolve) => {
        process.on('SIGTERM', resolve);
        process.on('SIGINT', resolve);
    });

    let bridge;
    try {
        bridge = await server.start(settings);
    } catch (error) {
        if (error.code === 'EADDRINUSE') {
            // Not a failure: whoever has the port is taken for a bridge that already serves.
            log.note(`Port ${settings.port} is taken, so there is nothing to do here`);
            return 0;
        }
        log.note(`The demo bridge cannot listen on port ${settings.port}: ${error.message}`);
        return EXIT_FAILURE;
    }

    log.announce(`Demo bridge listening on ${bridge.urls.join(' and ')}`);
    await asked;
    await bridge.stop();
    return 0;
}

main().then((code) => {
    // A set code and an empty event loop end the process; process.exit() could cut off the last line.
    process.exitCode = code;
});
