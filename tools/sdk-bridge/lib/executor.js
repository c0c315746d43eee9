// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { deniedCapabilities, findCapability, shown } = require('./capabilities');
const { NOTE } = require('./demonstration');
const { Failure } = require('./frames');
const { checkParams, invalid } = require('./params');
const { MAX_STEPS } = require('./planner');

const STEP_BEATS = 0.5;
const MAX_PARAMS = 2000; // characters as JSON; the audit trail must have room for it
const STOPPED = 'Stopped by the emergency stop';

//! The capabilities of the steps. Throws a Failure if one of them can't run, before any has run.
function checkSteps(steps) {
    if (!steps.length || steps.length > MAX_STEPS)
        throw invalid(`A plan has from 1 to ${MAX_STEPS} steps`);
    return steps.map((step) => {
        checkParams({ capabilityId: 'text', params: 'object?' }, step);
        const { capabilityId, params = {} } = step;
        const row = findCapability(capabilityId);
        if (!row)
            throw new Failure(`There is no capability ${shown(capabilityId)}`, 'UNKNOWN_CAPABILITY');
        if (row.denied)
            throw new Failure(row.denied, 'PERMISSION_DENIED');
        checkParams(row.params, params);
        if (JSON.stringify(params).length > MAX_PARAMS)
            throw invalid(`The params of a step take at most ${MAX_PARAMS} characters`);
        row.check?.(params);
        return { row, params };
    });
}

//! Runs plans on the simulated desktop, one at a time, and sends the progress to every client: the client that shows the
//! steps isn't the one that requests them.
class Executor {
    #facts;
    #running = null;
    #stopped = false;

    //! `facts` are {enabled, desktop, audit, pace, metrics, broadcast}; without `enabled`, plans are only checked.
    constructor(facts) {
        this.#facts = facts;
    }

    get stopped() {
        return this.#stopped;
    }

    get enabled() {
        return this.#facts.enabled;
    }

    //! Stops the running plan before its next step, and refuses others until `resume`.
    stop() {
        this.#stopped = true;
        this.#running?.abort();
    }

    resume() {
        this.#stopped = false;
    }

    denied() {
        return deniedCapabilities();
    }

    //! Runs a plan and resolves to its outcome, even if a step fails. Rejects with a Failure if the plan can't start.
    async run(source, steps) {
        const checked = checkSteps(steps);
        if (this.#stopped)
            throw new Failure('The emergency stop holds: resume first', 'EMERGENCY_STOP');
        if (this.#running)
            throw new Failure('Another plan is running', 'BUSY');
        if (!this.#facts.enabled)
            return this.#outcome('planned', checked, [], []);

        const { signal } = this.#running = new AbortController();
        try {
            return await this.#play(source, checked, signal);
        } finally {
            this.#running = null;
        }
    }

    async #play(source, checked, signal) {
        const { audit, broadcast } = this.#facts;
        const results = [];
        const done = [];
        const details = [];
        broadcast('plan.phase', { phase: 'executing' });
        for (const [index, { row, params }] of checked.entries()) {
            const tell = (phase) => broadcast('plan.step', { index, total: checked.length, capabilityId: row.id, phase });
            tell('start');
            const fault = await this.#perform(row, params, signal, results, done);
            tell(fault ? 'failed' : 'done');
            if (fault) {
                details.push(fault);
                break;
            }
            broadcast('tool.executed', { tool: row.tool, result: 'ok' });
            if (row.unseen)
                details.push(`${row.id} cannot be read back`);
        }
        // The client that shows the phase gets no reply, so nothing else would clear it there.
        broadcast('plan.phase', { phase: '' });

        // Never "verified": nothing of the real desktop was. The window shows the details of all other states.
        const state = done.length < checked.length ? 'failed' : 'partially_verified';
        const outcome = this.#outcome(state, checked, results, [...details, NOTE]);
        return done.length ? { ...outcome, actionId: audit.enter(source, done) } : outcome;
    }

    //! Runs one step. Resolves to the reason of its failure, or an empty text.
    async #perform(row, params, signal, results, done) {
        const { desktop, pace, metrics } = this.#facts;
        const fail = (error) => {
            results.push({ ok: false, capabilityId: row.id, result: { error } });
            return error;
        };
        if (!await pace.pass(STEP_BEATS, signal))
            return fail(STOPPED);
        try {
            const { result, undo } = row.perform(desktop, params);
            results.push({ ok: true, capabilityId: row.id, result });
            done.push({ capabilityId: row.id, params, undo });
            metrics.countAction();
            return '';
        } catch (error) {
            if (!(error instanceof Failure))
                throw error;
            return fail(error.message);
        }
    }

    #outcome(state, checked, results, details) {
        const success = state !== 'failed';
        const verified = results.filter(({ ok, capabilityId }) => ok && !findCapability(capabilityId).unseen).length;
        const outcome = {
            success,
            results,
            verificationSummary: { state, verified, total: checked.length, details },
        };
        return success ? outcome : { ...outcome, error: details[0] };
    }
}

module.exports = { Executor };
