// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');

const { startBridge } = require('./support/child');
const { test } = require('./support/timed');

const LONG_BEAT = { LOOMRA_DEMO_DELAY_MS: '60000' }; // such a step ends only by a stop

const step = (capabilityId, params) => ({ capabilityId, params });
const dark = step('theme.apply', { name: 'Breeze Dark' });
const quiet = step('audio.volume.set', { level: 20 });

const NOTE = 'Demonstration: nothing on this desktop is changed.';

//! The simulated desktop.
const desktop = async (client) => (await client.result('getDesktopState')).demonstration;
const titles = async (client) => (await desktop(client)).windows.windows.map(({ title }) => title);
const volume = async (client) =>
    (await client.result('executePlan', { steps: [step('audio.volume.get')] })).results[0].result.level;

test('a plan is made, run and taken back', async (t) => {
    const client = await (await startBridge(t)).connect();
    const made = await client.result('getPlan', { message: '  Dark theme and open Mail ' });
    assert.equal(made.allowed, true);
    assert.equal(made.requiresApproval, true);
    assert.equal(made.summary, `${NOTE} Dark theme and open Mail`);
    assert.equal(made.demonstration, true);

    const { actionId, ...outcome } = await client.result('executePlan', { steps: made.plan });
    assert.match(actionId, /^demo-act_/);
    assert.deepEqual(outcome, {
        success: true,
        results: [
            { ok: true, capabilityId: 'theme.apply', result: { applied: 'Breeze Dark' } },
            { ok: true, capabilityId: 'app.launch', result: { name: 'mail' } },
        ],
        verificationSummary: { state: 'partially_verified', verified: 2, total: 2, details: [NOTE] },
        demonstration: true,
    });
    assert.equal((await desktop(client)).theme, 'Breeze Dark');
    assert.ok((await titles(client)).includes('mail'));

    assert.deepEqual(await client.result('auditRevert', { actionId }), { ok: true, actionId, reverted: 2, kept: 0, demonstration: true });
    assert.equal((await desktop(client)).theme, 'Breeze');
    assert.ok(!(await titles(client)).includes('mail'));
    assert.equal((await client.request('auditRevert', { actionId })).error.code, 'ALREADY_REVERTED');
});

test('every client sees the steps go by, in order and before the reply', async (t) => {
    const bridge = await startBridge(t);
    const [client, watcher] = [await bridge.connect(), await bridge.connect(bridge.otherHost)];
    await client.result('executePlan', { steps: [dark, step('app.launch', { name: 'Mail' })] });
    const at = (index, capabilityId, phase) => ({ event: 'plan.step', index, total: 2, capabilityId, phase });
    const expected = [
        { event: 'plan.phase', phase: 'executing' },
        at(0, 'theme.apply', 'start'),
        at(0, 'theme.apply', 'done'),
        { event: 'tool.executed', tool: 'theme_apply', result: 'ok' },
        at(1, 'app.launch', 'start'),
        at(1, 'app.launch', 'done'),
        { event: 'tool.executed', tool: 'kde_launch_app', result: 'ok' },
        { event: 'plan.phase', phase: '' },
    ];
    assert.deepEqual(client.events, expected);
    assert.equal(client.messages.at(-1).type, 'response');
    await watcher.until(({ payload }) => payload?.event === 'plan.phase' && payload.phase === '');
    assert.deepEqual(watcher.events, expected);
});

const OUTCOMES = [
    ['a message', [dark, step('kde.notify', { text: 'x' })], 'partially_verified', ['kde.notify cannot be read back'], 1],
    ['a failing step', [quiet, step('window.close', { title: 'None' }), dark], 'failed', ['No window is named "None"'], 1],
];

for (const [name, steps, state, details, verified] of OUTCOMES) {
    test(`a plan with ${name} ends as ${state}`, async (t) => {
        const client = await (await startBridge(t)).connect();
        const outcome = await client.result('executePlan', { steps });
        assert.equal(outcome.success, state !== 'failed');
        assert.deepEqual(outcome.verificationSummary, { state, verified, total: steps.length, details: [...details, NOTE] });
        assert.equal(outcome.error, state === 'failed' ? details[0] : undefined);
        assert.equal(outcome.results.length, 2);
        assert.ok(outcome.actionId);
    });
}

