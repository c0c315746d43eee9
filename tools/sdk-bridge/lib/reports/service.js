// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { plain } = require('./untrusted');

const UNIT = 'tovi-bridge.service';
const PROPERTIES = ['LoadState', 'ActiveState', 'SubState', 'UnitFileState', 'ActiveEnterTimestampMonotonic', 'NRestarts',
    'MemoryCurrent'];
const UNAVAILABLE = 'unavailable';
const MICROSECONDS = 1e6;

//! The lines KEY=VALUE of `systemctl show` as an object.
function parseProperties(text) {
    const pairs = text.split('\n').map((line) => /^(\w+)=(.*)$/.exec(line)).filter(Boolean);
    return Object.fromEntries(pairs.map(([, key, value]) => [key, value]));
}

//! A count, or undefined. Unset ones are the largest 64-bit number or "[not set]".
const count = (text) => (/^\d{1,16}$/.test(text ?? '') ? Number(text) : undefined);

//! The report on the unit from the output of `systemctl show`, which is null if it couldn't run. `own` is
//! {uptimeSec, memoryBytes} of this process: while the unit isn't active, the bridge was started in another way.
//! `monotonicSec` is the time since the start of the machine.
function serviceReport(text, own, monotonicSec) {
    const found = parseProperties(text ?? '');
    const report = { active: UNAVAILABLE, sub: UNAVAILABLE, enabled: UNAVAILABLE, restartCount: 0, ...own };
    if (!found.ActiveState)
        return report;

    report.active = plain(found.ActiveState);
    report.sub = plain(found.SubState) || UNAVAILABLE;
    // Empty for a unit without a file; then LoadState has the reason, such as "not-found".
    report.enabled = plain(found.UnitFileState) || plain(found.LoadState) || UNAVAILABLE;
    report.restartCount = count(found.NRestarts) ?? 0;
    if (report.active !== 'active')
        return report;
    const since = count(found.ActiveEnterTimestampMonotonic);
    return {
        ...report,
        uptimeSec: since ? Math.max(0, Math.floor(monotonicSec - since / MICROSECONDS)) : own.uptimeSec,
        memoryBytes: count(found.MemoryCurrent) ?? own.memoryBytes,
    };
}

//! Reads the state of the bridge's user service.
async function readService(programs, own) {
    const text = await programs.run('systemctl', ['--user', 'show', UNIT, `--property=${PROPERTIES.join(',')}`]);
    return serviceReport(text, own, Number(process.hrtime.bigint()) / 1e9); // systemd's clock, too
}

module.exports = { readService, serviceReport };
