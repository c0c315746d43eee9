// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const http = require('http');
const { once } = require('events');

const PATH = '/v1/chat/completions';

const json = (response, value, status = 200) => {
    response.writeHead(status, { 'content-type': 'application/json; charset=utf-8' });
    response.end(typeof value === 'string' ? value : JSON.stringify(value));
};

//! The data of an event with some words, as llama-server sends it.
const words = (content) => ({ choices: [{ finish_reason: null, index: 0, delta: { content } }], model: '/tiny.gguf' });
//! The events around the words: at the start, and at the end with the usage.
const OPENING = { choices: [{ finish_reason: null, index: 0, delta: { role: 'assistant', content: null } }] };
const ending = (reason = 'stop') => ({ choices: [{ finish_reason: reason, index: 0, delta: {} }] });
const usage = (input = 20, output = 3) =>
    ({ choices: [], usage: { prompt_tokens: input, completion_tokens: output, total_tokens: input + output } });

//! One prompt that arrived, and its reply.
class Exchange {
    constructor(body, request, response) {
        this.body = body;
        this.headers = request.headers;
        this.response = response;
        this.closed = once(response, 'close').then(() => Date.now());
    }

    //! The content of the last message.
    get prompt() {
        return this.body.messages.at(-1).content;
    }

    //! Sends bytes or text as a part of the stream of events.
    raw(data) {
        if (!this.response.headersSent)
            this.response.writeHead(200, { 'content-type': 'text/event-stream' });
        return new Promise((resolve) => { this.response.write(data, resolve); });
    }

    //! Sends events, each an object or the text after "data: ".
    send(...events) {
        return this.raw(events.map((event) =>
            `data: ${typeof event === 'string' ? event : JSON.stringify(event)}\n\n`).join(''));
    }

    //! Sends words, one event for each.
    write(...texts) {
        return this.send(...texts.map(words));
    }

    //! Ends a reply as llama-server does.
    async finish(reason) {
        await this.send(ending(reason), usage(), '[DONE]');
        this.response.end();
    }

    //! Sends a whole reply.
    async answer(...texts) {
        await this.send(OPENING);
        await this.write(...texts);
        await this.finish();
    }

    fail(status, error) {
        json(this.response, error, status);
    }

    //! Breaks the connection.
    cut() {
        this.response.destroy();
    }
}

//! A model server that a test controls, on a port of its own. Each prompt waits for the test (`next()`), or is answered by
//! `reply(exchange)` if that is set.
class ModelServer {
    models = { object: 'list', data: [{ id: '/models/tiny.gguf', meta: { n_ctx: 2048, n_params: 7.6e9, size: 4.7e9 } }] };
    //! Further pages by path.
    pages = { '/props': { default_generation_settings: { n_ctx: 2048 } } };
    //! Every prompt that arrived.
    exchanges = [];
    //! The paths of the other requests.
    visits = [];
    reply = null;
    #waiting = [];
    #unseen = [];

    //! Starts a server that ends with the test.
    static async start(t, { port = 0, ...rest } = {}) {
        const server = Object.assign(new ModelServer(), rest);
        await server.listen(port);
        t.after(() => server.stop());
        return server;
    }

    async listen(port = this.port) {
        this.http = http.createServer((request, response) => this.#serve(request, response));
        this.http.listen(port, '127.0.0.1');
        await once(this.http, 'listening');
        this.port = this.http.address().port;
    }

    get shown() {
        return `127.0.0.1:${this.port}`;
    }

    get url() {
        return `http://${this.shown}`;
    }

    //! The variables that lead a bridge here.
    get env() {
        return { LOOMRA_MODEL_URL: this.url };
    }

    //! Stops at once, cutting all connections.
    async stop() {
        const closed = once(this.http, 'close');
        this.http.close();
        this.http.closeAllConnections();
        await closed;
    }

    //! The next prompt that no caller has seen yet.
    next() {
        if (this.#unseen.length)
            return Promise.resolve(this.#unseen.shift());
        return new Promise((resolve) => this.#waiting.push(resolve));
    }

    async #serve(request, response) {
        response.on('error', () => {});
        const chunks = [];
        for await (const chunk of request)
            chunks.push(chunk);
        if (request.url !== PATH) {
            this.visits.push(request.url);
            const page = request.url === '/v1/models' ? this.models : this.pages[request.url];
            if (typeof page === 'function')
                page(response);
            else
                json(response, page ?? { error: { code: 404, message: 'File Not Found', type: 'not_found_error' } },
                    page ? 200 : 404);
            return;
        }
        const exchange = new Exchange(JSON.parse(Buffer.concat(chunks)), request, response);
        this.exchanges.push(exchange);
        const waiter = this.reply ?? this.#waiting.shift();
        if (waiter)
            waiter(exchange);
        else
            this.#unseen.push(exchange);
    }
}

module.exports = { ModelServer, OPENING, ending, json, usage, words };
