// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { performance } = require('perf_hooks');

const SHARED_MS = 1000;

//! Makes a function that reads at most once at a time: callers get the same promise while it is pending and for a second
//! after, because each open window polls. `clock` is monotonic, in milliseconds.
function shared(read, clock = () => performance.now()) {
    let current = null;
    let doneAt = null;
    return () => {
        if (current && (doneAt === null || clock() - doneAt < SHARED_MS))
            return current;
        doneAt = null;
        current = read();
        const done = () => { doneAt = clock(); };
        current.then(done, done);
        return current;
    };
}

module.exports = { SHARED_MS, shared };
