// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');
const fs = require('fs');
const path = require('path');

const { Counters, OwnLoad, parseStat } = require('../lib/reports/load');
const { judge, readMachine, within } = require('../lib/reports/machine');
const { Processes, busiest, parseProcess, parseStatus } = require('../lib/reports/processes');
const { duration, processesReply, statusReply, windowsReply } = require('../lib/reports/replies');
const { temporaryFolder } = require('./support/child');
const { test } = require('./support/timed');

const GB = 1024 ** 3;

test('the time of all processors is counted', () => {
    const text = 'cpu  100 1 50 800 40 2 3 4 9 9\ncpu0 50 1 25 400 20 1 1 2 0 0\ncpu1 50 0 25 400 20 1 2 2 0 0\nintr 1\n';
    assert.deepEqual(parseStat(text), { busy: 160, total: 1000, processors: 2 });
    for (const wrong of [null, '', 'cpu', 'cpu  x y z w', 'cpu0 1 2 3 4'])
        assert.equal(parseStat(wrong), null, wrong);
});

test('counters are compared with recent ones, otherwise with new ones', async () => {
    let [now, count] = [0, 0];
    const waits = [];
    const wait = async (ms) => { waits.push(ms); now += ms; };
    const counters = new Counters(async () => ++count, { clock: () => now, wait });
    assert.deepEqual(await counters.measure(), [1, 2]);
    now += 4000;
    assert.deepEqual(await counters.measure(), [2, 3]);
    now += 50;
    assert.deepEqual(await counters.measure(), [3, 4]);
    now += 10001;
    assert.deepEqual(await counters.measure(), [5, 6]);
    assert.deepEqual(waits, [200, 150, 200]);
});

test('the load of the bridge is that since the last report', () => {
    let [used, now] = [100000, 1000];
    const load = new OwnLoad(() => ({ user: used, system: 50000 }), () => now);
    assert.equal(load.percent(), 15);
    [used, now] = [100000 + 1234567, 5000];
    assert.equal(load.percent(), 30.9);
    assert.equal(load.percent(), 0);
    now += 4000;
    assert.equal(load.percent(), 0);
});

const statLine = (pid, name, { user = 0, system = 0, started = 1, pages = 0 } = {}) =>
    `${pid} (${name}) S 1 1 1 0 -1 4194560 1 0 0 0 ${user} ${system} 0 0 20 0 1 0 ${started} 1000 ${pages} 1844674407\n`;

test('processes are parsed, whatever their names', () => {
    assert.deepEqual(parseProcess(statLine(7, 'a) S (b c', { user: 3, system: 4, started: 5, pages: 6 })),
        { pid: 7, name: 'a) S (b c', ticks: 7, started: 5, pages: 6 });
    assert.equal(parseProcess(statLine(7, 'a\n\u001bb')).name, 'a b');
    for (const wrong of [null, '', '7', '7 (a)', '7 (a) S 1', 'x (a) S', '7 (a) ) )'])
        assert.equal(parseProcess(wrong), null, wrong);
    assert.deepEqual(parseStatus('Name:\tx\nUid:\t1000\t0\t0\t0\nVmRSS:\t    2048 kB\n'), { uid: 1000, memoryMb: 2 });
    assert.deepEqual(parseStatus(null), { uid: NaN, memoryMb: 0 });
});

test('the busiest processes are those of the last interval', () => {
    const before = { total: 1000, processors: 2, processes: [
        { pid: 1, ticks: 500, started: 1, pages: 1 }, { pid: 2, ticks: 0, started: 1, pages: 1 },
        { pid: 3, ticks: 900, started: 1, pages: 1 }, { pid: 5, ticks: 0, started: 1, pages: 1 },
    ] };
    const after = { total: 1400, processors: 2, processes: [
        { pid: 1, ticks: 520, started: 1, pages: 1 }, // 20 ticks of the 200 that each processor had
        { pid: 2, ticks: 200, started: 1, pages: 1 },
        { pid: 3, ticks: 950, started: 9, pages: 1 }, // another process with the same id
        { pid: 4, ticks: 80, started: 9, pages: 2 },
    ] };
    const rows = (count) => busiest([before, after], count).map(({ pid, cpuPercent }) => [pid, cpuPercent]);
    assert.deepEqual(rows(9), [[2, 100], [1, 10], [4, 0], [3, 0]]);
    assert.deepEqual(rows(1), [[2, 100]]);
    assert.equal(busiest([after, after], 1)[0].cpuPercent, 0);
});

