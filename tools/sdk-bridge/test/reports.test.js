// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');

const { House } = require('../lib/house');
const { Journal } = require('../lib/journal');
const { Metrics } = require('../lib/metrics');
const { Reports, wave } = require('../lib/reports');
const { readSettings } = require('../lib/settings');
const { startBridge } = require('./support/child');
const { test } = require('./support/timed');

const MINUTE = 60000;

test('the desktop is reported as plans leave it', async (t) => {
    const client = await (await startBridge(t)).connect();
    const state = await client.result('getDesktopState');
    assert.equal(state.theme, 'Breeze');
    assert.equal(state.windows.windows.length, 3);
    assert.equal(state.panels.panels.length, 1);

    assert.deepEqual(await client.result('getPowerProfile'),
        { active: 'balanced', available: ['power-saver', 'balanced', 'performance'] });
    await client.result('executePlan',
        { steps: [{ capabilityId: 'power.profile.set', params: { profile: 'performance' } },
            { capabilityId: 'app.launch', params: { name: 'Mail' } }] });
    assert.equal((await client.result('getPowerProfile')).active, 'performance');
    assert.equal((await client.result('getDesktopState')).windows.windows.length, 4);
});

test('a power profile can be asked for in the words of the dashboard', async (t) => {
    const client = await (await startBridge(t)).connect();
    await client.chat('switch to power-saver power profile');
    assert.equal((await client.result('getPowerProfile')).active, 'power-saver');
    assert.match((await client.chat('switch to no such power profile')).response, /: power-saver, balanced, performance\.$/);
    assert.equal((await client.result('getPowerProfile')).active, 'power-saver');
});

test('requests, errors, actions and suggestions are counted', async (t) => {
    const bridge = await startBridge(t, { LOOMRA_WORKSPACE_INTEL: '1', LOOMRA_AI_RUNTIME: '1' });
    const [client, other] = [await bridge.connect(), await bridge.connect()];
    assert.equal((await client.result('getAppMetrics')).requestCount, 1);
    await other.result('ping');
    await other.request('nothing');
    await other.request('readFile', { path: 'none' });
    await other.result('executePlan', { steps: [{ capabilityId: 'window.list' }, { capabilityId: 'panel.get_layout' }] });
    await other.result('aiRuntimeCheckWorkspaceNotification');
    const metrics = await client.result('getAppMetrics');
    assert.deepEqual([metrics.requestCount, metrics.errorCount, metrics.actionCount, metrics.suggestionCount], [7, 2, 2, 1]);
    for (const key of ['lastRequestMs', 'avgLatencyMs', 'p95LatencyMs', 'uptimeMs'])
        assert.ok(Number.isFinite(metrics[key]) && metrics[key] >= 0, key);
});

test('what was cancelled is no error', async (t) => {
    const client = await (await startBridge(t, { LOOMRA_DEMO_DELAY_MS: '60000' })).connect();
    const slow = client.post('chat', { message: 'slow' });
    await client.until(({ type }) => type === 'event');
    await client.result('cancel');
    assert.equal((await client.reply(slow)).error.code, 'CANCELLED');
    assert.equal((await client.result('getAppMetrics')).errorCount, 0);
});

test('the log summary tells what went wrong', async (t) => {
    const client = await (await startBridge(t)).connect();
    assert.deepEqual(await client.result('getAppLogSummary'),
        { totalErrors: 0, totalWarnings: 0, lastErrorTs: null, lastWarnTs: null, entries: [] });
    const before = Date.now();
    await client.request('readFile', { path: 'none' });
    client.raw('not JSON');
    const { entries, lastErrorTs, lastWarnTs, ...totals } = await client.result('getAppLogSummary');
    assert.deepEqual(totals, { totalErrors: 1, totalWarnings: 1 });
    assert.deepEqual(entries.map(({ timestamp, ...rest }) => rest), [
        { level: 'error', event: 'request.failed', message: 'readFile: "none" does not exist' },
        { level: 'warn', event: 'frame.unread', message: 'A frame was no request' },
    ]);
    assert.deepEqual(entries.map(({ timestamp }) => timestamp), [lastErrorTs, lastWarnTs]);
    assert.ok(lastErrorTs >= before && lastWarnTs <= Date.now());
    assert.deepEqual((await client.result('getSystemReport')).appLogs, totals);
});

test('an error without a message is reported by its code', async (t) => {
    const client = await (await startBridge(t)).connect();
    await client.request('chat', { message: 'error code' });
    assert.equal((await client.result('getAppLogSummary')).entries[0].message, 'chat: E_DEMO_ONLY_A_CODE');
});

