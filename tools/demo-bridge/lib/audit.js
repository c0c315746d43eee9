// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { Failure } = require('./frames');
const { Store } = require('./store');

//! What was done, and how to take it back. Actions live as long as the process; the oldest go first.
class AuditTrail {
    #now;
    #actions = new Store({ noun: 'action', code: 'ACTION_NOT_FOUND', prefix: 'act' });
    #undo = new Map(); // a list of functions by action id, empty for what only read, null for what stays done

    constructor(now = Date.now) {
        this.#now = now;
    }

    //! Enters an action. `steps` are {capabilityId, params, undo}: undo is a function, undefined where nothing changed,
    //! or null where nothing can be taken back. Gives the action's id.
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

    //! Takes an action back, its last step first. Gives how many steps were taken back and how many had to stay.
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
