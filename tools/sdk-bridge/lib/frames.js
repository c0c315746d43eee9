// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

//! An error that is sent to the client as the reply to its request.
//! `form` is one of the reply forms below.
class Failure extends Error {
    constructor(message, code, form = 'response') {
        super(message);
        this.code = code;
        this.form = form;
    }
}

const cancelledFailure = () => new Failure('The request was cancelled', 'CANCELLED');

//! The forms of a reply. Clients accept all of them; the bridge uses "response", the others are for scenarios.
const FORMS = {
    response: {
        success: (id, method, payload) => ({ type: 'response', id, method, payload }),
        failure: (id, method, error) => ({ type: 'response', id, method, payload: null, error }),
    },
    older: {
        success: (id, method, result) => ({ id, result }),
        failure: (id, method, error) => ({ id, error: error.message }),
    },
    notice: {
        failure: (id, method, error) => ({ type: 'error', id, error }),
    },
};

const ready = () => ({ type: 'ready', sdkInitialized: true });

const event = (name, fields) => ({ type: 'event', payload: { event: name, ...fields } });

const success = (id, method, payload, form = 'response') => FORMS[form].success(id, method, payload);

const failure = (id, method, { message, code, form = 'response' }) =>
    FORMS[form].failure(id, method, { message, code });

const isObject = (value) => typeof value === 'object' && value !== null && !Array.isArray(value);

//! Parses a frame. Returns `request` ({id, method, params}) or `fault` (a text), the latter with `id` and `method` if
//! they could be parsed: without an id there can be no reply.
function readRequest(data, isBinary) {
    if (isBinary)
        return { fault: 'Binary frames are not read' };

    let message;
    try {
        message = JSON.parse(data.toString('utf8'));
    } catch {
        // The parser's message quotes the frame, which may contain a secret.
        return { fault: 'A frame is not JSON' };
    }
    if (!isObject(message))
        return { fault: 'A frame holds no object' };

    const { id, method, params } = message;
    if (method === undefined && typeof message.type === 'string')
        return { fault: 'Replies and notices from clients are not answered' };
    if (!Number.isSafeInteger(id) || id < 1)
        return { fault: 'A request has no id that could be answered' };
    if (typeof method !== 'string' || method === '')
        return { fault: 'The request names no method', id };
    if (!isObject(params))
        return { fault: 'The params of a request must be an object', id, method };
    return { request: { id, method, params } };
}

module.exports = { Failure, cancelledFailure, event, failure, isObject, readRequest, ready, success };
