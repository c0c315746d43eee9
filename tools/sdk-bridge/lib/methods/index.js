// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// A method is a row: `name`, `params` (rules, absent without params), `needs` (settings that must be enabled) and
// `perform`, which takes {id, params, connection, house} and returns an outcome.

const { Failure } = require('../frames');
const { cut } = require('../text');

const MAX_NAME = 100;

const METHODS = [
    ...require('./conversation'),
    ...require('./bridge'),
    ...require('./code'),
    ...require('./trust'),
    ...require('./automation'),
    ...require('./reports'),
    ...require('./workspaces'),
];

const NEEDS = {
    workspaceIntel: 'Workspace intelligence is off: start the bridge with LOOMRA_WORKSPACE_INTEL=1',
    aiRuntime: 'The AI runtime is off: start the bridge with LOOMRA_AI_RUNTIME=1',
};

const byName = new Map(METHODS.map((method) => [method.name, { params: {}, needs: [], ...method }]));

//! The row of a method. Throws a Failure if it is unknown or disabled by the settings.
function findMethod(name, settings) {
    const method = byName.get(name);
    if (!method)
        throw new Failure(`Unknown method ${JSON.stringify(cut(name, MAX_NAME))}`, 'UNKNOWN_METHOD');
    const missing = method.needs.find((need) => !settings[need]);
    if (missing)
        throw new Failure(NEEDS[missing], 'NOT_AVAILABLE');
    return method;
}

module.exports = { METHODS, findMethod };
