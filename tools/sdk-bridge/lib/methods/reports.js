// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { reply } = require('../outcomes');

const report = (name, read) => ({ name, perform: async ({ house }) => reply(await read(house)) });

module.exports = [
    report('getDesktopState', ({ reports }) => reports.desktop()),
    report('getSystemReport', ({ reports }) => reports.system()),
    report('getQuickStatus', ({ reports }) => reports.quick()),
    report('getPowerProfile', ({ reports }) => reports.power()),
    report('getAppLogSummary', ({ reports }) => reports.appLogs()),
    report('getKdeLogs', ({ reports }) => reports.kdeLogs()),
    report('getAppMetrics', ({ metrics }) => metrics.report()),
    report('getServiceHealth', ({ reports }) => reports.service()),
    report('getSystemDashboard', ({ reports }) => reports.dashboard()),
];
