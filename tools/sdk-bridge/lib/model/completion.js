// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { Failure, cancelledFailure } = require('../frames');
const { follow } = require('../signals');
const { failure, fromError, fromStatus, reported } = require('./failures');
const { readText, send } = require('./http');
const { CompletionStream } = require('./stream');

const PATH = '/v1/chat/completions';
const MAX_ERROR_BYTES = 64 * 1024;
const MAX_WHOLE_BYTES = 4 * 1024 * 1024;
//! The first word may take this many times longer than the others, because the server reads the prompt before.
const FIRST_WORD_FACTOR = 5;

//! Aborts a request with its turn, or after a time without a sign of life.
class Watch {
    #controller;
    #timer;
    isLate = false;

    constructor(signal) {
        this.#controller = follow(signal);
        this.signal = this.#controller.signal;
    }

    //! Allows this many milliseconds from now on.
    allow(ms) {
        this.ms = ms;
        clearTimeout(this.#timer);
        this.#timer = setTimeout(() => {
            this.isLate = true;
            this.#controller.abort();
        }, ms);
    }

    end() {
        clearTimeout(this.#timer);
        this.#controller.release();
    }
}

//! Reads the body of a response until nothing more is needed.
async function readBody(response, stream, watch, { timeoutMs, progress }) {
    if (/^application\/json\b/i.test(response.headers['content-type'] ?? '')) {
        stream.readWhole(await readText(response, MAX_WHOLE_BYTES));
        return;
    }
    for await (const bytes of response) {
        stream.feed(bytes);
        watch.allow(stream.hasWords ? timeoutMs : FIRST_WORD_FACTOR * timeoutMs);
        progress(stream);
        if (stream.isDone)
            return; // which closes the connection
    }
    stream.end();
}

//! Why a reply is not complete, one of ENDINGS; '' if it is.
function endingOf(stream) {
    if (stream.isCut)
        return 'CUT';
    if (stream.error !== undefined || !stream.isComplete)
        return 'BROKEN';
    return stream.finishReason === 'length' ? 'LENGTH' : '';
}

//! The failure of a reply without words.
function failureOf(server, stream, watch, error) {
    if (watch.isLate)
        return failure('TIMEOUT', server, { ms: watch.ms });
    if (error)
        return fromError(server, error);
    if (stream.error !== undefined)
        return reported(server, stream.error);
    if (stream.isCut)
        return failure('ENDLESS', server);
    if (stream.isComplete && stream.hasBegun)
        return failure('EMPTY', server);
    return failure(stream.hasBegun ? 'CLOSED' : 'NO_STREAM', server);
}

//! Sends a request for a completion and resolves to {text, usage, ending}: `usage` is undefined if the server doesn't tell
//! it, `ending` one of ENDINGS if only the beginning of the reply arrived, else ''. `progress(stream)` is called with each
//! part that arrives. Rejects with a Failure, and closes the connection at once when `signal` is aborted.
async function complete(server, request, { signal, timeoutMs, progress = () => {} }) {
    const body = {
        ...request,
        stream: true,
        stream_options: { include_usage: true },
        // Other servers may refuse what they don't know.
        ...(server.reportsProgress && { return_progress: true }),
    };
    const stream = new CompletionStream();
    const watch = new Watch(signal);
    watch.allow(FIRST_WORD_FACTOR * timeoutMs);
    let broken;
    try {
        const response = await send(server, PATH, { body, signal: watch.signal });
        if (response.statusCode !== 200)
            throw fromStatus(server, response.statusCode, await readText(response, MAX_ERROR_BYTES));
        await readBody(response, stream, watch, { timeoutMs, progress });
    } catch (error) {
        if (error instanceof Failure)
            throw error;
        broken = error;
    } finally {
        watch.end();
    }
    if (signal.aborted)
        throw cancelledFailure();
    if (!stream.hasText)
        throw failureOf(server, stream, watch, broken);
    return { text: stream.text, usage: stream.usage, ending: broken && !stream.isComplete ? 'BROKEN' : endingOf(stream) };
}

module.exports = { FIRST_WORD_FACTOR, complete };
