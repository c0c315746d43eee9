// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// What the user reads if a model server fails, and what to do about it.

const { Failure, isObject } = require('../frames');
const { cut, oneLine } = require('../text');

const MAX_DETAIL = 300;
const HIDDEN = '•••';

//! The kinds of errors of a connection, by the beginning of the error's code; by default it was closed.
const CONNECTION = [
    [/^(?:ECONNREFUSED|ENOTFOUND|EAI_AGAIN|EHOSTUNREACH|ENETUNREACH|ETIMEDOUT|EADDRNOTAVAIL)$/, 'UNREACHABLE'],
    [/^ENOTLOOPBACK$/, 'NOT_LOCAL'],
    [/^HPE_/, 'NO_STREAM'],
    [/CERT|^UNABLE_TO_/, 'CERTIFICATE'],
    [/^(?:EPROTO$|ERR_SSL_)/, 'NO_TLS'],
];

const CONTROLS = /[\u0000-\u001f\u007f-\u009f]+/g;

const duration = (ms) => (ms < 120000 ? `${Math.round(ms / 1000)} s` : `${Math.round(ms / 60000)} min`);

//! The texts by kind. `at` is the server's address; the rest depends on the kind.
const TEXTS = {
    UNREACHABLE: ({ at }) => `No model server answers at ${at}. Start it, then send your prompt again.`,
    NOT_LOCAL: ({ at }) => `The name in the address ${at} belongs to another machine now, so your prompt was not sent. Use ` +
        '127.0.0.1 instead.',
    CERTIFICATE: ({ at }) => `The certificate of the model server at ${at} is not trusted. Name the file of its authority in ` +
        'NODE_EXTRA_CA_CERTS, or use http://, and restart the bridge.',
    NO_TLS: ({ at }) => `The model server at ${at} doesn't speak HTTPS. Use http:// in LOOMRA_MODEL_URL, and restart the bridge.`,
    CLOSED: ({ at }) => `The model server at ${at} closed the connection before it answered. Is it still running?`,
    TIMEOUT: ({ at, ms }) => `The model server at ${at} has been silent for ${duration(ms)}. ` +
        'It may be overloaded: try again, or use a smaller model.',
    NO_STREAM: ({ at }) => `The reply of the server at ${at} can't be read. Is it really a model server?`,
    ENDLESS: () => 'The model went on for too long without a reply. Try again, or choose another model.',
    EMPTY: () => 'The model gave an empty reply. Try again, or choose another model.',
    KEY: ({ at }) => `The model server at ${at} doesn't accept the key. Set LOOMRA_MODEL_KEY, or LOOMRA_MODEL_KEY_FILE, and ` +
        'restart the bridge.',
    NOT_FOUND: ({ at, detail }) => `The model server at ${at} doesn't have this model or can't chat${detail}`,
    TOO_LONG: ({ detail }) => `The prompt is too long for this model. Shorten it, or attach less${detail}`,
    BUSY: ({ at }) => `The model server at ${at} is busy. Try again in a moment.`,
    LOADING: ({ at }) => `The model server at ${at} is still loading its model. Try again in a moment.`,
    REFUSED: ({ at, detail }) => `The model server at ${at} refused the prompt${detail}`,
    FAILED: ({ at, detail }) => `The model server at ${at} failed${detail}`,
};

//! The sentences that end a reply of which only the beginning arrived, by kind.
const ENDINGS = {
    BROKEN: 'The reply ends here because the model server stopped sending it.',
    CUT: 'The reply ends here because it is too long.',
    LENGTH: 'The reply ends here because the model has reached its limit.',
};

//! Removes the key from a text that a server sent.
const withoutKey = (text, key) => (key ? text.replaceAll(key, HIDDEN) : text);

//! The failure of a kind, of which `facts` may name the server's own words as `words`.
function failure(kind, server, { words = '', ...facts } = {}) {
    const detail = cut(oneLine(withoutKey(words.replace(CONTROLS, ' '), server.key)), MAX_DETAIL);
    return new Failure(TEXTS[kind]({ at: server.shown, detail: detail ? `: ${detail}` : '.', ...facts }), `MODEL_${kind}`);
}

//! The words of a server's error, which is an object, a text, or anything.
function wordsOf(error) {
    const words = isObject(error) ? error.message : error;
    return typeof words === 'string' ? words : '';
}

//! The kind of an error that a server reports, by its status (0 in a stream) and words.
function kindOf(status, error) {
    const words = wordsOf(error);
    if (error?.type === 'exceed_context_size_error' || /context (?:size|length|window)|too many tokens/i.test(words))
        return 'TOO_LONG';
    if (status === 503 && /loading/i.test(words))
        return 'LOADING';
    const kinds = { 401: 'KEY', 403: 'KEY', 404: 'NOT_FOUND', 405: 'NOT_FOUND', 413: 'TOO_LONG', 429: 'BUSY', 503: 'BUSY' };
    return kinds[status] ?? (status >= 400 && status < 500 ? 'REFUSED' : 'FAILED');
}

//! The failure that a server reports with a status and the body of its response.
function fromStatus(server, status, body) {
    let error = body;
    try {
        error = JSON.parse(body).error ?? body;
    } catch {
        // Not JSON: a page of a proxy, or plain text.
        error = /^\s*</.test(body) ? '' : body;
    }
    return reported(server, error, status);
}

//! The failure that a server reports as `error`.
function reported(server, error, status = 0) {
    const number = status || (Number.isInteger(error?.code) ? error.code : 0);
    const words = wordsOf(error) || (number ? `status ${number}` : '');
    return failure(kindOf(number, error), server, { words });
}

//! The failure for an error of the connection.
function fromError(server, { code = '' }) {
    const [, kind = 'CLOSED'] = CONNECTION.find(([codes]) => codes.test(code)) ?? [];
    return failure(kind, server);
}

module.exports = { ENDINGS, failure, fromError, fromStatus, reported };
