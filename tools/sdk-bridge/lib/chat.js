// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const rephrase = require('./rephrase');
const scenarios = require('./scenarios');
const { Failure } = require('./frames');
const { NO_REPLY, reply } = require('./outcomes');

const ACTION_PACE = 0.3; // beats
const FILE_PREFIX = '--- File: ';
const QUESTION = 'User question: ';

//! A rough estimate: four characters per token.
const tokens = (text) => Math.max(1, Math.ceil(text.length / 4));

const usageOf = (prompt, response) => ({ inputTokens: tokens(prompt), outputTokens: tokens(response) });

//! The user's text, without the attached files before it.
function questionOf(message) {
    const at = message.startsWith(FILE_PREFIX) ? message.lastIndexOf(QUESTION) : -1;
    return at < 0 ? message : message.slice(at + QUESTION.length);
}

//! The session of a request: the one that it names, or a new one if that is unknown or absent. A new session is listed
//! after its first reply, because its client doesn't know it before.
function openSession(house, sessionId) {
    const known = house.sessions.find(sessionId);
    return { session: known ?? house.sessions.draft(), startsSession: !known };
}

//! Runs a turn in the session of its request, and makes a reply from the result of `play(turn)`.
async function converse({ id, params, connection, house }, prompt, play) {
    const { session, startsSession } = openSession(house, params.sessionId);
    const { desktop, journal } = house;
    const sendToAll = (frame) => house.sendToAll(frame);
    const request = { id, prompt, params, session, startsSession, desktop, journal, sendToAll };
    const outcome = await connection.turns.run(request, play);
    if (outcome === NO_REPLY)
        return NO_REPLY;

    const { response, ui, followUps, form } = outcome;
    if ('payload' in outcome)
        return reply(outcome.payload, form);
    session.add('assistant', response);
    // A session that was deleted in the meantime isn't listed again.
    if (startsSession || house.sessions.find(session.id))
        house.sessions.keep(session);
    const usage = outcome.usage ?? usageOf(params.message ?? prompt, response);
    return reply({ response, sessionId: session.id, usage, ui, followUps }, form);
}

function rewrite({ params, house }, transcript) {
    const { session } = openSession(house, params.sessionId);
    const response = rephrase.cleanUp(transcript);
    house.sessions.keep(session);
    // Not part of the conversation: the user hasn't said anything yet.
    return reply({ response, sessionId: session.id, usage: usageOf(params.message, response) });
}

//! Answers a prompt with its scenario.
async function chat(request) {
    const { message } = request.params;
    if (!message.trim())
        throw new Failure('The message is empty', 'INVALID_PARAMS');
    const transcript = rephrase.transcriptOf(request.params);
    if (transcript !== null)
        return rewrite(request, transcript);
    return converse(request, questionOf(message), (turn) => {
        turn.session.add('user', turn.prompt);
        return scenarios.play(turn, turn.prompt);
    });
}

//! Stops the turns of this connection, in the given session or in all. Each stopped prompt gets an error reply, so that
//! no request stays open.
function cancel({ params, connection }) {
    return reply({ ok: true, cancelled: connection.turns.cancel(params.sessionId) });
}

const ACTIONS = new Map([
    ['option_selected', 'Your choice has arrived. A real bridge would go on from here.'],
    ['slider_submitted', 'The value has arrived. A real bridge would now set it.'],
]);

//! Answers an action on a widget of a reply, like a prompt.
async function handleStructuredUiAction(request) {
    const { actionType, data } = request.params;
    return converse(request, actionType, async (turn) => {
        await turn.pause(ACTION_PACE);
        const known = ACTIONS.get(actionType) ?? `The action “${actionType}” has arrived.`;
        const carried = Object.keys(data).length;
        return { response: carried ? `${known}\n\n\`\`\`\n${JSON.stringify(data, null, 2)}\n\`\`\`` : known };
    });
}

function messageFeedback({ params, house }) {
    house.feedback.add(params.vote);
    return reply({ ok: true, ...house.feedback.votes });
}

module.exports = { cancel, chat, handleStructuredUiAction, messageFeedback };
