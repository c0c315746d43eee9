// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');

const { Tokens } = require('../lib/tokens');
const { startBridge } = require('./support/child');
const { test } = require('./support/timed');

const TOKEN = 'secret-0123456789-abcd';

test('free models are tried, and the fastest that answered is recommended', async (t) => {
    const client = await (await startBridge(t)).connect();
    const { results, recommended } = await client.result('checkFreeProviders');
    assert.deepEqual(results.slice(0, 2), [
        { model: 'demo/echo-free', displayName: 'demo/echo-free', ok: true, responseMs: 120, response: 'Hello!', error: '' },
        {
            model: 'workshop/tiny-free',
            displayName: 'workshop/tiny-free',
            ok: false,
            responseMs: 0,
            response: '',
            error: 'No token is set for workshop',
        },
    ]);
    assert.deepEqual(recommended, results[0]);
    assert.ok(results.length > 10);
    assert.ok(results.some(({ ok, error }) => !ok && /overloaded/.test(error)));
    assert.ok(results.slice(1).every(({ ok, responseMs }) => !ok || responseMs > recommended.responseMs));

    await client.result('setProviderToken', { provider: 'workshop', token: TOKEN });
    const again = await client.result('checkFreeProviders');
    assert.deepEqual([again.results[1].ok, again.results[1].error], [true, '']);
    assert.equal(again.recommended.model, 'demo/echo-free');
});

test('a token is never told whole, wherever it goes wrong', async (t) => {
    const bridge = await startBridge(t);
    const client = await bridge.connect();
    const before = { provider: 'workshop', configured: false, tokenKey: 'WORKSHOP_API_KEY', masked: '' };
    assert.deepEqual(await client.result('getTokenStatus', { provider: 'workshop' }), before);

    const after = { ...before, configured: true, masked: '••••abcd' };
    assert.deepEqual(await client.result('setProviderToken', { provider: ' workshop ', token: ` ${TOKEN} ` }),
        { ok: true, ...after });
    assert.deepEqual(await client.result('getTokenStatus', { provider: ' workshop ' }), after);
    await client.request('setProviderToken', { provider: 'no name', token: TOKEN });
    await client.request('setProviderToken', { provider: 'demo', token: `${TOKEN} ${TOKEN}` });
    await client.request('setProviderToken', { provider: 'demo', token: TOKEN, tokenKey: 'no key' });
    await client.request('setProviderToken', { provider: TOKEN });
    client.raw(`{"token":"${TOKEN}"`);
    await client.result('getAppLogSummary');
    await client.result('getSystemDashboard');
    assert.ok(!client.frames.join('').includes(TOKEN));
    assert.ok(!bridge.errors.includes(TOKEN), bridge.errors);

    const { providers } = await client.result('getTokenStatus');
    assert.deepEqual(providers.map(({ provider, configured }) => [provider, configured]),
        [['demo', false], ['workshop', true], ['meadow', false], ['harbour', false], ['atelier', false], ['orchard', false],
            ['summit', false], ['lantern', false]]);
});

test('tokens and keys that can be none are refused', () => {
    const tokens = new Tokens(['demo']);
    const bad = [['', TOKEN], ['a b', TOKEN], ['demo', 'two words'], ['demo', 'x'.repeat(4097)], ['demo', TOKEN, 'a b'],
        ['x'.repeat(65), TOKEN]];
    for (const args of bad)
        assert.throws(() => tokens.set(...args), { code: 'INVALID_PARAMS' }, args[0]);
    assert.equal(tokens.has('demo'), false);
    assert.equal(tokens.has('never-heard-of'), false);
});

test('of a short token nothing is shown, and a key may be named', () => {
    const tokens = new Tokens([]);
    assert.deepEqual(tokens.set('my.provider', 'short-token'),
        { provider: 'my.provider', configured: true, tokenKey: 'MY_PROVIDER_API_KEY', masked: '••••' });
    assert.equal(tokens.set('my.provider', TOKEN, ' OTHER_KEY ').tokenKey, 'OTHER_KEY');
    assert.deepEqual(tokens.all().length, 1);
    for (let n = 1; n < 100; ++n)
        tokens.set(`p${n}`, TOKEN);
    assert.throws(() => tokens.set('p100', TOKEN), { code: 'INVALID_PARAMS' });
});
