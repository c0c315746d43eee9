// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { Failure } = require('../frames');
const { NO_REPLY } = require('../outcomes');

const fail = (...facts) => () => {
    throw new Failure(...facts);
};

//! Frames that belong to no request, and a malformed one, before a valid reply.
function noise(turn) {
    const frames = [
        'this is not JSON',
        '[1, 2, 3]',
        '{"type":"stream","payload":"a piece"}',
        '{"type":"response","payload":{"response":"For nobody"}}',
        '{"type":"response","id":4294967296,"payload":{"response":"For an unknown request"}}',
        '{"type":"brand-new","id":4294967297,"result":{"response":"For another one"}}',
        '{"type":"event","payload":"no object"}',
        '{"type":"event"}',
    ];
    frames.forEach((frame) => turn.sendText(frame));
    return { response: 'This answer came through the noise.' };
}

async function errorAfterPlan(turn) {
    turn.event('agent.routed', { agent: 'planner' });
    turn.event('plan.phase', { phase: 'executing' });
    turn.event('plan.step', { index: 1, total: 3, capabilityId: 'power.profile.set', phase: 'executing' });
    await turn.pause(1);
    throw new Failure('The plan stopped at its second step', 'STEP_FAILED');
}

async function loseConnection(turn) {
    turn.hangUp();
    return NO_REPLY;
}

function twice(turn) {
    const payload = { response: 'Only the first of two equal answers counts.', sessionId: turn.session.id };
    turn.sendText(JSON.stringify({ type: 'response', id: turn.id, method: 'chat', payload }));
    return { response: payload.response };
}

const oddResult = (payload) => ({ payload });

module.exports = {
    title: 'Trouble',
    scenarios: [
        { phrases: ['error'], about: 'a reply that failed', answer: fail('The bridge failed as you asked', 'DEMO') },
        {
            phrases: ['error notice'],
            about: 'the same as a message of its own kind',
            answer: fail('The bridge failed with a notice', 'DEMO', 'notice'),
        },
        { phrases: ['error code'], about: 'a notice with a code alone', answer: fail('', 'E_DEMO_ONLY_A_CODE', 'notice') },
        { phrases: ['silent error'], about: 'a notice without any words', answer: fail('', '', 'notice') },
        {
            phrases: ['old error'],
            about: 'a failure in the older form',
            answer: fail('The bridge failed the old way', 'DEMO', 'older'),
        },
        { phrases: ['late error'], about: 'a plan that fails half-way', pace: 0, answer: errorAfterPlan },
        { phrases: ['empty'], about: 'an answer without words', answer: { response: '' } },
        {
            phrases: ['old form'],
            about: 'an answer in the older form',
            answer: { response: 'This answer has the older form.', form: 'older' },
        },
        { phrases: ['odd result'], about: 'a result that is no object', answer: oddResult('just a string') },
        {
            phrases: ['odd types'],
            about: 'events and fields of wrong types',
            pace: 0,
            answer: (turn) => {
                turn.event('agent.routed', { agent: 5 });
                turn.event('plan.phase', { phase: { deep: true } });
                turn.event('plan.step', { index: 1e300, total: -1e300, capabilityId: null, phase: [] });
                turn.event('plan.step', { index: 'one', total: '3', capabilityId: 7 });
                turn.event('tool.executed', { tool: ['kde_launch_app'] });
                return {
                    response: 'Nothing here has the type that it should have.',
                    usage: { inputTokens: 1e300, outputTokens: -4 },
                    ui: { blocks: [null, 3, [], { type: 9 }, { type: 'list', items: 'none', title: {} },
                        { type: 'table', columns: 'A', rows: [1, null] }, { type: 'slider', min: 'low', max: null }] },
                    followUps: [null, 5, [], { prompt: 7 }, { label: {} }, { prompt: 'plain', title: [] }],
                };
            },
        },
        { phrases: ['odd follow ups', 'odd followups'],
            about: 'suggestions that are no list',
            answer: { response: 'No suggestions here.', followUps: { prompt: 'plain' } } },
        { phrases: ['noise'], about: 'stray frames before the answer', answer: noise },
        { phrases: ['twice'], about: 'the same answer two times', answer: twice },
        { phrases: ['silence'], about: 'no answer, ever', answer: () => NO_REPLY },
        { phrases: ['hang up'], about: 'the connection is cut', answer: loseConnection },
    ],
};
