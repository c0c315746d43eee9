// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Reports about the desktop, from its configuration and from a stand-in for xprop.

const assert = require('assert/strict');
const fs = require('fs');
const path = require('path');

const { panelsOf, readPlasma, themeOf } = require('../lib/reports/plasma');
const { Programs } = require('../lib/reports/programs');
const { parseWindow, readWindows } = require('../lib/reports/windows');
const { StandIns } = require('./support/standins');
const { temporaryFolder } = require('./support/child');
const { test } = require('./support/timed');

const DISPLAY = { DISPLAY: ':0' };
const NONE = { available: false, complete: false, windows: [] };

function fixture(t, limits) {
    const standIns = new StandIns(temporaryFolder(t));
    const programs = new Programs(standIns.env, limits);
    t.after(() => programs.close());
    return { standIns, programs };
}

const LAYOUT = `[ActionPlugins][0]
plugin=org.kde.panel

[Containments][1]
plugin=org.kde.plasma.folder
location=0

[Containments][2]
formfactor=2
location=4
plugin=org.kde.panel

[Containments][2][Applets][3]
immutability=1
plugin=org.kde.plasma.kickoff

[Containments][2][Applets][3][Configuration]
plugin=not.an.applet

[Containments][2][Applets][4]
plugin[$i]=org.kde.plasma.systemtray

[Containments][8]
location=99
plugin=org.kde.panel
`;

test('panels are found in the layout of the desktop shell', () => {
    assert.deepEqual(panelsOf(LAYOUT), [
        { id: '2', location: 'bottom', applets: ['org.kde.plasma.kickoff', 'org.kde.plasma.systemtray'] },
        { id: '8', location: 'floating', applets: [] },
    ]);
    const panel = (n) => `[Containments][${n}]\nplugin=org.kde.panel\n`;
    assert.equal(panelsOf(Array.from({ length: 100 }, (_, n) => panel(n)).join('')).length, 20);
    for (const text of ['', '[', '[]', 'plugin=org.kde.panel', '[Containments]\nplugin=org.kde.panel', '=\n[][][]\n=x',
        '[__proto__][a]\n__proto__=x', '\u0000'.repeat(1000)])
        assert.deepEqual(panelsOf(text), []);
});

test('the theme is that of the most important file, a package before mere colours', () => {
    const look = (name) => `[General]\nColorScheme=Other\n[KDE]\nLookAndFeelPackage=${name}\n`;
    assert.equal(themeOf([look('mine'), look('system')]), 'mine');
    assert.equal(themeOf([null, look('system')]), 'system');
    assert.equal(themeOf(['[General]\nColorScheme=Mine\n', look('system')]), 'system');
    assert.equal(themeOf(['[General]\nColorScheme[$e]= BreezeDark \n']), 'BreezeDark');
    assert.equal(themeOf(['[General][Sub]\nColorScheme=x\n[KDE]\nLookAndFeelPackage=\n', null]), 'unavailable');
    assert.equal(themeOf([]), 'unavailable');
});

test('the desktop\'s configuration is read where the environment says', async (t) => {
    const home = temporaryFolder(t);
    const env = { HOME: home, XDG_CONFIG_DIRS: path.join(home, 'system') };
    assert.deepEqual(await readPlasma(env), { theme: 'unavailable', panels: { available: false, panels: [] } });

    const write = (name, text) => {
        fs.mkdirSync(path.dirname(path.join(home, name)), { recursive: true });
        fs.writeFileSync(path.join(home, name), text);
    };
    const look = (name) => `[KDE]\nLookAndFeelPackage=${name}\n`;
    write('system/kdeglobals', look('third'));
    assert.equal((await readPlasma(env)).theme, 'third');
    write('.config/kdedefaults/kdeglobals', look('second'));
    assert.equal((await readPlasma(env)).theme, 'second');
    write('.config/kdeglobals', look('first'));
    write('.config/plasma-org.kde.plasma.desktop-appletsrc', LAYOUT);
    const { theme, panels } = await readPlasma(env);
    assert.deepEqual([theme, panels.available, panels.panels.length], ['first', true, 2]);
    write('other/kdeglobals', look('other'));
    assert.equal((await readPlasma({ ...env, XDG_CONFIG_HOME: path.join(home, 'other') })).theme, 'other');
    const relative = path.relative(process.cwd(), path.join(home, 'other'));
    assert.equal((await readPlasma({ XDG_CONFIG_HOME: relative, XDG_CONFIG_DIRS: relative })).theme, 'unavailable');
});

test('a huge layout is read', async (t) => {
    const home = temporaryFolder(t);
    fs.mkdirSync(path.join(home, '.config'));
    fs.writeFileSync(path.join(home, '.config', 'plasma-org.kde.plasma.desktop-appletsrc'),
        LAYOUT + '[Containments][7][Applets][9]\nplugin=x\n'.repeat(1e5));
    assert.equal((await readPlasma({ HOME: home })).panels.panels.length, 2);
});

