// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// What a plan can do on the simulated desktop. A capability is a row: `risk` ("low", "medium" or "high"; absent if it
// only reads), `params` (rules as for methods), `check` (further checks), `tool` (the name in its event, by default the
// id), `unseen` (true if the outcome can't be verified), `denied` (the reason why it never runs) and
// `perform(desktop, params)`, which returns {result, undo}; `undo` is null if it can't be undone.

const { POWER_PROFILES } = require('./desktop');
const { checkOneOf, checkRange, invalid } = require('./params');
const { cut } = require('./text');

const MAX_TEXT = 200;
const MAX_SHOWN_ID = 100;
const ROTATIONS = ['normal', 'left', 'right', 'inverted'];
const LIVE_HOOKS = [[/cursor/i, 'cursor_live_apply'], [/font/i, 'font_live_apply']];

const read = (id, result) => ({ id, perform: (desktop) => ({ result: result(desktop) }) });

const percent = (key) => ({ [key]: 'integer' });
const isPercent = (key) => (params) => checkRange(key, params[key], 0, 100);

const windowState = (id, state) => ({
    id,
    risk: 'low',
    params: { title: 'text' },
    perform: (desktop, { title }) => {
        const window = desktop.window(title);
        return { result: { title: window.title, state }, undo: desktop.putState(window, state) };
    },
});

const onOff = (id, key, risk, tool) => ({
    id,
    risk,
    tool,
    params: { enabled: 'boolean' },
    perform: (desktop, { enabled }) => ({ result: { enabled }, undo: desktop.put(key, enabled) }),
});

function writeSetting(desktop, { key, value }) {
    const known = Object.hasOwn(desktop.settings, key);
    const before = desktop.settings[key];
    const settings = { ...desktop.settings };
    Object.defineProperty(settings, key, { value, enumerable: true, configurable: true, writable: true });
    desktop.settings = settings;
    const [, hook] = LIVE_HOOKS.find(([pattern]) => pattern.test(key)) ?? [];
    return {
        result: hook ? { key, liveApplied: false, liveApplyHook: hook } : { key, liveApplied: true },
        undo: () => {
            const { [key]: gone, ...others } = desktop.settings;
            desktop.settings = known ? { ...desktop.settings, [key]: before } : others;
        },
    };
}

const denied = (id, why) => ({ id, risk: 'high', denied: why });

