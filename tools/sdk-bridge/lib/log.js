// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const MAX_QUOTE = 200;

// A closed pipe must not end the bridge; without a reader there is no output.
process.stdout.on('error', () => {});
process.stderr.on('error', () => {});

//! Prints the line for which callers wait, on standard output.
function announce(text) {
    process.stdout.write(`${text}\n`);
}

//! Prints an error as one line on standard error.
function note(text) {
    process.stderr.write(`${text}\n`);
}

//! Untrusted text for a log line: quoted, truncated, and without control characters.
function quote(text) {
    const short = text.length > MAX_QUOTE ? `${text.slice(0, MAX_QUOTE)}…` : text;
    return JSON.stringify(short).replace(/[\u007f-\u009f\u2028\u2029]/g, '?');
}

module.exports = { announce, note, quote };
