// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const STEPS = ['theme.apply', 'panel.opacity.set', 'kde.notify'];

const route = (turn, agent) => turn.event('agent.routed', { agent });
const phase = (turn, name) => turn.event('plan.phase', { phase: name });

//! Goes through the steps of a plan, with a number of beats for each.
async function walkPlan(turn, beats) {
    phase(turn, 'executing');
    for (const [index, capabilityId] of STEPS.entries()) {
        turn.event('plan.step', { index, total: STEPS.length, capabilityId, phase: 'executing' });
        await turn.pause(beats);
    }
}

async function slow(turn) {
    route(turn, 'planner');
    await turn.pause(1);
    phase(turn, 'creating');
    await turn.pause(2);
    await walkPlan(turn, 1);
    return { response: 'Done, and all that in good time.' };
}

async function plan(turn) {
    route(turn, 'planner');
    await turn.pause(0.3);
    phase(turn, 'creating');
    await turn.pause(0.5);
    await walkPlan(turn, 0.5);
    return { response: `Three steps done: ${STEPS.map((step) => `\`${step}\``).join(', ')}.` };
}

async function oneStep(turn) {
    route(turn, 'system-settings-agent');
    phase(turn, 'executing');
    turn.event('plan.step', { index: 0, total: 1, capabilityId: 'garden.water_plants', phase: 'executing' });
    await turn.pause(1);
    return { response: 'The one step is done.' };
}

//! Every event once, even those that a client ignores.
async function allEvents(turn) {
    turn.event('ready', {});
    turn.event('weather.changed', { sky: 'blue' });
    route(turn, 'kde-desktop-agent');
    await turn.pause(0.5);
    route(turn, 'kde-desktop-agent');
    phase(turn, 'creating');
    await turn.pause(0.5);
    await walkPlan(turn, 0.5);
    turn.event('tool.executed', { tool: '', result: 'nothing' });
    turn.event('tool.executed', { tool: 'settings_read', result: 'ok' });
    return { response: 'That was every kind of event.' };
}

async function showPhase(turn, rest) {
    phase(turn, rest || 'pondering');
    await turn.pause(2);
    return { response: 'The phase is over.' };
}

async function routed(turn, rest) {
    route(turn, rest || 'desktop-diagnosis-agent');
    await turn.pause(1);
    return { response: 'Another agent has taken this.' };
}

//! Replies in spite of a cancel: some time after it, or by default without one.
async function late(turn) {
    await turn.untilCancelled(20);
    await turn.pauseRegardless(1);
    return { response: 'This answer comes late, whether or not anybody still waits for it.' };
}

module.exports = {
    title: 'Progress',
    scenarios: [
        { phrases: ['slow'], about: 'some seconds of work, long enough to stop it', pace: 0, answer: slow },
        { phrases: ['plan'], about: 'a plan of three steps', pace: 0, answer: plan },
        { phrases: ['one step'], about: 'a plan of one step with a capability of no known name', pace: 0, answer: oneStep },
        { phrases: ['phase'], about: 'a phase by the name that you add', pace: 0, answer: showPhase },
        { phrases: ['route'], about: 'another agent, by the id that you add', pace: 0, answer: routed },
        { phrases: ['all events'], about: 'every kind of event', pace: 0, answer: allEvents },
        { phrases: ['late'], about: 'an answer that comes even after you stop it', pace: 0, answer: late },
    ],
};
