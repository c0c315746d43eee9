// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const crypto = require('crypto');

const { Failure } = require('./frames');
const { cut } = require('./text');

const MAX_SHOWN_ID = 100;
const MAX_ROW = 100000; // characters as JSON

//! Rows in memory by an id that they get here, oldest first. `noun` names a row in messages ("an automation"),
//! `code` is the code of the failure when there is none, `prefix` begins the ids.
class Store {
    #byId = new Map();
    #facts;

    constructor(facts) {
        this.#facts = { limit: 500, ...facts };
    }

    //! Keeps a row and gives it, its id included. Throws a Failure for one that is too big, or one too many.
    add(row) {
        if (this.#byId.size >= this.#facts.limit)
            throw new Failure(`The demo bridge keeps no more than ${this.#facts.limit} of these`, 'FULL');
        const kept = { id: `${this.#facts.prefix}_${crypto.randomBytes(6).toString('hex')}`, ...row };
        this.#checkSize(kept);
        this.#byId.set(kept.id, kept);
        return kept;
    }

    //! The row; throws a Failure when there is none.
    get(id) {
        const row = this.#byId.get(id);
        if (!row)
            throw new Failure(`There is no ${this.#facts.noun} with the id ${JSON.stringify(cut(id, MAX_SHOWN_ID))}`,
                this.#facts.code);
        return row;
    }

    //! Replaces some fields of a row and gives it. Throws a Failure when there is none, or it gets too big.
    change(id, fields) {
        const row = this.get(id);
        this.#checkSize({ ...row, ...fields });
        return Object.assign(row, fields);
    }

    delete(id) {
        this.get(id);
        this.#byId.delete(id);
    }

    //! Forgets the oldest row when the store is full, for stores that never refuse one.
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
