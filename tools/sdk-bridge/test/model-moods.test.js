// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// What the user reads when a model server misbehaves.

const assert = require('assert/strict');

const { FIRST_WORD_FACTOR, complete } = require('../lib/model/completion');
const { MAX_REPLY } = require('../lib/model/stream');
const { startBridge } = require('./support/child');
const { ModelServer, OPENING, ending, json, words } = require('./support/modelServer');
const { test } = require('./support/timed');

const BROKEN = '\n\n(The reply ends here because the model server stopped sending it.)';
const CUT = '\n\n(The reply ends here because it is too long.)';
const LENGTH = '\n\n(The reply ends here because the model has reached its limit.)';

const status = (code, message, more) => (exchange) => exchange.fail(code, { error: { code, message, ...more } });

//! A mood of a server: what it does with a prompt (`reply`), and what the user reads (`text`), or the error (`error`, in
//! which AT is its address, and `code` without MODEL_).
const MOODS = [
    { name: 'answers', reply: (exchange) => exchange.answer('Good', ' day.'), text: 'Good day.' },
    {
        name: 'answers in one piece',
        reply: ({ response }) => json(response, { choices: [{ finish_reason: 'stop', message: { content: 'Good day.' } }] }),
        text: 'Good day.',
    },
    {
        name: 'ends with the last event, without a mark',
        reply: async (exchange) => {
            await exchange.send(words('Good day.'), ending());
            exchange.response.end();
        },
        text: 'Good day.',
    },
    { name: 'thinks aloud', reply: (exchange) => exchange.answer('<think>Who?', '</think>', 'Good day.'), text: 'Good day.' },
    {
        name: 'reaches its limit',
        reply: async (exchange) => {
            await exchange.write('Good');
            await exchange.finish('length');
        },
        text: `Good${LENGTH}`,
    },
    {
        name: 'never ends',
        reply: async (exchange) => {
            // A million tokens, unless the bridge has had enough.
            for (let n = 0; n < 1000 && !exchange.response.destroyed; ++n)
                await exchange.write(...Array(1000).fill('word '));
        },
        text: 'word '.repeat(MAX_REPLY / 5).trim() + CUT,
    },
    {
        name: 'sends invalid UTF-8',
        reply: async (exchange) => {
            await exchange.raw(Buffer.from([...Buffer.from('data: {"choices":[{"delta":{"content":"a'), 0xff, 0xfe,
                ...Buffer.from('b"}}]}\n\n')]));
            await exchange.finish();
        },
        text: 'a\ufffd\ufffdb',
    },
    {
        name: 'mixes broken events in',
        reply: async (exchange) => {
            await exchange.raw('data: {"choices":\n\nhello\n\n: ping\n\ndata: null\n\ndata: []\n\n');
            await exchange.answer('Good day.');
        },
        text: 'Good day.',
    },
    {
        name: 'closes in the middle',
        reply: async (exchange) => {
            await exchange.write('Good', ' day');
            exchange.cut();
        },
        text: `Good day${BROKEN}`,
    },
    {
        name: 'is stopped in the middle',
        reply: async (exchange) => {
            await exchange.write('Good', ' day');
            exchange.response.end();
        },
        text: `Good day${BROKEN}`,
    },
    {
        name: 'reports an error in the middle',
        reply: async (exchange) => {
            await exchange.write('Good');
            await exchange.send({ error: { code: 500, message: 'out of memory' } });
            exchange.response.end();
        },
        text: `Good${BROKEN}`,
    },
    {
        name: 'sends an endless event',
        reply: async (exchange) => {
            await exchange.write('Good');
            for (let n = 0; n < 100 && !exchange.response.destroyed; ++n)
                await exchange.raw('x'.repeat(65536));
        },
        text: `Good${BROKEN}`,
    },
    {
        name: 'changes the protocol',
        reply: ({ response }) =>
            response.socket.end('HTTP/1.1 101 Switching Protocols\r\nUpgrade: x\r\nConnection: upgrade\r\n\r\n'),
        code: 'CLOSED',
        error: 'The model server at AT closed the connection before it answered. Is it still running?',
    },
    {
        name: 'speaks another protocol',
        reply: ({ response }) => response.socket.end('SSH-2.0-OpenSSH\r\n'),
        code: 'NO_STREAM',
        error: 'The reply of the server at AT can\'t be read. Is it really a model server?',
    },
    {
        name: 'has an error with control characters',
        reply: status(500, 'a\u0000\u001b[31mb\u009bc'),
        code: 'FAILED',
        error: 'The model server at AT failed: a [31mb c',
    },
    {
        name: 'closes before the reply',
        reply: (exchange) => exchange.cut(),
        code: 'CLOSED',
        error: 'The model server at AT closed the connection before it answered. Is it still running?',
    },
    {
        name: 'is stopped before the first word',
        reply: async (exchange) => {
            await exchange.send(OPENING);
            exchange.response.end();
        },
        code: 'CLOSED',
        error: 'The model server at AT closed the connection before it answered. Is it still running?',
    },
    {
        name: 'reports an error before the first word',
        reply: async (exchange) => {
            await exchange.send({ error: { code: 500, message: 'out of\nmemory' } });
            exchange.response.end();
        },
        code: 'FAILED',
        error: 'The model server at AT failed: out of memory',
    },
    {
        name: 'asks for a key within the stream',
        reply: async (exchange) => {
            await exchange.send({ error: { code: 401, message: 'who are you?' } });
            exchange.response.end();
        },
        code: 'KEY',
        error: 'The model server at AT doesn\'t accept the key. Set LOOMRA_MODEL_KEY, or LOOMRA_MODEL_KEY_FILE, and ' +
            'restart the bridge.',
    },
    {
        name: 'says nothing',
        reply: (exchange) => exchange.answer(),
        code: 'EMPTY',
        error: 'The model gave an empty reply. Try again, or choose another model.',
    },
    {
        name: 'only thinks',
        reply: (exchange) => exchange.answer('<think>Hm.'),
        code: 'EMPTY',
        error: 'The model gave an empty reply. Try again, or choose another model.',
    },
    {
        name: 'sends a web page',
        reply: ({ response }) => {
            response.writeHead(200, { 'content-type': 'text/html' });
            response.end('<html>It works!</html>');
        },
        code: 'NO_STREAM',
        error: 'The reply of the server at AT can\'t be read. Is it really a model server?',
    },
    {
        name: 'sends JSON of another kind',
        reply: ({ response }) => json(response, { hello: 'world' }),
        code: 'NO_STREAM',
        error: 'The reply of the server at AT can\'t be read. Is it really a model server?',
    },
    {
        name: 'has an internal error',
        reply: status(500, 'out of memory'),
        code: 'FAILED',
        error: 'The model server at AT failed: out of memory',
    },
    {
        name: 'has an internal error and no words',
        reply: ({ response }) => { response.writeHead(500); response.end(); },
        code: 'FAILED',
        error: 'The model server at AT failed: status 500',
    },
    {
        name: 'is behind a proxy that fails',
        reply: ({ response }) => { response.writeHead(502); response.end('<html>Bad gateway</html>'); },
        code: 'FAILED',
        error: 'The model server at AT failed: status 502',
    },
    {
        name: 'fails at length',
        reply: ({ response }) => { response.writeHead(500); response.end('x'.repeat(1000000)); },
        code: 'FAILED',
        error: `The model server at AT failed: ${'x'.repeat(300)}…`,
    },
    {
        name: 'fails without end',
        reply: async ({ response }) => {
            response.writeHead(500);
            while (!response.destroyed)
                await new Promise((resolve) => { response.write('x'.repeat(65536), resolve); });
        },
        code: 'FAILED',
        error: `The model server at AT failed: ${'x'.repeat(300)}…`,
    },
    {
        name: 'wants a key',
        reply: status(401, 'Invalid API Key', { type: 'authentication_error' }),
        code: 'KEY',
        error: 'The model server at AT doesn\'t accept the key. Set LOOMRA_MODEL_KEY, or LOOMRA_MODEL_KEY_FILE, and ' +
            'restart the bridge.',
    },
    {
        name: 'does not have the model',
        reply: status(404, 'model "x" not found'),
        code: 'NOT_FOUND',
        error: 'The model server at AT doesn\'t have this model or can\'t chat: model "x" not found',
    },
    {
        name: 'refuses the prompt',
        reply: status(400, 'roles must alternate'),
        code: 'REFUSED',
        error: 'The model server at AT refused the prompt: roles must alternate',
    },
    {
        name: 'finds the prompt too long',
        reply: status(400, 'request (45019 tokens) exceeds the available context size (8192 tokens)',
            { type: 'exceed_context_size_error' }),
        code: 'TOO_LONG',
        error: 'The prompt is too long for this model. Shorten it, or attach less: request (45019 tokens) exceeds the available ' +
            'context size (8192 tokens)',
    },
    {
        name: 'is busy',
        reply: status(429, 'slow down'),
        code: 'BUSY',
        error: 'The model server at AT is busy. Try again in a moment.',
    },
    {
        name: 'is loading its model',
        reply: status(503, 'Loading model', { type: 'unavailable_error' }),
        code: 'LOADING',
        error: 'The model server at AT is still loading its model. Try again in a moment.',
    },
    {
        name: 'sends the prompt elsewhere',
        reply: ({ response }) => { response.writeHead(307, { location: 'http://127.0.0.1:9/' }); response.end(); },
        code: 'FAILED',
        error: 'The model server at AT failed: status 307',
    },
];

