// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// The rows of both kinds of files. What is read from a file is untrusted: it is checked like a frame.

const { cut, oneLine } = require('../text');
const { isObject } = require('../frames');

const MAX_CONTENT = 100000;
const MAX_NAME = 200;
const MAX_GIVEN_NAME = 40;
const MAX_TIME = 8.64e15; // of a Date
const UNNAMED = 'New session';

const ID = /^ses_[0-9a-f]{16}$/;
const FILE = /^(ses_[0-9a-f]{16})\.jsonl$/;
const ROLES = new Set(['user', 'assistant']);
const FORMAT = 1;

const isId = (value) => typeof value === 'string' && ID.test(value);

const isTime = (value) => Number.isSafeInteger(value) && value >= 0 && value <= MAX_TIME;

//! The name of a session by its first prompt.
const nameOf = (prompt) => cut(oneLine(prompt), MAX_GIVEN_NAME) || UNNAMED;

//! A name as the user gives it; empty if it is blank.
const tidyName = (name) => cut(oneLine(name), MAX_NAME);

const fileOf = (id) => `${id}.jsonl`;

//! The session that a file belongs to, or null.
const idOfFile = (name) => FILE.exec(name)?.[1] ?? null;

//! A row of the index: {id, name, createdAt, usedAt} or {id, deleted: true}. Null if it is neither.
function readIndexRow(value) {
    if (!isObject(value) || !isId(value.id))
        return null;
    const { id, name, createdAt, usedAt } = value;
    if (value.deleted === true)
        return { id, deleted: true };
    if (typeof name !== 'string' || !isTime(createdAt) || !isTime(usedAt))
        return null;
    return { id, name: tidyName(name) || UNNAMED, createdAt, usedAt };
}

//! Merges the rows of the index, of which the last one of an id counts: `rows` by id, and the ids that are `deleted`.
function mergeIndex(indexRows) {
    const rows = new Map();
    const deleted = new Set();
    for (const row of indexRows) {
        rows.delete(row.id);
        deleted.delete(row.id);
        if (row.deleted)
            deleted.add(row.id);
        else
            rows.set(row.id, row);
    }
    return { rows, deleted };
}

//! The first line of a conversation's file.
const headRow = ({ id, createdAt }) => ({ format: FORMAT, id, createdAt });

//! A message as it is kept: {role, content}, and `sent` if it differs from the content.
function messageOf({ role, content, sent = content }) {
    const message = { role, content: cut(content, MAX_CONTENT) };
    return sent === content ? message : { ...message, sent: cut(sent, MAX_CONTENT) };
}

//! A line of a conversation: {head} with `createdAt`, or {message, bytes}. Null if it is neither.
function readLine(value, bytes) {
    if (!isObject(value))
        return null;
    if (value.format === FORMAT && isTime(value.createdAt))
        return { head: { createdAt: value.createdAt } };
    const { role, content, sent } = value;
    if (!ROLES.has(role) || typeof content !== 'string')
        return null;
    return { message: messageOf({ role, content, sent: typeof sent === 'string' ? sent : content }), bytes };
}

module.exports = {
    MAX_CONTENT, UNNAMED, fileOf, headRow, idOfFile, isId, mergeIndex, messageOf, nameOf, readIndexRow, readLine, tidyName,
};
