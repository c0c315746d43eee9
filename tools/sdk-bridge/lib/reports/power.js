// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { parseJson, plain } = require('./untrusted');

const MAX_PROFILES = 12;
const MAX_NAME = 50;
const UNAVAILABLE = { active: 'unavailable', available: [] };

// The service was renamed; the newer name comes first.
const SERVICES = [
    ['org.freedesktop.UPower.PowerProfiles', '/org/freedesktop/UPower/PowerProfiles'],
    ['net.hadess.PowerProfiles', '/net/hadess/PowerProfiles'],
];

//! The report from the output of busctl: a line for the active profile and one for the list. Null if there is none.
function parseProfiles(text) {
    const [active, profiles] = (text ?? '').split('\n', 2).map((line) => parseJson(line)?.data);
    if (typeof active !== 'string' || !Array.isArray(profiles))
        return null;
    const names = profiles.map((profile) => plain(profile?.Profile?.data, MAX_NAME)).filter(Boolean);
    return { active: plain(active, MAX_NAME), available: names.slice(0, MAX_PROFILES) };
}

//! Reads the power profiles of the machine.
async function readPower(programs) {
    const texts = await Promise.all(SERVICES.map(([name, path]) =>
        programs.run('busctl',
            ['--system', '--json=short', 'get-property', name, path, name, 'ActiveProfile', 'Profiles'])));
    return texts.map(parseProfiles).find(Boolean) ?? UNAVAILABLE;
}

module.exports = { parseProfiles, readPower };
