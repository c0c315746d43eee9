// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const crypto = require('crypto');

const { Failure } = require('./frames');
const { cut, oneLine } = require('./text');

const MAX_SESSIONS = 500;
const MAX_MESSAGES = 1000;
const MAX_CONTENT = 100000;
const MAX_NAME = 200;
const MAX_GIVEN_NAME = 40;
const UNNAMED = 'New session';

//! A conversation. Its name is that of its first prompt by default.
class Session {
    id = `ses_${crypto.randomBytes(8).toString('hex')}`;
    name = UNNAMED;
    createdAt = Date.now();
    messages = [];

    add(role, content) {
        if (role === 'user' && this.name === UNNAMED)
            this.name = cut(oneLine(content), MAX_GIVEN_NAME) || UNNAMED;
        this.messages.push({ role, content: cut(content, MAX_CONTENT) });
        if (this.messages.length > MAX_MESSAGES)
            this.messages.shift();
    }
}

//! All sessions, in memory, shared by all clients. Ids are random, so that an id from an earlier run never matches another
//! conversation.
class SessionStore {
    #byId = new Map(); // least recently used first

    //! A new session, which is not listed until `keep`.
    draft() {
        return new Session();
    }

    //! Adds a session to the list or moves it to the top. Removes the least recently used one if there are too many.
    keep(session) {
        this.#byId.delete(session.id);
        this.#byId.set(session.id, session);
        if (this.#byId.size > MAX_SESSIONS)
            this.#byId.delete(this.#byId.keys().next().value);
    }

    //! The session, or undefined.
    find(id) {
        return this.#byId.get(id);
    }

    //! The session of an id. Throws a Failure if there is none.
    get(id) {
        const session = this.find(id);
        if (!session)
            throw new Failure(`There is no session with the id ${JSON.stringify(cut(id, MAX_NAME))}`, 'SESSION_NOT_FOUND');
        return session;
    }

    delete(id) {
        this.get(id);
        this.#byId.delete(id);
    }

    rename(id, newName) {
        const session = this.get(id);
        const name = cut(oneLine(newName), MAX_NAME);
        if (!name)
            throw new Failure('A session needs a name', 'INVALID_PARAMS');
        session.name = name;
        return session;
    }

    //! Rows for the client, most recently used first; `createdAt` in milliseconds since 1970.
    list() {
        return [...this.#byId.values()].reverse()
            .map(({ id, name, createdAt }) => ({ id, name, title: name, createdAt }));
    }
}

module.exports = { SessionStore };