test('what ran before a failing step stays until it is taken back', async (t) => {
    const client = await (await startBridge(t)).connect();
    const closing = step('window.close', { title: 'None' });
    const { actionId } = await client.result('executePlan', { steps: [quiet, closing, dark] });
    assert.equal((await desktop(client)).theme, 'Breeze');
    assert.equal(await volume(client), 20);
    assert.deepEqual((await client.result('auditListRecent')).actions[1].steps, [quiet]);
    await client.result('auditRevert', { actionId });
    assert.equal(await volume(client), 45);
    const failed = client.events.find(({ phase }) => phase === 'failed');
    assert.equal(failed.capabilityId, 'window.close');

    const first = await client.result('executePlan', { steps: [closing] });
    assert.equal('actionId' in first, false);
});

const WRONG_STEPS = [
    [[], 'INVALID_PARAMS', 'A plan has from 1 to 20 steps'],
    [Array(21).fill(dark), 'INVALID_PARAMS', 'A plan has from 1 to 20 steps'],
    [[{}], 'INVALID_PARAMS', 'The parameter "capabilityId" must be a string that is not blank'],
    [[dark, step('no.such')], 'UNKNOWN_CAPABILITY', 'There is no capability "no.such"'],
    [[dark, step('__proto__')], 'UNKNOWN_CAPABILITY', 'There is no capability "__proto__"'],
    [[dark, step('audio.volume.set')], 'INVALID_PARAMS', 'The parameter "level" must be a whole number'],
    [[dark, step('audio.volume.set', { level: 101 })], 'INVALID_PARAMS', 'The parameter "level" must be from 0 to 100'],
    [[step('audio.volume.set', [])], 'INVALID_PARAMS', 'The parameter "params" must be an object'],
    [[step('display.rotate', { rotation: 'up' })], 'INVALID_PARAMS',
        'The parameter "rotation" must be one of: normal, left, right, inverted'],
    [[dark, step('app.launch', { name: 'Mail', more: 'x'.repeat(2000) })], 'INVALID_PARAMS',
        'The params of a step take at most 2000 characters'],
    [[dark, step('power.shutdown')], 'PERMISSION_DENIED', 'The assistant never ends your session'],
];

test('a plan that can\'t run is refused before its first step', async (t) => {
    const client = await (await startBridge(t)).connect();
    for (const [steps, code, message] of WRONG_STEPS)
        assert.deepEqual((await client.request('executePlan', { steps })).error, { message, code });
    assert.equal((await desktop(client)).theme, 'Breeze');
    assert.deepEqual(client.events, []);
    assert.deepEqual((await client.result('auditListRecent')).actions, []);
});

test('the emergency stop ends what runs, refuses the next and gives way to the resume', async (t) => {
    const bridge = await startBridge(t, LONG_BEAT);
    const [client, other] = [await bridge.connect(), await bridge.connect()];
    const running = client.post('executePlan', { steps: [dark] });
    await client.until(({ payload }) => payload?.event === 'plan.step');
    assert.equal((await other.request('executePlan', { steps: [dark] })).error.code, 'BUSY');

    assert.deepEqual(await other.result('emergencyStop'), { ok: true, stopped: true });
    const { payload } = await client.reply(running);
    assert.deepEqual(payload, {
        success: false,
        results: [{ ok: false, capabilityId: 'theme.apply', result: { error: 'Stopped by the emergency stop' } }],
        verificationSummary: { state: 'failed', verified: 0, total: 1, details: ['Stopped by the emergency stop', NOTE] },
        error: 'Stopped by the emergency stop',
        demonstration: true,
    });
    assert.equal((await desktop(client)).theme, 'Breeze');
    assert.deepEqual((await client.request('executePlan', { steps: [dark] })).error,
        { message: 'The emergency stop holds: resume first', code: 'EMERGENCY_STOP' });
    await other.result('emergencyStop');

    assert.deepEqual(await other.result('emergencyResume'), { ok: true, stopped: false });
    const count = client.events.length;
    client.post('executePlan', { steps: [dark] });
    await client.until(() => client.events.length > count + 1);
    assert.equal((await other.request('executePlan', { steps: [dark] })).error.code, 'BUSY');
});