test('each mood of a model server', async (t) => {
    const model = await ModelServer.start(t);
    const bridge = await startBridge(t, model.env);
    await bridge.complains(/^Prompts go to /m);
    const client = await bridge.connect();
    for (const { name, reply, text, code, error } of MOODS) {
        await t.test(name, async () => {
            model.reply = reply;
            const sent = model.exchanges.length;
            const message = await client.request('chat', { message: `The server ${name}` });
            const phase = client.events.filter((event) => event.event === 'plan.phase').at(-1).phase;
            assert.equal(phase, '', 'no phase is left over');
            if (error) {
                assert.deepEqual(message.error, { message: error.replaceAll('AT', model.shown), code: `MODEL_${code}` });
            } else {
                assert.equal(message.error, undefined);
                assert.equal(message.payload.response, text);
            }
            assert.equal(model.exchanges.length, sent + 1);
        });
    }
    // It has survived all of them.
    model.reply = (exchange) => exchange.answer('Still here.');
    assert.equal((await client.chat('Hello')).response, 'Still here.');
    assert.equal(bridge.process.exitCode, null);
});

//! Short, but the first words arrive within it on a busy machine too.
const SHORT_MS = 500;

//! Asks the server directly, with short timeouts.
function ask(model, timeoutMs, signal = new AbortController().signal) {
    return complete({ base: model.url, shown: model.shown, allowRemote: false, key: '' }, { messages: [{ content: 'Hello' }] },
        { signal, timeoutMs });
}

