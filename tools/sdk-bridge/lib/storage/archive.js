// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Conversations on disk:
//
//   sessions.jsonl       the index, a journal of rows, of which the last one of a session counts
//   sessions/ID.jsonl    a conversation: a head, and a line for each message
//
// Lines are only ever appended, by one call if the disk isn't full. So a process that is killed at any moment leaves at
// most one torn line at the end of a file, which costs that line only. The index can be lost: its rows are made again from
// the conversations at the next start. Nothing is flushed to the hardware: a power failure may cost the last seconds.
//
// Several bridges may use the same folder. Each of them sees at its start what the others have written, and all messages
// are kept. Of two names, or of a name and a deletion, the later one counts. Exception: an index row that is written in the
// moment in which another bridge replaces the index is lost, but not the conversation.

const path = require('path');

const conversationFile = require('./conversationFile');
const files = require('./files');
const log = require('../log');
const { IndexFile } = require('./indexFile');
const { fileOf, idOfFile } = require('./rows');
const { reasonOf } = require('./trouble');

const CONVERSATIONS = 'sessions';

//! The parts of the archive besides the single conversations, for Trouble.
const FOLDER_PART = 'folder';
const INDEX_PART = 'index';

//! These reasons mostly concern the whole folder. Naming it, instead of each file, logs them once.
const FOLDER_CODES = new Set(['EACCES', 'EPERM', 'EROFS']);

//! All conversations on disk. No function throws the system's errors: they become `trouble`.
class Archive {
    #folder;
    #conversations;
    #index;
    #trouble;
    #now;
    #found;
    #isOpen = false;
    #isSaving = false;
    #unsavedRows = [];
    #unsaved = new Set(); // conversations
    #unreadable = new Set(); // ids

    //! `found(rows)` receives the stored sessions, least recently used first, when the folder is opened.
    constructor({ folder, trouble, now, found }) {
        this.#folder = folder;
        this.#conversations = path.join(folder, CONVERSATIONS);
        this.#index = new IndexFile(folder);
        this.#trouble = trouble;
        this.#now = now;
        this.#found = found;
    }

    //! Opens the folder and returns whether that succeeded. If not, each write tries again.
    open() {
        let rows;
        try {
            this.#openFolders();
            this.#isOpen = true;
            rows = this.#readAll();
        } catch (error) {
            this.#isOpen = false;
            this.#trouble.failed(FOLDER_PART, `Conversations are neither loaded nor saved: ${this.#reasonOf(error)}.`);
            return false;
        }
        this.#trouble.worked(FOLDER_PART);
        this.#found(rows);
        return true;
    }

    //! Writes the row of a session.
    keep(row) {
        this.#writeRows([row]);
    }

