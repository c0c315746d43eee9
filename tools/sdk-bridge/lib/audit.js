// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { Failure } = require('./frames');
const { Store } = require('./store');

//! The audit trail: what was done, and how to undo it. Actions live as long as the process; the oldest are removed first.
class AuditTrail {
    #now;
    // The window shows nothing else of an action than its id, which therefore says what it is.
    #actions = new Store({ noun: 'action', code: 'ACTION_NOT_FOUND', prefix: 'demo-act' });
    #undo = new Map(); // functions by action id: empty if nothing changed, null if it can't be undone

    constructor(now = Date.now) {
        this.#now = now;
    }

    //! Adds an action and returns its id. `steps` are {capabilityId, params, undo}: undo is a function, undefined if
    //! nothing changed, or null if the step can't be undone.
    enter(source, steps) {
        this.#actions.makeRoom();
        const { id } = this.#actions.add({
            at: this.#now(),
            source,
            summary: steps.map(({ capabilityId }) => capabilityId).join(', '),
            steps: steps.map(({ capabilityId, params }) => ({ capabilityId, params })),
            revertedAt: null,
        });
        this.#undo.set(id, steps.map(({ undo }) => undo));
        this.#forgetDropped();
        return id;
    }

    //! The last actions, newest first; times in milliseconds since 1970.
    list(limit) {
        return this.#actions.all().slice(-limit).reverse();
    }

    //! Undoes an action, its last step first. Returns how many steps were undone and how many couldn't be.
    revert(id) {
        const action = this.#actions.get(id);
        if (action.revertedAt !== null)
            throw new Failure('This action was taken back before', 'ALREADY_REVERTED');
        const undo = this.#undo.get(id);
        const changes = undo.filter((each) => typeof each === 'function');
        const kept = undo.filter((each) => each === null).length;
        if (kept && !changes.length)
            throw new Failure('This action cannot be taken back', 'NOT_REVERTIBLE');
        changes.reverse().forEach((take) => take());
        action.revertedAt = this.#now();
        return { reverted: changes.length, kept };
    }

    #forgetDropped() {
        const live = new Set(this.#actions.all().map(({ id }) => id));
        for (const id of this.#undo.keys()) {
            if (!live.has(id))
                this.#undo.delete(id);
        }
    }
}

module.exports = { AuditTrail };
