// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { listed } = require('./catalog');
const { complete } = require('./completion');
const { readReply } = require('./document');
const { ENDINGS, failure } = require('./failures');
const { messagesFor } = require('./history');
const { instructions } = require('./instructions');
const { ModelServers } = require('./servers');
const { cancelledFailure } = require('../frames');
const log = require('../log');
const { cut } = require('../text');

//! The shares of the history to try, if a server finds the first request too long.
const SHARES = [1, 0.4, 0];

const CHECKED_MODELS = 10;
const CHECK_TIMEOUT_MS = 20000;
const CHECK_TOKENS = 8;
const MAX_CHECK_ANSWER = 200;

const PHASES = { reading: 'Reading…', thinking: 'Thinking…', writing: 'Writing…' };

//! Reports the phases of a reply to the client of a turn, each once.
class Phases {
    #turn;
    #shown = '';

    constructor(turn) {
        this.#turn = turn;
    }

    show(phase) {
        if (phase === this.#shown)
            return;
        this.#shown = phase;
        this.#turn.event('plan.phase', { phase });
    }

    //! Shows what a stream is at; without one, that the prompt is being read.
    follow(stream) {
        const { hasText, isThinking, readShare } = stream ?? {};
        if (hasText)
            this.show(PHASES.writing);
        else if (isThinking)
            this.show(PHASES.thinking);
        else
            this.show(readShare > 0 ? `${PHASES.reading} ${Math.floor(readShare * 100)}%` : PHASES.reading);
    }
}

const NO_PHASES = { follow: () => {} };

//! Everything that the bridge asks of a model server.
class Model {
    #timeoutMs;
    #contextTokens;
    #servers;

    //! `settings` are those of readSettings().
    constructor({ model, modelTimeout, modelContext }, servers = new ModelServers(model)) {
        this.#timeoutMs = modelTimeout * 1000;
        this.#contextTokens = modelContext;
        this.#servers = servers;
    }

    //! Looks for a server in advance.
    search() {
        return this.#servers.find();
    }

    //! Where the server is or was, for people; '' if there was none.
    get address() {
        return this.#servers.lastShown;
    }

    close() {
        this.#servers.close();
    }

    //! The models as clients list them; null without a server.
    async list() {
        const server = await this.#servers.refresh();
        return server ? listed(server.models) : null;
    }

    //! Answers a prompt in its session. Resolves to {response, ui, followUps, usage, sent}, or to null if there never was a
    //! server. `sent` is the reply as it came, in which later prompts show the model its own words.
    async answer(turn, prompt) {
        const { model, inputMode } = turn.params;
        const system = instructions({ inputMode, now: new Date() });
        const phases = new Phases(turn);
        try {
            const reply = await this.#ask(turn, model, (contextTokens, share) =>
                messagesFor({ instructions: system, history: turn.history, prompt, contextTokens, share }), phases);
            if (!reply)
                return null;
            const ending = reply.ending && `\n\n(${ENDINGS[reply.ending]})`;
            return { ...readReply(reply.text + ending), usage: reply.usage, sent: reply.text };
        } finally {
            phases.show('');
        }
    }

    //! Resolves to the answer to a prompt without a conversation, or to null if there never was a server.
    async rewrite(turn, prompt) {
        const reply = await this.#ask(turn, turn.params.model, () => [{ role: 'user', content: prompt }]);
        return reply && { response: reply.text, usage: reply.usage };
    }

    //! Measures how fast each model of the server says hello. Resolves to rows for the client; null without a server.
    async check(signal) {
        const server = await this.#servers.refresh();
        if (!server)
            return null;
        const rows = [];
        for (const row of listed(server.models).slice(0, CHECKED_MODELS))
            rows.push(await this.#checkOne(server, row, signal));
        return rows;
    }

    async #checkOne(server, { id, fullId, displayName }, signal) {
        const request = { model: id, messages: [{ role: 'user', content: 'Say hello.' }], max_tokens: CHECK_TOKENS };
        const began = performance.now();
        try {
            const { text } = await complete(server, request, { signal, timeoutMs: CHECK_TIMEOUT_MS });
            const responseMs = Math.round(performance.now() - began);
            return { model: fullId, displayName, ok: true, responseMs, response: cut(text, MAX_CHECK_ANSWER), error: '' };
        } catch (error) {
            return { model: fullId, displayName, ok: false, responseMs: 0, response: '', error: error.message };
        }
    }

    //! Sends a request to the server, or to another one if the known one has gone. Resolves to null if there never was one.
    async #ask(turn, modelId, messages, phases = NO_PHASES) {
        const server = await this.#servers.find(turn.signal);
        if (!server) {
            if (!this.address)
                return null;
            throw turn.signal.aborted ? cancelledFailure() : failure('UNREACHABLE', { shown: this.address });
        }
        try {
            return await this.#send(server, turn, modelId, messages, phases);
        } catch (error) {
            if (error.code !== 'MODEL_UNREACHABLE' && error.code !== 'MODEL_CLOSED')
                throw error;
            this.#servers.lost(server);
            const other = error.code === 'MODEL_UNREACHABLE' && await this.#servers.find(turn.signal);
            if (!other || other.base === server.base)
                throw error;
            log.note(`The model server at ${server.shown} has gone; the one at ${other.shown} answers instead`);
            return this.#send(other, turn, modelId, messages, phases);
        }
    }

    //! Sends a request, again with less history if the server finds it too long.
    async #send(server, turn, modelId, messages, phases) {
        const model = server.model(modelId);
        const progress = (stream) => phases.follow(stream);
        let tooLong;
        let refused = 0;
        for (const share of SHARES) {
            const request = { model: model.id, messages: messages(this.#contextTokens || model.contextTokens, share) };
            if (request.messages.length === refused)
                continue;
            phases.follow();
            try {
                return await complete(server, request, { signal: turn.signal, timeoutMs: this.#timeoutMs, progress });
            } catch (error) {
                // Tokens can only be estimated here.
                if (error.code !== 'MODEL_TOO_LONG')
                    throw error;
                tooLong = error;
                refused = request.messages.length;
            }
        }
        throw tooLong;
    }
}

module.exports = { Model, PHASES };