test('the first word may take longer than the others', () => {
    assert.equal(FIRST_WORD_FACTOR, 5);
});

test('a server that never begins is given up', async (t) => {
    const model = await ModelServer.start(t, { reply: () => {} });
    await assert.rejects(ask(model, 10), ({ code, message }) => code === 'MODEL_TIMEOUT' &&
        message === `The model server at ${model.shown} has been silent for 0 s. ` +
            'It may be overloaded: try again, or use a smaller model.');
});

test('the time for the first word goes on while the server reads the prompt', async (t) => {
    const model = await ModelServer.start(t);
    const asked = ask(model, 60000);
    const exchange = await model.next();
    await exchange.send(OPENING);
    await exchange.answer('Slow, but sure.');
    assert.equal((await asked).text, 'Slow, but sure.');
});

test('a server that begins without a word has the time for the first word', async (t) => {
    const model = await ModelServer.start(t, { reply: (exchange) => exchange.send(OPENING) });
    await assert.rejects(ask(model, 110), ({ message }) => message.includes('silent for 1 s'));
});

test('a reply that stalls is kept as far as it came', async (t) => {
    const model = await ModelServer.start(t, { reply: (exchange) => exchange.write('Good', ' day') });
    assert.deepEqual(await ask(model, SHORT_MS), { text: 'Good day', usage: undefined, ending: 'BROKEN' });
    await model.exchanges[0].closed;
});

