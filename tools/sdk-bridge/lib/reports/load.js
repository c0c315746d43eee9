// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { performance } = require('perf_hooks');
const timers = require('timers/promises');

const SHORTEST_MS = 200; // counters advance every 10 ms
const LONGEST_MS = 10000; // a mean over a longer time isn't the current load

//! Compares counters with those of an earlier call, or of a moment ago if there is no recent one.
class Counters {
    #read;
    #clock;
    #wait;
    #last = null;

    //! `read` resolves to the counters, or to null. `clock` is monotonic, `wait` takes milliseconds.
    constructor(read, { clock = () => performance.now(), wait = (ms) => timers.setTimeout(ms) } = {}) {
        this.#read = read;
        this.#clock = clock;
        this.#wait = wait;
    }

    //! Resolves to [earlier, current] counters.
    async measure() {
        if (!this.#last || this.#clock() - this.#last.at > LONGEST_MS)
            await this.#sample();
        const missing = this.#last.at + SHORTEST_MS - this.#clock();
        if (missing > 0)
            await this.#wait(missing);
        const before = this.#last.counters;
        await this.#sample();
        return [before, this.#last.counters];
    }

    async #sample() {
        const counters = await this.#read();
        this.#last = { at: this.#clock(), counters };
    }
}

//! The counters of all processors in /proc/stat: {busy, total, processors}, in ticks. Null if they aren't there.
function parseStat(text) {
    const [, line] = /^cpu +(.*)$/m.exec(text ?? '') ?? [];
    const ticks = (line ?? '').split(' ').slice(0, 8).map(Number); // the others are contained in these
    if (ticks.length < 4 || !ticks.every(Number.isFinite))
        return null;
    const total = ticks.reduce((sum, each) => sum + each, 0);
    const [, , , idle, waiting = 0] = ticks;
    return { busy: total - idle - waiting, total, processors: text.match(/^cpu\d+ /gm)?.length || 1 };
}

const MICROSECONDS = 1000; // per millisecond

//! The load that this process causes, in percent of one processor, since the last call.
class OwnLoad {
    #usage;
    #clock;
    #last = { used: 0, at: 0 };

    //! `usage` returns {user, system} in microseconds; `clock` the milliseconds since the process started.
    constructor(usage = () => process.cpuUsage(), clock = () => process.uptime() * 1000) {
        this.#usage = usage;
        this.#clock = clock;
    }

    percent() {
        const { user, system } = this.#usage();
        const now = { used: (user + system) / MICROSECONDS, at: this.#clock() };
        const { used, at } = this.#last;
        this.#last = now;
        return now.at > at ? Math.round((1000 * (now.used - used)) / (now.at - at)) / 10 : 0;
    }
}

module.exports = { Counters, OwnLoad, parseStat };
