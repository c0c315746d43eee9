// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { invalid } = require('./params');

const MAX_TOKEN = 4096;
const MAX_PROVIDERS = 100;
const SHOWN_END = 4;
const LEAST_TO_SHOW = 12; // the end of a shorter token would reveal too much

const mask = (token) => (token.length < LEAST_TO_SHOW ? '••••' : `••••${token.slice(-SHOWN_END)}`);

const keyOf = (provider) => `${provider.toUpperCase().replace(/[^A-Z0-9]+/g, '_')}_API_KEY`;

//! The tokens of providers. Nothing uses them, so only the end of each token is kept.
class Tokens {
    #byProvider = new Map();

    //! `providers` are the names that are listed even without a token.
    constructor(providers) {
        for (const provider of providers)
            this.#byProvider.set(provider, { tokenKey: keyOf(provider), masked: '' });
    }

    //! Sets a token and returns the status of its provider. Throws a Failure if the token is malformed.
    set(given, givenToken, givenKey = '') {
        const [provider, token, tokenKey] = [given, givenToken, givenKey].map((text) => text.trim());
        if (!/^[\w.-]{1,64}$/.test(provider))
            throw invalid('The parameter "provider" is no name of a provider');
        if (token.length > MAX_TOKEN || /\s/.test(token))
            throw invalid('The parameter "token" is no token');
        if (tokenKey && !/^\w{1,128}$/.test(tokenKey))
            throw invalid('The parameter "tokenKey" is no name of a key');
        if (!this.#byProvider.has(provider) && this.#byProvider.size >= MAX_PROVIDERS)
            throw invalid(`The bridge knows no more than ${MAX_PROVIDERS} providers`);
        this.#byProvider.set(provider, { tokenKey: tokenKey || keyOf(provider), masked: mask(token) });
        return this.status(provider);
    }

    has(provider) {
        return Boolean(this.#byProvider.get(provider)?.masked);
    }

    //! The status of a provider, even of an unknown one.
    status(provider) {
        const { tokenKey, masked } = this.#byProvider.get(provider) ?? { tokenKey: keyOf(provider), masked: '' };
        return { provider, configured: masked !== '', tokenKey, masked };
    }

    all() {
        return [...this.#byProvider.keys()].map((provider) => this.status(provider));
    }
}

module.exports = { Tokens };
