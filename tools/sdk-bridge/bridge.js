// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const log = require('./lib/log');
const { readSettings } = require('./lib/settings');

const EXIT_FAILURE = 1;
const EXIT_USAGE = 2;

//! Loads the server. Without its packages, returns null and logs how to install them.
function loadServer() {
    try {
        return require('./lib/server');
    } catch (error) {
        const [, name] = /^Cannot find module '([^'./]+)'/.exec(error.message) ?? [];
        if (error.code !== 'MODULE_NOT_FOUND' || !name)
            throw error;
        log.note(`The package "${name}" is missing: run "npm ci" in ${__dirname} first`);
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

    // Programs that the bridge starts must not inherit it.
    delete process.env.LOOMRA_MODEL_KEY;

    const server = loadServer();
    if (!server)
        return EXIT_FAILURE;

    // Installed before the first listener and never removed: the default action of a signal has another exit code.
    const asked = new Promise((resolve) => {
        process.on('SIGTERM', resolve);
        process.on('SIGINT', resolve);
    });

    let bridge;
    try {
        bridge = await server.start(settings);
    } catch (error) {
        if (error.code === 'EADDRINUSE') {
            // Not a failure: another bridge is assumed to use the port.
            log.note(`Port ${settings.port} is taken, so there is nothing to do here`);
            return 0;
        }
        log.note(`The bridge cannot listen on port ${settings.port}: ${error.message}`);
        return EXIT_FAILURE;
    }

    log.announce(`Bridge listening on ${bridge.urls.join(' and ')}`);
    await asked;
    await bridge.stop();
    return 0;
}

main().then((code) => {
    // Not process.exit(), which could truncate the output: the process ends when the event loop is empty.
    process.exitCode = code;
});
