// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const log = require('./log');
const frames = require('./frames');
const { checkParams } = require('./params');
const { cut } = require('./text');
const { findMethod } = require('./methods');
const { Turns } = require('./turns');
const { NO_REPLY } = require('./outcomes');

const MAX_UNREAD_BYTES = 64 * 1024 * 1024;
const MAX_NAME = 100;

//! One client: parses its requests, performs them and sends the replies. No input closes the connection or ends the
//! process.
class Connection {
    #closed = new AbortController();
    #warned = '';

    constructor(socket, house) {
        this.socket = socket;
        this.house = house;
        this.turns = new Turns(this, house.settings.beat);
        //! Aborted when the client disconnects.
        this.signal = this.#closed.signal;

        socket.on('message', (data, isBinary) => this.receive(data, isBinary));
        socket.on('error', (error) => log.note(`A client broke the protocol: ${error.message}`));
        socket.on('close', () => {
            house.clients.delete(this);
            this.turns.closeAll();
            this.#closed.abort();
        });
        this.send(frames.ready());
        house.clients.add(this); // after "ready", which must be the first frame
    }

    send(message) {
        this.sendText(JSON.stringify(message));
    }

    //! Sends a frame as it is, unless the client has disconnected or stopped reading.
    sendText(text) {
        if (this.socket.readyState !== this.socket.OPEN)
            return;
        if (this.socket.bufferedAmount > MAX_UNREAD_BYTES) {
            log.note('A client does not read what it asked for: its connection is cut');
            this.socket.terminate();
            return;
        }
        this.socket.send(text);
    }

    //! A warning for the user, unless this client has already had it; else ''.
    warningOnce(warning) {
        if (warning === this.#warned)
            return '';
        this.#warned = warning;
        return warning;
    }

    //! Closes the connection without the closing handshake.
    hangUp() {
        this.socket.terminate();
    }

    async receive(data, isBinary) {
        const { request, fault, id, method } = frames.readRequest(data, isBinary);
        if (request) {
            await this.answer(request);
            return;
        }
        log.note(fault);
        // The frame may contain a secret, and clients can read the journal.
        this.house.journal.add('warn', 'frame.unread', 'A frame was no request');
        if (id)
            this.fail(id, method, new frames.Failure(fault, 'INVALID_REQUEST'));
    }

    async answer({ id, method, params }) {
        const answered = this.house.metrics.beginRequest();
        try {
            const entry = findMethod(method, this.house.settings);
            checkParams(entry.params, params);
            const outcome = await entry.perform({ id, params, connection: this, house: this.house });
            if (outcome === NO_REPLY)
                return;
            answered();
            this.send(frames.success(id, method, outcome.payload, outcome.form));
        } catch (error) {
            answered();
            if (error instanceof frames.Failure) {
                this.count(method, error);
                this.fail(id, method, error);
            } else {
                log.note(error.stack);
                const failure = new frames.Failure('The bridge could not do that', 'INTERNAL');
                this.count(method, failure);
                this.fail(id, method, failure);
            }
        }
    }

    //! Logs a failed request. A cancelled one is no failure.
    count(method, { message, code }) {
        if (code === 'CANCELLED') {
            log.note(`${log.quote(method)} was cancelled`);
            return;
        }
        log.note(`${log.quote(method)} failed: ${log.quote(message)}`);
        this.house.metrics.countError();
        this.house.journal.add('error', 'request.failed', `${cut(method, MAX_NAME)}: ${message || code}`);
    }

    fail(id, method, error) {
        this.send(frames.failure(id, method === undefined ? undefined : cut(method, MAX_NAME), error));
    }
}

module.exports = { Connection };
