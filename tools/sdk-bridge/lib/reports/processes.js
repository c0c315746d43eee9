// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const fs = require('fs/promises');
const path = require('path');

const { readStart } = require('./files');
const { parseStat } = require('./load');
const { plain } = require('./untrusted');

const MAX_PROCESSES = 5000;
const AT_ONCE = 16; // open files
const MAX_FILE = 4096;
const MAX_STAT = 64 * 1024; // has a line for each processor
const MAX_NAME = 50;
const KB_PER_MB = 1024;

//! A line of /proc/PID/stat as {pid, name, ticks, started, pages}, or null. The name may contain spaces and brackets.
function parseProcess(text) {
    const [, pid, name, rest] = /^(\d+) \(([^]*)\) ([^)]*)$/.exec(text ?? '') ?? [];
    if (pid === undefined)
        return null;
    const fields = rest.trim().split(' ');
    const [user, system, started, pages] = [11, 12, 19, 21].map((index) => Number(fields[index]));
    if (![user, system, started, pages].every(Number.isFinite))
        return null;
    return { pid: Number(pid), name: plain(name, MAX_NAME), ticks: user + system, started, pages };
}

//! The owner and the resident memory in /proc/PID/status: {uid, memoryMb}. The memory is 0 for a process without any.
function parseStatus(text) {
    const number = (pattern) => Number(pattern.exec(text ?? '')?.[1] ?? NaN);
    return { uid: number(/^Uid:\s+(\d+)/m), memoryMb: (number(/^VmRSS:\s+(\d+) kB/m) || 0) / KB_PER_MB };
}

//! Calls an asynchronous function for each value, a few at the same time. Resolves to the results in order.
async function mapSome(values, limit, perform) {
    const results = [];
    const waiting = [...values.entries()];
    const work = async () => {
        for (let next = waiting.pop(); next; next = waiting.pop())
            results[next[0]] = await perform(next[1]);
    };
    await Promise.all(Array.from({ length: limit }, work));
    return results;
}

//! The processes with the highest share of one processor between two scans, in percent.
function busiest([before, after], count) {
    const elapsed = (after.total - before.total) / after.processors;
    const known = new Map(before.processes.map((each) => [each.pid, each]));
    return after.processes
        .map((each) => {
            const earlier = known.get(each.pid);
            const ticks = earlier?.started === each.started ? each.ticks - earlier.ticks : 0;
            return { ...each, cpuPercent: elapsed > 0 ? Math.round((1000 * ticks) / elapsed) / 10 : 0 };
        })
        .sort((a, b) => b.cpuPercent - a.cpuPercent || b.pages - a.pages)
        .slice(0, count);
}

//! Processes from a directory like /proc. Command lines are never read, because they may contain secrets.
class Processes {
    #folder;

    constructor(folder = '/proc') {
        this.#folder = folder;
    }

    //! Resolves to the counters of all processors with `processes`, or to null.
    async scan() {
        const names = await fs.readdir(this.#folder).catch(() => []);
        const pids = names.filter((name) => /^\d+$/.test(name)).slice(0, MAX_PROCESSES);
        const all = parseStat(await readStart(path.join(this.#folder, 'stat'), MAX_STAT));
        const lines = await mapSome(pids, AT_ONCE, (pid) => readStart(path.join(this.#folder, pid, 'stat'), MAX_FILE));
        return all && { ...all, processes: lines.map(parseProcess).filter(Boolean) };
    }

    //! The counters of all processors, or null.
    async total() {
        return parseStat(await readStart(path.join(this.#folder, 'stat'), MAX_STAT));
    }

    async #status(pid) {
        return parseStatus(await readStart(path.join(this.#folder, String(pid), 'status'), MAX_FILE));
    }

    //! The resident memory of a user's processes of a name, in MB.
    async memoryOf(name, uid, scan) {
        const found = (scan?.processes ?? []).filter((each) => each.name === name);
        const states = await mapSome(found, AT_ONCE, ({ pid }) => this.#status(pid));
        return states.filter((state) => state.uid === uid).reduce((sum, { memoryMb }) => sum + memoryMb, 0);
    }

    //! The processes that use most: {byCpu, byMemory}, each {pid, name, cpuPercent, memoryMb}. Null without scans.
    async top(scans, count) {
        if (!scans.every(Boolean))
            return null;
        const ranked = busiest(scans, Infinity);
        const row = async ({ pid, name, cpuPercent }) =>
            ({ pid, name, cpuPercent, memoryMb: Math.round((await this.#status(pid)).memoryMb) });
        const largest = [...ranked].sort((a, b) => b.pages - a.pages);
        return {
            byCpu: await Promise.all(ranked.slice(0, count).map(row)),
            byMemory: await Promise.all(largest.slice(0, count).map(row)),
        };
    }
}

module.exports = { Processes, busiest, parseProcess, parseStatus };
