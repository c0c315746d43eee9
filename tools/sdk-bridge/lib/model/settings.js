// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const fs = require('fs');

const { parseAddress } = require('./address');

const NONE = 'none'; // instead of a URL: never look for a model server
const OTHERS_MAY = 0o077; // the mode bits that a file with a key must not have
const MAX_KEY_BYTES = 4096;

//! Reads a file that only its owner may read. Throws an Error with a message for the user.
function readSecret(path) {
    let file;
    try {
        // Opening a named pipe would wait for its other end.
        file = fs.openSync(path, fs.constants.O_RDONLY | fs.constants.O_NONBLOCK);
        const stat = fs.fstatSync(file);
        const { mode, size } = stat;
        if (!stat.isFile())
            throw new Error(`${path} is not a regular file`);
        if (mode & OTHERS_MAY)
            throw new Error(`others may read it: chmod 600 ${path}`);
        if (size > MAX_KEY_BYTES)
            throw new Error(`it is longer than ${MAX_KEY_BYTES} bytes`);
        return fs.readFileSync(file, 'utf8');
    } catch (error) {
        throw new Error(`LOOMRA_MODEL_KEY_FILE cannot be used: ${error.message}`);
    } finally {
        if (file !== undefined)
            fs.closeSync(file);
    }
}

//! The key, or ''. The one in the environment wins.
function readKey({ LOOMRA_MODEL_KEY: key = '', LOOMRA_MODEL_KEY_FILE: path = '' }) {
    const found = key.trim() || (path && readSecret(path).trim());
    // Anything else can't be part of a header; the message must not show the key.
    if (/[^\x21-\x7e]/.test(found))
        throw new Error('The key of the model server may contain only visible ASCII characters');
    return found;
}

function readAddress(text, allowRemote) {
    let address;
    try {
        address = parseAddress(text);
    } catch (error) {
        throw new Error(`LOOMRA_MODEL_URL ${error.message}`);
    }
    if (!address.isLoopback && !allowRemote) {
        throw new Error(`LOOMRA_MODEL_URL names another machine, ${address.shown}. Prompts leave this machine only with ` +
            'LOOMRA_MODEL_ALLOW_REMOTE=1');
    }
    return address;
}

//! Parses the variables of the model server: `address` (see parseAddress(); null if none is named), `search` (whether to
//! look at the default ports), `allowRemote`, and `key`. Throws an Error with a message for the user.
function readModelSettings(env) {
    const text = (env.LOOMRA_MODEL_URL ?? '').trim();
    const allowRemote = env.LOOMRA_MODEL_ALLOW_REMOTE === '1';
    if (text === '' || text.toLowerCase() === NONE)
        // Whatever listens at a default port isn't trusted with the key.
        return { address: null, search: text === '', allowRemote: false, key: '' };
    return { address: readAddress(text, allowRemote), search: false, allowRemote, key: readKey(env) };
}

module.exports = { readModelSettings };
