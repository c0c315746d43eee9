// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');
const fs = require('fs');
const path = require('path');

const { startBridge } = require('./support/child');
const { test } = require('./support/timed');

const README = fs.readFileSync(path.join(__dirname, '..', 'README.md'), 'utf8');
const LINES = [...README.matchAll(/^(→|←) (\{.*\})$/gm)].map(([, arrow, text]) => ({ isRequest: arrow === '→', text }));
const ID = /\b(?:act|auto|rem|ses)_[0-9a-f]+/;

//! Maps an id of the document to the actual one.
function learnIds(told, real, ids) {
    const [made] = ID.exec(told) ?? [];
    const [came] = ID.exec(real) ?? [];
    if (made && came && !ids.has(made))
        ids.set(made, came);
}

const withIds = (text, ids) => [...ids].reduce((all, [made, came]) => all.replaceAll(made, came), text);

//! Times differ in each run, so only their presence is compared.
const timeless = (text) => JSON.parse(text, (key, value) => (/Ms$/.test(key) && Number.isFinite(value) ? 0 : value));

test('the examples of the README are what really happens', async (t) => {
    const bridge = await startBridge(t, { LOOMRA_WORKSPACE_INTEL: '1', LOOMRA_AI_RUNTIME: '1' });
    const client = await bridge.connect();
    const ids = new Map();
    let seen = client.frames.length;
    assert.ok(LINES.length > 30);
    for (const { isRequest, text } of LINES) {
        if (isRequest) {
            const request = withIds(text, ids);
            client.raw(request);
            await client.reply(JSON.parse(request).id);
        } else {
            learnIds(text, client.frames[seen], ids);
            assert.deepEqual(timeless(client.frames[seen++]), timeless(withIds(text, ids)));
        }
    }
    assert.equal(seen, client.frames.length);
});
