// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const log = require('./log');
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

//! Decides what becomes of a session whose first prompt has no reply. Does nothing with a listed session. A prompt that
//! the user stopped is forgotten. One that a model server failed to answer is kept; so is that of a client that has left,
//! which is listed after the next start.
function endDraft(house, session, { failure: { code }, hasLeft }) {
    if (house.sessions.find(session.id) || hasLeft)
        return;
    if (String(code).startsWith('MODEL_'))
        house.sessions.keep(session);
    else
        house.sessions.discard(session);
}

//! A reply with a warning at its end; clients show the blocks instead of the response, if there are any.
function withWarning({ response, ui }, warning) {
    if (!warning)
        return { response, ui };
    const content = `(${warning})`;
    return {
        response: `${response}\n\n${content}`,
        ui: Array.isArray(ui?.blocks) ? { ...ui, blocks: [...ui.blocks, { type: 'text', content }] } : ui,
    };
}

//! Runs a turn in the session of its request, and makes a reply from the result of `play(turn)`. The result is added to
//! the session, unless it is only a draft of what the user will say.
async function converse({ id, params, connection, house }, { prompt, isDraft = false }, play) {
    const { session, startsSession } = openSession(house, params.sessionId);
    const { desktop, journal, reports } = house;
    const sendToAll = (frame) => house.sendToAll(frame);
    const model = house.model.address;
    const request = { id, prompt, params, session, startsSession, desktop, journal, reports, model, sendToAll };
    let outcome;
    try {
        outcome = await connection.turns.run(request, play);
    } catch (error) {
        endDraft(house, session, { failure: error, hasLeft: connection.signal.aborted });
        throw error;
    }
    if (outcome === NO_REPLY || 'payload' in outcome) {
        house.sessions.discard(session);
        return outcome === NO_REPLY ? NO_REPLY : reply(outcome.payload, outcome.form);
    }

    const { response, ui, followUps, sent, form } = outcome;
    if (!isDraft)
        session.add('assistant', response, sent);
    // A session that was deleted in the meantime isn't listed again.
    if (startsSession || house.sessions.find(session.id))
        house.sessions.keep(session);
    const usage = outcome.usage ?? usageOf(params.message ?? prompt, response);
    const shown = withWarning({ response, ui }, connection.warningOnce(house.sessions.trouble));
    return reply({ ...shown, sessionId: session.id, usage, followUps }, form);
}

//! Rephrases a transcript, by rules if no model does it.
async function rewrite(request, transcript) {
    const { house, params } = request;
    return converse(request, { prompt: transcript, isDraft: true }, async (turn) => {
        try {
            const rewritten = await house.model.rewrite(turn, params.message);
            if (rewritten)
                return rewritten;
        } catch (error) {
            if (!(error instanceof Failure) || error.code === 'CANCELLED')
                throw error;
            log.note(`A transcript is rephrased by rules: ${log.quote(error.message)}`);
            house.journal.add('warn', 'rephrase.model', error.message);
        }
        return { response: rephrase.cleanUp(transcript) };
    });
}

//! Answers a prompt: with the scenario that it asks for, else by the model, else with the scenario that its words select.
async function chat(request) {
    const { house, params: { message } } = request;
    if (!message.trim())
        throw new Failure('The message is empty', 'INVALID_PARAMS');
    const transcript = rephrase.transcriptOf(request.params);
    if (transcript !== null)
        return rewrite(request, transcript);
    const prompt = questionOf(message);
    return converse(request, { prompt }, async (turn) => {
        turn.session.add('user', prompt, message);
        const wanted = scenarios.wanted(prompt);
        if (wanted !== null)
            return scenarios.play(turn, wanted);
        const answer = await house.model.answer(turn, message);
        return answer ?? scenarios.play(turn, prompt);
    });
}

//! Stops the turns of this connection, in the given session or in all. Each stopped prompt gets an error reply, so that
//! no request stays open.
function cancel({ params, connection }) {
    return reply({ ok: true, cancelled: connection.turns.cancel(params.sessionId) });
}

//! What the demonstration says to an action.
const ACTIONS = new Map([
    ['option_selected', 'Your choice has arrived. This is a demonstration, so nothing follows.'],
    ['slider_submitted', 'The value has arrived. This is a demonstration, so nothing is set.'],
]);

async function acknowledge(turn, { actionType, data }) {
    await turn.pause(ACTION_PACE);
    const known = ACTIONS.get(actionType) ?? `The action “${actionType}” has arrived.`;
    const carried = Object.keys(data).length;
    return { response: carried ? `${known}\n\n\`\`\`\n${JSON.stringify(data, null, 2)}\n\`\`\`` : known };
}

//! Answers an action on a widget of a reply, like a prompt.
async function handleStructuredUiAction(request) {
    const { house, params } = request;
    return converse(request, { prompt: params.actionType }, async (turn) => {
        if (!house.model.address)
            return acknowledge(turn, params);
        // The OmniBar sends only that something was chosen: its widgets' data is no JSON object.
        if (Object.keys(params.data).length === 0)
            return { response: 'I can’t see from here what you chose. Please type it.' };
        const prompt = `${params.actionType}: ${JSON.stringify(params.data)}`;
        turn.session.add('user', prompt);
        return house.model.answer(turn, prompt);
    });
}

function messageFeedback({ params, house }) {
    house.feedback.add(params.vote);
    return reply({ ok: true, ...house.feedback.votes });
}

module.exports = { cancel, chat, handleStructuredUiAction, messageFeedback };
