// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Reports about the bridge, which are real, and about the machine, which are made up and vary. The load of the bridge and
// the memory of the client are made up too, because those of a demo hardly move.

const { POWER_PROFILES } = require('./desktop');

const MB = 1024 * 1024;
const LATEST = 8;
const KEPT = 50;

const megabytes = (bytes) => Math.round(bytes / MB);

//! A value that oscillates around `base` with a period of `period` seconds.
const wave = (seconds, base, swing, period) =>
    Math.round((base + swing * Math.sin((2 * Math.PI * seconds) / period)) * 10) / 10;

//! All reports. Each is sent as a whole.
class Reports {
    #house;

    constructor(house) {
        this.#house = house;
    }

    get #seconds() {
        return Math.floor(this.#house.metrics.uptimeMs / 1000);
    }

    #machine() {
        const seconds = this.#seconds;
        return {
            cpuPercent: wave(seconds, 24, 18, 37),
            memoryPercent: wave(seconds, 48, 6, 91),
            diskPercent: 71,
            batteryPercent: wave(seconds, 60, 30, 1800),
            uptimeSec: 86400 + seconds,
        };
    }

    appLogs() {
        const { journal } = this.#house;
        return {
            totalErrors: journal.total('error'),
            totalWarnings: journal.total('warn'),
            lastErrorTs: journal.lastTs('error'),
            lastWarnTs: journal.lastTs('warn'),
            entries: journal.latest(KEPT),
        };
    }

    system() {
        const { totalErrors, totalWarnings } = this.appLogs();
        return { machine: this.#machine(), appLogs: { totalErrors, totalWarnings } };
    }

    quick() {
        const { cpuPercent, memoryPercent } = this.#machine();
        const severity = cpuPercent > 40 ? 'warning' : 'ok';
        return { severity, summary: `Processor ${cpuPercent}%, memory ${memoryPercent}%`, cpuPercent, memoryPercent };
    }

    power() {
        return { active: this.#house.desktop.powerProfile, available: POWER_PROFILES };
    }

    kdeLogs() {
        const minuteMs = 60 * 1000;
        const entry = (minutes, unit, level, message) =>
            ({ timestamp: Date.now() - minutes * minuteMs, unit, level, message });
        return {
            entries: [
                entry(31, 'compositor', 'info', 'The made-up output was found'),
                entry(12, 'shell', 'warn', 'A made-up widget took long to load'),
                entry(2, 'settings', 'info', 'A made-up setting was written'),
            ],
        };
    }

    service() {
        return {
            active: 'active',
            sub: 'running',
            enabled: 'disabled',
            uptimeSec: this.#seconds,
            restartCount: 0,
            memoryBytes: process.memoryUsage().rss,
        };
    }

    dashboard() {
        const seconds = this.#seconds;
        const { journal, feedback, metrics } = this.#house;
        const { heapUsed, heapTotal, rss, external } = process.memoryUsage();
        const { up, down } = feedback.votes;
        return {
            memory: {
                sessionHeapMb: megabytes(heapUsed),
                sessionHeapTotalMb: megabytes(heapTotal),
                bridgeRssMb: megabytes(rss),
                bridgeExternalMb: megabytes(external),
                toviServiceMb: Math.round(wave(seconds, 180, 14, 45)),
            },
            cpu: { bridgePercent: wave(seconds, 46, 42, 60) },
            feedback: { likes: up, dislikes: down, total: up + down },
            errors: {
                total: journal.total('error'),
                direction: journal.direction('error'),
                lastTs: journal.lastTs('error'),
            },
            warnings: { total: journal.total('warn'), direction: journal.direction('warn') },
            logEntries: journal.latest(LATEST).map(({ level, message, timestamp: ts }) => ({ level, message, ts })),
            metrics: metrics.report(),
            service: this.service(),
        };
    }
}

module.exports = { Reports, wave };
