// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');

const { AuditTrail } = require('../lib/audit');
const { CAPABILITIES } = require('../lib/capabilities');
const { Desktop } = require('../lib/desktop');
const { test } = require('./support/timed');

//! Params with an effect, for each capability that can be undone.
const CHANGES = {
    'audio.volume.set': { level: 1 },
    'audio.volume.mute': { mute: true },
    'display.brightness.set': { level: 2 },
    'display.night_color.toggle': { enabled: true },
    'display.rotate': { rotation: 'left' },
    'window.minimize': { title: 'TERMINAL' },
    'window.maximize': { title: 'Terminal' },
    'window.close': { title: 'text editor' },
    'app.launch': { name: 'Mail' },
    'panel.opacity.set': { opacity: 'opaque' },
    'notification.dnd.set': { enabled: true },
    'settings.write': { key: 'mouse.cursorTheme', value: 'Other' },
    'theme.apply': { name: 'Breeze Dark' },
    'input.touchpad.set_enabled': { enabled: false },
    'power.profile.set': { profile: 'performance' },
};
const STAYS = ['kde.notify', 'power.lock_screen', 'trash.empty'];

const copy = (desktop) => JSON.parse(JSON.stringify(desktop));

for (const { id, risk, perform } of CAPABILITIES.filter((row) => row.perform)) {
    test(`${id} changes what it says, and sets it back`, () => {
        const desktop = new Desktop();
        const before = copy(desktop);
        const { undo } = perform(desktop, CHANGES[id] ?? { key: 'fonts.general', text: 'x' });
        if (CHANGES[id]) {
            assert.notDeepEqual(copy(desktop), before);
            undo();
        } else {
            assert.equal(undo, STAYS.includes(id) ? null : undefined);
            assert.equal(Boolean(risk), STAYS.includes(id));
        }
        if (!STAYS.includes(id))
            assert.deepEqual(copy(desktop), before);
    });
}

const { perform: write } = CAPABILITIES.find(({ id }) => id === 'settings.write');
const { perform: read } = CAPABILITIES.find(({ id }) => id === 'settings.read');

test('settings of any name are written, read and taken back', () => {
    for (const key of ['new.key', '__proto__', 'constructor']) {
        const desktop = new Desktop();
        const before = copy(desktop);
        const { undo } = write(desktop, { key, value: 'on' });
        assert.deepEqual(read(desktop, { key }).result, { key, value: 'on' });
        undo();
        assert.equal(read(desktop, { key }).result.value, null);
        assert.deepEqual(copy(desktop), before);
    }
});

test('cursor and font settings say that they did not apply at once', () => {
    const desktop = new Desktop();
    assert.deepEqual(write(desktop, { key: 'mouse.cursorTheme', value: 'x' }).result,
        { key: 'mouse.cursorTheme', liveApplied: false, liveApplyHook: 'cursor_live_apply' });
    assert.equal(write(desktop, { key: 'fonts.general', value: 'x' }).result.liveApplyHook, 'font_live_apply');
    assert.deepEqual(write(desktop, { key: 'desktop.singleClick', value: 'x' }).result,
        { key: 'desktop.singleClick', liveApplied: true });
});

test('steps are taken back last first, each once', () => {
    let now = 5;
    const audit = new AuditTrail(() => now);
    const taken = [];
    const steps = ['a', 'b', 'c'].map((capabilityId) => ({ capabilityId, params: {}, undo: () => taken.push(capabilityId) }));
    const id = audit.enter('test', steps);
    assert.deepEqual(audit.list(1)[0], {
        id,
        at: 5,
        source: 'test',
        summary: 'a, b, c',
        steps: steps.map(({ capabilityId, params }) => ({ capabilityId, params })),
        revertedAt: null,
    });
    now = 6;
    assert.deepEqual(audit.revert(id), { reverted: 3, kept: 0 });
    assert.deepEqual(taken, ['c', 'b', 'a']);
    assert.equal(audit.list(1)[0].revertedAt, 6);
    assert.throws(() => audit.revert(id), { code: 'ALREADY_REVERTED' });
    assert.equal(taken.length, 3);
});

test('the oldest actions go first', () => {
    const audit = new AuditTrail();
    const ids = Array.from({ length: 501 }, () => audit.enter('test', [{ capabilityId: 'x', params: {}, undo: () => {} }]));
    assert.equal(audit.list(1000).length, 500);
    assert.throws(() => audit.revert(ids[0]), { code: 'ACTION_NOT_FOUND' });
    assert.equal(audit.revert(ids[1]).reverted, 1);
});
