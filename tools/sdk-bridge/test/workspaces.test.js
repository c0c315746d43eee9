// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');

const { AiRuntime } = require('../lib/runtime');
const { NAMES } = require('../lib/notices');
const { Workspaces } = require('../lib/workspaces');
const { startBridge } = require('./support/child');
const { test } = require('./support/timed');

const ALL_ON = { LOOMRA_WORKSPACE_INTEL: '1', LOOMRA_AI_RUNTIME: '1' };
const CHECK = 'aiRuntimeCheckWorkspaceNotification';

test('settings are kept as the texts they are', async (t) => {
    const client = await (await startBridge(t, ALL_ON)).connect();
    const before = { observationEnabled: 'true', retentionDays: '30', suggestionThreshold: '0.6' };
    assert.deepEqual(await client.result('workspaceIntelGetSettings'), before);
    assert.deepEqual(await client.result('workspaceIntelSetSettings', { key: 'observationEnabled', value: 'false' }),
        { ok: true });
    assert.deepEqual(await client.result('workspaceIntelGetSettings'), { ...before, observationEnabled: 'false' });
});

const WRONG_SETTINGS = [['nothing', 'true'], ['__proto__', 'true'], ['observationEnabled', 'yes'], ['observationEnabled', ''],
    ['retentionDays', '0'], ['retentionDays', '1.5'], ['suggestionThreshold', '1.1'], ['suggestionThreshold', '-0']];

for (const [key, value] of WRONG_SETTINGS) {
    test(`the setting ${key} = "${value}" is refused`, () => {
        const workspaces = new Workspaces();
        const before = workspaces.settings();
        assert.throws(() => workspaces.set(key, value), { code: 'INVALID_PARAMS' });
        assert.deepEqual(workspaces.settings(), before);
    });
}

test('the dwell summary grows with its days', async (t) => {
    const client = await (await startBridge(t, ALL_ON)).connect();
    const { apps, ...summary } = await client.result('workspaceIntelGetDwellSummary', { days: 14 });
    assert.deepEqual(summary, { days: 14, topApp: 'Text editor', topAppHours: 44.8, uniqueApps: 4 });
    assert.equal(apps.length, 4);
    assert.equal((await client.result('workspaceIntelGetDwellSummary', { days: 1 })).topAppHours, 3.2);
    assert.equal((await client.result('workspaceIntelGetDwellSummary')).days, 14);
    for (const days of [0, -3, 366])
        assert.equal((await client.request('workspaceIntelGetDwellSummary', { days })).error.code, 'INVALID_PARAMS');
});

test('templates carry their slug in either form of rules', async (t) => {
    const client = await (await startBridge(t, ALL_ON)).connect();
    const { workspaces } = await client.result('workspaceIntelListApproved');
    const slugs = workspaces.map((row) => (row.behaviorRules ?? JSON.parse(row.behavior_rules)).slug);
    assert.deepEqual(slugs, ['focus-dev', 'meeting', 'research', 'photo-evening']);
    assert.equal(typeof workspaces[2].behavior_rules, 'string');
    for (const [n, { id, name, goal, status }] of workspaces.entries()) {
        assert.deepEqual([id, status], [n + 1, 'paused']);
        assert.ok(name && goal);
    }
});

const SWITCHES = [
    [{ slug: 'meeting' }, 2],
    [{ id: 3 }, 3],
    [{ slug: 'focus-dev', id: 1 }, 1],
    [{}, 'INVALID_PARAMS'],
    [{ slug: 'focus-dev', id: 2 }, 'INVALID_PARAMS'],
    [{ slug: 'none' }, 'WORKSPACE_NOT_FOUND'],
    [{ slug: 'none', id: 1 }, 'INVALID_PARAMS'],
    [{ id: 0 }, 'WORKSPACE_NOT_FOUND'],
];

for (const [which, expected] of SWITCHES) {
    test(`a template is switched by ${JSON.stringify(which)}`, () => {
        const workspaces = new Workspaces();
        const active = () => workspaces.list().filter(({ status }) => status === 'active').map(({ id }) => id);
        if (typeof expected === 'string') {
            assert.throws(() => workspaces.enable({ ...which, enabled: true }), { code: expected });
            assert.deepEqual(active(), []);
        } else {
            workspaces.enable({ ...which, enabled: true });
            assert.deepEqual(active(), [expected]);
            workspaces.enable({ ...which, enabled: false });
            assert.deepEqual(active(), []);
        }
    });
}

