// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Reports as replies to prompts. Names of programs and windows are untrusted: they are only sent in blocks, whose text is
// drawn as it is, and don't become part of the conversation.

const { judge } = require('./machine');

const SHOWN_PROCESSES = 5;
const SHOWN_WINDOWS = 20;

const GB = 1024 * 1024 * 1024;
const MB_PER_GB = 1024;

const gigabytes = (bytes) => `${Math.round((10 * bytes) / GB) / 10} GB`;
const memory = (mb) => (mb >= MB_PER_GB ? `${Math.round((10 * mb) / MB_PER_GB) / 10} GB` : `${mb} MB`);
const plural = (count, noun) => `${count} ${noun}${count === 1 ? '' : 's'}`;

//! A time in seconds, as its two largest units.
function duration(seconds) {
    const minutes = Math.floor(seconds / 60);
    const [days, hours] = [Math.floor(minutes / 1440), Math.floor(minutes / 60) % 24];
    return days
        ? `${plural(days, 'day')} ${plural(hours, 'hour')}`
        : `${plural(hours, 'hour')} ${plural(minutes % 60, 'minute')}`;
}

const orUnavailable = (value, words) => (value === null ? 'unavailable' : words(value));

//! The reply with the state of the machine, see readMachine().
function statusReply(machine) {
    const { cpuPercent, memoryPercent, memoryTotalBytes, diskPercent, diskFreeBytes, batteryPercent } = machine;
    const lines = [
        `Processor: ${orUnavailable(cpuPercent, (value) => `${value}%`)}`,
        `Memory: ${orUnavailable(memoryPercent, (value) => `${value}% of ${gigabytes(memoryTotalBytes)}`)}`,
        `Disk of your home folder: ${orUnavailable(diskPercent, (value) => `${value}%, ${gigabytes(diskFreeBytes)} free`)}`,
        `Battery: ${batteryPercent === null ? 'none' : `${batteryPercent}%${machine.batteryCharging ? ', charging' : ''}`}`,
        `Running for ${duration(machine.uptimeSec)}`,
    ];
    return {
        response: `${judge(machine).summary}\n\n${lines.map((line) => `- ${line}`).join('\n')}`,
        followUps: [{
            title: 'Top processes',
            subtitle: 'CPU and memory usage.',
            prompt: 'Show top processes by CPU and memory',
            iconName: 'utilities-system-monitor',
        }],
    };
}

const processTable = (rows) => ({
    type: 'table',
    columns: ['Program', 'Process', 'CPU', 'Memory'],
    rows: rows.slice(0, SHOWN_PROCESSES)
        .map(({ name, pid, cpuPercent, memoryMb }) => [name, pid, `${cpuPercent}%`, memory(memoryMb)]),
});

//! The reply with the busiest processes, see Processes.top().
function processesReply(top) {
    if (!top)
        return { response: 'The list of processes is unavailable: this system has no readable /proc.' };
    return {
        response: 'The programs that use the most processor time, and those that use the most memory. ' +
            '100% is one processor.',
        ui: {
            blocks: [
                { type: 'text', content: '**By CPU**' },
                processTable(top.byCpu),
                { type: 'text', content: '**By memory**' },
                processTable(top.byMemory),
            ],
        },
    };
}

const WINDOWS_UNAVAILABLE = 'The list of your windows is unavailable: it is read with `xprop` from an X11 or XWayland ' +
    'display, and one of them is missing here.';
const MAY_MISS = ' There may be others that can\'t be seen from here, such as those of Wayland programs.';

//! The reply with the open windows, see readWindows().
function windowsReply({ available, complete, windows }) {
    if (!available)
        return { response: WINDOWS_UNAVAILABLE };
    const note = complete ? '' : MAY_MISS;
    if (!windows.length)
        return { response: `No window is open.${note}` };
    const hidden = windows.length - SHOWN_WINDOWS;
    const label = ({ title, class: program, minimized }) =>
        `${title || program || '(no title)'}${minimized ? ' (minimized)' : ''}`;
    const items = windows.slice(0, SHOWN_WINDOWS).map(label);
    return {
        response: `${plural(windows.length, 'window')} open.${note}`,
        ui: {
            blocks: [{
                type: 'list',
                title: 'Open windows',
                items: hidden > 0 ? [...items, `and ${hidden} more`] : items,
            }],
        },
    };
}

module.exports = { duration, processesReply, statusReply, windowsReply };