//! A folder like /proc with some processes, {pid: {name, uid, kb, ...}}.
function addProcesses(folder, processes) {
    fs.writeFileSync(path.join(folder, 'stat'), 'cpu  10 0 0 90\ncpu0 10 0 0 90\n');
    for (const [pid, { name, uid, kb, ...more }] of Object.entries(processes)) {
        fs.mkdirSync(path.join(folder, pid), { recursive: true });
        fs.writeFileSync(path.join(folder, pid, 'stat'), statLine(pid, name, more));
        fs.writeFileSync(path.join(folder, pid, 'status'), `Uid:\t${uid}\t${uid}\n${kb ? `VmRSS:\t ${kb} kB\n` : ''}`);
        fs.writeFileSync(path.join(folder, pid, 'cmdline'), 'secret');
    }
}

test('processes are read from files like those in /proc', async (t) => {
    const folder = temporaryFolder(t);
    const processes = new Processes(folder);
    assert.equal(await processes.scan(), null);
    assert.equal(await processes.top([null, null], 3), null);
    assert.equal(await processes.memoryOf('tovictl', 1000, null), 0);

    addProcesses(folder, {
        10: { name: 'tovictl', uid: 1000, kb: 102400, pages: 5 },
        11: { name: 'tovictl', uid: 1000, kb: 51200, pages: 4 },
        12: { name: 'tovictl', uid: 1001, kb: 512000, pages: 9 },
        13: { name: 'tovictl', uid: 1000 }, // has ended
        14: { name: 'tovictl2', uid: 1000, kb: 1024, user: 5, pages: 1 },
    });
    fs.mkdirSync(path.join(folder, '15'));
    fs.mkdirSync(path.join(folder, 'self'));
    const before = await processes.scan();
    assert.equal(before.processes.length, 5);
    assert.equal(await processes.memoryOf('tovictl', 1000, before), 150);
    assert.equal(await processes.memoryOf('other', 1000, before), 0);
    const after = { ...before, total: before.total + 50, processes: before.processes.map((each) =>
        (each.pid === 14 ? { ...each, ticks: each.ticks + 25 } : each)) };
    assert.deepEqual(await processes.top([before, after], 2), {
        byCpu: [{ pid: 14, name: 'tovictl2', cpuPercent: 50, memoryMb: 1 },
            { pid: 12, name: 'tovictl', cpuPercent: 0, memoryMb: 500 }],
        byMemory: [{ pid: 12, name: 'tovictl', cpuPercent: 0, memoryMb: 500 },
            { pid: 10, name: 'tovictl', cpuPercent: 0, memoryMb: 100 }],
    });
});

const SOURCES = {
    counters: async () => [{ busy: 100, total: 1000, processors: 4 }, { busy: 150, total: 1200, processors: 4 }],
    memory: async () => ({ total: 16 * GB, active: 4 * GB }),
    battery: async () => ({ hasBattery: true, percent: 64.26, isCharging: true }),
    disk: async () => ({ blocks: 1000, bfree: 400, bavail: 300, bsize: GB }),
    load: () => 2,
    uptime: () => 4000.9,
};

const MACHINE = {
    cpuPercent: 25,
    loadPercent: 50,
    memoryPercent: 25,
    memoryTotalBytes: 16 * GB,
    diskPercent: 66.7,
    diskFreeBytes: 300 * GB,
    batteryPercent: 64.3,
    batteryCharging: true,
    uptimeSec: 4000,
};

const NOTHING = { ...Object.fromEntries(Object.keys(MACHINE).map((key) => [key, null])), uptimeSec: 4000 };

test('the figures of the machine come from its sources', async () => {
    assert.deepEqual(await readMachine(SOURCES), MACHINE);
    const fails = async () => { throw new Error('x'); };
    assert.deepEqual(
        await readMachine({ ...SOURCES, counters: async () => [null, null], memory: fails, battery: fails, disk: fails }),
        NOTHING);
    const noBattery = await readMachine({ ...SOURCES, battery: async () => ({ hasBattery: false, percent: 0 }) });
    assert.deepEqual([noBattery.batteryPercent, noBattery.batteryCharging], [null, null]);
});

