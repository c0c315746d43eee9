// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const timers = require('timers/promises');

const { follow } = require('./signals');

//! Waits in beats, for work that belongs to no connection.
class Pace {
    #beat;
    #closed = new AbortController();

    //! `beat` in milliseconds.
    constructor(beat) {
        this.#beat = beat;
    }

    //! Resolves to true after some beats, or to false as soon as `signal` is aborted or the bridge stops.
    async pass(beats, signal) {
        const ends = follow(...(signal ? [signal, this.#closed.signal] : [this.#closed.signal]));
        try {
            await timers.setTimeout(beats * this.#beat, undefined, { signal: ends.signal });
        } catch (error) {
            if (error.name !== 'AbortError')
                throw error;
        } finally {
            ends.release();
        }
        return !ends.signal.aborted;
    }

    //! Ends all waits, when the bridge stops.
    close() {
        this.#closed.abort();
    }
}

module.exports = { Pace };
