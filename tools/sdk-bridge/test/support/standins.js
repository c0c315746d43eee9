// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const fs = require('fs');
const path = require('path');

const TOOLS = 'PATH=/usr/bin:/bin';

//! Stand-ins for programs of the system: shell scripts in a folder that serves as PATH, so that no real one is found.
class StandIns {
    constructor(folder) {
        this.folder = folder;
        this.callsFile = path.join(folder, 'calls');
        //! An environment in which programs are only found here.
        this.env = { PATH: folder };
    }

    //! Adds a program that records its arguments and runs `script`.
    add(name, script) {
        const text = `#!/bin/sh\nprintf '%s\\n' "${name} $*" >> '${this.callsFile}'\n${script}\n`;
        fs.writeFileSync(path.join(this.folder, name), text, { mode: 0o755 });
        return this;
    }

    //! A program that prints `text`.
    printing(name, text) {
        const file = path.join(this.folder, `${name}.output`);
        fs.writeFileSync(file, text);
        return this.add(name, `${TOOLS} cat '${file}'`);
    }

    //! A program that never ends, and neither does its own child. Their ids are in the file `pids`.
    hanging(name) {
        const pids = path.join(this.folder, 'pids');
        return this.add(name, `${TOOLS}
            sleep 600 &
            printf '%s\\n' $$ $! > '${pids}.new'
            mv '${pids}.new' '${pids}'
            wait`);
    }

    //! A program that prints without end.
    endless(name) {
        return this.add(name, `${TOOLS} exec yes '"=[{x'`);
    }

    //! The command lines of all calls, in order.
    get calls() {
        return fs.existsSync(this.callsFile) ? fs.readFileSync(this.callsFile, 'utf8').trim().split('\n') : [];
    }

    //! Waits until the processes of hanging() run, and returns their ids.
    async pids() {
        const file = path.join(this.folder, 'pids');
        await until(() => fs.existsSync(file));
        return fs.readFileSync(file, 'utf8').trim().split('\n').map(Number);
    }
}

//! Polls until a condition holds. It may be asynchronous.
async function until(condition) {
    while (!await condition())
        await new Promise((resolve) => setTimeout(resolve, 10));
}

//! Whether a process has ended. One that waits to be reaped has.
function hasEnded(pid) {
    try {
        return / [ZX] /.test(fs.readFileSync(`/proc/${pid}/stat`, 'utf8'));
    } catch {
        return true;
    }
}

module.exports = { StandIns, hasEnded, until };
