// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// The program itself and the desktop session.

const fs = require('fs');
const net = require('net');
const path = require('path');

const { findProgram } = require('../programs');
const { missing, ok, problem } = require('./outcomes');

const PROGRAM_TIMEOUT_MS = 15000;
const CONNECT_TIMEOUT_MS = 2000;
const NOTIFICATIONS = 'org.freedesktop.Notifications';
const BUS = ['org.freedesktop.DBus', '/org/freedesktop/DBus'];

//! Whether a server listens at an address, in the form of net.connect().
function answers(address) {
    return new Promise((resolve) => {
        const socket = net.connect(address);
        const end = (found) => {
            socket.destroy();
            resolve(found);
        };
        socket.setTimeout(CONNECT_TIMEOUT_MS, () => end(false));
        socket.once('connect', () => end(true));
        socket.once('error', () => end(false));
    });
}

//! Whether the X server of a value of DISPLAY answers.
function answersX(display) {
    const [, host, number] = /^([^:]*):(\d{1,5})(?:\.\d+)?$/.exec(display) ?? [];
    if (number === undefined)
        return false;
    if (!host || host === 'unix')
        return answers({ path: `/tmp/.X11-unix/X${number}` });
    return answers({ host, port: 6000 + Number(number) });
}

const answersWayland = (name, { XDG_RUNTIME_DIR = '' }) => answers({ path: path.resolve(XDG_RUNTIME_DIR || '/', name) });

async function checkProgram({ program, run }) {
    if (!fs.existsSync(program))
        return missing(`${program} does not exist`, 'Install tovictl again; in a source tree, build it with ./run');
    const { code, output, errors } = await run(program, ['--version'], { timeoutMs: PROGRAM_TIMEOUT_MS });
    if (code === 0 && output.startsWith('tovictl '))
        return ok(`${output.trim()} (${program})`);
    const reason = errors.trim().split('\n')[0] || (code === null ? 'it does not end' : `exit code ${code}`);
    return problem(`${program} does not start: ${reason}`, 'Install the libraries that it names, or tovictl again');
}

async function checkDisplay({ env }) {
    const { DISPLAY: x, WAYLAND_DISPLAY: wayland } = env;
    if (!x && !wayland)
        return missing('neither DISPLAY nor WAYLAND_DISPLAY is set', 'Run tovictl in a desktop session');
    if (wayland)
        return await answersWayland(wayland, env)
            ? ok(`Wayland, ${wayland}`)
            : problem(`the Wayland display ${wayland} does not answer`, 'Run tovictl in the running desktop session');
    return await answersX(x)
        ? ok(`X11, ${x}`)
        : problem(`the X display ${x} does not answer`, 'Run tovictl in the running desktop session');
}

//! On Wayland only: a window can't place itself there, so the bar needs XWayland.
async function checkXWayland({ env }) {
    const { DISPLAY: x, WAYLAND_DISPLAY: wayland, QT_QPA_PLATFORM: platform = '' } = env;
    if (!wayland)
        return null;
    if (!x || !await answersX(x))
        return missing('on Wayland the bar cannot place itself without XWayland',
            'sudo apt install xwayland, then log in again');
    if (!platform.startsWith('xcb'))
        return ok(`${x}; the program uses it if it is started from the menu, or with QT_QPA_PLATFORM=xcb`);
    return ok(x);
}

//! Asks the session bus, without starting a service. Resolves to the output, or null without a bus or a client for it.
async function askBus(run, method, argument) {
    const [service, object] = BUS;
    const { code, output } = await run('dbus-send', ['--session', '--print-reply', '--reply-timeout=2000',
        `--dest=${service}`, object, `${service}.${method}`, ...(argument ? [`string:${argument}`] : [])]);
    if (code === 0)
        return output;
    const second = await run('busctl', ['--user', 'call', ...BUS, service, method, ...(argument ? ['s', argument] : [])]);
    return second.code === 0 ? second.output : null;
}

const dataFolders = ({ XDG_DATA_DIRS, XDG_DATA_HOME, HOME = '/' }) => [
    XDG_DATA_HOME || path.join(HOME, '.local/share'),
    ...(XDG_DATA_DIRS || '/usr/local/share:/usr/share').split(':'),
].filter(path.isAbsolute);

async function checkNotifications({ env, program, run }) {
    const owner = await askBus(run, 'NameHasOwner', NOTIFICATIONS);
    if (owner === null)
        return problem('the session bus does not answer',
            'Run tovictl in a desktop session; sudo apt install dbus-user-session');
    if (!/\btrue\b/.test(owner) && !(await askBus(run, 'ListActivatableNames') ?? '').includes(`"${NOTIFICATIONS}"`))
        return missing(`no service ${NOTIFICATIONS} on the session bus`,
            'Start a desktop, such as Plasma, or a notification daemon');
    const events = 'knotifications5/loomra-kde.notifyrc';
    const folders = [path.join(path.dirname(program), 'share'), ...dataFolders(env)];
    if (!folders.some((folder) => fs.existsSync(path.join(folder, events))))
        return missing(`${events} is in no data directory, so no notification is shown`,
            'Install tovictl, or add the share directory of its prefix to XDG_DATA_DIRS');
    return ok(NOTIFICATIONS);
}

//! The icon theme that kdeglobals names, by default Plasma's.
function iconThemeName({ XDG_CONFIG_HOME, HOME = '/' }) {
    try {
        const text = fs.readFileSync(path.join(XDG_CONFIG_HOME || path.join(HOME, '.config'), 'kdeglobals'), 'utf8');
        const [, group = ''] = /^\[Icons\]\n([^[]*)/m.exec(text) ?? [];
        const [, name] = /^Theme\s*=\s*([^/\n]+?)\s*$/m.exec(group) ?? [];
        return name ?? 'breeze';
    } catch {
        return 'breeze';
    }
}

function checkIcons({ env }) {
    const name = iconThemeName(env);
    const folders = [path.join(env.HOME ?? '/', '.icons'),
        ...dataFolders(env).map((folder) => path.join(folder, 'icons'))];
    if (folders.some((folder) => fs.existsSync(path.join(folder, name, 'index.theme'))))
        return ok(name);
    return missing(`the icon theme ${name} is not installed`,
        name.startsWith('breeze') ? 'sudo apt install breeze-icon-theme' : 'Choose an installed theme in the System Settings');
}

//! The agent tool, which some bridges use, and `tovictl models` in any case.
function checkAgentCli({ env }) {
    const bundled = '/usr/libexec/tovi-forkeldaos/bin/loomra';
    const found = findProgram('loomra', env) || (fs.existsSync(bundled) ? bundled : '');
    return found ? ok(found)
        : missing('the agent tool `loomra` is not on PATH',
            'Needed only for `tovictl models` and by bridges that use the tool');
}

module.exports = {
    checks: [
        { id: 'program', title: 'Program', isEssential: true, run: checkProgram },
        { id: 'display', title: 'Display', isEssential: true, run: checkDisplay },
        { id: 'xwayland', title: 'XWayland', run: checkXWayland },
        { id: 'notifications', title: 'Notifications', run: checkNotifications },
        { id: 'icons', title: 'Icon theme', run: checkIcons },
        { id: 'agent', title: 'Agent tool', run: checkAgentCli },
    ],
};
