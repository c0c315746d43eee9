// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

//! The first `limit` code units of a text, with an ellipsis if it was truncated. Never splits a surrogate pair.
function cut(text, limit) {
    if (text.length <= limit)
        return text;
    const last = text.charCodeAt(limit - 1);
    const splitsPair = last >= 0xd800 && last <= 0xdbff;
    return `${text.slice(0, splitsPair ? limit - 1 : limit)}…`;
}

//! Replaces each run of whitespace, including line breaks, by one space.
const oneLine = (text) => text.replace(/\s+/g, ' ').trim();

module.exports = { cut, oneLine };
