// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { performance } = require('perf_hooks');

const { plain } = require('./untrusted');

const MAX_WINDOWS = 50;
const AT_ONCE = 4;
const TOTAL_MS = 1000; // after which no further window is asked
const MAX_TITLE = 200;

const MAX_PROPERTY = '2000'; // bytes
const MAX_VALUE = 8000; // characters, most of which may be escaped
const PROPERTIES = ['_NET_WM_NAME', 'WM_NAME', 'WM_CLASS', '_NET_WM_STATE', '_NET_WM_WINDOW_TYPE'];
const NOT_LISTED = /_NET_WM_STATE_SKIP_TASKBAR|_NET_WM_WINDOW_TYPE_(?:DESKTOP|DOCK)/;

//! The ids of the windows in the output of `xprop -root _NET_CLIENT_LIST`, or null if it contains no list.
function parseIds(text) {
    const [, list] = /^_NET_CLIENT_LIST\(WINDOW\): window id #(.*)$/m.exec(text ?? '') ?? [];
    return list === undefined ? null : list.match(/0x[0-9a-f]{1,8}\b/g) ?? [];
}

//! The strings in a value of xprop, which escapes quotes and bytes.
function parseStrings(value = '') {
    return (value.slice(0, MAX_VALUE).match(/"(?:[^"\\]|\\.)*"/g) ?? []).map((quoted) => {
        const bytes = quoted.slice(1, -1).replace(/(?:\\[0-3][0-7]{2})+/g, (octal) =>
            Buffer.from(octal.split('\\').slice(1).map((digits) => parseInt(digits, 8))).toString('utf8'));
        return plain(bytes.replace(/\\n|\\t/g, ' ').replace(/\\(.)/g, '$1'), MAX_TITLE);
    });
}

//! The window {id, title, class, minimized} in the output of `xprop -id`; null if it belongs to the desktop itself.
function parseWindow(id, text) {
    const lines = (text ?? '').matchAll(/^(\w+)\([^)\n]*\) = (.*)$/gm);
    const values = new Map([...lines].map(([, name, value]) => [name, value]));
    if (NOT_LISTED.test([values.get('_NET_WM_STATE'), values.get('_NET_WM_WINDOW_TYPE')].join()))
        return null;
    const [title = ''] = [...parseStrings(values.get('_NET_WM_NAME')), ...parseStrings(values.get('WM_NAME'))];
    return {
        id,
        title,
        class: parseStrings(values.get('WM_CLASS')).at(-1) ?? '',
        minimized: /\b_NET_WM_STATE_HIDDEN\b/.test(values.get('_NET_WM_STATE')),
    };
}

//! Reads the open windows: {available, complete, windows}. On Wayland, only those of X11 programs can be seen.
async function readWindows(programs, env, clock = () => performance.now()) {
    const unavailable = { available: false, complete: false, windows: [] };
    if (!env.DISPLAY)
        return unavailable;
    const ids = parseIds(await programs.run('xprop', ['-root', '_NET_CLIENT_LIST']));
    if (!ids)
        return unavailable;

    const windows = [];
    const end = clock() + TOTAL_MS;
    const waiting = [...ids.slice(0, MAX_WINDOWS).entries()];
    const work = async () => {
        while (waiting.length && clock() < end) {
            const [index, id] = waiting.shift();
            const text = await programs.run('xprop', ['-len', MAX_PROPERTY, '-id', id, ...PROPERTIES]);
            windows[index] = text === null ? null : parseWindow(id, text);
        }
    };
    await Promise.all(Array.from({ length: AT_ONCE }, work));
    const isComplete = !env.WAYLAND_DISPLAY && ids.length <= MAX_WINDOWS && !waiting.length;
    return { available: true, complete: isComplete, windows: windows.filter(Boolean) };
}

module.exports = { parseIds, parseWindow, readWindows };
