// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const timers = require('timers/promises');
const { once, setMaxListeners } = require('events');

const { defaultAddresses } = require('./address');
const { DEFAULT_CONTEXT, chooseModel, readModels } = require('./catalog');
const { readJson } = require('./http');
const log = require('../log');
const { isObject } = require('../frames');
const { follow } = require('../signals');

const MAX_WAIT_MS = 150; // of a prompt; a search goes on after it
const MARGIN_MS = 10;
const MAX_DETAILS_MS = 80; // for what is useful but not needed
const MAX_SEARCH_MS = 3000;
const MODELS = '/v1/models';
const DETAILS = ['/props', '/api/tags', '/api/ps'];

//! Resolves to `value` of a promise, or to undefined after some milliseconds. Neither keeps the process running.
const within = (promise, ms) => Promise.race([promise, timers.setTimeout(ms, undefined, { ref: false })]);

//! A server to which prompts can be sent. `models` is empty if it lists none.
class ModelServer {
    models = [];
    //! Whether it can report how much of a prompt it has read, as llama-server does.
    reportsProgress = false;

    constructor({ base, shown }, { allowRemote, key }) {
        this.base = base;
        this.shown = shown;
        this.allowRemote = allowRemote;
        this.key = key;
    }

    //! The model that a client's id means, by default the server's first.
    model(fullId) {
        return chooseModel(this.models, fullId) ?? { id: 'default', name: '', contextTokens: DEFAULT_CONTEXT };
    }

    //! Asks for the models. Resolves to whether this is a model server that answers before `signal`. Sizes and the like
    //! may follow later.
    async readModels(signal) {
        const page = async (path) => {
            const { status, value } = await readJson(this, path, signal);
            return status === 200 ? value : undefined;
        };
        const details = Promise.all(DETAILS.map(page));
        const { status, value } = await readJson(this, MODELS, signal);
        // llama-server listens before it has loaded its model.
        if (status === 503 && value?.error?.type === 'unavailable_error')
            return true;
        const found = status === 200 && readModels({ models: value });
        if (!found)
            return false;
        this.models = found;
        const complete = details.then(([props, tags, running]) => {
            this.models = readModels({ models: value, props, tags, running });
            this.reportsProgress = isObject(props?.default_generation_settings);
        });
        await within(complete, MAX_DETAILS_MS);
        return true;
    }
}

//! Finds the model server: the one that the settings name, else one at a default port of this machine. A server that was
//! found stays until `lost()`.
class ModelServers {
    #settings;
    #addresses;
    #maxWaitMs;
    #current = null;
    #lastShown;
    #announced = '';
    #search = null;
    #closed = new AbortController();

    //! `settings` are those of readModelSettings(). `addresses` are tried if they name none. `maxWaitMs` limits what a
    //! search adds to a prompt.
    constructor(settings, { addresses = defaultAddresses(), maxWaitMs = MAX_WAIT_MS } = {}) {
        const { address, search } = settings;
        this.#settings = settings;
        this.#maxWaitMs = maxWaitMs;
        this.#addresses = address ? [address] : search ? addresses : [];
        this.#lastShown = address?.shown ?? '';
        // Each search listens for its end, and may outlive the prompt that began it.
        setMaxListeners(0, this.#closed.signal);
    }

    //! The server that was found last or that the settings name, for people; '' if there was none. Without it, the absence
    //! of a server is no fault.
    get lastShown() {
        return this.#lastShown;
    }

    //! Resolves to the server or null, within `maxWaitMs`. A server that answers later is found by the next call. One that
    //! the settings name is returned even if it doesn't answer: the request then fails with the reason. Waits no longer
    //! when `signal` is aborted.
    async find(signal = new AbortController().signal) {
        // A server that lists no models may still be loading one.
        if (!this.#current?.models.length && this.#addresses.length && !this.#closed.signal.aborted) {
            this.#search ??= this.#searchAll().finally(() => { this.#search = null; });
            if (!signal.aborted)
                await within(Promise.race([this.#search, once(signal, 'abort')]), this.#maxWaitMs);
        }
        const { address } = this.#settings;
        return this.#current ?? (address && new ModelServer(address, this.#settings));
    }

    //! Like find(), but asks a known server for its models again.
    async refresh() {
        const server = this.#current;
        if (server && !await server.readModels(this.#limit()))
            this.lost(server);
        return this.find();
    }

    //! Forgets a server that doesn't answer any more.
    lost(server) {
        if (this.#current?.base !== server.base)
            return;
        this.#current = null;
        this.#announced = '';
    }

    //! Ends all searches, when the bridge stops.
    close() {
        this.#closed.abort();
    }

    //! A signal for requests of a search.
    #limit() {
        const ends = follow(this.#closed.signal, AbortSignal.timeout(MAX_SEARCH_MS));
        ends.signal.addEventListener('abort', ends.release);
        return ends.signal;
    }

    async #searchAll() {
        const found = [];
        const probes = this.#addresses.map(async (address, n) => {
            const server = new ModelServer(address, this.#settings);
            if (await server.readModels(this.#limit()))
                found[n] = server;
        });
        const all = Promise.all(probes);
        // The first address is preferred to one that answers sooner, unless it keeps the prompt waiting.
        await within(all, this.#maxWaitMs - MARGIN_MS);
        if (found.length === 0)
            await Promise.race(probes.map((each) => each.then(() => (found.length ? null : all))));
        this.#use(found.find(Boolean));
    }

    #use(server) {
        this.#current = server ?? null;
        if (!server) {
            this.#announced = '';
            return;
        }
        // Once, although a server that is loading its model is looked for with each prompt.
        if (this.#announced !== server.shown)
            log.note(`Prompts go to the model server at ${server.shown}`);
        this.#announced = this.#lastShown = server.shown;
    }
}

module.exports = { MAX_SEARCH_MS, MAX_WAIT_MS, ModelServers };
