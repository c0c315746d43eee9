// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { cut, oneLine } = require('./text');

const MAX_ENTRIES = 200;
const MAX_MESSAGE = 300;
const WINDOW_MS = 60 * 1000;

//! The log of errors and warnings: counters and the latest entries. Times are in milliseconds since 1970.
class Journal {
    #now;
    #entries = [];
    #totals = { error: 0, warn: 0 };
    #last = { error: null, warn: null };

    constructor(now = Date.now) {
        this.#now = now;
    }

    //! Adds an entry of the level "error" or "warn".
    add(level, event, message) {
        const timestamp = this.#now();
        ++this.#totals[level];
        this.#last[level] = timestamp;
        this.#entries.push({ level, event, message: cut(oneLine(message), MAX_MESSAGE), timestamp });
        if (this.#entries.length > MAX_ENTRIES)
            this.#entries.shift();
    }

    total(level) {
        return this.#totals[level];
    }

    //! The time of the last entry of a level, or null.
    lastTs(level) {
        return this.#last[level];
    }

    //! The latest entries, oldest first.
    latest(count) {
        return this.#entries.slice(-count);
    }

    //! The number of entries of a level in the last minute against the minute before: "up", "down" or "stable".
    direction(level) {
        const now = this.#now();
        const count = (from, to) => this.#entries
            .filter((entry) => entry.level === level && now - entry.timestamp >= from && now - entry.timestamp < to).length;
        const change = count(0, WINDOW_MS) - count(WINDOW_MS, 2 * WINDOW_MS);
        return change > 0 ? 'up' : change < 0 ? 'down' : 'stable';
    }
}

module.exports = { Journal };
