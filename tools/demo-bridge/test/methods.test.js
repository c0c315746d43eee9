// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');

const { METHODS } = require('../lib/methods');
const { startBridge } = require('./support/child');
const { test } = require('./support/timed');

const OFFERED = ['chat', 'cancel', 'messageFeedback', 'handleStructuredUiAction', 'listSessions', 'createSession',
    'switchSession', 'deleteSession', 'renameSession', 'loadMessages', 'listModels', 'listAgents', 'ping', 'getCapabilities'];

const NOT_YET = ['generateCode', 'editCode', 'getFiles', 'readFile', 'writeFile', 'checkFreeProviders', 'getTokenStatus',
    'setProviderToken', 'auditListRecent', 'auditRevert', 'automationList', 'automationCreate', 'automationUpdate',
    'automationDelete', 'automationPause', 'reminderList', 'reminderCancel', 'getPlan', 'executePlan', 'emergencyStop',
    'emergencyResume', 'getDeniedPermissions', 'getDesktopState', 'getSystemReport', 'getQuickStatus', 'getPowerProfile',
    'getAppLogSummary', 'getKdeLogs', 'getAppMetrics', 'getServiceHealth', 'getSystemDashboard', 'workspaceIntelGetSettings',
    'workspaceIntelGetDwellSummary', 'workspaceIntelSetSettings', 'workspaceIntelListApproved',
    'workspaceIntelSetTemplateEnabled', 'workspaceIntelPrepare', 'aiRuntimeGetStatus', 'aiRuntimeSetSetting',
    'workspaceRuntimeGetHealth', 'workspaceRuntimeListJobs', 'aiRuntimeCheckWorkspaceNotification',
    'aiRuntimeDismissSuggestion', 'aiRuntimeClearDismissedSuggestions'];

test('the table holds every method once', () => {
    const names = METHODS.map(({ name }) => name);
    assert.deepEqual([...names].sort(), [...OFFERED, ...NOT_YET].sort());
    assert.deepEqual(METHODS.filter(({ perform }) => perform).map(({ name }) => name).sort(), [...OFFERED].sort());
});

test('methods that are not offered yet say so', async (t) => {
    const client = await (await startBridge(t)).connect();
    for (const name of NOT_YET) {
        const reply = await client.request(name);
        assert.deepEqual(reply, {
            type: 'response',
            id: reply.id,
            method: name,
            payload: null,
            error: { message: `The demo bridge does not offer "${name}" yet`, code: 'NOT_OFFERED' },
        });
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

test('capabilities without their methods are off', async (t) => {
    const client = await (await startBridge(t)).connect();
    assert.deepEqual(await client.result('getCapabilities'),
        { workspaceIntelligence: { enabled: false }, aiRuntime: { enabled: false } });
});

test('models are complete rows, each once', async (t) => {
    const client = await (await startBridge(t)).connect();
    const { models } = await client.result('listModels');
    assert.ok(models.length >= 3);
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
