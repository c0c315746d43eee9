// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const log = require('../log');

const EVENT = 'sessions.unsaved';

//! The reasons for which files can't be written or read, and what the user can do, by the system's error code.
const REASONS = {
    ENOSPC: () => 'the disk is full. Free some space',
    EDQUOT: () => 'your disk quota is used up. Free some space',
    EFBIG: () => 'a limit for the size of files is reached. Delete long conversations',
    EROFS: (where) => `${where} is on a read-only file system. Make it writable`,
    EACCES: (where) => `the bridge is not allowed to use ${where}. Check its owner and permissions`,
    EPERM: (where) => `the bridge is not allowed to use ${where}. Check its owner and permissions`,
    ENOTDIR: (where) => `a file is in the place of the folder ${where}. Move it away`,
    EEXIST: (where) => `a file is in the place of the folder ${where}. Move it away`,
    ELOOP: (where) => `${where} is a symbolic link, which the bridge does not follow. Replace it by the real file or folder`,
    EISDIR: (where) => `${where} is not a regular file. Move it away`,
    ENOTFILE: (where) => `${where} is not a regular file. Move it away`,
    EMFILE: () => 'too many files are open. Restart the bridge',
    ENFILE: () => 'too many files are open. Close some programs',
};

//! Why something failed, for the user: ends with what to do, without a full stop.
function reasonOf(error, where) {
    const reason = REASONS[error.code];
    const place = log.quote(where);
    return reason ? reason(place) : `${place} can't be used (${error.code ?? error.name}). Check the disk`;
}

//! What currently can't be saved, by part: a session's id, or a word of the caller's. The same sentence is logged once, and
//! again after everything worked.
class Trouble {
    #byPart = new Map();
    #journal;

    //! `journal` may be null.
    constructor(journal) {
        this.#journal = journal;
    }

    //! A sentence for the user, or an empty text.
    get sentence() {
        return [...this.#byPart.values()][0] ?? '';
    }

    failed(part, sentence) {
        const isKnown = [...this.#byPart.values()].includes(sentence);
        this.#byPart.set(part, sentence);
        if (!isKnown)
            this.warn(sentence);
    }

    worked(part) {
        if (this.#byPart.delete(part) && this.#byPart.size === 0)
            log.note('Conversations are saved again');
    }

    //! Logs something that has no end.
    warn(sentence) {
        log.note(sentence);
        this.#journal?.add('warn', EVENT, sentence);
    }
}

module.exports = { Trouble, reasonOf };