test('a plan goes on when its client leaves', async (t) => {
    const bridge = await startBridge(t, { LOOMRA_DEMO_DELAY_MS: '50' });
    const [client, watcher] = [await bridge.connect(), await bridge.connect()];
    client.post('executePlan', { steps: [dark, quiet] });
    await client.until(({ payload }) => payload?.event === 'plan.step');
    client.socket.terminate();
    await watcher.until(({ payload }) => payload?.event === 'plan.phase' && payload.phase === '');
    assert.equal((await desktop(watcher)).theme, 'Breeze Dark');
    assert.equal((await watcher.result('auditListRecent')).actions.length, 1);
});

test('SIGTERM ends it at once while a plan runs', async (t) => {
    const bridge = await startBridge(t, LONG_BEAT);
    const client = await bridge.connect();
    client.post('executePlan', { steps: [dark] });
    client.post('checkFreeProviders');
    await client.until(({ payload }) => payload?.event === 'plan.step');
    assert.deepEqual(await bridge.stop(), { code: 0, signal: null });
});

test('without the executor path a plan is only checked', async (t) => {
    const client = await (await startBridge(t, { LOOMRA_EXECUTOR_PATH: '0' })).connect();
    assert.deepEqual(await client.result('executePlan', { steps: [dark] }), {
        success: true,
        results: [],
        verificationSummary: { state: 'planned', verified: 0, total: 1, details: [] },
        demonstration: true,
    });
    assert.equal((await desktop(client)).theme, 'Breeze');
    assert.deepEqual(client.events, []);
    assert.equal((await client.request('executePlan', { steps: [step('no.such')] })).error.code, 'UNKNOWN_CAPABILITY');
});

test('the longest plan that may run fits into the audit trail', async (t) => {
    const client = await (await startBridge(t)).connect();
    const steps = Array(20).fill(step('app.launch', { name: 'x'.repeat(1980) }));
    const { success, actionId } = await client.result('executePlan', { steps });
    assert.equal(success, true);
    assert.equal((await client.result('auditRevert', { actionId })).reverted, 20);
});

test('what is never done can be read', async (t) => {
    const client = await (await startBridge(t)).connect();
    const { denied } = await client.result('getDeniedPermissions');
    assert.ok(denied.length >= 3);
    for (const { capabilityId, reason } of denied) {
        assert.deepEqual((await client.request('executePlan', { steps: [step(capabilityId)] })).error,
            { message: reason, code: 'PERMISSION_DENIED' });
    }
});

test('the audit trail lists the newest first, as many as asked for', async (t) => {
    const client = await (await startBridge(t)).connect();
    const before = Date.now();
    const ids = [];
    for (let level = 1; level <= 3; ++level)
        ids.unshift((await client.result('executePlan', { steps: [step('audio.volume.set', { level })] })).actionId);
    const { actions } = await client.result('auditListRecent', { limit: 50 });
    assert.deepEqual(actions.map(({ id }) => id), ids);
    assert.ok(actions.every(({ at, revertedAt }) => at >= before && at <= Date.now() && revertedAt === null));
    assert.deepEqual((await client.result('auditListRecent', { limit: 1 })).actions.map(({ id }) => id), [ids[0]]);
    for (const limit of [0, -1])
        assert.equal((await client.request('auditListRecent', { limit })).error.code, 'INVALID_PARAMS');

    await client.result('auditRevert', { actionId: ids[0] });
    assert.equal(await volume(client), 2);
    assert.ok((await client.result('auditListRecent')).actions.find(({ id }) => id === ids[0]).revertedAt >= before);
    for (const actionId of ['', 'act_0', '__proto__'])
        assert.equal((await client.request('auditRevert', { actionId })).error.code, 'ACTION_NOT_FOUND');
});

test('what only read reverts to nothing, what stays done says so', async (t) => {
    const client = await (await startBridge(t)).connect();
    const run = async (...steps) => (await client.result('executePlan', { steps })).actionId;
    const read = await run(step('window.list'));
    assert.deepEqual(await client.result('auditRevert', { actionId: read }),
        { ok: true, actionId: read, reverted: 0, kept: 0, demonstration: true });
    const gone = await run(step('trash.empty'));
    assert.deepEqual((await client.request('auditRevert', { actionId: gone })).error,
        { message: 'This action cannot be taken back', code: 'NOT_REVERTIBLE' });
    const both = await run(step('trash.empty'), dark);
    assert.deepEqual(await client.result('auditRevert', { actionId: both }),
        { ok: true, actionId: both, reverted: 1, kept: 1, demonstration: true });
});
