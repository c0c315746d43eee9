// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const MAX_LINE = 300;

// The C0 and C1 control characters without tab and newline, DEL, and the characters that reverse the order of others.
const CONTROLS = /[\u0000-\u0008\u000b-\u001f\u007f-\u009f\u202a-\u202e\u2066-\u2069]/g;
const REPLACEMENT = '\ufffd';

//! A visible character in place of a control character.
function visible(character) {
    const code = character.charCodeAt(0);
    if (code < 0x20)
        return String.fromCharCode(0x2400 + code);
    return code === 0x7f ? '\u2421' : REPLACEMENT;
}

//! Untrusted text for a terminal: no character of it controls the terminal. Lines are kept.
const forTerminal = (text) => text.replace(/\r\n/g, '\n').replace(CONTROLS, visible);

//! Untrusted text as one line of limited length.
function asLine(text, limit = MAX_LINE) {
    const line = forTerminal(text.replace(/\s+/g, ' ').trim());
    const characters = [...line.slice(0, 2 * limit + 2)];
    return characters.length > limit ? `${characters.slice(0, limit).join('')}…` : line;
}

module.exports = { asLine, forTerminal };
