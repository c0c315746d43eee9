// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const MAX_LINES = 20000;
const MAX_LINE = 4096;

//! Parses a file of KConfig. Returns its groups in order: {path: the names in brackets, entries: a Map}. Lines that are
//! no entry are skipped.
function parseKConfig(text) {
    const groups = [];
    for (const line of text.split('\n', MAX_LINES)) {
        const trimmed = line.slice(0, MAX_LINE).trim();
        const [, header] = /^\[(.*)\]$/.exec(trimmed) ?? [];
        if (header !== undefined) {
            groups.push({ path: header.split(']['), entries: new Map() });
            continue;
        }
        // Flags such as [$e] may follow the key.
        const [, key, value] = /^([^=#[]+)(?:\[\$\w+\])?=(.*)$/.exec(trimmed) ?? [];
        if (key !== undefined)
            groups.at(-1)?.entries.set(key.trim(), value.trim());
    }
    return groups;
}

module.exports = { parseKConfig };
