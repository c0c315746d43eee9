// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { Failure } = require('./frames');

const refusal = (error, { id, name, status }) => ({ ok: false, error, workspace: { id, name, status } });

//! Prepares a workspace: opens its apps on the simulated desktop, as a plan that is added to the audit trail. Obstacles
//! are part of the result; only an unknown workspace is a Failure.
async function prepare({ workspaces, executor, runtime }, { workspaceId, dryRun = false }) {
    const template = workspaces.get(workspaceId);
    if (template.status !== 'active')
        return refusal(`Enable “${template.name}” first`, template);
    if (!executor.enabled)
        return refusal('Desktop actions are switched off', template);
    if (dryRun)
        return { ok: true, dryRun, workspace: { id: template.id, name: template.name, status: template.status } };

    const fault = runtime.admit();
    if (fault)
        return refusal(fault, template);
    const job = runtime.beginJob('workspace.prepare');
    try {
        const steps = template.apps.map((name) => ({ capabilityId: 'app.launch', params: { name } }));
        const { success, error, actionId } = await executor.run(`workspace:${template.slug}`, steps);
        runtime.endJob(job, success ? '' : error);
        if (!success)
            return { ...refusal(error, template), actionId };
        template.preparedAt = Date.now();
        return { ok: true, actionId, workspace: { id: template.id, name: template.name, status: template.status } };
    } catch (error) {
        runtime.endJob(job, error.message);
        if (error instanceof Failure)
            return refusal(error.message, template);
        throw error;
    }
}

module.exports = { prepare };
