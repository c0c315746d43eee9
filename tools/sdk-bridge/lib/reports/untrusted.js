// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { cut, oneLine } = require('../text');

const MAX_TEXT = 300;
const MARGIN = 4; // so that a long run of whitespace doesn't hide the text after it

//! Untrusted text as one line without control characters, at most `limit` characters; '' if it isn't a string.
function plain(text, limit = MAX_TEXT) {
    if (typeof text !== 'string')
        return '';
    return cut(oneLine(text.slice(0, limit * MARGIN).replace(/[\u0000-\u001f\u007f-\u009f]/g, ' ')), limit);
}

//! The value of JSON text, or undefined.
function parseJson(text) {
    try {
        return JSON.parse(text);
    } catch {
        return undefined;
    }
}

module.exports = { parseJson, plain };
