// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { checkRange } = require('./params');
const { Store } = require('./store');
const { cut, oneLine } = require('./text');

const MINUTE_MS = 60 * 1000;
const YEAR_MS = 366 * 24 * 60 * MINUTE_MS;
const MAX_TEXT = 1000;

//! Pending reminders. A reminder that is due is removed; nothing else happens.
class Reminders {
    #now;
    #rows = new Store({ noun: 'reminder', code: 'REMINDER_NOT_FOUND', prefix: 'rem' });

    constructor(now = Date.now) {
        this.#now = now;
        this.schedule({ title: 'Tea', message: 'The tea is ready.', delayMs: 4 * MINUTE_MS });
        this.schedule({ title: 'Stretch', message: 'Time to get up for a moment.', delayMs: 45 * MINUTE_MS });
    }

    //! Pending reminders, next first; `fire_at` is in milliseconds since 1970, `remaining_ms` is the time until then.
    list() {
        this.#dropDue();
        return this.#rows.all()
            .sort((a, b) => a.fire_at - b.fire_at)
            .map((row) => ({ ...row, remaining_ms: row.fire_at - this.#now() }));
    }

    schedule({ title, message = '', delayMs }) {
        checkRange('delayMs', delayMs, 1, YEAR_MS);
        this.#dropDue();
        return this.#rows.add({
            title: cut(oneLine(title), MAX_TEXT),
            message: cut(message, MAX_TEXT),
            fire_at: this.#now() + delayMs,
        });
    }

    cancel(id) {
        this.#dropDue();
        this.#rows.delete(id);
    }

    #dropDue() {
        this.#rows.all().filter((row) => row.fire_at <= this.#now()).forEach(({ id }) => this.#rows.delete(id));
    }
}

module.exports = { Reminders };