test('a source that hangs is left out', async () => {
    assert.equal(await within(new Promise((resolve) => { setTimeout(resolve, 60000).unref(); }), 10), null);
    assert.equal(await within(Promise.resolve(5), 10), 5);
});

const SEVERITIES = [
    [{}, 'ok', 'All is well: processor 25%, memory 25%, disk 66.7%, battery 64.3%.'],
    [{ cpuPercent: 100 }, 'ok', 'All is well: processor 100%, memory 25%, disk 66.7%, battery 64.3%.'],
    [{ batteryPercent: null }, 'ok', 'All is well: processor 25%, memory 25%, disk 66.7%.'],
    [NOTHING, 'ok', 'This machine reports no figures.'],
    [{ memoryPercent: 90 }, 'warning', 'Attention: memory is 90% full.'],
    [{ diskPercent: 97, loadPercent: 150 }, 'critical',
        'Attention: the disk with your home folder is 97% full, the processor is overloaded.'],
    [{ batteryPercent: 15, batteryCharging: false }, 'warning', 'Attention: the battery is at 15%.'],
    [{ batteryPercent: 5, batteryCharging: false }, 'critical', 'Attention: the battery is at 5%.'],
    [{ batteryPercent: 5 }, 'ok', 'All is well: processor 25%, memory 25%, disk 66.7%, battery 5%.'],
];

test('a machine is fine unless something runs out', () => {
    for (const [change, severity, summary] of SEVERITIES)
        assert.deepEqual(judge({ ...MACHINE, ...change }), { severity, summary });
});

test('the state of the machine as a reply', () => {
    assert.equal(statusReply(MACHINE).response, 'All is well: processor 25%, memory 25%, disk 66.7%, battery 64.3%.\n\n' +
        '- Processor: 25%\n- Memory: 25% of 16 GB\n- Disk of your home folder: 66.7%, 300 GB free\n' +
        '- Battery: 64.3%, charging\n- Running for 1 hour 6 minutes');
    assert.equal(statusReply(NOTHING).response, 'This machine reports no figures.\n\n' +
        '- Processor: unavailable\n- Memory: unavailable\n- Disk of your home folder: unavailable\n- Battery: none\n' +
        '- Running for 1 hour 6 minutes');
    assert.deepEqual([59, 60, 7200, 86400, 200000].map(duration),
        ['0 hours 0 minutes', '0 hours 1 minute', '2 hours 0 minutes', '1 day 0 hours', '2 days 7 hours']);
});

test('the busiest processes as tables', () => {
    const rows = (name) => Array.from({ length: 8 }, (_, n) => ({ pid: n, name, cpuPercent: 1.5, memoryMb: 1000 * n }));
    const { response, ui: { blocks } } = processesReply({ byCpu: rows('a'), byMemory: rows('<b>') });
    assert.deepEqual(blocks.map(({ type }) => type), ['text', 'table', 'text', 'table']);
    assert.deepEqual(blocks[1].rows.slice(0, 3),
        [['a', 0, '1.5%', '0 MB'], ['a', 1, '1.5%', '1000 MB'], ['a', 2, '1.5%', '2 GB']]);
    assert.equal(blocks[3].rows.length, 5);
    assert.doesNotMatch(response, /<b>/);
    assert.match(processesReply(null).response, /unavailable/);
});

test('the open windows as a list', () => {
    const windows = (count) => Array.from({ length: count }, (_, n) =>
        ({ title: n ? `w${n}` : '', class: 'editor', minimized: n === 1 }));
    const state = (count, complete = true) => ({ available: true, complete, windows: windows(count) });
    assert.deepEqual(windowsReply(state(2)).ui.blocks,
        [{ type: 'list', title: 'Open windows', items: ['editor', 'w1 (minimized)'] }]);
    assert.equal(windowsReply(state(2)).response, '2 windows open.');
    assert.equal(windowsReply(state(1, false)).response,
        '1 window open. There may be others that can\'t be seen from here, such as those of Wayland programs.');
    assert.deepEqual(windowsReply(state(23)).ui.blocks[0].items.slice(19), ['w19', 'and 3 more']);
    assert.equal(windowsReply(state(0)).response, 'No window is open.');
    assert.match(windowsReply({ available: false, complete: false, windows: [] }).response, /unavailable.*xprop/);
});