const titles = async (client) =>
    (await client.result('getDesktopState')).demonstration.windows.windows.map(({ title }) => title);

test('an enabled template is prepared, counted, listed as a job and can be taken back', async (t) => {
    const client = await (await startBridge(t, ALL_ON)).connect();
    const workspace = { id: 2, name: 'Meeting', status: 'paused' };
    assert.deepEqual(await client.result('workspaceIntelPrepare', { workspaceId: 2, message: 'prepare meeting' }),
        { ok: false, error: 'Enable “Meeting” first', workspace });
    const active = { ...workspace, status: 'active' };
    await client.result('workspaceIntelSetTemplateEnabled', { slug: 'meeting', enabled: true });

    const before = await titles(client);
    assert.deepEqual(await client.result('workspaceIntelPrepare', { workspaceId: 2, dryRun: true }),
        { ok: true, dryRun: true, workspace: active });
    assert.deepEqual(await titles(client), before);

    const { actionId, ...result } = await client.result('workspaceIntelPrepare', { workspaceId: 2, dryRun: false });
    assert.deepEqual(result, { ok: true, workspace: active });
    assert.deepEqual(await titles(client), [...before, 'Video call', 'Notes']);
    assert.equal((await client.result('aiRuntimeGetStatus')).gateStatus.executionsThisHour, 1);
    assert.deepEqual((await client.result('workspaceRuntimeListJobs')).jobs,
        [{ id: 'job_1', kind: 'workspace.prepare', state: 'done', lastError: '' }]);
    assert.equal((await client.result('auditListRecent')).actions[0].source, 'workspace:meeting');
    await client.result('auditRevert', { actionId });
    assert.deepEqual(await titles(client), before);
    assert.equal((await client.request('workspaceIntelPrepare', { workspaceId: 9 })).error.code, 'WORKSPACE_NOT_FOUND');
});

test('the emergency stop holds for workspaces too, and shows in the runtime', async (t) => {
    const client = await (await startBridge(t, ALL_ON)).connect();
    await client.result('workspaceIntelSetTemplateEnabled', { id: 1, enabled: true });
    await client.result('emergencyStop');
    assert.equal((await client.result('aiRuntimeGetStatus')).state, 'stopped');
    const { ok, error } = await client.result('workspaceIntelPrepare', { workspaceId: 1 });
    assert.deepEqual([ok, error], [false, 'The emergency stop holds: resume first']);
    const { jobs: [job] } = await client.result('workspaceRuntimeListJobs');
    assert.deepEqual([job.state, job.lastError], ['failed', error]);
    await client.result('emergencyResume');
    assert.equal((await client.result('aiRuntimeGetStatus')).state, 'idle');
    assert.equal((await client.result('workspaceIntelPrepare', { workspaceId: 1 })).ok, true);
});

test('a preparation under way shows as a running job and fails when it is stopped', async (t) => {
    const bridge = await startBridge(t, { ...ALL_ON, LOOMRA_DEMO_DELAY_MS: '60000' });
    const client = await bridge.connect();
    await client.result('workspaceIntelSetTemplateEnabled', { id: 1, enabled: true });
    const id = client.post('workspaceIntelPrepare', { workspaceId: 1 });
    await client.until(({ payload }) => payload?.event === 'plan.step');
    assert.equal((await client.result('aiRuntimeGetStatus')).state, 'working');
    assert.equal((await client.result('workspaceRuntimeListJobs')).jobs[0].state, 'running');
    await client.result('emergencyStop');
    const { payload } = await client.reply(id);
    assert.deepEqual([payload.ok, payload.error], [false, 'Stopped by the emergency stop']);
    assert.equal((await client.result('workspaceRuntimeListJobs')).jobs[0].state, 'failed');
});

test('without the executor path nothing is prepared', async (t) => {
    const client = await (await startBridge(t, { ...ALL_ON, LOOMRA_EXECUTOR_PATH: 'false' })).connect();
    await client.result('workspaceIntelSetTemplateEnabled', { id: 1, enabled: true });
    const { ok, error } = await client.result('workspaceIntelPrepare', { workspaceId: 1 });
    assert.deepEqual([ok, error], [false, 'Desktop actions are switched off']);
});

