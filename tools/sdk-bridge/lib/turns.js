// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const timers = require('timers/promises');

const frames = require('./frames');

const MAX_OPEN = 200;

//! One running prompt, as its scenario sees it: the prompt, its session, and functions to send events and to wait.
class Turn {
    #connection;
    #beat;
    #cancelled = new AbortController();
    #closed = new AbortController();

    constructor(connection, beat,
        { id, prompt, params, session, startsSession, desktop, journal, reports, model, sendToAll }) {
        this.#connection = connection;
        this.#beat = beat;
        this.id = id;
        this.prompt = prompt;
        this.params = params;
        this.session = session;
        this.startsSession = startsSession;
        this.desktop = desktop;
        this.journal = journal;
        this.reports = reports;
        //! The address of the model server, for people; '' without one.
        this.model = model;
        //! Sends a frame to every client, not only to the one of this prompt.
        this.sendToAll = sendToAll;
        this.history = session.messages.slice();
    }

    //! Sends an event to the client of this prompt.
    event(name, fields) {
        this.#connection.send(frames.event(name, fields));
    }

    //! Sends a frame as it is, even a malformed one.
    sendText(text) {
        this.#connection.sendText(text);
    }

    //! Aborted when the turn is cancelled or its client disconnects.
    get signal() {
        return this.#cancelled.signal;
    }

    hangUp() {
        this.#connection.hangUp();
    }

    //! Waits some beats. Rejects with a Failure as soon as the turn is cancelled.
    async pause(beats) {
        await this.#wait(beats, this.#cancelled.signal);
        if (this.#cancelled.signal.aborted)
            throw frames.cancelledFailure();
    }

    //! Waits some beats, even if the turn is cancelled. Rejects if the client disconnects.
    async pauseRegardless(beats) {
        await this.#wait(beats, this.#closed.signal);
        if (this.#closed.signal.aborted)
            throw frames.cancelledFailure();
    }

    //! Resolves when the turn is cancelled, or after some beats.
    async untilCancelled(beats) {
        await this.#wait(beats, this.#cancelled.signal);
    }

    //! Resolves like a promise. Rejects with a Failure as soon as the turn is cancelled.
    orCancelled(promise) {
        const { signal } = this.#cancelled;
        return new Promise((resolve, reject) => {
            const stop = () => reject(frames.cancelledFailure());
            if (signal.aborted)
                stop();
            signal.addEventListener('abort', stop, { once: true });
            promise.then(resolve, reject).finally(() => signal.removeEventListener('abort', stop));
        });
    }

    cancel() {
        this.#cancelled.abort();
    }

    close() {
        this.#cancelled.abort();
        this.#closed.abort();
    }

    async #wait(beats, signal) {
        try {
            await timers.setTimeout(beats * this.#beat, undefined, { signal });
        } catch (error) {
            if (error.name !== 'AbortError')
                throw error;
        }
    }
}

//! The prompts that run on one connection.
class Turns {
    #connection;
    #beat;
    #open = new Set();

    //! `beat` in milliseconds.
    constructor(connection, beat) {
        this.#connection = connection;
        this.#beat = beat;
    }

    //! Runs `play(turn)` as a new turn and returns its result.
    async run(facts, play) {
        if (this.#open.size >= MAX_OPEN)
            throw new frames.Failure('Too many prompts are open on this connection', 'BUSY');
        const turn = new Turn(this.#connection, this.#beat, facts);
        this.#open.add(turn);
        try {
            return await play(turn);
        } finally {
            this.#open.delete(turn);
        }
    }

    //! Cancels the turns of a session, or all if none is given, and returns their number. A turn that started its session
    //! is always included, because its client can't know the session's id yet.
    cancel(sessionId) {
        const meant = [...this.#open].filter(
            (turn) => !sessionId || turn.startsSession || turn.session.id === sessionId);
        meant.forEach((turn) => turn.cancel());
        return meant.length;
    }

    //! Ends all turns, when the client disconnects.
    closeAll() {
        this.#open.forEach((turn) => turn.close());
    }
}

module.exports = { Turns };
