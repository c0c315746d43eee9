// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Reports of programs of the system, with stand-ins for these.

const assert = require('assert/strict');
const fs = require('fs');
const path = require('path');

const { logReport, readLogs } = require('../lib/reports/logs');
const { Programs } = require('../lib/reports/programs');
const { readPower } = require('../lib/reports/power');
const { readService, serviceReport } = require('../lib/reports/service');
const { StandIns } = require('./support/standins');
const { temporaryFolder } = require('./support/child');
const { test } = require('./support/timed');

const OWN = { uptimeSec: 7, memoryBytes: 1000 };

function fixture(t, limits) {
    const standIns = new StandIns(temporaryFolder(t));
    const programs = new Programs(standIns.env, limits);
    t.after(() => programs.close());
    return { standIns, programs };
}

const show = (fields) => Object.entries(fields).map(([key, value]) => `${key}=${value}\n`).join('');

const ACTIVE = {
    LoadState: 'loaded',
    ActiveState: 'active',
    SubState: 'running',
    UnitFileState: 'enabled',
    ActiveEnterTimestampMonotonic: '100500000',
    NRestarts: '3',
    MemoryCurrent: '52428800',
};

test('the service is reported as systemd describes it', () => {
    assert.deepEqual(serviceReport(show(ACTIVE), OWN, 160.7),
        { active: 'active', sub: 'running', enabled: 'enabled', uptimeSec: 60, restartCount: 3, memoryBytes: 52428800 });
    for (const unset of ['[not set]', '18446744073709551615', '']) {
        const text = show({ ...ACTIVE, MemoryCurrent: unset, ActiveEnterTimestampMonotonic: unset });
        const report = serviceReport(text, OWN, 160);
        assert.deepEqual([report.memoryBytes, report.uptimeSec], [1000, 7], unset);
    }
});

test('beside a service that isn\'t active, uptime and memory are those of this process', () => {
    const missing = { ...ACTIVE, LoadState: 'not-found', ActiveState: 'inactive', SubState: 'dead', UnitFileState: '' };
    assert.deepEqual(serviceReport(show(missing), OWN, 160),
        { active: 'inactive', sub: 'dead', enabled: 'not-found', restartCount: 3, ...OWN });
});

test('without systemd, the service is unavailable', async (t) => {
    const unavailable = { active: 'unavailable', sub: 'unavailable', enabled: 'unavailable', restartCount: 0, ...OWN };
    const { standIns, programs } = fixture(t, { timeoutMs: 300, maxBytes: 100000 });
    assert.deepEqual(await readService(programs, OWN), unavailable);
    standIns.add('systemctl', 'echo "Failed to connect to bus"; exit 1');
    assert.deepEqual(await readService(programs, OWN), unavailable);
    standIns.hanging('systemctl');
    assert.deepEqual(await readService(programs, OWN), unavailable);
    standIns.endless('systemctl');
    assert.deepEqual(await readService(programs, OWN), unavailable);
    standIns.printing('systemctl', show(ACTIVE));
    assert.equal((await readService(programs, OWN)).active, 'active');
    assert.match(standIns.calls[0], /^systemctl --user show tovi-bridge\.service --property=\S*ActiveState/);
});

const profiles = (names) => JSON.stringify({
    type: 'aa{sv}',
    data: names.map((name) => ({ Driver: { type: 's', data: 'x' }, Profile: { type: 's', data: name } })),
});
const power = (active, names) => `${JSON.stringify({ type: 's', data: active })}\n${profiles(names)}\n`;

