// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const fs = require('fs/promises');
const os = require('os');

const TIMEOUT_MS = 1000;

const rounded = (value) => Math.round(value * 10) / 10;
const percent = (part, whole) => (whole > 0 ? rounded((100 * part) / whole) : null);

//! Resolves to a promise's value, or to null if it fails or takes too long.
async function within(promise, timeoutMs = TIMEOUT_MS) {
    let timer;
    const late = new Promise((resolve) => { timer = setTimeout(resolve, timeoutMs, null); });
    try {
        return await Promise.race([promise, late]);
    } catch {
        return null;
    } finally {
        clearTimeout(timer);
    }
}

//! The share of all processors in use between two readings, in percent, or null.
function processorPercent([before, after]) {
    return before && after ? percent(after.busy - before.busy, after.total - before.total) : null;
}

//! The state of the machine. A value is null if the machine doesn't report it.
//! `sources` are {counters, memory, battery, disk, load, uptime}, see realSources().
async function readMachine({ counters, memory, battery, disk, load, uptime }) {
    const [readings, ram, power, home] = await Promise.all(
        [counters(), memory(), battery(), disk()].map((promise) => within(promise)));
    const used = home ? home.blocks - home.bfree : 0;
    return {
        cpuPercent: readings && processorPercent(readings),
        // Above 100, programs wait for a processor.
        loadPercent: readings?.[1] ? percent(load(), readings[1].processors) : null,
        memoryPercent: ram && percent(ram.active, ram.total),
        memoryTotalBytes: ram && ram.total,
        diskPercent: home && percent(used, used + home.bavail), // like df: without what is reserved for root
        diskFreeBytes: home && home.bavail * home.bsize,
        batteryPercent: power?.hasBattery ? rounded(power.percent) : null,
        batteryCharging: power?.hasBattery ? Boolean(power.isCharging) : null,
        uptimeSec: Math.floor(uptime()),
    };
}

//! The sources of this machine. `counters` resolves to two readings of the processor time.
function realSources(counters) {
    // Loaded when first needed, because that takes longer than the rest of the bridge's start. Its other calls run a shell
    // and block the event loop.
    const library = () => require('systeminformation');
    return {
        counters,
        memory: async () => library().mem(),
        battery: async () => library().battery(),
        disk: async () => fs.statfs(os.homedir()),
        load: () => os.loadavg()[0],
        uptime: () => os.uptime(),
    };
}

//! What deserves attention: the key of the value, from which value on, and the words.
const CONCERNS = [
    { key: 'memoryPercent', warning: 90, critical: 97, words: (value) => `memory is ${value}% full` },
    { key: 'diskPercent', warning: 90, critical: 97, words: (value) => `the disk with your home folder is ${value}% full` },
    // Not cpuPercent, because a peak of a moment is no reason to worry.
    { key: 'loadPercent', warning: 150, critical: Infinity, words: () => 'the processor is overloaded' },
];
const LOW_BATTERY = { warning: 15, critical: 5 };

const SUMMARY = [['cpuPercent', 'processor'], ['memoryPercent', 'memory'], ['diskPercent', 'disk'],
    ['batteryPercent', 'battery']];

function concerns(machine) {
    const found = CONCERNS.filter(({ key, warning }) => machine[key] !== null && machine[key] >= warning)
        .map(({ key, critical, words }) => ({ isCritical: machine[key] >= critical, words: words(machine[key]) }));
    const { batteryPercent: battery, batteryCharging } = machine;
    if (battery !== null && !batteryCharging && battery <= LOW_BATTERY.warning)
        found.push({ isCritical: battery <= LOW_BATTERY.critical, words: `the battery is at ${battery}%` });
    return found;
}

//! How the machine is doing: {severity: "ok", "warning" or "critical", summary: a sentence}.
function judge(machine) {
    const found = concerns(machine);
    if (found.length) {
        const severity = found.some(({ isCritical }) => isCritical) ? 'critical' : 'warning';
        return { severity, summary: `Attention: ${found.map(({ words }) => words).join(', ')}.` };
    }
    const known = SUMMARY.filter(([key]) => machine[key] !== null);
    const figures = known.map(([key, name]) => `${name} ${machine[key]}%`).join(', ');
    return { severity: 'ok', summary: figures ? `All is well: ${figures}.` : 'This machine reports no figures.' };
}

module.exports = { judge, processorPercent, readMachine, realSources, within };
