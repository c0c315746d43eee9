// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const net = require('net');

//! Where model servers listen by default, the preferred one first: llama-server, the same as Debian packages it, Ollama.
const DEFAULT_PORTS = [8080, 9931, 11434];

//! What users append to the address because their server's manual shows it.
const API_PATH = /(?:\/v1)?(?:\/chat\/completions)?\/*$/;

//! The addresses for "all interfaces of this machine", and their loopback.
const ANY_ADDRESS = new Map([['0.0.0.0', '127.0.0.1'], ['[::]', '[::1]']]);

const unbracketed = (host) => host.replace(/^\[(.*)\]$/, '$1');

//! Whether an IP address is of this machine.
function isLoopbackAddress(address) {
    if (net.isIPv4(address))
        return address.startsWith('127.');
    const mapped = /^::ffff:(.*)$/i.exec(address);
    return mapped ? isLoopbackAddress(mapped[1]) : address === '::1';
}

//! Whether a host of a URL is this machine. Of names only "localhost" counts; what it resolves to is checked when
//! connecting.
function isLoopbackHost(host) {
    const name = unbracketed(host).toLowerCase();
    return name === 'localhost' || isLoopbackAddress(name);
}

//! Parses the address of a model server. Returns `base` (a URL without a slash at its end), `shown` (for people),
//! `isLoopback`. Throws an Error whose message completes the sentence "ADDRESS ...".
function parseAddress(text) {
    let url;
    try {
        url = new URL(/^[a-z][a-z\d+.-]*:\/\//i.test(text) ? text : `http://${text}`);
    } catch {
        throw new Error('must be the URL of a model server, such as http://127.0.0.1:8080');
    }
    if (url.protocol !== 'http:' && url.protocol !== 'https:')
        throw new Error('must begin with http:// or https://');
    if (url.username || url.password)
        throw new Error('must not contain a name or password; a key goes into LOOMRA_MODEL_KEY');
    if (url.search || url.hash)
        throw new Error('must not contain "?" or "#"');
    // The address at which a server listens, as it logs it, but none to connect to: this machine is meant.
    if (ANY_ADDRESS.has(url.hostname))
        url.hostname = ANY_ADDRESS.get(url.hostname);
    const path = url.pathname.replace(API_PATH, '');
    return { base: url.origin + path, shown: url.host + path, isLoopback: isLoopbackHost(url.hostname) };
}

//! The addresses to try if the user names none.
const defaultAddresses = () => DEFAULT_PORTS.map((port) => parseAddress(`http://127.0.0.1:${port}`));

module.exports = { defaultAddresses, isLoopbackAddress, isLoopbackHost, parseAddress };