test('power profiles are read under both names of their service', async (t) => {
    const { standIns, programs } = fixture(t, { timeoutMs: 300 });
    assert.deepEqual(await readPower(programs), { active: 'unavailable', available: [] });
    const answer = path.join(standIns.folder, 'answer');
    fs.writeFileSync(answer, power('balanced', ['power-saver', 'balanced']));
    for (const name of ['net.hadess.PowerProfiles', 'org.freedesktop.UPower.PowerProfiles']) {
        standIns.add('busctl', `case "$*" in *" ${name} "*) /bin/cat '${answer}';; *) exit 1;; esac`);
        assert.deepEqual(await readPower(programs), { active: 'balanced', available: ['power-saver', 'balanced'] });
    }
    standIns.hanging('busctl');
    assert.equal((await readPower(programs)).active, 'unavailable');
    for (const rubbish of ['', 'x\ny', '1\n2', '{"data":1}\n{"data":2}', '{"data":"a"}', 'null\nnull']) {
        standIns.printing('busctl', rubbish);
        assert.equal((await readPower(programs)).active, 'unavailable', rubbish);
    }
    const many = '{"Profile":{"data":"x"}},'.repeat(50);
    const odd = `{"data":"a"}\n{"data":[null,1,{},{"Profile":{"data":"  p\\n\\u001bq "}},${many}1]}`;
    standIns.printing('busctl', odd);
    assert.deepEqual(await readPower(programs), { active: 'a', available: ['p q', ...Array(11).fill('x')] });
});

const entry = (seconds, fields) => `${JSON.stringify({ __REALTIME_TIMESTAMP: `${seconds}000000`, ...fields })}\n`;

test('log entries are oldest first, with their levels', () => {
    const text = entry(30, { MESSAGE: 'c', PRIORITY: '3', SYSLOG_IDENTIFIER: 'shell' })
        + entry(20, { MESSAGE: [195, 164, 10, 255], PRIORITY: '4', _SYSTEMD_USER_UNIT: 'a.service', _COMM: 'x' })
        + entry(10, { MESSAGE: ' \u001b[31mred\n line ', _COMM: 'tool' });
    assert.deepEqual(logReport(text), {
        available: true,
        entries: [
            { timestamp: 10000, unit: 'tool', level: 'info', message: '[31mred line' },
            { timestamp: 20000, unit: 'a.service', level: 'warn', message: 'ä \ufffd' },
            { timestamp: 30000, unit: 'shell', level: 'error', message: 'c' },
        ],
    });
});

test('errors and warnings come before other log entries if there are too many', () => {
    const lines = Array.from({ length: 100 }, (_, n) =>
        entry(1000 - n, { MESSAGE: `m${n}`, PRIORITY: n >= 90 ? '3' : '6' }));
    const { entries } = logReport(lines.join(''));
    assert.equal(entries.length, 50);
    assert.equal(entries.filter(({ level }) => level === 'error').length, 10);
    assert.deepEqual([entries[0].message, entries.at(-1).message], ['m99', 'm0']);
});

test('malformed log entries are skipped, long ones cut', () => {
    const bad = ['', '{', 'null', '[]', '7', entry(5, {}), entry('x', { MESSAGE: 'm' }), entry(5, { MESSAGE: null }),
        entry(5, { MESSAGE: ['a', 'b'] }), entry(5, { MESSAGE: { a: 1 } }), entry('9'.repeat(300), { MESSAGE: 'm' })];
    const { entries } = logReport(`${bad.join('\n')}\n${entry(5, { MESSAGE: 'x'.repeat(9000), PRIORITY: {} })}`);
    assert.equal(entries.length, 1);
    assert.deepEqual([entries[0].message.length, entries[0].level, entries[0].unit], [501, 'info', '']);
});

test('the log of the session is asked for a bounded number of entries', async (t) => {
    const { standIns, programs } = fixture(t, { timeoutMs: 300, maxBytes: 100000 });
    assert.deepEqual(await readLogs(programs), { available: false, entries: [] });
    standIns.printing('journalctl', '');
    assert.deepEqual(await readLogs(programs), { available: true, entries: [] });
    for (const argument of ['--user', '--output=json', '--lines=200', '--since=-6h', '--reverse'])
        assert.ok(standIns.calls[0].split(' ').includes(argument), argument);
    standIns.endless('journalctl');
    assert.deepEqual(await readLogs(programs), { available: true, entries: [] });
    standIns.hanging('journalctl');
    assert.equal((await readLogs(programs)).available, false);
});

test('a cut journal keeps its complete lines', async (t) => {
    const { standIns, programs } = fixture(t, { maxBytes: 500 });
    standIns.printing('journalctl', entry(9, { MESSAGE: 'new' }) + entry(8, { MESSAGE: 'x'.repeat(1000) }));
    assert.deepEqual((await readLogs(programs)).entries.map(({ message }) => message), ['new']);
});
