// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { readLogs } = require('./logs');
const { Counters, OwnLoad } = require('./load');
const { judge, readMachine, realSources } = require('./machine');
const { readPlasma } = require('./plasma');
const { readPower } = require('./power');
const { Processes } = require('./processes');
const { Programs } = require('./programs');
const { readService } = require('./service');
const { shared } = require('./shared');
const { readWindows } = require('./windows');

const MB = 1024 * 1024;
const LATEST = 8;
const KEPT = 50;
const TOP = 8;
const CLIENT = 'tovictl';

const megabytes = (bytes) => Math.round(bytes / MB);

//! All reports. Each is sent as a whole. They only read, and nothing runs between requests.
class Reports {
    #house;
    #programs;
    #ownLoad = new OwnLoad();

    //! `env` is the environment in which to look for the desktop.
    constructor(house, { env = process.env, programs = new Programs(env), processes = new Processes() } = {}) {
        this.#house = house;
        this.#programs = programs;

        const totals = new Counters(() => processes.total());
        const scans = new Counters(() => processes.scan());
        const machine = realSources(() => totals.measure());
        this.machine = shared(() => readMachine(machine));
        this.processes = shared(async () => processes.top(await scans.measure(), TOP));
        this.clientMemory = shared(async () => processes.memoryOf(CLIENT, process.getuid(), await processes.scan()));
        this.ownPercent = shared(async () => this.#ownLoad.percent());
        this.power = shared(() => readPower(programs));
        this.kdeLogs = shared(() => readLogs(programs));
        this.windows = shared(() => readWindows(programs, env));
        this.plasma = shared(() => readPlasma(env));
        this.service = shared(() => readService(programs, {
            uptimeSec: Math.floor(house.metrics.uptimeMs / 1000),
            memoryBytes: process.memoryUsage().rss,
        }));
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

    async system() {
        const { totalErrors, totalWarnings } = this.appLogs();
        const [machine, processes] = await Promise.all([this.machine(), this.processes()]);
        return { machine, processes: processes ?? 'unavailable', appLogs: { totalErrors, totalWarnings } };
    }

    async quick() {
        const machine = await this.machine();
        return { ...judge(machine), ...machine };
    }

    //! The real desktop, and beside it the simulated one, on which plans run.
    async desktop() {
        const [windows, { panels, theme }] = await Promise.all([this.windows(), this.plasma()]);
        return { windows, panels, theme, demonstration: this.#house.desktop.report() };
    }

    async dashboard() {
        const [service, clientMb, bridgePercent] =
            await Promise.all([this.service(), this.clientMemory(), this.ownPercent()]);
        const { journal, feedback, metrics } = this.#house;
        const { heapUsed, heapTotal, rss, external } = process.memoryUsage();
        const { up, down } = feedback.votes;
        return {
            memory: {
                sessionHeapMb: megabytes(heapUsed),
                sessionHeapTotalMb: megabytes(heapTotal),
                bridgeRssMb: megabytes(rss),
                bridgeExternalMb: megabytes(external),
                toviServiceMb: Math.round(clientMb),
            },
            cpu: { bridgePercent },
            feedback: { likes: up, dislikes: down, total: up + down },
            errors: {
                total: journal.total('error'),
                direction: journal.direction('error'),
                lastTs: journal.lastTs('error'),
            },
            warnings: { total: journal.total('warn'), direction: journal.direction('warn') },
            logEntries: journal.latest(LATEST).map(({ level, message, timestamp: ts }) => ({ level, message, ts })),
            metrics: metrics.report(),
            service,
        };
    }

    //! Kills the programs that are running, when the bridge stops.
    close() {
        this.#programs.close();
    }
}

module.exports = { Reports };
