// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');
const { execFileSync } = require('child_process');
const fs = require('fs');
const path = require('path');

const { Programs, environmentFrom } = require('../lib/reports/programs');
const { readStart } = require('../lib/reports/files');
const { shared } = require('../lib/reports/shared');
const { StandIns, hasEnded, until } = require('./support/standins');
const { temporaryFolder } = require('./support/child');
const { test } = require('./support/timed');

function fixture(t, limits) {
    const standIns = new StandIns(temporaryFolder(t));
    const programs = new Programs(standIns.env, limits);
    t.after(() => programs.close());
    return { standIns, programs };
}

test('a program runs with its arguments as they are', async (t) => {
    const { standIns, programs } = fixture(t);
    standIns.printing('report', 'ÄÖ\nü\n');
    assert.equal(await programs.run('report', ['a b', '$(touch /tmp/x)', '; false']), 'ÄÖ\nü\n');
    assert.deepEqual(standIns.calls, ['report a b $(touch /tmp/x) ; false']);
});

test('a program that is missing, not executable or fails has no output', async (t) => {
    const { standIns, programs } = fixture(t);
    assert.equal(await programs.run('nowhere', []), null);
    fs.writeFileSync(path.join(standIns.folder, 'text'), 'x', { mode: 0o644 });
    assert.equal(await programs.run('text', []), null);
    standIns.add('failing', 'echo output; exit 3');
    assert.equal(await programs.run('failing', []), null);
    standIns.add('crashing', 'echo output; kill -9 $$');
    assert.equal(await programs.run('crashing', []), null);
});

test('a program that takes too long is killed with its children', async (t) => {
    const { standIns, programs } = fixture(t, { timeoutMs: 300 });
    standIns.hanging('slow');
    assert.equal(await programs.run('slow', []), null);
    const pids = await standIns.pids();
    assert.equal(pids.length, 2);
    await until(() => pids.every(hasEnded));
});

test('a program is killed when the bridge stops', async (t) => {
    const { standIns, programs } = fixture(t, { timeoutMs: 60000 });
    standIns.hanging('slow');
    const running = programs.run('slow', []);
    const pids = await standIns.pids();
    programs.close();
    assert.equal(await running, null);
    assert.equal(await programs.run('slow', []), null);
    assert.equal(standIns.calls.length, 1);
    await until(() => pids.every(hasEnded));
});

test('output has a limit', async (t) => {
    const { standIns, programs } = fixture(t, { maxBytes: 1000, timeoutMs: 20000 });
    standIns.endless('endless');
    const text = await programs.run('endless', []);
    assert.equal(text.length, 1000);
    assert.match(text, /^"=\[\{x\n/);
});

test('other work goes on while a program runs', async (t) => {
    const { standIns, programs } = fixture(t, { timeoutMs: 300 });
    standIns.hanging('slow');
    let ticks = 0;
    const timer = setInterval(() => ++ticks, 10);
    await programs.run('slow', []);
    clearInterval(timer);
    assert.ok(ticks >= 5, `${ticks} ticks`);
});

test('only what a program needs of the environment is passed on', async (t) => {
    const { standIns } = fixture(t);
    standIns.add('show', '/usr/bin/env');
    const programs = new Programs({
        ...standIns.env, HOME: '/h', DISPLAY: ':7', DBUS_SESSION_BUS_ADDRESS: 'unix:path=/b', LOOMRA_MODEL_KEY: 'secret',
        WORKSHOP_API_KEY: 'secret', LD_PRELOAD: '/nowhere.so', LANG: 'de_DE.UTF-8',
    });
    const text = await programs.run('show', []);
    for (const line of ['HOME=/h', 'DISPLAY=:7', 'DBUS_SESSION_BUS_ADDRESS=unix:path=/b', 'LC_ALL=C.UTF-8'])
        assert.ok(text.split('\n').includes(line), line);
    assert.doesNotMatch(text, /secret|KEY|LD_|LANG/);
    assert.deepEqual(environmentFrom({}), { LC_ALL: 'C.UTF-8', SYSTEMD_COLORS: '0' });
});

test('callers share a result while it is read and for a second after', async () => {
    let now = 0;
    let reads = 0;
    let finish;
    const read = shared(() => {
        ++reads;
        return new Promise((resolve) => { finish = () => resolve(reads); });
    }, () => now);
    const first = read();
    now = 5000;
    assert.equal(read(), first);
    finish();
    assert.equal(await first, 1);
    now = 5999;
    assert.equal(read(), first);
    now = 6000;
    const second = read();
    finish();
    assert.equal(await second, 2);
});

test('the start of a regular file is read, and nothing else', async (t) => {
    const folder = temporaryFolder(t);
    const file = path.join(folder, 'file');
    fs.writeFileSync(file, 'ab'.repeat(100));
    assert.equal(await readStart(file, 3), 'aba');
    assert.equal((await readStart(file, 1000)).length, 200);
    const pipe = path.join(folder, 'pipe');
    execFileSync('mkfifo', [pipe]);
    for (const other of [pipe, folder, path.join(folder, 'none'), '/dev/zero'])
        assert.equal(await readStart(other, 10), null, other);
});
