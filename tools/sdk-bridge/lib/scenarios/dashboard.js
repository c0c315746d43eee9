// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// What the System tab of the settings shows.

const MANY = 12;

function log(turn, level, count, message) {
    for (let n = 1; n <= count; ++n)
        turn.journal.add(level, 'demo.request', count > 1 ? `${message} (${n} of ${count})` : message);
}

const logging = (level, count, message) => (turn) => {
    log(turn, level, count, message);
    return { response: `Logged. See the System tab of the settings: ${count} × ${level}.` };
};

module.exports = {
    title: 'Dashboard',
    scenarios: [
        {
            phrases: ['log error'],
            about: 'an error in the log',
            answer: logging('error', 1, 'The made-up indexer stopped: its database is locked'),
        },
        {
            phrases: ['log warning'],
            about: 'a warning in the log',
            answer: logging('warn', 1, 'The made-up mail account took 4.2 s to answer, which is longer than the limit of 2 s; ' +
                'it is tried again in a minute'),
        },
        {
            phrases: ['log many'],
            about: 'a burst of errors and warnings',
            answer: (turn) => {
                log(turn, 'warn', MANY, 'A made-up request was repeated');
                log(turn, 'error', MANY, 'A made-up request failed for good');
                return { response: 'Logged. See the System tab of the settings.' };
            },
        },
    ],
};
