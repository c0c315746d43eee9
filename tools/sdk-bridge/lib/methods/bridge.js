// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const catalog = require('../catalog');
const { checkFree, withFastest } = require('../freecheck');
const { reply } = require('../outcomes');

const ping = ({ house }) => reply({ ok: true, executorPathEnabled: house.settings.executorPathEnabled });

function health({ house }) {
    const { uptimeMs } = house.metrics;
    const { address: modelServer } = house.model;
    return reply({ ok: true, executorPathEnabled: house.settings.executorPathEnabled, modelServer, uptimeMs });
}

function getCapabilities({ house }) {
    const { workspaceIntel, aiRuntime } = house.settings;
    return reply({ workspaceIntelligence: { enabled: workspaceIntel }, aiRuntime: { enabled: aiRuntime } });
}

async function listModels({ house }) {
    return reply({ models: await house.model.list() ?? catalog.models });
}

async function checkFreeProviders({ house, connection }) {
    const measured = await house.model.check(connection.signal);
    return reply(measured ? withFastest(measured) : await checkFree(catalog.models, house.tokens, house.pace));
}

function getTokenStatus({ params: { provider }, house }) {
    return reply(provider === undefined ? { providers: house.tokens.all() } : house.tokens.status(provider.trim()));
}

function setProviderToken({ params: { provider, token, tokenKey }, house }) {
    return reply({ ok: true, ...house.tokens.set(provider, token, tokenKey) });
}

module.exports = [
    { name: 'ping', perform: ping },
    { name: 'health', perform: health },
    { name: 'getCapabilities', perform: getCapabilities },
    { name: 'listModels', perform: listModels },
    { name: 'listAgents', perform: () => reply({ agents: catalog.agents }) },
    { name: 'checkFreeProviders', perform: checkFreeProviders },
    { name: 'getTokenStatus', params: { provider: 'text?' }, perform: getTokenStatus },
    {
        name: 'setProviderToken',
        params: { provider: 'text', token: 'text', tokenKey: 'string?' },
        perform: setProviderToken,
    },
];
