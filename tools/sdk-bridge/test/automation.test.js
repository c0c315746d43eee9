// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');

const { Automations } = require('../lib/automations');
const { Reminders } = require('../lib/reminders');
const { Store } = require('../lib/store');
const { startBridge } = require('./support/child');
const { test } = require('./support/timed');

const trigger = { type: 'time', at: '08:00' };
const steps = [{ capabilityId: 'theme.apply', params: { name: 'Breeze Light' } }];

const find = async (client, id) => (await client.result('automationList')).automations.find((row) => row.id === id);

test('an automation is created, changed, paused and deleted', async (t) => {
    const client = await (await startBridge(t)).connect();
    const { id } = await client.result('automationCreate', { trigger, steps, condition: {} });
    assert.match(id, /^demo-auto_/);
    const fresh = { id, name: '', enabled: true, lastRun: null, trigger, steps, condition: {} };
    assert.deepEqual(await find(client, id), fresh);

    await client.result('automationUpdate', { id, condition: { weekday: true }, unknown: 1, lastRun: 5 });
    assert.deepEqual(await find(client, id), { ...fresh, condition: { weekday: true } });

    assert.deepEqual(await client.result('automationPause', { id, pause: true }), { ok: true, id, enabled: false, demonstration: true });
    assert.equal((await find(client, id)).enabled, false);
    assert.equal((await client.result('automationPause', { id, pause: false })).enabled, true);

    assert.deepEqual(await client.result('automationDelete', { id }), { ok: true, id, demonstration: true });
    assert.equal(await find(client, id), undefined);
    for (const [method, more] of [['automationDelete', {}], ['automationUpdate', {}], ['automationPause', { pause: true }]]) {
        assert.deepEqual((await client.request(method, { id, ...more })).error,
            { message: `There is no automation with the id "${id}"`, code: 'AUTOMATION_NOT_FOUND' });
    }
});

test('there are automations from the start: one that ran, one that never did', async (t) => {
    const client = await (await startBridge(t)).connect();
    const { automations } = await client.result('automationList');
    assert.deepEqual(automations.map(({ enabled, lastRun }) => [enabled, typeof lastRun]),
        [[true, 'number'], [false, 'object']]);
    assert.ok(automations[0].lastRun < Date.now());
});

test('an automation without steps is refused, also as a change', () => {
    const automations = new Automations();
    assert.throws(() => automations.create({ trigger, steps: [] }), { code: 'INVALID_PARAMS' });
    const { id } = automations.create({ trigger, steps });
    assert.throws(() => automations.update({ id, steps: [] }), { code: 'INVALID_PARAMS' });
    assert.deepEqual(automations.update({ id, enabled: false }).steps, steps);
});

test('reminders count down, and leave the list when they are due', () => {
    let now = 1000;
    const reminders = new Reminders(() => now);
    const { id } = reminders.schedule({ title: ' Call\nMum ', delayMs: 5000 });
    const [first, ...others] = reminders.list();
    assert.deepEqual(first, { id, title: 'Call Mum', message: '', fire_at: 6000, remaining_ms: 5000 });
    assert.ok(others.length && others.every(({ title, message }) => title && message));
    now = 5999;
    assert.equal(reminders.list()[0].remaining_ms, 1);
    now = 6000;
    assert.ok(reminders.list().every((row) => row.id !== id && row.remaining_ms > 0));
    assert.throws(() => reminders.cancel(id), { code: 'REMINDER_NOT_FOUND' });
    for (const delayMs of [0, -1, 1e13])
        assert.throws(() => reminders.schedule({ title: 'x', delayMs }), { code: 'INVALID_PARAMS' });
});

test('reminders are scheduled, listed and cancelled over the wire', async (t) => {
    const client = await (await startBridge(t)).connect();
    const before = Date.now();
    const { id } = await client.result('reminderSchedule', { title: 'Soon', message: 'Now', delayMs: 60000 });
    const { reminders } = await client.result('reminderList');
    assert.deepEqual(Object.keys(reminders[0]), ['id', 'title', 'message', 'fire_at', 'remaining_ms']);
    assert.equal(reminders[0].id, id);
    assert.ok(reminders[0].fire_at >= before + 60000 && reminders[0].remaining_ms <= 60000);

    assert.deepEqual(await client.result('reminderCancel', { id }), { ok: true, id, demonstration: true });
    assert.ok((await client.result('reminderList')).reminders.every((row) => row.id !== id));
    assert.deepEqual((await client.request('reminderCancel', { id })).error,
        { message: `There is no reminder with the id "${id}"`, code: 'REMINDER_NOT_FOUND' });
});

test('a store refuses one row too many and rows that are too big', () => {
    const store = new Store({ noun: 'thing', code: 'THING_NOT_FOUND', prefix: 'th', limit: 2 });
    const { id } = store.add({ text: 'a' });
    assert.match(id, /^th_[0-9a-f]{12}$/);
    assert.throws(() => store.add({ text: 'x'.repeat(100000) }), { code: 'TOO_LARGE' });
    assert.throws(() => store.change(id, { text: 'x'.repeat(100000) }), { code: 'TOO_LARGE' });
    assert.equal(store.get(id).text, 'a');
    const second = store.add({ text: 'b' });
    assert.throws(() => store.add({ text: 'c' }), { code: 'FULL' });
    store.makeRoom();
    assert.deepEqual(store.all(), [second]);
    assert.throws(() => store.get(id), { code: 'THING_NOT_FOUND' });
});
