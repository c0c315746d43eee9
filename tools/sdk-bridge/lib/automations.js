// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { invalid } = require('./params');
const { Store } = require('./store');

const DAY_MS = 24 * 60 * 60 * 1000;

//! Stored automations. They can be edited and enabled, but never run: there is no scheduler.
class Automations {
    // The window shows nothing else of a row than its id, which therefore says what it is.
    #rows = new Store({ noun: 'automation', code: 'AUTOMATION_NOT_FOUND', prefix: 'demo-auto' });

    constructor(now = Date.now) {
        this.#rows.add({
            name: 'Dark in the evening',
            enabled: true,
            lastRun: now() - DAY_MS,
            trigger: { type: 'time', at: '20:00' },
            steps: [{ capabilityId: 'theme.apply', params: { name: 'Breeze Dark' } }],
            condition: {},
        });
        this.#rows.add({
            name: 'Quiet in meetings',
            enabled: false,
            lastRun: null,
            trigger: { type: 'app', opened: 'Video call' },
            steps: [{ capabilityId: 'notification.dnd.set', params: { enabled: true } }],
            condition: { weekday: true },
        });
    }

    //! All automations; `lastRun` is in milliseconds since 1970, or null.
    list() {
        return this.#rows.all();
    }

    create({ name = '', trigger, steps, condition = {} }) {
        if (!steps.length)
            throw invalid('An automation needs at least one step');
        return this.#rows.add({ name, enabled: true, lastRun: null, trigger, steps, condition });
    }

    //! Changes those of `name`, `trigger`, `steps`, `condition` and `enabled` that are given; ignores other keys.
    update({ id, name, trigger, steps, condition, enabled }) {
        if (steps && !steps.length)
            throw invalid('An automation needs at least one step');
        const given = Object.entries({ name, trigger, steps, condition, enabled })
            .filter(([, value]) => value !== undefined);
        return this.#rows.change(id, Object.fromEntries(given));
    }

    delete(id) {
        this.#rows.delete(id);
    }

    pause(id, pause) {
        return this.#rows.change(id, { enabled: !pause });
    }
}

module.exports = { Automations };
