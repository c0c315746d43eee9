// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { prepare } = require('../preparing');
const { reply } = require('../outcomes');

const INTEL = ['workspaceIntel'];
const RUNTIME = ['aiRuntime'];
const BOTH = [...INTEL, ...RUNTIME];

function setSettings({ params: { key, value }, house }) {
    house.workspaces.set(key, value);
    return reply({ ok: true });
}

function setTemplateEnabled({ params, house }) {
    const { id, status } = house.workspaces.enable(params);
    return reply({ ok: true, id, status });
}

function setRuntimeSetting({ params: { key, value }, house }) {
    house.runtime.set(key, value);
    return reply({ ok: true });
}

function dismissSuggestion({ params: { suggestionId }, house }) {
    house.runtime.dismiss(suggestionId);
    return reply({ ok: true });
}

module.exports = [
    { name: 'workspaceIntelGetSettings', needs: INTEL, perform: ({ house }) => reply(house.workspaces.settings()) },
    {
        name: 'workspaceIntelSetSettings',
        needs: INTEL,
        params: { key: 'string', value: 'string' },
        perform: setSettings,
    },
    {
        name: 'workspaceIntelGetDwellSummary',
        needs: INTEL,
        params: { days: 'integer?' },
        perform: ({ params, house }) => reply(house.workspaces.dwell(params.days)),
    },
    {
        name: 'workspaceIntelListApproved',
        needs: INTEL,
        perform: ({ house }) => reply({ workspaces: house.workspaces.list() }),
    },
    {
        name: 'workspaceIntelSetTemplateEnabled',
        needs: INTEL,
        params: { slug: 'string?', id: 'integer?', enabled: 'boolean' },
        perform: setTemplateEnabled,
    },
    {
        name: 'workspaceIntelPrepare',
        needs: INTEL,
        params: { workspaceId: 'integer', message: 'string?', dryRun: 'boolean?' },
        perform: async ({ params, house }) => reply(await prepare(house, params)),
    },

    { name: 'aiRuntimeGetStatus', needs: RUNTIME, perform: ({ house }) => reply(house.runtime.status()) },
    {
        name: 'aiRuntimeSetSetting',
        needs: RUNTIME,
        params: { key: 'string', value: 'string' },
        perform: setRuntimeSetting,
    },
    {
        name: 'aiRuntimeCheckWorkspaceNotification',
        needs: BOTH,
        params: { ignoreDnd: 'boolean?', dryRun: 'boolean?' },
        perform: ({ params, house }) => reply(house.runtime.check(params)),
    },
    {
        name: 'aiRuntimeDismissSuggestion',
        needs: RUNTIME,
        params: { suggestionId: 'string' },
        perform: dismissSuggestion,
    },
    {
        name: 'aiRuntimeClearDismissedSuggestions',
        needs: RUNTIME,
        perform: ({ house }) => reply({ ok: true, cleared: house.runtime.clearDismissed() }),
    },

    // Clients request these two even if the feature is disabled.
    { name: 'workspaceRuntimeGetHealth', perform: ({ house }) => reply(house.runtime.health()) },
    { name: 'workspaceRuntimeListJobs', perform: ({ house }) => reply({ jobs: house.runtime.jobs() }) },
];
