// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const catalog = require('./catalog');
const chat = require('./chat');
const { Failure } = require('./frames');
const { cut } = require('./text');
const { reply } = require('./outcomes');

const MAX_NAME = 100;

function createSession({ house }) {
    const session = house.sessions.draft();
    house.sessions.keep(session);
    return reply({ sessionId: session.id });
}

function switchSession({ params, house }) {
    house.sessions.keep(house.sessions.get(params.sessionId));
    return reply({ sessionId: params.sessionId });
}

function deleteSession({ params, house }) {
    house.sessions.delete(params.sessionId);
    return reply({ sessionId: params.sessionId });
}

function renameSession({ params, house }) {
    const { id, name } = house.sessions.rename(params.sessionId, params.newName);
    return reply({ sessionId: id, newName: name });
}

//! The table of methods. A row without `perform` is a method that this bridge knows and doesn't offer yet.
const METHODS = [
    {
        name: 'chat',
        params: {
            message: 'string',
            sessionId: 'string?',
            agent: 'string?',
            model: 'string?',
            inputMode: 'string?',
            context: 'object?',
        },
        perform: chat.chat,
    },
    { name: 'cancel', params: { sessionId: 'string?' }, perform: chat.cancel },
    {
        name: 'messageFeedback',
        params: { vote: 'string', messageIndex: 'integer', messageText: 'string', userQuery: 'string?', sessionId: 'string?' },
        perform: chat.messageFeedback,
    },
    {
        name: 'handleStructuredUiAction',
        params: { actionType: 'string', data: 'object', sessionId: 'string?' },
        perform: chat.handleStructuredUiAction,
    },

    { name: 'listSessions', perform: ({ house }) => reply({ sessions: house.sessions.list() }) },
    { name: 'createSession', perform: createSession },
    { name: 'switchSession', params: { sessionId: 'string' }, perform: switchSession },
    { name: 'deleteSession', params: { sessionId: 'string' }, perform: deleteSession },
    { name: 'renameSession', params: { sessionId: 'string', newName: 'string' }, perform: renameSession },
    {
        name: 'loadMessages',
        params: { sessionId: 'string' },
        perform: ({ params, house }) => reply({ messages: house.sessions.get(params.sessionId).messages }),
    },

    { name: 'listModels', perform: () => reply({ models: catalog.models }) },
    { name: 'listAgents', perform: () => reply({ agents: catalog.agents }) },
    {
        name: 'ping',
        perform: ({ house }) => reply({ ok: true, executorPathEnabled: house.settings.executorPathEnabled }),
    },
    {
        name: 'getCapabilities',
        // Both stay off until their methods below are offered.
        perform: () => reply({ workspaceIntelligence: { enabled: false }, aiRuntime: { enabled: false } }),
    },

    { name: 'generateCode' },
    { name: 'editCode' },
    { name: 'getFiles' },
    { name: 'readFile' },
    { name: 'writeFile' },
    { name: 'checkFreeProviders' },
    { name: 'getTokenStatus' },
    { name: 'setProviderToken' },
    { name: 'auditListRecent' },
    { name: 'auditRevert' },
    { name: 'automationList' },
    { name: 'automationCreate' },
    { name: 'automationUpdate' },
    { name: 'automationDelete' },
    { name: 'automationPause' },
    { name: 'reminderList' },
    { name: 'reminderCancel' },
    { name: 'getPlan' },
    { name: 'executePlan' },
    { name: 'emergencyStop' },
    { name: 'emergencyResume' },
    { name: 'getDeniedPermissions' },
    { name: 'getDesktopState' },
    { name: 'getSystemReport' },
    { name: 'getQuickStatus' },
    { name: 'getPowerProfile' },
    { name: 'getAppLogSummary' },
    { name: 'getKdeLogs' },
    { name: 'getAppMetrics' },
    { name: 'getServiceHealth' },
    { name: 'getSystemDashboard' },
    { name: 'workspaceIntelGetSettings' },
    { name: 'workspaceIntelGetDwellSummary' },
    { name: 'workspaceIntelSetSettings' },
    { name: 'workspaceIntelListApproved' },
    { name: 'workspaceIntelSetTemplateEnabled' },
    { name: 'workspaceIntelPrepare' },
    { name: 'aiRuntimeGetStatus' },
    { name: 'aiRuntimeSetSetting' },
    { name: 'workspaceRuntimeGetHealth' },
    { name: 'workspaceRuntimeListJobs' },
    { name: 'aiRuntimeCheckWorkspaceNotification' },
    { name: 'aiRuntimeDismissSuggestion' },
    { name: 'aiRuntimeClearDismissedSuggestions' },
];

const byName = new Map(METHODS.map((method) => [method.name, { params: {}, ...method }]));

//! The row of a method. Throws a Failure for one that is unknown, or known and not offered yet.
function findMethod(name) {
    const method = byName.get(name);
    if (!method)
        throw new Failure(`Unknown method ${JSON.stringify(cut(name, MAX_NAME))}`, 'UNKNOWN_METHOD');
    if (!method.perform)
        throw new Failure(`The demo bridge does not offer "${name}" yet`, 'NOT_OFFERED');
    return method;
}

module.exports = { METHODS, findMethod };
