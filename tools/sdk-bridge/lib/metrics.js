// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { performance } = require('perf_hooks');

const MAX_LATENCIES = 500;

const rounded = (milliseconds) => Math.round(milliseconds * 10) / 10;

//! Counters since the start of the bridge. Times are in milliseconds.
class Metrics {
    #clock;
    #began;
    #latencies = [];
    #counts = { requestCount: 0, actionCount: 0, suggestionCount: 0, errorCount: 0 };

    //! `clock` is monotonic, in milliseconds.
    constructor(clock = () => performance.now()) {
        this.#clock = clock;
        this.#began = clock();
    }

    get uptimeMs() {
        return Math.floor(this.#clock() - this.#began);
    }

    //! Counts a request. Returns the function to call when it is answered.
    beginRequest() {
        ++this.#counts.requestCount;
        const began = this.#clock();
        return () => {
            this.#latencies.push(this.#clock() - began);
            if (this.#latencies.length > MAX_LATENCIES)
                this.#latencies.shift();
        };
    }

    countAction() {
        ++this.#counts.actionCount;
    }

    countSuggestion() {
        ++this.#counts.suggestionCount;
    }

    countError() {
        ++this.#counts.errorCount;
    }

    //! The counters, and the latency of the last requests.
    report() {
        const sorted = [...this.#latencies].sort((a, b) => a - b);
        const sum = sorted.reduce((all, each) => all + each, 0);
        return {
            ...this.#counts,
            lastRequestMs: rounded(this.#latencies.at(-1) ?? 0),
            avgLatencyMs: rounded(sorted.length ? sum / sorted.length : 0),
            p95LatencyMs: rounded(sorted[Math.ceil(sorted.length * 0.95) - 1] ?? 0),
            uptimeMs: this.uptimeMs,
        };
    }
}

module.exports = { Metrics };
