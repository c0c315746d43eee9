// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const path = require('path');

const files = require('./files');
const log = require('../log');
const { encodeLine, parseLines } = require('./lines');
const { mergeIndex, readIndexRow } = require('./rows');

const NAME = 'sessions.jsonl';
const LEFTOVER = /^sessions\.jsonl\.\d+\.new$/;

const MAX_BYTES = 64 * 1024 * 1024;
//! The file is replaced when it has more lines than this per session, and this many more in any case.
const LINES_PER_SESSION = 4;
const SPARE_LINES = 1000;

//! The index of conversations, a journal of rows. All functions but `compact` throw the system's errors.
class IndexFile {
    #folder;
    #path;
    #lines = 0;
    #compactAt = Infinity;

    constructor(folder) {
        this.#folder = folder;
        this.#path = path.join(folder, NAME);
    }

    //! Reads the index: `rows` by id, and the ids that are `deleted`. Both are empty if there is no file.
    read() {
        const { rows, damaged } = parseLines(files.readTail(this.#path, MAX_BYTES), readIndexRow);
        if (damaged)
            log.note(`Damaged lines of the index of conversations, which were skipped: ${damaged}`);
        const merged = mergeIndex(rows);
        this.#counted(rows.length + damaged, merged.rows.size);
        return merged;
    }

    append(rows) {
        files.append(this.#path, Buffer.concat(rows.map(encodeLine)));
        this.#lines += rows.length;
    }

    get isTooLong() {
        return this.#lines > this.#compactAt;
    }

    //! Replaces the file by its rows. A deletion is kept as long as its id is in the set `idsOfFiles()`. Logs a failure,
    //! which loses nothing.
    compact(idsOfFiles) {
        try {
            files.replace(this.#path, (bytes) => {
                const { rows, deleted } = mergeIndex(parseLines(bytes, readIndexRow).rows);
                const withFile = idsOfFiles();
                const deletions = [...deleted].filter((id) => withFile.has(id)).map((id) => ({ id, deleted: true }));
                const kept = [...rows.values(), ...deletions];
                this.#counted(kept.length, rows.size);
                return Buffer.concat(kept.map(encodeLine));
            });
        } catch (error) {
            log.note(`The index of conversations could not be shortened: ${error.message}`);
            this.#compactAt = this.#lines + SPARE_LINES;
        }
    }

    //! Removes what a process left that was killed in `compact`.
    removeLeftovers() {
        for (const name of files.namesIn(this.#folder).filter((entry) => LEFTOVER.test(entry)))
            files.remove(path.join(this.#folder, name));
    }

    #counted(lines, sessions) {
        this.#lines = lines;
        this.#compactAt = SPARE_LINES + LINES_PER_SESSION * sessions;
    }
}

module.exports = { IndexFile, SPARE_LINES };
