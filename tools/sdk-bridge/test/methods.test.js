// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');

const { METHODS } = require('../lib/methods');
const { startBridge } = require('./support/child');
const { test } = require('./support/timed');

const NAMES = ['chat', 'cancel', 'messageFeedback', 'handleStructuredUiAction', 'listSessions', 'createSession',
    'switchSession', 'deleteSession', 'renameSession', 'loadMessages', 'listModels', 'listAgents', 'ping', 'health',
    'getCapabilities', 'generateCode', 'editCode', 'getFiles', 'readFile', 'writeFile', 'checkFreeProviders',
    'getTokenStatus', 'setProviderToken', 'auditListRecent', 'auditRevert', 'automationList', 'automationCreate',
    'automationUpdate', 'automationDelete', 'automationPause', 'reminderList', 'reminderSchedule', 'reminderCancel',
    'getPlan', 'executePlan', 'emergencyStop', 'emergencyResume', 'getDeniedPermissions', 'getDesktopState',
    'getSystemReport', 'getQuickStatus', 'getPowerProfile', 'getAppLogSummary', 'getKdeLogs', 'getAppMetrics',
    'getServiceHealth', 'getSystemDashboard', 'workspaceIntelGetSettings', 'workspaceIntelGetDwellSummary',
    'workspaceIntelSetSettings', 'workspaceIntelListApproved', 'workspaceIntelSetTemplateEnabled',
    'workspaceIntelPrepare', 'aiRuntimeGetStatus', 'aiRuntimeSetSetting', 'workspaceRuntimeGetHealth',
    'workspaceRuntimeListJobs', 'aiRuntimeCheckWorkspaceNotification', 'aiRuntimeDismissSuggestion',
    'aiRuntimeClearDismissedSuggestions'];

const ALL_ON = { LOOMRA_WORKSPACE_INTEL: '1', LOOMRA_AI_RUNTIME: '1' };

//! Values of the right type, and some of each other type.
const RIGHT = {
    string: 'x', text: 'x', integer: 1, boolean: true, object: {}, objects: [{}],
};
const ANY = ['', ' ', 'x', 0, 1, -1, 1.5, 1e300, true, false, null, [], [null], [{}], [1, 2, 3], {}, { __proto__: null },
    '__proto__', 'constructor', { capabilityId: {} }, [{ capabilityId: '__proto__' }], '\u0000', '../..', 'x'.repeat(5000)];

const fits = {
    string: (value) => typeof value === 'string',
    text: (value) => typeof value === 'string' && value.trim(),
    integer: Number.isSafeInteger,
    boolean: (value) => typeof value === 'boolean',
    object: (value) => value !== null && typeof value === 'object' && !Array.isArray(value),
    objects: (value) => Array.isArray(value) && value.every((each) => fits.object(each)),
};
const kindOf = (rule) => rule.replace('?', '');

test('the table holds every method once', () => {
    assert.deepEqual(METHODS.map(({ name }) => name).sort(), [...NAMES].sort());
    assert.ok(METHODS.every(({ perform }) => typeof perform === 'function'));
});

test('a param of the wrong kind, or one too few, is refused by name', async (t) => {
    const bridge = await startBridge(t, ALL_ON);
    for (const { name, params = {} } of METHODS) {
        const client = await bridge.connect();
        const right = Object.fromEntries(Object.entries(params).map(([key, rule]) => [key, RIGHT[kindOf(rule)]]));
        for (const [key, rule] of Object.entries(params)) {
            const wrong = ANY.filter((value) => !fits[kindOf(rule)](value)).map((value) => ({ ...right, [key]: value }));
            if (!rule.endsWith('?'))
                wrong.push(Object.fromEntries(Object.entries(right).filter(([other]) => other !== key)));
            for (const bad of wrong) {
                const { error, payload } = await client.request(name, bad);
                assert.equal(payload, null);
                assert.equal(error.code, 'INVALID_PARAMS', `${name} ${JSON.stringify(bad)}`);
                assert.ok(error.message.startsWith(`The parameter "${key}" must be `), error.message);
            }
        }
    }
});

test('whatever the params are, the answer is a result or an error with its words', async (t) => {
    const bridge = await startBridge(t, ALL_ON);
    for (const { name, params = {} } of METHODS) {
        const client = await bridge.connect();
        for (const value of ANY) {
            const given = Object.fromEntries(Object.entries(params).map(([key, rule]) =>
                [key, fits[kindOf(rule)](value) ? value : RIGHT[kindOf(rule)]]));
            const { error, payload } = await client.request(name, given);
            if (error) {
                assert.ok(error.message && error.code, name);
                assert.notEqual(error.code, 'INTERNAL', `${name} ${JSON.stringify(given)}: ${bridge.errors}`);
            } else {
                assert.equal(typeof payload, 'object', name);
            }
        }
    }
    assert.equal((await (await bridge.connect()).chat('plain')).response, 'This is a plain answer.');
});