const CAPABILITIES = [
    read('audio.volume.get', ({ volume }) => ({ level: volume })),
    {
        id: 'audio.volume.set',
        risk: 'low',
        tool: 'kde_set_volume',
        params: percent('level'),
        check: isPercent('level'),
        perform: (desktop, { level }) => ({ result: { level }, undo: desktop.put('volume', level) }),
    },
    {
        id: 'audio.volume.mute',
        risk: 'low',
        tool: 'kde_set_volume',
        params: { mute: 'boolean' },
        perform: (desktop, { mute }) => ({ result: { mute }, undo: desktop.put('muted', mute) }),
    },
    read('audio.sink.list', ({ sinks }) => ({ sinks })),
    read('display.brightness.get', ({ brightness }) => ({ level: brightness })),
    {
        id: 'display.brightness.set',
        risk: 'low',
        tool: 'kde_set_brightness',
        params: percent('level'),
        check: isPercent('level'),
        perform: (desktop, { level }) => ({ result: { level }, undo: desktop.put('brightness', level) }),
    },
    onOff('display.night_color.toggle', 'nightColor', 'low'),
    {
        id: 'display.rotate',
        risk: 'medium',
        params: { rotation: 'string' },
        check: ({ rotation }) => checkOneOf('rotation', rotation, ROTATIONS),
        perform: (desktop, { rotation }) => ({ result: { rotation }, undo: desktop.put('rotation', rotation) }),
    },
    read('window.list', ({ windows }) => ({ windows })),
    { id: 'window.expose', unseen: true, perform: () => ({ result: { exposed: true } }) },
    windowState('window.minimize', 'minimized'),
    windowState('window.maximize', 'maximized'),
    {
        id: 'window.close',
        risk: 'medium',
        params: { title: 'text' },
        perform: (desktop, { title }) => {
            const window = desktop.window(title);
            return { result: { title: window.title }, undo: desktop.close(window) };
        },
    },
    {
        id: 'app.launch',
        risk: 'low',
        tool: 'kde_launch_app',
        params: { name: 'text' },
        perform: (desktop, { name }) => {
            const title = cut(name.trim(), MAX_TEXT);
            return { result: { name: title }, undo: desktop.open(title) };
        },
    },
    read('panel.get_layout', ({ panels }) => ({ panels })),
    {
        id: 'panel.opacity.set',
        risk: 'low',
        params: { opacity: 'string' },
        check: ({ opacity }) => checkOneOf('opacity', opacity, ['adaptive', 'opaque', 'translucent']),
        perform: (desktop, { opacity }) => ({
            result: { opacity },
            undo: desktop.put('panels', desktop.panels.map((panel) => ({ ...panel, opacity }))),
        }),
    },
    read('notification.dnd.get', ({ dnd }) => ({ dnd })),
    onOff('notification.dnd.set', 'dnd', 'low'),
    {
        id: 'kde.notify',
        risk: 'low',
        params: { text: 'text' },
        unseen: true,
        perform: () => ({ result: { sent: true }, undo: null }),
    },
    {
        id: 'settings.read',
        params: { key: 'text' },
        perform: (desktop, { key }) => ({
            result: { key, value: Object.hasOwn(desktop.settings, key) ? desktop.settings[key] : null },
        }),
    },
    {
        id: 'settings.write',
        risk: 'medium',
        params: { key: 'text', value: 'string' },
        check: ({ key, value }) => {
            if (key.length > MAX_TEXT || value.length > MAX_TEXT)
                throw invalid('A setting takes short texts only');
        },
        perform: writeSetting,
    },
    {
        id: 'theme.apply',
        risk: 'low',
        params: { name: 'text' },
        perform: (desktop, { name }) => {
            const applied = cut(name.trim(), MAX_TEXT);
            return { result: { applied }, undo: desktop.put('theme', applied) };
        },
    },
    onOff('input.touchpad.set_enabled', 'touchpad', 'medium'),
    {
        id: 'power.profile.set',
        risk: 'low',
        params: { profile: 'string' },
        check: ({ profile }) => checkOneOf('profile', profile, POWER_PROFILES),
        perform: (desktop, { profile }) => ({ result: { profile }, undo: desktop.put('powerProfile', profile) }),
    },
    {
        id: 'power.lock_screen',
        risk: 'medium',
        tool: 'kde_lock_screen',
        perform: (desktop) => {
            desktop.put('locked', true);
            return { result: { locked: true }, undo: null };
        },
    },
    {
        id: 'trash.empty',
        risk: 'high',
        perform: (desktop) => {
            const emptied = desktop.trash;
            desktop.put('trash', 0);
            return { result: { emptied }, undo: null };
        },
    },
    denied('power.shutdown', 'The assistant never ends your session'),
    denied('file.delete', 'The assistant never deletes files outside the trash'),
    denied('package.install', 'The assistant never installs software'),
];

const byId = new Map(CAPABILITIES.map((row) => [row.id, { params: {}, tool: row.id.replace(/\./g, '_'), ...row }]));

//! The row of a capability, or undefined.
const findCapability = (id) => byId.get(id);

//! The capabilities that never run, with the reason.
const deniedCapabilities = () =>
    CAPABILITIES.filter((row) => row.denied).map(({ id, denied: reason }) => ({ capabilityId: id, reason }));

const shown = (id) => JSON.stringify(cut(id, MAX_SHOWN_ID));

module.exports = { CAPABILITIES, deniedCapabilities, findCapability, shown };
