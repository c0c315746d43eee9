// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { NOTE, demonstration } = require('../demonstration');
const { checkRange } = require('../params');
const { makePlan } = require('../planner');
const { reply } = require('../outcomes');

const DEFAULT_LIMIT = 50;

//! The summary is the only text of a plan that is shown before it runs.
function getPlan({ params: { message } }) {
    const plan = makePlan(message);
    return reply(demonstration({ ...plan, summary: plan.allowed ? `${NOTE} ${plan.summary}` : plan.summary }));
}

async function executePlan({ params: { steps }, house }) {
    return reply(demonstration(await house.executor.run('plan', steps)));
}

function auditListRecent({ params: { limit = DEFAULT_LIMIT }, house }) {
    checkRange('limit', limit, 1, Number.MAX_SAFE_INTEGER);
    return reply(demonstration({ actions: house.audit.list(limit) }));
}

function auditRevert({ params: { actionId }, house }) {
    return reply(demonstration({ ok: true, actionId, ...house.audit.revert(actionId) }));
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
    { name: 'getPlan', params: { message: 'text' }, perform: getPlan },
    { name: 'executePlan', params: { steps: 'objects' }, perform: executePlan },
    { name: 'emergencyStop', perform: emergencyStop },
    { name: 'emergencyResume', perform: emergencyResume },
    { name: 'getDeniedPermissions', perform: ({ house }) => reply({ denied: house.executor.denied() }) },
    { name: 'auditListRecent', params: { limit: 'integer?' }, perform: auditListRecent },
    { name: 'auditRevert', params: { actionId: 'string' }, perform: auditRevert },
];
