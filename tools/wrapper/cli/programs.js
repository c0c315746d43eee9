// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const fs = require('fs');
const path = require('path');
const { spawn } = require('child_process');

const TIMEOUT_MS = 3000;
const MAX_CHARACTERS = 256 * 1024;

function isExecutableFile(file) {
    try {
        fs.accessSync(file, fs.constants.X_OK);
        return fs.statSync(file).isFile();
    } catch {
        return false;
    }
}

//! The path of a program on PATH; '' if there is none.
function findProgram(name, { PATH = '' }) {
    const folder = PATH.split(':').find((each) => path.isAbsolute(each) && isExecutableFile(path.join(each, name)));
    return folder ? path.join(folder, name) : '';
}

//! Runs a program that only reports. Resolves to {code, output, errors}. The code is null if the program is missing, or
//! takes too long and is killed with its descendants.
function run(program, args, { env = process.env, timeoutMs = TIMEOUT_MS } = {}) {
    return new Promise((resolve) => {
        let output = '';
        let errors = '';
        // A process group, because descendants would keep the pipes open.
        const child = spawn(program, args,
            { env: { ...env, LC_ALL: 'C.UTF-8' }, stdio: ['ignore', 'pipe', 'pipe'], detached: true });
        const end = (code) => {
            clearTimeout(timer);
            resolve({ code, output, errors });
        };
        const kill = () => {
            try {
                process.kill(-child.pid, 'SIGKILL');
            } catch {
                // They have ended in the meantime.
            }
            child.stdout.destroy();
            child.stderr.destroy();
            end(null);
        };
        const timer = setTimeout(kill, timeoutMs);
        child.once('error', () => end(null));
        child.once('close', end);
        child.stdout?.setEncoding('utf8').on('data', (text) => {
            output += text;
            if (output.length > MAX_CHARACTERS)
                kill();
        });
        child.stderr?.setEncoding('utf8').on('data', (text) => { errors = (errors + text).slice(0, MAX_CHARACTERS); });
    });
}

module.exports = { findProgram, isExecutableFile, run };