test('an unknown method is an error, also one that every object has', async (t) => {
    const client = await (await startBridge(t)).connect();
    for (const name of ['nothing', 'toString', '__proto__', 'Ping', 'ping_panel']) {
        const { error } = await client.request(name);
        assert.deepEqual(error, { message: `Unknown method "${name}"`, code: 'UNKNOWN_METHOD' });
    }
});

test('a reply names its request', async (t) => {
    const client = await (await startBridge(t)).connect();
    const reply = await client.request('ping');
    assert.deepEqual(reply, { type: 'response', id: 1, method: 'ping', payload: { ok: true, executorPathEnabled: true } });
    assert.ok(!/[\n]| {2}/.test(client.frames.join('')));
});

test('ping tells whether the executor path is on', async (t) => {
    const client = await (await startBridge(t, { LOOMRA_EXECUTOR_PATH: 'False' })).connect();
    assert.equal((await client.result('ping')).executorPathEnabled, false);
});

test('health tells the same, where the model server is, and for how long', async (t) => {
    const client = await (await startBridge(t, { LOOMRA_EXECUTOR_PATH: '0' })).connect();
    const { uptimeMs, ...rest } = await client.result('health');
    assert.deepEqual(rest, { ok: true, executorPathEnabled: false, modelServer: '' });
    assert.ok(Number.isInteger(uptimeMs) && uptimeMs >= 0);
});

for (const [intel, runtime] of [['0', '0'], ['1', '0'], ['0', '1'], ['1', '1']]) {
    test(`capabilities and their methods follow the environment, ${intel} and ${runtime}`, async (t) => {
        const bridge = await startBridge(t, { LOOMRA_WORKSPACE_INTEL: intel, LOOMRA_AI_RUNTIME: runtime });
        const client = await bridge.connect();
        const on = { workspaceIntel: intel === '1', aiRuntime: runtime === '1' };
        assert.deepEqual(await client.result('getCapabilities'),
            { workspaceIntelligence: { enabled: on.workspaceIntel }, aiRuntime: { enabled: on.aiRuntime } });
        for (const { name, needs = [] } of METHODS) {
            assert.deepEqual(needs.length > 0, /^(workspaceIntel|aiRuntime)/.test(name), name);
            if (needs.every((need) => on[need]))
                continue;
            const { error } = await client.request(name);
            assert.equal(error.code, 'NOT_AVAILABLE', name);
            assert.match(error.message, /start the bridge with LOOMRA_(WORKSPACE_INTEL|AI_RUNTIME)=1$/);
        }
    });
}

test('models are complete rows, each once', async (t) => {
    const client = await (await startBridge(t)).connect();
    const { models } = await client.result('listModels');
    assert.equal(models.length, 300);
    assert.equal(models[0].fullId, 'demo/echo-free');
    assert.equal(new Set(models.map(({ fullId }) => fullId)).size, models.length);
    for (const row of models) {
        assert.deepEqual(Object.keys(row), ['id', 'name', 'provider', 'fullId', 'displayName', 'free']);
        assert.equal(row.fullId, `${row.provider}/${row.id}`);
        assert.equal(row.free, /free/.test(row.id));
    }
});

test('agents are complete rows, the automatic one first', async (t) => {
    const client = await (await startBridge(t)).connect();
    const { agents } = await client.result('listAgents');
    assert.equal(agents[0].id, 'auto');
    for (const row of agents) {
        assert.deepEqual(Object.keys(row), ['id', 'name', 'description']);
        assert.ok(Object.values(row).every((text) => text));
    }
});

test('votes are counted over all connections, odd ones refused', async (t) => {
    const bridge = await startBridge(t);
    const [client, other] = [await bridge.connect(), await bridge.connect()];
    const vote = { messageIndex: 1, messageText: 'An answer', source: 'omnibar', inputMode: 'text' };
    assert.deepEqual(await client.result('messageFeedback', { ...vote, vote: 'up' }), { ok: true, up: 1, down: 0 });
    assert.deepEqual(await other.result('messageFeedback', { ...vote, vote: 'down', userQuery: 'A question', sessionId: 'x' }),
        { ok: true, up: 1, down: 1 });
    for (const odd of ['', 'sideways', '__proto__', 'toString']) {
        const { error } = await client.request('messageFeedback', { ...vote, vote: odd });
        assert.equal(error.code, 'INVALID_PARAMS');
    }
    assert.deepEqual(await client.result('messageFeedback', { ...vote, vote: 'up' }), { ok: true, up: 2, down: 1 });
});
