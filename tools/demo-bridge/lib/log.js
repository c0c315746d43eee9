// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const MAX_QUOTE = 200;

// A parent that has closed its end of a pipe must not bring the bridge down; with no reader left there is nobody to tell.
process.stdout.on('error', () => {});
process.stderr.on('error', () => {});

//! One line on standard output: what a caller waits for.
function announce(text) {
    process.stdout.write(`${text}\n`);
}

//! One line on standard error: what went wrong.
function note(text) {
    process.stderr.write(`${text}\n`);
}

//! Words from outside, made fit for a log line: quoted, without control characters, of bounded length.
function quote(text) {
    const short = text.length > MAX_QUOTE ? `${text.slice(0, MAX_QUOTE)}…` : text;
    return JSON.stringify(short).replace(/[\u007f-\u009f\u2028\u2029]/g, '?');
}

module.exports = { announce, note, quote };
