// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { NAMES, notice } = require('../notices');
const { oneLine } = require('../text');

const listed = NAMES.map((name) => `\`${name}\``).join(', ');

function suggest(turn, rest) {
    const frame = notice(oneLine(rest).toLowerCase());
    if (!frame)
        return { response: `There is no such suggestion. Add one of ${listed}.` };
    turn.sendToAll(frame);
    return { response: 'The result of a check for suggestions has been sent to all clients.' };
}

module.exports = {
    title: 'Workspaces',
    scenarios: [
        { phrases: ['suggestion'], about: `a suggestion that nobody asked for (add ${listed})`, answer: suggest },
    ],
};
