// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { oneLine } = require('./text');

//! A request to rephrase a transcript is a chat with the agent "chat" and this text around the transcript.
const REQUEST = /^You are a text-only assistant\. Do NOT execute any actions or tools\. Rephrase [^\n]*\n\n"([^]*)"$/;

const FILLERS = /(?<![\p{L}\p{N}])(?:u+m+|u+h+|e+rm*|hm+|you know|i mean)(?![\p{L}\p{N}])[,.…]*/giu;
const REPEATED_WORD = /(?<![\p{L}\p{N}'’])([\p{L}\p{N}'’]+)(?: \1)+(?![\p{L}\p{N}'’])/giu;
const ENDS_SENTENCE = /[.!?…:;]["'”’)\]]*$/u;

//! The transcript of a rephrase request, or null for any other chat.
function transcriptOf({ message, agent }) {
    if (agent !== 'chat')
        return null;
    const match = REQUEST.exec(message);
    return match ? match[1] : null;
}

//! The transcript as a clean sentence: without filler words and stutters, capitalised and with a full stop.
function cleanUp(transcript) {
    const words = oneLine(transcript.replace(FILLERS, ' '))
        .replace(REPEATED_WORD, '$1')
        .replace(/ +([,.!?;:])/g, '$1')
        .replace(/^[,.;: ]+/, '');
    if (!words)
        return oneLine(transcript);
    const [first] = words; // a whole code point, even outside the BMP
    const sentence = first.toLocaleUpperCase('en') + words.slice(first.length);
    return ENDS_SENTENCE.test(sentence) ? sentence : `${sentence}.`;
}

module.exports = { cleanUp, transcriptOf };
