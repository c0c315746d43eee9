// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');
const fs = require('fs');
const path = require('path');
const { spawn } = require('child_process');

const { House } = require('../lib/house');
const { Journal } = require('../lib/journal');
const { Metrics } = require('../lib/metrics');
const { readSettings } = require('../lib/settings');
const { StandIns, hasEnded, until } = require('./support/standins');
const { startBridge, temporaryFolder } = require('./support/child');
const { test } = require('./support/timed');

const MINUTE = 60000;

//! A bridge that finds stand-ins instead of the programs of the system.
function startWith(t, standIns, env = {}) {
    const empty = { HOME: standIns.folder, XDG_CONFIG_DIRS: standIns.folder, XDG_CONFIG_HOME: '', DISPLAY: '' };
    return startBridge(t, { ...standIns.env, ...empty, ...env });
}

test('plans change the simulated desktop, and reports have the real one', async (t) => {
    const client = await (await startWith(t, new StandIns(temporaryFolder(t)))).connect();
    const state = async () => (await client.result('getDesktopState'));
    const { demonstration, ...real } = await state();
    assert.deepEqual(real, {
        windows: { available: false, complete: false, windows: [] },
        panels: { available: false, panels: [] },
        theme: 'unavailable',
    });
    assert.deepEqual([demonstration.theme, demonstration.windows.windows.length, demonstration.powerProfile],
        ['Breeze', 3, 'balanced']);
    await client.result('executePlan',
        { steps: [{ capabilityId: 'power.profile.set', params: { profile: 'performance' } },
            { capabilityId: 'app.launch', params: { name: 'Mail' } }] });
    const after = await state();
    assert.deepEqual([after.demonstration.powerProfile, after.demonstration.windows.windows.length], ['performance', 4]);
    assert.deepEqual({ ...after, demonstration: 0 }, { ...real, demonstration: 0 });
    assert.deepEqual(await client.result('getPowerProfile'), { active: 'unavailable', available: [] });
});

test('a power profile can be asked for in the words of the dashboard', async (t) => {
    const client = await (await startBridge(t)).connect();
    const before = await client.result('getPowerProfile');
    assert.equal((await client.chat('switch to power-saver power profile')).response,
        'Demonstration: nothing on this desktop is changed. The simulated desktop has the power profile “power-saver” now.');
    assert.match((await client.chat('switch to no such power profile')).response, /: power-saver, balanced, performance\.$/);
    assert.equal((await client.result('getDesktopState')).demonstration.powerProfile, 'power-saver');
    assert.deepEqual(await client.result('getPowerProfile'), before);
});

test('programs of the system are asked once for clients that ask at the same time, and with few variables', async (t) => {
    const standIns = new StandIns(temporaryFolder(t));
    standIns.add('systemctl', 'echo ActiveState=active; echo SubState=running; echo UnitFileState=enabled; echo NRestarts=2;' +
        ' /usr/bin/env > "$HOME/environment"');
    const bridge = await startWith(t, standIns, { LOOMRA_MODEL_KEY: 'secret', XDG_RUNTIME_DIR: '/nowhere' });
    const clients = [await bridge.connect(), await bridge.connect()];
    assert.deepEqual(standIns.calls, []);
    const ids = clients.map((client) => [client.post('getSystemDashboard'), client.post('getServiceHealth')]);
    for (const [n, [dashboard, health]] of ids.entries()) {
        const { service } = (await clients[n].reply(dashboard)).payload;
        const { active, sub, enabled, restartCount } = service;
        assert.deepEqual([active, sub, enabled, restartCount], ['active', 'running', 'enabled', 2]);
        assert.deepEqual((await clients[n].reply(health)).payload, service);
    }
    assert.equal(standIns.calls.length, 1);
    const environment = fs.readFileSync(path.join(standIns.folder, 'environment'), 'utf8');
    assert.match(environment, /XDG_RUNTIME_DIR=\/nowhere/);
    assert.doesNotMatch(environment, /secret|LOOMRA/);
});

test('a program that hangs delays a dashboard by its timeout, and nothing else', async (t) => {
    const standIns = new StandIns(temporaryFolder(t)).hanging('systemctl');
    const client = await (await startWith(t, standIns)).connect();
    const began = Date.now();
    const dashboard = client.post('getSystemDashboard');
    await client.result('ping');
    assert.ok(!client.messages.some(({ id }) => id === dashboard));
    assert.equal((await client.reply(dashboard)).payload.service.active, 'unavailable');
    assert.ok(Date.now() - began < 5000);
});

