// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const fs = require('fs');
const path = require('path');
const { once } = require('events');
const { spawn } = require('child_process');

const { temporaryFolder } = require('../../../sdk-bridge/test/support/child');

const WRAPPER_DIR = path.join(__dirname, '..', '..');
const BRIDGE_DIR = path.join(WRAPPER_DIR, '..', 'sdk-bridge');

//! A stand-in for the program: prints its arguments and the path of its bridge, each ended by a null byte, and exits with
//! $STATUS.
const PROGRAM = `#!/bin/sh
if [ "\${1:-}" = --version ]; then echo 'tovictl 0.3.2'; exit; fi
printf '%s\\0' "$@" "\${LOOMRA_BRIDGE_PATH-unset}"
exit "\${STATUS:-0}"
`;

function writeProgram(file, text) {
    fs.mkdirSync(path.dirname(file), { recursive: true });
    fs.writeFileSync(file, text, { mode: 0o755 });
}

//! A started command.
class Command {
    output = Buffer.alloc(0);
    errors = '';

    constructor(command, args, options) {
        this.process = spawn(command, args, options);
        this.process.stdout?.on('data', (data) => { this.output = Buffer.concat([this.output, data]); });
        this.process.stderr?.setEncoding('utf8').on('data', (text) => { this.errors += text; });
        this.process.stdin?.on('error', () => {}); // it needn't read everything
        this.ended = once(this.process, 'close').then(([code, signal]) =>
            ({ code, signal, output: this.output.toString('utf8'), bytes: this.output, errors: this.errors }));
    }
}

//! An installation in a temporary folder, with a stand-in for the program. All else is real.
class Installation {
    constructor(t) {
        this.prefix = fs.realpathSync(temporaryFolder(t));
        this.home = fs.realpathSync(temporaryFolder(t));
        this.parts = path.join(this.prefix, 'libexec/tovi-forkeldaos');
        this.wrapper = path.join(this.prefix, 'bin/tovictl');
        this.program = path.join(this.parts, 'tovictl');
        this.uninstaller = path.join(this.parts, 'tovictl-uninstall');
        fs.mkdirSync(path.dirname(this.wrapper), { recursive: true });
        fs.cpSync(path.join(WRAPPER_DIR, 'tovictl'), this.wrapper);
        fs.mkdirSync(this.parts, { recursive: true });
        fs.cpSync(path.join(WRAPPER_DIR, 'cli'), path.join(this.parts, 'cli'), { recursive: true });
        fs.cpSync(path.join(WRAPPER_DIR, 'tovictl-uninstall'), this.uninstaller);
        fs.symlinkSync(BRIDGE_DIR, path.join(this.parts, 'sdk-bridge'));
        writeProgram(this.program, PROGRAM);
    }

    env(more = {}) {
        const env = { ...process.env, HOME: this.home };
        for (const name of Object.keys(env)) {
            if (/^(?:LOOMRA_|XDG_(?:CONFIG|DATA|STATE|CACHE)_HOME|SUDO_USER)/.test(name))
                delete env[name];
        }
        return { ...env, ...more };
    }

    //! Starts the wrapper. `env` adds variables; `options` are those of spawn().
    start(args, { env, command = this.wrapper, ...options } = {}) {
        return new Command(command, args, { env: this.env(env), cwd: this.home, ...options });
    }

    //! Runs the wrapper with `input` on its standard input. Resolves to {code, signal, output, bytes, errors}.
    run(args, { input = '', ...options } = {}) {
        const command = this.start(args, options);
        command.process.stdin?.end(input);
        return command.ended;
    }

    //! Runs a line of bash, in which $tovictl is the wrapper.
    shell(line, { env, ...options } = {}) {
        return this.run(['-c', line], { command: 'bash', env: { tovictl: this.wrapper, ...env }, ...options });
    }

    //! Runs the wrapper on a pseudo-terminal. The output has what the terminal shows, standard error included.
    onTerminal(args, options) {
        const quoted = [this.wrapper, ...args].map((each) => `'${each.replaceAll('\'', '\'\\\'\'')}'`).join(' ');
        return this.run(['-qec', quoted, '/dev/null'], { command: 'script', ...options });
    }
}

module.exports = { BRIDGE_DIR, Installation, WRAPPER_DIR, writeProgram };
