// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const crypto = require('crypto');

const { Failure } = require('./frames');
const { cut } = require('./text');

const MAX_SHOWN_ID = 100;
const MAX_ROW = 100000; // characters as JSON

//! Rows in memory, oldest first, by an id that the store assigns. `noun` is a row's name in messages ("an automation"),
//! `code` is the error code for an unknown id, `prefix` begins each id.
class Store {
    #byId = new Map();
    #facts;

    constructor(facts) {
        this.#facts = { limit: 500, ...facts };
    }

    //! Adds a row and returns it with its id. Throws a Failure if the row is too big or the store is full.
    add(row) {
        if (this.#byId.size >= this.#facts.limit)
            throw new Failure(`The bridge keeps no more than ${this.#facts.limit} of these`, 'FULL');
        const kept = { id: `${this.#facts.prefix}_${crypto.randomBytes(6).toString('hex')}`, ...row };
        this.#checkSize(kept);
        this.#byId.set(kept.id, kept);
        return kept;
    }

    //! The row of an id. Throws a Failure if there is none.
    get(id) {
        const row = this.#byId.get(id);
        if (!row)
            throw new Failure(`There is no ${this.#facts.noun} with the id ${JSON.stringify(cut(id, MAX_SHOWN_ID))}`,
                this.#facts.code);
        return row;
    }

    //! Replaces some fields of a row and returns it. Throws a Failure if there is no such row or it gets too big.
    change(id, fields) {
        const row = this.get(id);
        this.#checkSize({ ...row, ...fields });
        return Object.assign(row, fields);
    }

    delete(id) {
        this.get(id);
        this.#byId.delete(id);
    }

    //! Removes the oldest row if the store is full, for stores that never refuse a new one.
    makeRoom() {
        if (this.#byId.size >= this.#facts.limit)
            this.#byId.delete(this.#byId.keys().next().value);
    }

    all() {
        return [...this.#byId.values()];
    }

    #checkSize(row) {
        if (JSON.stringify(row).length > MAX_ROW)
            throw new Failure(`A ${this.#facts.noun} takes at most ${MAX_ROW} characters`, 'TOO_LARGE');
    }
}

module.exports = { Store };
