// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// JSON lines, as bytes: one JSON object per line.

//! Longer lines are damaged. The longest message takes about 1,200,000 bytes, with every character escaped.
const MAX_LINE = 2 * 1024 * 1024;
const NEWLINE = 0x0a;

//! A value as one line, with its line break.
const encodeLine = (value) => Buffer.from(`${JSON.stringify(value)}\n`);

//! The lines of a buffer, without line breaks and without empty lines. The last one need not be complete.
function* linesOf(buffer) {
    for (let start = 0; start < buffer.length;) {
        const found = buffer.indexOf(NEWLINE, start);
        const end = found < 0 ? buffer.length : found;
        if (end > start)
            yield buffer.subarray(start, end);
        start = end + 1;
    }
}

function parseLine(line) {
    if (line.length > MAX_LINE)
        return undefined;
    try {
        return JSON.parse(line.toString('utf8'));
    } catch {
        return undefined;
    }
}

//! Parses lines: `rows` are the results of `read(value, bytes)`, where `bytes` is the length of the line. Lines that are
//! not JSON, or for which `read` returns null, are counted in `damaged`.
function parseLines(buffer, read) {
    const rows = [];
    let damaged = 0;
    for (const line of linesOf(buffer)) {
        const row = read(parseLine(line), line.length);
        if (row === null)
            ++damaged;
        else
            rows.push(row);
    }
    return { rows, damaged };
}

module.exports = { MAX_LINE, NEWLINE, encodeLine, parseLines };