    //! Removes a session. The index is written first: a conversation without a row would be found again at the next start.
    delete(id, conversation) {
        this.#unsaved.delete(conversation);
        this.#writeRows([{ id, deleted: true }]);
        if (this.#isOpen)
            this.#removeFile(id);
        this.#trouble.worked(id);
    }

    //! The file of a session, {id, createdAt}. `append(lines, conversation)` returns whether they were written;
    //! `read(limit)` returns the newest messages as {message, bytes}, or null if it can't be read.
    fileOf(session) {
        return {
            append: (lines, conversation) => this.#append(session, lines, conversation),
            read: (limit) => this.#read(session.id, limit),
        };
    }

    //! Tries to write everything that could not be written so far.
    save() {
        if (this.#isSaving)
            return;
        this.#isSaving = true;
        try {
            for (const conversation of [...this.#unsaved])
                conversation.save();
            if (this.#unsavedRows.length)
                this.#writeRows([]);
        } finally {
            this.#isSaving = false;
        }
    }

    #openFolders() {
        // The user may have moved the state to another disk, but the bridge makes the inner folder itself.
        files.openFolder(this.#folder, { mayBeLink: true });
        files.openFolder(this.#conversations, { mayBeLink: false });
    }

    #readAll() {
        const { rows, deleted } = this.#readIndex();
        this.#index.removeLeftovers();
        const recovered = [];
        for (const id of this.#idsOfFiles()) {
            if (deleted.has(id))
                this.#removeFile(id);
            else if (rows.has(id))
                this.#restrict(id);
            else
                recovered.push(...this.#recover(id));
        }
        if (recovered.length) {
            log.note(`Conversations that were missing in the index and were found again: ${recovered.length}`);
            this.#writeRows(recovered);
        }
        // A time in the future would keep its session at the top.
        const now = this.#now();
        return [...rows.values(), ...recovered]
            .map((row) => ({ ...row, usedAt: Math.min(row.usedAt, now) }))
            .sort((a, b) => a.usedAt - b.usedAt);
    }

    #readIndex() {
        try {
            return this.#index.read();
        } catch (error) {
            this.#fail(INDEX_PART, error);
            return { rows: new Map(), deleted: new Set() };
        }
    }

    #idsOfFiles() {
        return files.namesIn(this.#conversations).map(idOfFile).filter((id) => id !== null);
    }

    #recover(id) {
        try {
            const row = conversationFile.recoverRow(this.#pathOf(id), id);
            return row ? [row] : [];
        } catch (error) {
            this.#noteUnreadable(id, error);
            return [];
        }
    }

    #restrict(id) {
        try {
            files.restrictFile(this.#pathOf(id));
        } catch (error) {
            // Another bridge may have removed it.
            if (error.code !== 'ENOENT')
                this.#noteUnreadable(id, error);
        }
    }

    #writeRows(rows) {
        // Rows that could not be written go first, because the last one of a session counts.
        const all = [...this.#unsavedRows, ...rows];
        this.#unsavedRows = [];
        if (!this.#attempt(INDEX_PART, () => this.#index.append(all))) {
            this.#unsavedRows = lastRows(all);
            return;
        }
        if (this.#index.isTooLong)
            this.#index.compact(() => new Set(this.#idsOfFiles()));
        this.save();
    }

    #append(session, lines, conversation) {
        if (!this.#attempt(session.id, () => conversationFile.append(this.#pathOf(session.id), session, lines))) {
            this.#unsaved.add(conversation);
            return false;
        }
        this.#unsaved.delete(conversation);
        this.save();
        return true;
    }

    //! Calls `write()`, and again if the folder has been removed. Returns whether it succeeded.
    #attempt(part, write) {
        if (!this.#isOpen && !this.open())
            return false;
        try {
            try {
                write();
            } catch (error) {
                if (error.code !== 'ENOENT')
                    throw error;
                this.#openFolders();
                write();
            }
        } catch (error) {
            this.#fail(part, error);
            return false;
        }
        this.#trouble.worked(part);
        return true;
    }

    #read(id, limit) {
        if (!this.#isOpen)
            return [];
        try {
            const messages = conversationFile.read(this.#pathOf(id), id, limit);
            this.#unreadable.delete(id);
            return messages;
        } catch (error) {
            this.#noteUnreadable(id, error);
            return null;
        }
    }

    #removeFile(id) {
        try {
            files.remove(this.#pathOf(id));
        } catch (error) {
            this.#trouble.warn(`A deleted conversation is still on disk: ${this.#reasonOf(error)}. ` +
                'The bridge tries again at its next start.');
        }
    }

    #fail(part, error) {
        this.#trouble.failed(part,
            `New messages are not saved: ${this.#reasonOf(error)}. Until then they are lost when the bridge ends.`);
    }

    #noteUnreadable(id, error) {
        if (!this.#unreadable.has(id))
            this.#trouble.warn(`A conversation can't be read: ${this.#reasonOf(error)}.`);
        this.#unreadable.add(id);
    }

    #reasonOf(error) {
        return reasonOf(error, FOLDER_CODES.has(error.code) ? this.#folder : error.path ?? this.#folder);
    }

    #pathOf(id) {
        return path.join(this.#conversations, fileOf(id));
    }
}

//! The last row of each session.
function lastRows(rows) {
    return [...new Map(rows.map((row) => [row.id, row])).values()];
}

module.exports = { Archive };