test('a program that hangs doesn\'t keep the bridge from stopping, and is killed', async (t) => {
    const standIns = new StandIns(temporaryFolder(t)).hanging('systemctl');
    const bridge = await startWith(t, standIns);
    (await bridge.connect()).post('getServiceHealth');
    const pids = await standIns.pids();
    assert.deepEqual(await bridge.stop(), { code: 0, signal: null });
    await until(() => pids.every(hasEnded));
});

test('programs don\'t outlive the bridge until their timeout', () => {
    const house = new House(readSettings({}));
    let closed = 0;
    house.reports.close = () => ++closed;
    house.close();
    assert.equal(closed, 1);
});

test('the memory of the client is that of the processes of its name', async (t) => {
    const client = await (await startBridge(t)).connect();
    const program = path.join(temporaryFolder(t), 'tovictl');
    fs.symlinkSync('/bin/sleep', program);
    const child = spawn(program, ['600']);
    t.after(() => child.kill('SIGKILL'));
    // Not compared with the memory before: other tests start and end programs of this name.
    await until(async () => (await client.result('getSystemDashboard')).memory.toviServiceMb > 0);
});

test('the real machine has sane figures, and its processes no command lines', async (t) => {
    const client = await (await startBridge(t)).connect();
    const { machine, processes, appLogs } = await client.result('getSystemReport');
    for (const key of ['cpuPercent', 'memoryPercent', 'diskPercent'])
        assert.ok(machine[key] >= 0 && machine[key] <= 100, `${key} is ${machine[key]}`);
    assert.ok(machine.memoryTotalBytes > 1e8 && machine.diskFreeBytes >= 0 && machine.uptimeSec > 0);
    assert.ok(machine.batteryPercent === null || (machine.batteryPercent >= 0 && machine.batteryPercent <= 100));
    assert.deepEqual(appLogs, { totalErrors: 0, totalWarnings: 0 });
    for (const rows of [processes.byCpu, processes.byMemory]) {
        assert.ok(rows.length > 0 && rows.length <= 8);
        for (const row of rows) {
            assert.deepEqual(Object.keys(row), ['pid', 'name', 'cpuPercent', 'memoryMb']);
            assert.ok(row.pid > 0 && row.name && row.cpuPercent >= 0 && row.memoryMb >= 0);
        }
    }
    const memory = processes.byMemory.map(({ memoryMb }) => memoryMb);
    assert.ok(memory[0] > 0);
    const cpu = processes.byCpu.map(({ cpuPercent }) => cpuPercent);
    assert.deepEqual(cpu, [...cpu].sort((a, b) => b - a));
});

test('whatever this desktop has, its reports have their form', async (t) => {
    const client = await (await startBridge(t)).connect();
    const { windows, panels, theme } = await client.result('getDesktopState');
    assert.ok(Array.isArray(windows.windows) && Array.isArray(panels.panels) && theme);
    const { active, available } = await client.result('getPowerProfile');
    assert.ok(active && Array.isArray(available));
    const { entries } = await client.result('getKdeLogs');
    assert.ok(entries.length <= 50 && entries.every(({ timestamp, message }) => timestamp > 0 && message));
    const service = await client.result('getServiceHealth');
    assert.ok(service.active && service.sub && service.enabled && service.memoryBytes > 1e6 && service.uptimeSec >= 0);
    const { severity, summary } = await client.result('getQuickStatus');
    assert.ok(['ok', 'warning', 'critical'].includes(severity));
    assert.match(summary, /^(?:All is well|Attention): .+\.$/);
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
    for (const key of ['sessionHeapMb', 'sessionHeapTotalMb', 'bridgeRssMb'])
        assert.ok(memory[key] > 0, key);
    assert.ok(memory.bridgeExternalMb >= 0 && memory.toviServiceMb >= 0);
    assert.ok(cpu.bridgePercent >= 0 && cpu.bridgePercent < 1000);
    assert.deepEqual(feedback, { likes: 2, dislikes: 1, total: 3 });
    assert.deepEqual({ ...errors, lastTs: 0 }, { total: 10, direction: 'up', lastTs: 0 });
    assert.deepEqual(warnings, { total: 0, direction: 'stable' });
    assert.equal(logEntries.length, 8);
    assert.deepEqual({ ...logEntries[7], ts: 0 }, { level: 'error', message: 'readFile: "none9" does not exist', ts: 0 });
    assert.equal(errors.lastTs, logEntries[7].ts);
    assert.deepEqual([metrics.requestCount, metrics.errorCount], [14, 10]);
    assert.deepEqual(Object.keys(service).sort(),
        ['active', 'enabled', 'memoryBytes', 'restartCount', 'sub', 'uptimeSec']);
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
