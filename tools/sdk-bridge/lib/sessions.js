// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const crypto = require('crypto');

const log = require('./log');
const { Archive } = require('./storage/archive');
const { Failure } = require('./frames');
const { Loaded, MemoryConversation, StoredConversation } = require('./storage/conversation');
const { UNNAMED, messageOf, nameOf, tidyName } = require('./storage/rows');
const { Trouble } = require('./storage/trouble');
const { cut } = require('./text');

const MAX_UNSTORED = 500;
const MAX_SHOWN_ID = 200;

const newId = () => `ses_${crypto.randomBytes(8).toString('hex')}`;

//! What the index keeps of a session.
const rowOf = ({ id, name, createdAt, usedAt }) => ({ id, name, createdAt, usedAt });

//! A conversation. Its name is that of its first prompt by default. There is one object per session and process, whether
//! or not its messages are loaded.
class Session {
    #conversation;
    #changed;

    //! `row` is {id, name, createdAt, usedAt}. `changed(session, isNamed)` is called after each new message.
    constructor(row, { conversation, isStored, changed }) {
        Object.assign(this, row);
        this.isStored = isStored;
        this.#conversation = conversation;
        this.#changed = changed;
    }

    //! The newest messages, {role, content, sent}, oldest first. `sent` is what the model sees of it, if that is more than
    //! the user does, such as attached files.
    get messages() {
        return this.#conversation.messages;
    }

    //! Adds a message of the role "user" or "assistant". It is on disk when this returns, unless the store has trouble.
    add(role, content, sent = content) {
        this.#conversation.add(messageOf({ role, content, sent }));
        const isNamed = role === 'user' && this.name === UNNAMED;
        if (isNamed)
            this.name = nameOf(content);
        this.#changed(this, isNamed);
    }
}

//! All sessions, shared by all clients. They are kept in a folder, without a limit, or in memory only. Ids are random, so
//! that an id from an earlier run never matches another conversation.
class SessionStore {
    #byId = new Map(); // least recently used first
    #conversations = new WeakMap(); // by session
    #archive = null;
    #loaded = new Loaded();
    #trouble;
    #now;
    #lastUse = 0;

    //! Opens the folder. Without one, sessions are kept in memory; null, which means that none was found, is logged.
    //! `journal` may be null.
    constructor({ folder, journal = null, now = Date.now } = {}) {
        this.#trouble = new Trouble(journal);
        this.#now = now;
        if (folder === null)
            log.note('Conversations are kept in memory only, because neither XDG_STATE_HOME nor HOME is an absolute path');
        if (folder) {
            this.#archive = new Archive({ folder, trouble: this.#trouble, now, found: (rows) => this.#addFound(rows) });
            this.#archive.open();
        }
    }

    //! Why new messages are not saved, as a sentence for the user; an empty text while they are.
    get trouble() {
        return this.#trouble.sentence;
    }

    //! A new session, which is not listed until `keep`. Its messages are on disk nevertheless: if the bridge is killed
    //! before, the session is listed after the next start.
    draft() {
        return this.#newSession({ createdAt: this.#now(), isStored: this.#archive !== null });
    }

    //! Removes a draft that will not be kept, also from the disk. Does nothing with a listed session.
    discard(session) {
        if (!this.#byId.has(session.id) && session.messages.length)
            this.#remove(session);
    }

    //! Adds a session to the list or moves it to the top.
    keep(session) {
        session.usedAt = this.#lastUse = Math.max(this.#now(), this.#lastUse + 1);
        this.#byId.delete(session.id);
        this.#byId.set(session.id, session);
        this.#write(session);
        this.#limitUnstored();
    }

    //! Lists sessions that were made up, each {createdAt, messages}. They are in memory only, until the user continues one:
    //! what the user types must not be lost, and without the messages before it would make no sense.
    addSamples(samples) {
        for (const { createdAt, messages } of samples) {
            const session = this.#newSession({ createdAt, isStored: false });
            const conversation = this.#conversations.get(session);
            messages.forEach(({ role, content }) => conversation.prepare({ role, content }));
            session.name = nameOf(messages[0].content);
            this.#byId.set(session.id, session);
        }
        this.#byId = new Map([...this.#byId].sort(([, a], [, b]) => a.usedAt - b.usedAt));
        this.#limitUnstored();
    }

    //! The session, or undefined.
    find(id) {
        return this.#byId.get(id);
    }

    //! The session of an id. Throws a Failure if there is none.
    get(id) {
        const session = this.find(id);
        if (!session)
            throw new Failure(`There is no session with the id ${JSON.stringify(cut(id, MAX_SHOWN_ID))}`,
                'SESSION_NOT_FOUND');
        return session;
    }

    delete(id) {
        this.#remove(this.get(id));
    }

    rename(id, newName) {
        const session = this.get(id);
        const name = tidyName(newName);
        if (!name)
            throw new Failure('A session needs a name', 'INVALID_PARAMS');
        session.name = name;
        this.#write(session);
        return session;
    }

    //! Rows for the client, most recently used first; `createdAt` in milliseconds since 1970.
    list() {
        return [...this.#byId.values()].reverse()
            .map(({ id, name, createdAt }) => ({ id, name, title: name, createdAt }));
    }

    //! Tries a last time to write what could not be written.
    close() {
        this.#archive?.save();
    }

    #newSession({ createdAt, isStored }) {
        return this.#sessionOf({ id: newId(), name: UNNAMED, createdAt, usedAt: createdAt }, { isStored, isNew: true });
    }

    #sessionOf(row, { isStored, isNew }) {
        const conversation = this.#archive
            ? new StoredConversation({ file: this.#archive.fileOf(row), loaded: this.#loaded, now: this.#now, isNew })
            : new MemoryConversation();
        const changed = (session, isNamed) => this.#changed(session, isNamed);
        const session = new Session(row, { conversation, isStored, changed });
        this.#conversations.set(session, conversation);
        return session;
    }

    #addFound(rows) {
        const unknown = rows.filter(({ id }) => !this.#byId.has(id))
            .map((row) => [row.id, this.#sessionOf(row, { isStored: true, isNew: false })]);
        this.#byId = new Map([...unknown, ...this.#byId]);
    }

    #changed(session, isNamed) {
        const becomesStored = this.#archive !== null && !session.isStored;
        session.isStored ||= becomesStored;
        if ((isNamed || becomesStored) && this.#byId.has(session.id))
            this.#write(session);
    }

    #write(session) {
        if (session.isStored)
            this.#archive.keep(rowOf(session));
    }

    #remove(session) {
        const conversation = this.#conversations.get(session);
        this.#byId.delete(session.id);
        conversation.drop();
        if (session.isStored)
            this.#archive.delete(session.id, conversation);
    }

    //! Removes the least recently used sessions that are in memory only, if there are too many.
    #limitUnstored() {
        const unstored = [...this.#byId.values()].filter(({ isStored }) => !isStored);
        unstored.slice(0, Math.max(0, unstored.length - MAX_UNSTORED)).forEach((session) => this.#remove(session));
    }
}

module.exports = { SessionStore };
