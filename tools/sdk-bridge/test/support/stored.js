// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const fs = require('fs');
const path = require('path');

const log = require('../../lib/log');
const { Journal } = require('../../lib/journal');
const { SessionStore } = require('../../lib/sessions');
const { temporaryFolder } = require('./child');

//! A folder of conversations, whose stores log into `notes` and `journal` instead of standard error.
class Stored {
    notes = [];
    journal = new Journal();

    constructor(t, folder = path.join(temporaryFolder(t), 'state')) {
        this.folder = folder;
        t.mock.method(log, 'note', (text) => this.notes.push(text));
    }

    get index() {
        return path.join(this.folder, 'sessions.jsonl');
    }

    fileOf(id) {
        return path.join(this.folder, 'sessions', `${id}.jsonl`);
    }

    //! A store as of a bridge that starts now.
    open(facts = {}) {
        return new SessionStore({ folder: this.folder, journal: this.journal, ...facts });
    }

    //! A listed session with these prompts, each with the reply "re: PROMPT". Returns its id.
    converse(store, ...prompts) {
        const session = store.draft();
        for (const prompt of prompts) {
            session.add('user', prompt);
            session.add('assistant', `re: ${prompt}`);
        }
        store.keep(session);
        return session.id;
    }

    //! The index, parsed.
    rows() {
        return fs.readFileSync(this.index, 'utf8').split('\n').filter(Boolean).map((line) => JSON.parse(line));
    }

    //! Writes a file into the folder, with parents.
    write(file, content) {
        fs.mkdirSync(path.dirname(file), { recursive: true });
        fs.writeFileSync(file, content);
    }

    warnings() {
        return this.journal.latest(100).map(({ message }) => message);
    }
}

const names = (store) => store.list().map(({ name }) => name);
const contents = (session) => session.messages.map(({ content }) => content);
const mode = (file) => fs.statSync(file).mode & 0o777;

module.exports = { Stored, contents, mode, names };
