// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');

const { CAPABILITIES, findCapability } = require('../lib/capabilities');
const { makePlan } = require('../lib/planner');
const { test } = require('./support/timed');

const one = (capabilityId, params = {}) => [{ capabilityId, params }];

const WISHES = [
    ['Set the volume to 30%', one('audio.volume.set', { level: 30 })],
    ['volume 900', one('audio.volume.set', { level: 100 })],
    ['How loud is the volume?', one('audio.volume.get')],
    ['mute', one('audio.volume.mute', { mute: true })],
    ['unmute it', one('audio.volume.mute', { mute: false })],
    ['which speakers are there', one('audio.sink.list')],
    ['brightness at 0', one('display.brightness.set', { level: 0 })],
    ['night colour off', one('display.night_color.toggle', { enabled: false })],
    ['night color', one('display.night_color.toggle', { enabled: true })],
    ['rotate the screen left', one('display.rotate', { rotation: 'left' })],
    ['do not disturb on', one('notification.dnd.set', { enabled: true })],
    ['is do not disturb set?', one('notification.dnd.get')],
    ['  Go   DARK ', one('theme.apply', { name: 'Breeze Dark' })],
    ['light theme', one('theme.apply', { name: 'Breeze Light' })],
    ['switch to power-saver', one('power.profile.set', { profile: 'power-saver' })],
    ['list my open windows', one('window.list')],
    ['open the mail program', one('app.launch', { name: 'mail program' })],
    ['close the terminal', one('window.close', { title: 'terminal' })],
    ['minimise terminal', one('window.minimize', { title: 'terminal' })],
    ['show the panels', one('panel.get_layout')],
    ['tell me that it is late', one('kde.notify', { text: 'it is late' })],
    ['notify me', one('kde.notify', { text: 'Done' })],
    ['lock the screen', one('power.lock_screen')],
    ['empty my trash', one('trash.empty')],
    ['change the setting cursor.size to 32', one('settings.write', { key: 'cursor.size', value: '32' })],
    ['the setting panel.volume to 5', one('settings.write', { key: 'panel.volume', value: '5' })],
    ['read the setting cursor.size', one('settings.read', { key: 'cursor.size' })],
];

for (const [wish, plan] of WISHES) {
    test(`the wish "${wish}"`, () => {
        const made = makePlan(wish);
        assert.deepEqual([made.allowed, made.plan], [true, plan]);
        assert.equal(made.requiresApproval, Boolean(findCapability(plan[0].capabilityId).risk));
    });
}

test('every step that a wish can lead to is one that can run', () => {
    for (const [wish] of WISHES) {
        for (const { capabilityId } of makePlan(wish).plan)
            assert.equal(findCapability(capabilityId).denied, undefined);
    }
});

test('a wish of several parts makes as many steps, and takes the greatest risk', () => {
    const made = makePlan('Dark, volume 20 then empty the trash and sing.');
    assert.deepEqual(made.plan.map(({ capabilityId }) => capabilityId), ['theme.apply', 'audio.volume.set', 'trash.empty']);
    assert.equal(made.riskLevel, 'high');
    assert.equal(made.requiresApproval, true);
    assert.deepEqual(made.notUnderstood, ['sing']);
    assert.equal(made.summary, 'Dark, volume 20 then empty the trash and sing.');
});

test('one that merely reads needs no approval, one that also writes does', () => {
    assert.deepEqual(makePlan('volume and brightness'), {
        allowed: true,
        requiresApproval: false,
        plan: [...one('audio.volume.get'), ...one('display.brightness.get')],
        summary: 'volume and brightness',
        riskLevel: 'low',
        notUnderstood: [],
    });
    assert.equal(makePlan('volume and mute').requiresApproval, true);
});

const REFUSED = [
    ['sing a song', 'There is no step for this'],
    [', and .', 'There is no step for this'],
    ['shut down', 'The assistant never ends your session'],
    ['mute and delete my home', 'The assistant never deletes files outside the trash'],
    [Array(21).fill('mute').join(','), 'A plan has at most 20 steps'],
];

for (const [wish, reason] of REFUSED) {
    test(`the wish "${wish.slice(0, 30)}" is not allowed`, () => {
        const made = makePlan(wish);
        assert.deepEqual([made.allowed, made.requiresApproval, made.plan, made.reason], [false, false, [], reason]);
    });
}

test('a long wish is cut before it is looked at', () => {
    assert.equal(makePlan(`${'rotate '.repeat(100000)} left`).allowed, false);
    assert.equal(makePlan(`mute ${'x'.repeat(100000)}`).allowed, true);
});

test('capabilities stand once each, and either read, change or are never done', () => {
    assert.equal(new Set(CAPABILITIES.map(({ id }) => id)).size, CAPABILITIES.length);
    for (const { id, risk, denied, perform } of CAPABILITIES) {
        assert.equal(Boolean(denied), !perform, id);
        assert.ok([undefined, 'low', 'medium', 'high'].includes(risk), id);
    }
    assert.equal(findCapability('constructor'), undefined);
});