test('the runtime tells its state and takes its settings', async (t) => {
    const client = await (await startBridge(t, ALL_ON)).connect();
    assert.deepEqual(await client.result('aiRuntimeGetStatus'), {
        state: 'idle',
        gateStatus: { executionsThisHour: 0, maxPerHour: 20 },
        settings: { runtimeEnabled: true, executionGating: 'require_approval' },
    });
    for (const executionGating of ['auto_safe', 'off', 'require_approval']) {
        await client.result('aiRuntimeSetSetting', { key: 'executionGating', value: executionGating });
        assert.equal((await client.result('aiRuntimeGetStatus')).settings.executionGating, executionGating);
    }
    await client.result('aiRuntimeSetSetting', { key: 'runtimeEnabled', value: 'false' });
    const { state, settings } = await client.result('aiRuntimeGetStatus');
    assert.deepEqual([state, settings.runtimeEnabled], ['disabled', false]);
    assert.equal((await client.result(CHECK)).reason, 'runtime_disabled');
    for (const [key, value] of [['runtimeEnabled', 'yes'], ['executionGating', 'true'], ['other', 'true'], ['__proto__', 'off']])
        assert.equal((await client.request('aiRuntimeSetSetting', { key, value })).error.code, 'INVALID_PARAMS');
});

test('health and jobs answer whatever is switched on', async (t) => {
    const off = await startBridge(t);
    const client = await off.connect();
    assert.deepEqual(await client.result('workspaceRuntimeGetHealth'), { mode: 'embedded', runtimePid: 0, connected: false });
    assert.deepEqual(await client.result('workspaceRuntimeListJobs'), { jobs: [] });
    const on = await startBridge(t, { LOOMRA_AI_RUNTIME: '1' });
    assert.deepEqual(await (await on.connect()).result('workspaceRuntimeGetHealth'),
        { mode: 'embedded', runtimePid: on.process.pid, connected: true });
});

test('suggestions come in turns, fall silent when one is dismissed and return when that is cleared', async (t) => {
    const client = await (await startBridge(t, ALL_ON)).connect();
    const first = await client.result(CHECK, { ignoreDnd: true });
    assert.deepEqual([first.notified, first.reason, first.notificationChannel], [true, '', 'client']);
    const { clientNotification } = first;
    assert.equal(first.topSuggestion.title, clientNotification.title);
    assert.deepEqual(clientNotification, {
        title: 'Prepare “Focus — Development”?',
        body: 'You often open the text editor and the terminal at this time.',
        actions: [{ id: 'prepare', label: 'Prepare now' }, { id: 'dismiss', label: 'Not now' }],
        suggestionType: 'workspace_ready',
        suggestionId: 'sug_focus_dev',
        workspaceId: 1,
    });
    const second = await client.result(CHECK, { ignoreDnd: true });
    assert.equal(second.clientNotification.suggestionType, 'candidate_review');
    assert.equal(second.clientNotification.actions[0].id, 'review');
    assert.equal((await client.result(CHECK)).clientNotification.suggestionId, 'sug_focus_dev');

    await client.result('aiRuntimeDismissSuggestion', { suggestionId: clientNotification.suggestionId });
    const silent = await client.result(CHECK, { ignoreDnd: true });
    assert.deepEqual([silent.notified, silent.reason, silent.clientNotification], [false, 'no_suggestions', undefined]);
    assert.ok(Number.isInteger(silent.analysis.clustersCreated) && Number.isInteger(silent.analysis.candidatesDetected));

    assert.deepEqual(await client.result('aiRuntimeClearDismissedSuggestions'), { ok: true, cleared: 1 });
    assert.equal((await client.result(CHECK)).clientNotification.suggestionId, 'sug_focus_dev');
    assert.equal((await client.request('aiRuntimeDismissSuggestion', { suggestionId: 'x' })).error.code,
        'SUGGESTION_NOT_FOUND');
});

