// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { checkRange } = require('../params');
const { makePlan } = require('../planner');
const { reply } = require('../outcomes');

const DEFAULT_LIMIT = 50;

function auditListRecent({ params: { limit = DEFAULT_LIMIT }, house }) {
    checkRange('limit', limit, 1, Number.MAX_SAFE_INTEGER);
    return reply({ actions: house.audit.list(limit) });
}

function auditRevert({ params: { actionId }, house }) {
    return reply({ ok: true, actionId, ...house.audit.revert(actionId) });
}

function emergencyStop({ house }) {
    house.executor.stop();
    return reply({ ok: true, stopped: true });
}

function emergencyResume({ house }) {
    house.executor.resume();
    return reply({ ok: true, stopped: false });
}

module.exports = [
    { name: 'getPlan', params: { message: 'text' }, perform: ({ params }) => reply(makePlan(params.message)) },
    {
        name: 'executePlan',
        params: { steps: 'objects' },
        perform: async ({ params, house }) => reply(await house.executor.run('plan', params.steps)),
    },
    { name: 'emergencyStop', perform: emergencyStop },
    { name: 'emergencyResume', perform: emergencyResume },
    { name: 'getDeniedPermissions', perform: ({ house }) => reply({ denied: house.executor.denied() }) },
    { name: 'auditListRecent', params: { limit: 'integer?' }, perform: auditListRecent },
    { name: 'auditRevert', params: { actionId: 'string' }, perform: auditRevert },
];
