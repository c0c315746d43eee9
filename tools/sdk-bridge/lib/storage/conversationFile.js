// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// One conversation on disk: a head, and a line for each message. All functions throw the system's errors.

const files = require('./files');
const log = require('../log');
const { MAX_LINE, encodeLine, parseLines } = require('./lines');
const { UNNAMED, headRow, nameOf, readLine } = require('./rows');

//! How much of an unknown conversation is read for its name; the second number if it begins with a long prompt.
const STARTS = [64 * 1024, 2 * MAX_LINE];

//! Appends lines; a new file begins with the head of its session, {id, createdAt}.
const append = (path, session, lines) => files.append(path, lines, encodeLine(headRow(session)));

//! The newest messages within `limit` bytes, as {message, bytes}. None if there is no file.
function read(path, id, limit) {
    const { rows, damaged } = parseLines(files.readTail(path, limit), readLine);
    if (damaged)
        log.note(`Damaged lines of the conversation ${id}, which were skipped: ${damaged}`);
    return rows.filter(({ message }) => message);
}

//! Makes the index row of a conversation: its name from the first prompt, its times from the head and the last change.
//! Null if it has no message.
function recoverRow(path, id) {
    for (const limit of STARTS) {
        const { bytes, isWhole, changedAt } = files.readStart(path, limit);
        const { rows } = parseLines(bytes, readLine);
        const prompt = rows.find(({ message }) => message?.role === 'user');
        if (prompt || isWhole || limit === STARTS.at(-1)) {
            if (!rows.some(({ message }) => message))
                return null;
            const head = rows.find((row) => row.head)?.head;
            const name = prompt ? nameOf(prompt.message.content) : UNNAMED;
            return { id, name, createdAt: head?.createdAt ?? changedAt, usedAt: changedAt };
        }
    }
    return null;
}

module.exports = { append, read, recoverRow };