const NOTICES = [
    ['', { notified: true, reason: '', notificationChannel: 'client' }],
    ['ready', { notified: true, reason: '', notificationChannel: 'client' }],
    ['review', { notified: true, reason: '', notificationChannel: 'client' }],
    ['plasma', { notified: true, reason: '', notificationChannel: 'freedesktop-actions' }],
    ['long', { notified: true, reason: '', notificationChannel: 'client' }],
    ['no_suggestions', { notified: false, reason: 'no_suggestions' }],
    ['low_confidence', { notified: false, reason: 'low_confidence' }],
    ['dnd', { notified: false, reason: 'dnd' }],
    ['notification_failed', { notified: false, reason: 'notification_failed', notificationError: 'no notification server' }],
    ['dry_run', { notified: false, reason: 'dry_run' }],
];

test('a notice that nobody asked for reaches every client', async (t) => {
    const bridge = await startBridge(t, { LOOMRA_DEMO_DELAY_MS: '0' });
    assert.deepEqual(NOTICES.slice(1).map(([name]) => name), NAMES);
    for (const [name, facts] of NOTICES) {
        const [chat, other] = [await bridge.connect(), await bridge.connect()];
        await chat.result('chat', { message: `suggestion ${name}` });
        for (const client of [chat, other]) {
            const { id, payload } = await client.until(({ method }) => method === CHECK);
            assert.equal(id, undefined);
            assert.deepEqual({ ...payload, ...facts }, payload, name);
            assert.equal(payload.notified, Boolean(payload.clientNotification) && payload.reason !== 'dry_run');
            assert.ok(payload.analysis);
        }
    }
    const client = await bridge.connect();
    const { response } = await client.result('chat', { message: 'suggestion none of these' });
    assert.match(response, /^There is no such suggestion/);
    assert.equal(client.messages.some(({ method }) => method === CHECK), false);
});

test('do not disturb holds a suggestion back unless it is ignored', async (t) => {
    const client = await (await startBridge(t, ALL_ON)).connect();
    await client.result('executePlan', { steps: [{ capabilityId: 'notification.dnd.set', params: { enabled: true } }] });
    const { notified, reason, topSuggestion } = await client.result(CHECK);
    assert.deepEqual([notified, reason], [false, 'dnd']);
    assert.ok(topSuggestion.title);
    assert.equal((await client.result(CHECK, { ignoreDnd: true })).notified, true);
});

test('a suggestion below the threshold is reported and not shown', async (t) => {
    const client = await (await startBridge(t, ALL_ON)).connect();
    await client.result('workspaceIntelSetSettings', { key: 'suggestionThreshold', value: '0.9' });
    const { notified, reason, clientNotification, topSuggestion } = await client.result(CHECK, { ignoreDnd: true });
    assert.deepEqual([notified, reason, clientNotification], [false, 'low_confidence', undefined]);
    assert.equal(topSuggestion.confidence, 0.82);
});

test('a dry run tells what would be shown, and counts nothing', async (t) => {
    const client = await (await startBridge(t, ALL_ON)).connect();
    for (let n = 0; n < 2; ++n) {
        const { notified, reason, clientNotification } = await client.result(CHECK, { dryRun: true });
        assert.deepEqual([notified, reason, clientNotification.suggestionId], [true, 'dry_run', 'sug_focus_dev']);
    }
    assert.equal((await client.result('getAppMetrics')).suggestionCount, 0);
});

test('the gate closes for the rest of the hour, unless it is off', () => {
    let now = 0;
    const runtime = new AiRuntime({ executor: { stopped: false } }, () => now);
    for (let n = 0; n < 20; ++n)
        assert.equal(runtime.admit(), '');
    assert.equal(runtime.admit(), 'No more than 20 executions an hour');
    runtime.set('executionGating', 'off');
    assert.equal(runtime.admit(), '');
    runtime.set('executionGating', 'auto_safe');
    now = 3600000 - 1;
    assert.equal(runtime.status().gateStatus.executionsThisHour, 21);
    assert.ok(runtime.admit());
    now = 3600000;
    assert.equal(runtime.status().gateStatus.executionsThisHour, 0);
    assert.equal(runtime.admit(), '');
});

test('only the latest jobs are kept', () => {
    const runtime = new AiRuntime({ executor: { stopped: false } });
    for (let n = 0; n < 25; ++n)
        runtime.endJob(runtime.beginJob('test'), '');
    assert.deepEqual(runtime.jobs().map(({ id }) => id), Array.from({ length: 20 }, (_, n) => `job_${n + 6}`));
});
