// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');

const { readSettings } = require('../lib/settings');
const { test } = require('./support/timed');

const PRESET = {
    modelTimeout: 120,
    modelContext: 0,
    model: { address: null, search: true, allowRemote: false, key: '' },
    port: 8765,
    beat: 1000,
    sessions: 0,
    stateFolder: null,
    executorPathEnabled: true,
    workspaceIntel: false,
    aiRuntime: false,
};

test('without variables the bridge has its default port and pace', () => {
    assert.deepEqual(readSettings({}), PRESET);
    assert.deepEqual(readSettings({ LOOMRA_BRIDGE_PORT: '', LOOMRA_DEMO_DELAY_MS: ' ', LOOMRA_EXECUTOR_PATH: '' }),
        PRESET);
});

test('port and pace follow the environment up to their limits', () => {
    assert.equal(readSettings({ LOOMRA_BRIDGE_PORT: ' 1 ' }).port, 1);
    assert.equal(readSettings({ LOOMRA_BRIDGE_PORT: '65535' }).port, 65535);
    assert.equal(readSettings({ LOOMRA_DEMO_DELAY_MS: '0' }).beat, 0);
    assert.equal(readSettings({ LOOMRA_DEMO_DELAY_MS: '60000' }).beat, 60000);
});

for (const port of ['-1', '65536', '80a', '0x50', '1e3', '8765.5', 'NaN', '99999999999999999999', '８７６５']) {
    test(`the port ${port} is refused by name and value`, () => {
        assert.throws(() => readSettings({ LOOMRA_BRIDGE_PORT: port }), (error) =>
            error.message.startsWith('LOOMRA_BRIDGE_PORT must be') && error.message.includes(port));
    });
}

test('a pace that makes no sense is refused', () => {
    assert.throws(() => readSettings({ LOOMRA_DEMO_DELAY_MS: '60001' }), /LOOMRA_DEMO_DELAY_MS must be/);
});

test('the executor path is on unless switched off', () => {
    const table = { 0: false, false: false, False: false, FALSE: false, no: true, 1: true, ' 0': true };
    for (const [text, enabled] of Object.entries(table))
        assert.equal(readSettings({ LOOMRA_EXECUTOR_PATH: text }).executorPathEnabled, enabled, text);
});

for (const [variable, key] of [['LOOMRA_WORKSPACE_INTEL', 'workspaceIntel'], ['LOOMRA_AI_RUNTIME', 'aiRuntime']]) {
    test(`${variable} switches on by 1 alone`, () => {
        for (const [text, on] of [['1', true], ['0', false], ['', false], ['true', false], ['11', false]])
            assert.deepEqual(readSettings({ [variable]: text }), { ...PRESET, [key]: on }, text);
    });
}

test('the state is kept where the desktop keeps such files', () => {
    for (const [env, folder] of [
        [{ HOME: '/home/ann' }, '/home/ann/.local/state/loomra-bridge'],
        [{ HOME: '/home/ann', XDG_STATE_HOME: '/state' }, '/state/loomra-bridge'],
        [{ HOME: '/home/ann', XDG_STATE_HOME: '' }, '/home/ann/.local/state/loomra-bridge'],
        [{ HOME: '/home/ann', XDG_STATE_HOME: 'relative' }, '/home/ann/.local/state/loomra-bridge'],
        [{ XDG_STATE_HOME: '/state' }, '/state/loomra-bridge'],
        [{ HOME: 'relative' }, null],
        [{}, null],
    ])
        assert.equal(readSettings(env).stateFolder, folder, JSON.stringify(env));
});

test('the numbers for the model server have their ranges', () => {
    for (const [variable, key, minimum, maximum] of [
        ['LOOMRA_MODEL_TIMEOUT_S', 'modelTimeout', 1, 3600],
        ['LOOMRA_MODEL_CONTEXT', 'modelContext', 0, 10000000],
        ['LOOMRA_DEMO_SESSIONS', 'sessions', 0, 500],
    ]) {
        for (const value of [minimum, maximum])
            assert.equal(readSettings({ [variable]: String(value) })[key], value, variable);
        for (const value of [minimum - 1, maximum + 1, 'many', '1.5'])
            assert.throws(() => readSettings({ [variable]: String(value) }),
                { message: `${variable} must be a whole number from ${minimum} to ${maximum}, not "${value}"` });
    }
});
