// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { spawn } = require('child_process');

const TIMEOUT_MS = 1500;
const MAX_BYTES = 1024 * 1024;

// Nothing else of the environment is passed on, because it may contain secrets.
const PASSED_ON = ['PATH', 'HOME', 'XDG_RUNTIME_DIR', 'DBUS_SESSION_BUS_ADDRESS', 'DBUS_SYSTEM_BUS_ADDRESS', 'DISPLAY',
    'XAUTHORITY'];
const FIXED = { LC_ALL: 'C.UTF-8', SYSTEMD_COLORS: '0' };

//! The environment of a child program.
const environmentFrom = (env) => ({
    ...Object.fromEntries(PASSED_ON.filter((name) => env[name] !== undefined).map((name) => [name, env[name]])),
    ...FIXED,
});

//! Kills a child with its descendants.
function killGroup(child) {
    try {
        process.kill(-child.pid, 'SIGKILL');
    } catch {
        // They have ended in the meantime.
    }
}

//! Runs programs of the system that only report. They are looked up on PATH and run without a shell.
class Programs {
    #env;
    #timeoutMs;
    #maxBytes;
    #ends = new Set();
    #closed = false;

    constructor(env, { timeoutMs = TIMEOUT_MS, maxBytes = MAX_BYTES } = {}) {
        this.#env = environmentFrom(env);
        this.#timeoutMs = timeoutMs;
        this.#maxBytes = maxBytes;
    }

    //! Resolves to the standard output, or to null if the program is missing, fails or takes too long. A program that
    //! prints too much is killed; its output up to there counts.
    run(program, args) {
        if (this.#closed)
            return Promise.resolve(null);
        return new Promise((resolve) => {
            const chunks = [];
            let size = 0;
            // A group of its own, so that killGroup() reaches its descendants, which would keep the pipe open.
            const child = spawn(program, args,
                { env: this.#env, cwd: '/', stdio: ['ignore', 'pipe', 'ignore'], detached: true });

            const end = (output) => {
                clearTimeout(timer);
                this.#ends.delete(stop);
                resolve(output);
            };
            const kill = (output) => {
                if (child.pid !== undefined)
                    killGroup(child);
                child.stdout?.destroy();
                end(output);
            };
            const text = () => Buffer.concat(chunks, Math.min(size, this.#maxBytes)).toString('utf8');
            const stop = () => kill(null);
            const timer = setTimeout(stop, this.#timeoutMs);
            this.#ends.add(stop);

            child.once('error', () => end(null));
            child.once('close', (code) => end(code === 0 ? text() : null));
            child.stdout?.on('data', (chunk) => {
                chunks.push(chunk);
                size += chunk.length;
                if (size >= this.#maxBytes)
                    kill(text());
            });
        });
    }

    //! Kills what is running, when the bridge stops, and starts nothing more.
    close() {
        this.#closed = true;
        [...this.#ends].forEach((stop) => stop());
    }
}

module.exports = { Programs, environmentFrom };
