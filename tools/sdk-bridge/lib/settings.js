// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { readModelSettings } = require('./model/settings');
const { stateFolder } = require('./folders');

//! The variables with an integer; an empty one counts as unset.
const NUMBERS = [
    // 0 uses any free port, which the bridge prints.
    { key: 'port', variable: 'LOOMRA_BRIDGE_PORT', least: 0, most: 65535, preset: 8765 },
    // The length of a beat, the unit of all pauses in scenarios.
    { key: 'beat', variable: 'LOOMRA_DEMO_DELAY_MS', least: 0, most: 60000, preset: 1000 },
    // Sessions at the start.
    { key: 'sessions', variable: 'LOOMRA_DEMO_SESSIONS', least: 0, most: 500, preset: 0 },
    // Seconds without a sign of life after which a reply of the model server is given up.
    { key: 'modelTimeout', variable: 'LOOMRA_MODEL_TIMEOUT_S', least: 1, most: 3600, preset: 120 },
    // Tokens of the model's context; 0 for what the model server says.
    { key: 'modelContext', variable: 'LOOMRA_MODEL_CONTEXT', least: 0, most: 10000000, preset: 0 },
];

const ON = '1'; // enables what is disabled by default

function readNumber({ variable, least, most, preset }, env) {
    const text = (env[variable] ?? '').trim();
    if (text === '')
        return preset;
    const value = /^\d{1,9}$/.test(text) ? Number(text) : NaN;
    if (!(value >= least && value <= most))
        throw new Error(`${variable} must be a whole number from ${least} to ${most}, not ${JSON.stringify(text)}`);
    return value;
}

//! Enabled by default: any value but "0" and "false" (ignoring case) means yes.
function readSwitch(text = '') {
    return text !== '0' && text.toLowerCase() !== 'false';
}

//! Parses the environment: `port`, `beat` (milliseconds), `sessions`, `stateFolder` (a path, or null),
//! `executorPathEnabled`, `workspaceIntel` and `aiRuntime`. Throws an Error with a message for the user if a number is invalid.
function readSettings(env) {
    const settings = {
        stateFolder: stateFolder(env),
        model: readModelSettings(env),
        executorPathEnabled: readSwitch(env.LOOMRA_EXECUTOR_PATH),
        workspaceIntel: env.LOOMRA_WORKSPACE_INTEL === ON,
        aiRuntime: env.LOOMRA_AI_RUNTIME === ON,
    };
    for (const number of NUMBERS)
        settings[number.key] = readNumber(number, env);
    return settings;
}

module.exports = { readSettings };