test('the dashboard holds every figure that its page shows', async (t) => {
    const client = await (await startBridge(t)).connect();
    const vote = { vote: 'up', messageIndex: 0, messageText: 'x' };
    await client.result('messageFeedback', vote);
    await client.result('messageFeedback', { ...vote, vote: 'down' });
    await client.result('messageFeedback', vote);
    for (let n = 0; n < 10; ++n)
        await client.request('readFile', { path: `none${n}` });
    const { memory, cpu, feedback, errors, warnings, logEntries, metrics, service } = await client.result('getSystemDashboard');
    for (const key of ['sessionHeapMb', 'sessionHeapTotalMb', 'bridgeRssMb', 'toviServiceMb'])
        assert.ok(memory[key] > 0, key);
    assert.ok(memory.bridgeExternalMb >= 0);
    assert.ok(cpu.bridgePercent >= 0 && cpu.bridgePercent <= 100);
    assert.deepEqual(feedback, { likes: 2, dislikes: 1, total: 3 });
    assert.deepEqual({ ...errors, lastTs: 0 }, { total: 10, direction: 'up', lastTs: 0 });
    assert.deepEqual(warnings, { total: 0, direction: 'stable' });
    assert.equal(logEntries.length, 8);
    assert.deepEqual({ ...logEntries[7], ts: 0 }, { level: 'error', message: 'readFile: "none9" does not exist', ts: 0 });
    assert.equal(errors.lastTs, logEntries[7].ts);
    assert.deepEqual([metrics.requestCount, metrics.errorCount], [14, 10]);
    assert.deepEqual({ ...service, memoryBytes: 0, uptimeSec: 0 },
        { active: 'active', sub: 'running', enabled: 'disabled', uptimeSec: 0, restartCount: 0, memoryBytes: 0 });
});

test('the other reports are objects with figures', async (t) => {
    const client = await (await startBridge(t)).connect();
    assert.ok((await client.result('getServiceHealth')).memoryBytes > 1e6);
    const { severity, summary } = await client.result('getQuickStatus');
    assert.ok(['ok', 'warning'].includes(severity));
    assert.match(summary, /^Processor [\d.]+%, memory [\d.]+%$/);
    const { entries } = await client.result('getKdeLogs');
    assert.ok(entries.every(({ timestamp, message }) => timestamp < Date.now() && message));
    const { machine } = await client.result('getSystemReport');
    assert.ok(Object.values(machine).every(Number.isFinite));
});

test('uptime goes on, in reports and counters', () => {
    let now = 100;
    const metrics = new Metrics(() => now);
    assert.equal(metrics.uptimeMs, 0);
    now = 1600.7;
    assert.equal(metrics.report().uptimeMs, 1500);
});

test('latencies are summed up as last, mean and the slowest but five in a hundred', () => {
    let now = 0;
    const metrics = new Metrics(() => now);
    const none = { lastRequestMs: 0, avgLatencyMs: 0, p95LatencyMs: 0 };
    const times = ({ lastRequestMs, avgLatencyMs, p95LatencyMs }) => ({ lastRequestMs, avgLatencyMs, p95LatencyMs });
    assert.deepEqual(times(metrics.report()), none);
    const never = metrics.beginRequest();
    for (let n = 1; n <= 100; ++n) {
        const answered = metrics.beginRequest();
        now += n;
        answered();
    }
    assert.deepEqual(times(metrics.report()), { lastRequestMs: 100, avgLatencyMs: 50.5, p95LatencyMs: 95 });
    assert.equal(metrics.report().requestCount, 101);
    assert.equal(typeof never, 'function');
});

test('the journal keeps its latest lines, and the totals of all', () => {
    const journal = new Journal(() => 7);
    for (let n = 0; n < 250; ++n)
        journal.add('warn', 'event', ` line\n${n} ${'x'.repeat(400)}`);
    assert.equal(journal.total('warn'), 250);
    assert.equal(journal.latest(1000).length, 200);
    assert.ok(journal.latest(1)[0].message.startsWith('line 249 x'));
    assert.equal(journal.latest(1)[0].message.length, 301);
});

test('the direction compares the last minute with the one before', () => {
    let now = 10 * MINUTE;
    const journal = new Journal(() => now);
    assert.equal(journal.direction('error'), 'stable');
    journal.add('error', 'event', 'x');
    assert.equal(journal.direction('error'), 'up');
    assert.equal(journal.direction('warn'), 'stable');
    now += MINUTE;
    assert.equal(journal.direction('error'), 'down');
    journal.add('error', 'event', 'x');
    assert.equal(journal.direction('error'), 'stable');
    now += 2 * MINUTE;
    assert.equal(journal.direction('error'), 'stable');
});

test('made-up figures swing about their middle', () => {
    assert.equal(wave(0, 24, 18, 40), 24);
    assert.equal(wave(10, 24, 18, 40), 42);
    assert.equal(wave(30, 24, 18, 40), 6);
    assert.equal(wave(5, 24, 18, 40), 36.7);
});

test('the load of the dashboard moves, through every range', () => {
    let now = 0;
    const house = new House(readSettings({}));
    house.metrics = new Metrics(() => now);
    const loads = Array.from({ length: 60 }, (_, n) => {
        now = n * 1000;
        return new Reports(house).dashboard().cpu.bridgePercent;
    });
    assert.ok(loads.every((percent) => percent >= 0 && percent <= 100));
    assert.ok(loads.some((percent) => percent > 80));
    assert.ok(loads.some((percent) => percent > 50 && percent <= 80));
    assert.ok(loads.some((percent) => percent < 10));
});

test('errors and warnings come when asked for', async (t) => {
    const client = await (await startBridge(t)).connect();
    await client.chat('log warning');
    await client.chat('log error');
    const { errors, warnings, logEntries } = await client.result('getSystemDashboard');
    assert.deepEqual([errors.total, warnings.total], [1, 1]);
    assert.deepEqual(logEntries.map(({ level }) => level), ['warn', 'error']);
    await client.chat('log many');
    const after = await client.result('getSystemDashboard');
    assert.deepEqual([after.errors.total, after.warnings.total, after.logEntries.length], [13, 13, 8]);
});
