// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

//! The variables that hold a whole number; an empty one counts as unset.
const NUMBERS = [
    // 0 asks for any free port; the line that the bridge prints then tells which.
    { key: 'port', variable: 'LOOMRA_BRIDGE_PORT', least: 0, most: 65535, preset: 8765 },
    // The length of one beat; every scenario counts its pauses in beats.
    { key: 'beat', variable: 'LOOMRA_DEMO_DELAY_MS', least: 0, most: 60000, preset: 1000 },
];

const ON = '1'; // what switches on that which is off otherwise

function readNumber({ variable, least, most, preset }, env) {
    const text = (env[variable] ?? '').trim();
    if (text === '')
        return preset;
    const value = /^\d{1,9}$/.test(text) ? Number(text) : NaN;
    if (!(value >= least && value <= most))
        throw new Error(`${variable} must be a whole number from ${least} to ${most}, not ${JSON.stringify(text)}`);
    return value;
}

//! On unless switched off: everything but "0" and "false" (in any case) means yes, also an unset variable.
function readSwitch(text = '') {
    return text !== '0' && text.toLowerCase() !== 'false';
}

//! Reads the environment once: `port`, `beat` (milliseconds), `executorPathEnabled`, `workspaceIntel` and `aiRuntime`.
//! Throws an Error whose message is fit for the user when a number makes no sense.
function readSettings(env) {
    const settings = {
        executorPathEnabled: readSwitch(env.LOOMRA_EXECUTOR_PATH),
        workspaceIntel: env.LOOMRA_WORKSPACE_INTEL === ON,
        aiRuntime: env.LOOMRA_AI_RUNTIME === ON,
    };
    for (const number of NUMBERS)
        settings[number.key] = readNumber(number, env);
    return settings;
}

module.exports = { readSettings };