test('a server that stalls among its thoughts is given up', async (t) => {
    const model = await ModelServer.start(t, { reply: (exchange) => exchange.write('<think>Hm') });
    await assert.rejects(ask(model, SHORT_MS), { code: 'MODEL_TIMEOUT' });
});

test('a model that goes on without a reply is given up', async (t) => {
    const part = { choices: [{ delta: { reasoning_content: 'x'.repeat(1000 * 1000) } }] };
    const model = await ModelServer.start(t, {
        reply: async (exchange) => {
            while (!exchange.response.destroyed)
                await exchange.send(part);
        },
    });
    await assert.rejects(ask(model, 60000), { code: 'MODEL_ENDLESS',
        message: 'The model went on for too long without a reply. Try again, or choose another model.' });
    await model.exchanges[0].closed;
});

test('the reason why there is no connection is named', async (t) => {
    const { fromError } = require('../lib/model/failures');
    const kindOf = (code) => fromError({ shown: 'x', key: '' }, Object.assign(new Error('?'), { code })).code;
    for (const [code, kind] of [['ECONNREFUSED', 'UNREACHABLE'], ['ENOTFOUND', 'UNREACHABLE'], ['ECONNRESET', 'CLOSED'],
        [undefined, 'CLOSED'], ['HPE_HEADER_OVERFLOW', 'NO_STREAM'], ['ENOTLOOPBACK', 'NOT_LOCAL'], ['CERT_HAS_EXPIRED', 'CERTIFICATE'],
        ['DEPTH_ZERO_SELF_SIGNED_CERT', 'CERTIFICATE'], ['ERR_TLS_CERT_ALTNAME_INVALID', 'CERTIFICATE'],
        ['UNABLE_TO_VERIFY_LEAF_SIGNATURE', 'CERTIFICATE'], ['ERR_SSL_WRONG_VERSION_NUMBER', 'NO_TLS']])
        assert.equal(kindOf(code), `MODEL_${kind}`, code);
    const model = await ModelServer.start(t);
    await assert.rejects(
        complete({ base: model.url.replace('http:', 'https:'), shown: 'x', allowRemote: false, key: '' }, {},
            { signal: new AbortController().signal, timeoutMs: 60000 }),
        { message: 'The model server at x doesn\'t speak HTTPS. Use http:// in LOOMRA_MODEL_URL, and restart the bridge.' });
});

test('a long silence is reported in minutes', async () => {
    const { failure } = require('../lib/model/failures');
    const told = (ms) => /silent for (.*?)\./.exec(failure('TIMEOUT', { shown: 'x', key: '' }, { ms }).message)[1];
    assert.deepEqual([1000, 119999, 120000, 18000000].map(told), ['1 s', '120 s', '2 min', '300 min']);
});

test('a request that is aborted closes its connection', async (t) => {
    const model = await ModelServer.start(t);
    for (const begun of [false, true]) {
        const abort = new AbortController();
        const asked = ask(model, 60000, abort.signal);
        const exchange = await model.next();
        if (begun)
            await exchange.write('Good');
        abort.abort();
        await assert.rejects(asked, { code: 'CANCELLED' });
        await exchange.closed;
    }
    await assert.rejects(ask(model, 60000, AbortSignal.abort()), { code: 'CANCELLED' });
});
