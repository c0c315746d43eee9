// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const path = require('path');

const { readStart } = require('./files');
const { parseKConfig } = require('./kconfig');
const { plain } = require('./untrusted');

const MAX_FILE = 1024 * 1024;
const MAX_PANELS = 20;
const MAX_APPLETS = 50;
const MAX_NAME = 100;
const UNAVAILABLE = 'unavailable';

const LAYOUT = 'plasma-org.kde.plasma.desktop-appletsrc';
const LOCATIONS = new Map([['3', 'top'], ['4', 'bottom'], ['5', 'left'], ['6', 'right']]);

// Where a theme is named: its package, otherwise only its colours.
const THEME_ENTRIES = [['KDE', 'LookAndFeelPackage'], ['General', 'ColorScheme']];

//! The directories with the user's configuration, then that of the system.
function configFolders({ HOME = '', XDG_CONFIG_HOME, XDG_CONFIG_DIRS }) {
    const own = XDG_CONFIG_HOME || path.join(HOME, '.config');
    // Plasma keeps the defaults of the chosen theme in a folder between the two.
    return [own, path.join(own, 'kdedefaults'), ...(XDG_CONFIG_DIRS || '/etc/xdg').split(':')].filter(path.isAbsolute);
}

//! The theme that the files kdeglobals name, the most important one first; null stands for a missing file.
function themeOf(texts) {
    const files = texts.map((text) => parseKConfig(text ?? ''));
    for (const [group, key] of THEME_ENTRIES) {
        for (const groups of files) {
            const named = groups.filter(({ path: names }) => names.join() === group)
                .map(({ entries }) => plain(entries.get(key), MAX_NAME)).find(Boolean);
            if (named)
                return named;
        }
    }
    return UNAVAILABLE;
}

//! The panels of a layout of the desktop shell: {id, location, applets}.
function panelsOf(text) {
    const groups = parseKConfig(text);
    const isIn = (names, ...start) => names.length === start.length + 1 && start.every((name, n) => names[n] === name);
    return groups
        .filter(({ path: names, entries }) => isIn(names, 'Containments') && entries.get('plugin') === 'org.kde.panel')
        .slice(0, MAX_PANELS)
        .map(({ path: [, id], entries }) => ({
            id: plain(id, MAX_NAME),
            location: LOCATIONS.get(entries.get('location')) ?? 'floating',
            applets: groups.filter(({ path: names }) => isIn(names, 'Containments', id, 'Applets'))
                .map((group) => plain(group.entries.get('plugin'), MAX_NAME)).filter(Boolean).slice(0, MAX_APPLETS),
        }));
}

//! Reads the theme and the panels from the configuration of the desktop: {theme, panels: {available, panels}}.
async function readPlasma(env) {
    const folders = configFolders(env);
    const [layout, ...globals] = await Promise.all([
        readStart(path.join(folders[0] ?? '/', LAYOUT), MAX_FILE),
        ...folders.map((folder) => readStart(path.join(folder, 'kdeglobals'), MAX_FILE)),
    ]);
    return {
        theme: themeOf(globals),
        panels: { available: layout !== null, panels: layout === null ? [] : panelsOf(layout) },
    };
}

module.exports = { configFolders, panelsOf, readPlasma, themeOf };
