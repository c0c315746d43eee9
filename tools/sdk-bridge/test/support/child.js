// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const fs = require('fs');
const os = require('os');
const path = require('path');
const readline = require('readline');
const { once } = require('events');
const { spawn } = require('child_process');

const { Client } = require('./client');

const BRIDGE = path.join(__dirname, '..', '..', 'bridge.js');

//! Whether this machine has the second address of the bridge; otherwise the reason to skip a test.
const hasIPv6 = Object.values(os.networkInterfaces()).flat().some(({ address }) => address === '::1');
const withoutIPv6 = hasIPv6 ? false : 'this machine has no ::1';

//! The environment without the caller's variables for the bridge, conversations and model server.
const clean = (env) => ({
    ...Object.fromEntries(Object.entries(env).filter(([name]) => !/^LOOMRA_|^XDG_STATE_HOME$|^HOME$/.test(name))),
    LOOMRA_MODEL_URL: 'none',
});

//! A folder that is removed at the end of the test.
function temporaryFolder(t) {
    const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'sdk-bridge-'));
    t.after(() => fs.rmSync(folder, { recursive: true, force: true, maxRetries: 10 }));
    return folder;
}

//! The bridge as a real child process.
class Child {
    output = '';
    errors = '';

    constructor(env) {
        this.process = spawn(process.execPath, [BRIDGE], { env: { ...clean(process.env), ...env } });
        this.process.stdout.setEncoding('utf8').on('data', (text) => { this.output += text; });
        this.process.stderr.setEncoding('utf8').on('data', (text) => { this.errors += text; });
        this.ended = once(this.process, 'close').then(([code, signal]) => ({ code, signal }));
    }

    //! Waits for the line with the port.
    async listening() {
        const lines = readline.createInterface({ input: this.process.stdout });
        const line = await Promise.race([
            once(lines, 'line').then(([text]) => text),
            this.ended.then(({ code }) => { throw new Error(`The bridge ended with code ${code}: ${this.errors}`); }),
        ]);
        this.port = Number(/:(\d+)\/ws/.exec(line)[1]);
        this.otherHost = hasIPv6 ? '[::1]' : '127.0.0.1';
        return this;
    }

    url(host = '127.0.0.1', urlPath = '/ws') {
        return `ws://${host}:${this.port}${urlPath}`;
    }

    //! A client that has received "ready".
    connect(host) {
        return Client.open(this.url(host));
    }

    //! Ends the child by a signal and resolves to {code, signal}.
    stop(signal = 'SIGTERM') {
        this.process.kill(signal);
        return this.ended;
    }

    //! Waits until standard error matches a pattern.
    async complains(pattern) {
        while (!pattern.test(this.errors))
            await once(this.process.stderr, 'data');
    }
}

//! Starts a bridge on a free port, which ends with the test. By default its scenarios have no pauses, its state is in a
//! folder of its own, and it looks for no model server.
async function startBridge(t, env = {}) {
    let child;
    // Registered before the folder, so that the bridge doesn't write while that is removed.
    t.after(() => child?.stop('SIGKILL'));
    const state = env.XDG_STATE_HOME ?? temporaryFolder(t);
    child = new Child({
        LOOMRA_BRIDGE_PORT: '0',
        LOOMRA_DEMO_DELAY_MS: '0',
        XDG_STATE_HOME: state,
        ...env,
    });
    child.state = state;
    return child.listening();
}

//! Runs a bridge that should end without a signal; resolves to {code, output, errors}.
async function runBridge(env) {
    const child = new Child(env);
    const { code } = await child.ended;
    return { code, output: child.output, errors: child.errors };
}

module.exports = { Child, runBridge, startBridge, temporaryFolder, withoutIPv6 };
