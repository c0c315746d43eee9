// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { encodeLine } = require('./lines');

//! The limit for a conversation in memory, in bytes of its lines. A frame with all its messages stays below the 64 MiB
//! that clients accept: invalid UTF-8, which at most triples its size, is the only text that gets longer on its way.
const MAX_BYTES = 16 * 1024 * 1024;
const MAX_LOADED = 50;
const MAX_LOADED_BYTES = 64 * 1024 * 1024;

//! The newest entries up to MAX_BYTES, and always the last one.
class Newest {
    entries = [];
    bytes = 0;
    #sizes = [];

    add(entry, bytes) {
        this.entries.push(entry);
        this.#sizes.push(bytes);
        this.bytes += bytes;
        let tooMany = 0;
        for (; this.bytes > MAX_BYTES && tooMany < this.entries.length - 1; ++tooMany)
            this.bytes -= this.#sizes[tooMany];
        if (tooMany) {
            this.entries.splice(0, tooMany);
            this.#sizes.splice(0, tooMany);
        }
    }
}

//! The conversations whose messages are in memory besides being on disk. Unloads the least recently used ones.
class Loaded {
    #conversations = new Set(); // least recently used first

    touch(conversation) {
        this.#conversations.delete(conversation);
        this.#conversations.add(conversation);
        let bytes = 0;
        this.#conversations.forEach((loaded) => { bytes += loaded.bytes; });
        for (const oldest of this.#conversations) {
            if (oldest === conversation || (bytes <= MAX_LOADED_BYTES && this.#conversations.size <= MAX_LOADED))
                break;
            bytes -= oldest.bytes;
            this.forget(oldest);
            oldest.unload();
        }
    }

    forget(conversation) {
        this.#conversations.delete(conversation);
    }
}

//! The messages of one session, in memory only.
class MemoryConversation {
    #newest = new Newest();

    get messages() {
        return this.#newest.entries;
    }

    add(message) {
        this.#newest.add(message, encodeLine(message).length);
    }

    //! The same as `add`, because nothing is written.
    prepare(message) {
        this.add(message);
    }

    drop() {}
}

//! The messages of one session in a file. They are loaded when they are needed, and written at once.
class StoredConversation {
    #file;
    #loaded;
    #now;
    #newest = null; // what is loaded
    #unsaved = new Newest(); // {message, line}
    #isDropped = false;

    //! `file` writes and reads lines, `loaded` is shared by all conversations. A new conversation has no file yet.
    constructor({ file, loaded, now, isNew }) {
        this.#file = file;
        this.#loaded = loaded;
        this.#now = now;
        if (isNew)
            this.#newest = new Newest();
    }

    //! The newest messages, oldest first.
    get messages() {
        if (!this.#newest && !this.#load())
            return this.#unsaved.entries.map(({ message }) => message);
        this.#touch();
        return this.#newest.entries;
    }

    //! The size of what is loaded.
    get bytes() {
        return this.#newest?.bytes ?? 0;
    }

    //! Adds a message, on disk first. If that fails, it stays in memory and is written with the next one.
    add(message) {
        this.prepare(message);
        this.save();
    }

    //! Adds a message that is only written together with the next one.
    prepare(message) {
        const line = encodeLine({ ...message, at: this.#now() });
        if (!this.#isDropped)
            this.#unsaved.add({ message, line }, line.length);
        if (this.#newest) {
            this.#newest.add(message, line.length);
            this.#touch();
        }
    }

    //! Writes what is not on disk yet. Returns whether everything is.
    save() {
        if (this.#unsaved.entries.length === 0)
            return true;
        if (!this.#file.append(Buffer.concat(this.#unsaved.entries.map(({ line }) => line)), this))
            return false;
        this.#unsaved = new Newest();
        return true;
    }

    unload() {
        this.#newest = null;
    }

    //! Forgets the file. What a running prompt still adds stays in memory.
    drop() {
        this.#isDropped = true;
        this.#unsaved = new Newest();
        this.#newest ??= new Newest();
        this.#loaded.forget(this);
    }

    #touch() {
        if (!this.#isDropped)
            this.#loaded.touch(this);
    }

    #load() {
        const lines = this.#file.read(MAX_BYTES);
        if (!lines)
            return false;
        this.#newest = new Newest();
        for (const { message, bytes } of lines)
            this.#newest.add(message, bytes);
        for (const { message, line } of this.#unsaved.entries)
            this.#newest.add(message, line.length);
        return true;
    }
}

module.exports = { Loaded, MAX_BYTES, MemoryConversation, Newest, StoredConversation };