const properties = (title, more = '') => `_NET_WM_NAME(UTF8_STRING) = "${title}"
WM_NAME(STRING) = "other"
WM_CLASS(STRING) = "konsole", "org.kde.konsole"
${more || '_NET_WM_STATE(ATOM) = _NET_WM_STATE_MAXIMIZED_VERT'}
_NET_WM_WINDOW_TYPE(ATOM) = _NET_WM_WINDOW_TYPE_NORMAL
`;

test('a window has a title, a class and a state', () => {
    assert.deepEqual(parseWindow('0x1', properties('a \\"b\\" \\\\ \\303\\244 ü')),
        { id: '0x1', title: 'a "b" \\ ä ü', class: 'org.kde.konsole', minimized: false });
    const hidden = '_NET_WM_STATE(ATOM) = _NET_WM_STATE_MODAL, _NET_WM_STATE_HIDDEN';
    assert.equal(parseWindow('0x1', properties('x', hidden)).minimized, true);
    assert.deepEqual(parseWindow('0x1', '_NET_WM_NAME:  not found.\nWM_NAME(STRING) = "old"\n_NET_WM_STATE(ATOM) = \n'),
        { id: '0x1', title: 'old', class: '', minimized: false });
    assert.equal(parseWindow('0x1', properties('x'.repeat(5000))).title.length, 201);
});

test('panels and the desktop are no windows', () => {
    assert.equal(parseWindow('0x1', '_NET_WM_STATE(ATOM) = _NET_WM_STATE_BELOW, _NET_WM_STATE_SKIP_TASKBAR'), null);
    for (const type of ['DOCK', 'DESKTOP'])
        assert.equal(parseWindow('0x1', `_NET_WM_WINDOW_TYPE(ATOM) = _NET_WM_WINDOW_TYPE_${type}`), null);
});

test('malformed properties of a window take no time', () => {
    const texts = ['"\\"'.repeat(400000), 'a(\n'.repeat(400000), `WM_NAME(S) = "${'\\"'.repeat(500000)}`, '\\'.repeat(1e6)];
    for (const text of texts)
        assert.equal(parseWindow('0x1', text).title, '');
});

//! A stand-in that lists `ids`, and answers for the window 0x2 only with an error.
function addXprop(standIns, ids) {
    const answer = path.join(standIns.folder, 'window');
    fs.writeFileSync(answer, properties('Mail'));
    standIns.add('xprop', `case "$*" in
        "-root "*) echo "_NET_CLIENT_LIST(WINDOW): window id # ${ids.join(', ')}";;
        *"-id 0x2 "*) echo "X Error of failed request:  BadWindow"; exit 1;;
        *) /bin/cat '${answer}';;
    esac`);
}

test('windows are read with xprop', async (t) => {
    const { standIns, programs } = fixture(t);
    assert.deepEqual(await readWindows(programs, DISPLAY), NONE);
    addXprop(standIns, ['0x1', '0x2', '0xabcdef']);
    assert.deepEqual(await readWindows(programs, {}), NONE);
    assert.deepEqual(standIns.calls, []);
    const report = await readWindows(programs, DISPLAY);
    assert.deepEqual(report.windows.map(({ id, title }) => [id, title]), [['0x1', 'Mail'], ['0xabcdef', 'Mail']]);
    assert.deepEqual([report.available, report.complete], [true, true]);
    assert.equal((await readWindows(programs, { ...DISPLAY, WAYLAND_DISPLAY: 'wayland-0' })).complete, false);
});

test('of many windows the first are read', async (t) => {
    const { standIns, programs } = fixture(t, { timeoutMs: 20000 });
    addXprop(standIns, Array.from({ length: 80 }, (_, n) => `0x${(n + 16).toString(16)}`));
    const { windows, complete } = await readWindows(programs, DISPLAY, () => 0);
    assert.deepEqual([windows.length, complete, standIns.calls.length], [50, false, 51]);
    let now = 0;
    assert.equal((await readWindows(programs, DISPLAY, () => (now += 300))).windows.length, 3);
});

test('without a usable list, windows are unavailable', async (t) => {
    const { standIns, programs } = fixture(t, { timeoutMs: 300, maxBytes: 100000 });
    for (const text of ['', '_NET_CLIENT_LIST:  no such atom on any window.\n', '_NET_CLIENT_LIST:  not found.\n']) {
        standIns.printing('xprop', text);
        assert.deepEqual(await readWindows(programs, DISPLAY), NONE, text);
    }
    standIns.hanging('xprop');
    assert.deepEqual(await readWindows(programs, DISPLAY), NONE);
    standIns.endless('xprop');
    assert.deepEqual(await readWindows(programs, DISPLAY), NONE);
    standIns.printing('xprop', '_NET_CLIENT_LIST(WINDOW): window id # \n');
    assert.deepEqual(await readWindows(programs, DISPLAY), { available: true, complete: true, windows: [] });
});
