// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// How long it takes to list 200 stored sessions of 1000 messages: in a new process, from loading the code until the list is
// there, and again in the same process; medians of 20 processes.

const fs = require('fs');
const os = require('os');
const path = require('path');
const { execFileSync } = require('child_process');

const { bounded, median } = require('./figures');

const LIB = path.join(__dirname, '../../tools/sdk-bridge/lib');

const SESSIONS = 200;
const MESSAGES = 1000;
const PROCESSES = 20;
const MAX_MS = 50;

//! Writes the files directly: through the store, this would take longer than everything else.
function fill(folder) {
    const { encodeLine } = require(`${LIB}/storage/lines`);
    const { fileOf, headRow } = require(`${LIB}/storage/rows`);
    const { SessionStore } = require(`${LIB}/sessions`);
    const store = new SessionStore({ folder });
    for (let n = 0; n < SESSIONS; ++n) {
        const session = store.draft();
        const lines = Array.from({ length: MESSAGES }, (_, i) => encodeLine({
            role: i % 2 ? 'assistant' : 'user', content: `Message ${i} of session ${n}. ${'Some words. '.repeat(20)}`, at: i,
        }));
        fs.writeFileSync(path.join(folder, 'sessions', fileOf(session.id)),
            Buffer.concat([encodeLine(headRow(session)), ...lines]), { mode: 0o600 });
        store.keep(session);
        store.rename(session.id, `Session ${n}`);
    }
}

//! Measures in this process: [first listing, later listing], in ms.
function measure(folder) {
    const start = performance.now();
    const { SessionStore } = require(`${LIB}/sessions`);
    const store = new SessionStore({ folder });
    const rows = store.list();
    const listed = performance.now();
    if (rows.length !== SESSIONS)
        throw new Error(`${rows.length} sessions were listed instead of ${SESSIONS}`);
    const again = performance.now();
    store.list();
    return [listed - start, performance.now() - again];
}

function main() {
    const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'sdk-bridge-bench-'));
    try {
        fill(folder);
        const times = Array.from({ length: PROCESSES }, () =>
            JSON.parse(execFileSync(process.execPath, [__filename, folder], { encoding: 'utf8' })));
        ['bridge.sessions.first', 'bridge.sessions.again'].forEach((name, n) =>
            bounded(name, median(times.map((pair) => pair[n])), 'ms', MAX_MS));
    } finally {
        fs.rmSync(folder, { recursive: true, force: true });
    }
}

if (process.argv[2])
    console.log(JSON.stringify(measure(process.argv[2])));
else
    main();
