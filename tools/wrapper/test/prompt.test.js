// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');
const fs = require('fs');
const http = require('http');
const path = require('path');
const { once } = require('events');

const { startBridge } = require('../../sdk-bridge/test/support/child');
const { ModelServer } = require('../../sdk-bridge/test/support/modelServer');
const { test } = require('../../sdk-bridge/test/support/timed');
const { BridgeClient, chat } = require('../cli/bridgeClient');
const { UsageError, parse } = require('../cli/prompt');
const { Installation } = require('./support/installation');
const { PORT, ScriptedBridge } = require('./support/scriptedBridge');

const MODELS = { object: 'list', data: [{ id: '/models/tiny.gguf' }, { id: '/models/large.gguf' }] };

//! An installation, a bridge and a scripted model server, which by default repeats the prompt.
async function start(t, reply = (exchange) => exchange.answer(`To: ${exchange.prompt}`)) {
    const model = await ModelServer.start(t, { reply, models: MODELS });
    const bridge = await startBridge(t, { LOOMRA_BRIDGE_PORT: String(PORT), ...model.env });
    await bridge.complains(/^Prompts go to /m); // or a busy machine might be slower than a prompt
    return { model, bridge, installation: new Installation(t) };
}

//! An installation and a bridge without a model, which plays its demonstration.
async function demonstration(t) {
    await startBridge(t, { LOOMRA_BRIDGE_PORT: String(PORT) });
    return new Installation(t);
}

test('the reply is printed, and nothing else', async (t) => {
    const { installation } = await start(t);
    for (const args of [['--prompt', 'Hi'], ['-p', 'Hi'], ['--prompt=Hi'], ['--main', '--prompt', 'Hi'], ['-p', '--', 'Hi']]) {
        assert.deepEqual(await installation.run(args).then(({ code, output, errors }) => [code, output, errors]),
            [0, 'To: Hi\n', ''], args.join(' '));
    }
});

test('the text is sent as it is', async (t) => {
    const { model, installation } = await start(t);
    for (const text of ['  two  blanks ', '-5 + 3?', 'ü € 😀 \u202etxt', 'a\nb\n', '"quoted" \\n $HOME', 'models', 'test']) {
        assert.equal((await installation.run(['--prompt', text])).code, 0, text);
        assert.equal(model.exchanges.at(-1).prompt, text);
    }
});

test('the model is chosen behind the prompt', async (t) => {
    const { model, installation } = await start(t);
    const used = async (...args) => {
        assert.equal((await installation.run(args)).code, 0);
        return model.exchanges.at(-1).body.model;
    };
    assert.equal(await used('-p', 'Hi'), '/models/tiny.gguf');
    for (const option of [['-m', 'local/large'], ['--model=local/large']])
        assert.equal(await used('-p', 'Hi', ...option), '/models/large.gguf', option.join(' '));
    // In front, "-m" is the mode of the main window.
    assert.equal(await used('-m', 'local/large', '-p', 'Hi'), '/models/tiny.gguf');
});

test('the prompt can come through a pipe', async (t) => {
    const { model, installation } = await start(t);
    for (const args of [['--prompt'], ['--prompt=-'], ['-p', '-m', 'local/large']]) {
        const { code, output } = await installation.run(args, { input: 'Grüße, 😀\nzwei\n' });
        assert.deepEqual([code, output], [0, 'To: Grüße, 😀\nzwei\n'], args.join(' '));
        assert.equal(model.exchanges.at(-1).prompt, 'Grüße, 😀\nzwei');
    }
    // Only the last line break is not part of it.
    await installation.run(['--prompt'], { input: '  a\r\nb \n\r\n' });
    assert.equal(model.exchanges.at(-1).prompt, '  a\r\nb \n');
    // A character whose bytes arrive in two parts.
    const command = installation.start(['-p']);
    const bytes = Buffer.from('ü');
    command.process.stdin.write(bytes.subarray(0, 1));
    await new Promise((resolve) => { command.process.stdin.write('', resolve); });
    command.process.stdin.end(bytes.subarray(1));
    assert.equal((await command.ended).output, 'To: ü\n');
    // Standard input isn't read if the text is given.
    assert.equal((await installation.run(['-p', 'Hi'], { input: 'unread' })).output, 'To: Hi\n');
});

test('arguments are parsed', () => {
    const options = (...args) => {
        const { text, model, timeoutMs } = parse(args);
        return [text, model, timeoutMs];
    };
    assert.deepEqual(options('--prompt', 'Hi'), ['Hi', '', 0]);
    assert.deepEqual(options('--prompt'), [undefined, '', 0]);
    assert.deepEqual(options('--prompt='), ['', '', 0]);
    assert.deepEqual(options('--prompt=--model'), ['--model', '', 0]);
    assert.deepEqual(options('-p', '--', '--model'), ['--model', '', 0]);
    assert.deepEqual(options('-p', '--models'), ['--models', '', 0]);
    assert.deepEqual(options('-p', '-', '--model=a=b', '--timeout', '1.5'), ['-', 'a=b', 1500]);
    assert.deepEqual(options('-p', '-m', ' a/b '), [undefined, 'a/b', 0]);
    for (const [args, message] of [
        [['two', 'words'], /unexpected argument "words": put the prompt in quotes/],
        [['Hi', '--mode', 'x'], /unexpected argument "--mode"/],
        [['Hi', '--', 'x'], /unexpected argument "--"/],
        [['Hi', '-m'], /-m needs the name of a model/],
        [['Hi', '--model', ' '], /--model needs the name of a model/],
        [['Hi', '--model='], /--model needs the name of a model/],
        [['Hi', '--timeout', 'soon'], /--timeout needs a number of seconds, not "soon"/],
        [['Hi', '--timeout=0'], /--timeout needs a number of seconds, not "0"/],
        [['Hi', '--timeout', '86401'], /--timeout needs a number of seconds/],
        [['Hi', '--timeout'], /--timeout needs a number of seconds/],
    ])
        assert.throws(() => parse(['--prompt', ...args]), (error) => error instanceof UsageError && message.test(error.message));
});

test('wrong arguments and empty prompts are reported with status 2', async (t) => {
    const installation = new Installation(t);
    for (const [args, message, input] of [
        [['--prompt', 'Hi', 'x\u001b[2J'], /unexpected argument "x␛\[2J"/],
        [['--prompt='], /the prompt is empty/],
        [['--prompt'], /the prompt is empty/, ' \n'],
        [['--prompt'], /longer than 4 MiB/, 'x'.repeat(4 * 1024 * 1024 + 1)],
    ]) {
        const { code, output, errors } = await installation.run(args, { input });
        assert.deepEqual([code, output], [2, ''], args.join(' '));
        assert.match(errors, message);
        assert.match(errors, /^(tovictl: .*\n)+$/);
    }
});

test('without a prompt on a terminal it does not wait', async (t) => {
    const { code, output } = await new Installation(t).onTerminal(['--prompt'], { stdio: ['pipe', 'pipe', 'pipe'] });
    assert.equal(code, 2);
    assert.match(output, /no prompt: run `tovictl --prompt "TEXT"`/);
});

test('its help lists the options and every exit status', async (t) => {
    const installation = new Installation(t);
    for (const args of [['--prompt', '--help'], ['-p', 'Hi', '-h']]) {
        const { code, output, errors } = await installation.run(args);
        assert.deepEqual([code, errors], [0, '']);
        assert.deepEqual([...output.matchAll(/^ {2}(\d+) /gm)].map(([, status]) => status),
            ['0', '1', '2', '3', '124', '127', '130']);
        assert.match(output, /-m, --model MODEL/);
    }
});

test('without a bridge it says how to start one, with status 3', async (t) => {
    const installation = new Installation(t);
    const { code, output, errors } = await installation.run(['--prompt', 'Hi']);
    assert.deepEqual([code, output], [3, '']);
    assert.equal(errors, 'tovictl: No bridge answers at ws://127.0.0.1:8765/ws\n' +
        'tovictl: start it with: systemctl --user start tovi-bridge.service\n' +
        `tovictl: or: node ${path.join(installation.parts, 'sdk-bridge/bridge.js')}\n`);
});

test('another server on the port is no bridge', async (t) => {
    const server = http.createServer((request, response) => response.writeHead(404).end());
    server.listen(PORT, '127.0.0.1');
    await once(server, 'listening');
    t.after(() => server.close());
    const { code, errors } = await new Installation(t).run(['--prompt', 'Hi']);
    assert.equal(code, 3);
    assert.match(errors, /^tovictl: No bridge answers at .*: Unexpected server response: 404\n/);
});

test('without its package it says what to install', async (t) => {
    const installation = new Installation(t);
    fs.rmSync(path.join(installation.parts, 'sdk-bridge'));
    const { code, errors } = await installation.run(['--prompt', 'Hi']);
    assert.equal(code, 1);
    assert.match(errors, /^tovictl: The package "ws" is missing: run "npm ci" in .*sdk-bridge\n$/);
});

test('a failing model is reported with status 1', async (t) => {
    const { model, installation } = await start(t, (exchange) => exchange.fail(500, { error: { message: 'no memory \u001b[31m' } }));
    const failed = await installation.run(['--prompt', 'Hi']);
    assert.deepEqual([failed.code, failed.output], [1, '']);
    assert.match(failed.errors, /^tovictl: The model server at 127\.0\.0\.1:\d+ failed: no memory \[31m\n$/);
    await model.stop();
    const gone = await installation.run(['--prompt', 'Hi']);
    assert.deepEqual([gone.code, gone.output], [1, '']);
    assert.match(gone.errors, /^tovictl: No model server answers at /);
    await model.listen();
});

test('every form of a reply and of a failure is understood', async (t) => {
    await demonstration(t);
    for (const [prompt, expected] of [
        ['plain', 'This is a plain answer.'],
        ['old form', 'This answer has the older form.'],
        ['noise', 'This answer came through the noise.'],
        ['twice', 'Only the first of two equal answers counts.'],
        ['odd types', 'Nothing here has the type that it should have.'],
        ['error', 'Error: The bridge failed as you asked'],
        ['error notice', 'Error: The bridge failed with a notice'],
        ['error code', 'Error: E_DEMO_ONLY_A_CODE'],
        ['silent error', 'Error: The bridge failed without giving a reason'],
        ['old error', 'Error: The bridge failed the old way'],
        ['empty', 'Error: The reply is empty'],
        ['odd result', 'Error: The reply of the bridge cannot be read'],
        ['hang up', 'Error: The bridge closed the connection before it replied'],
    ]) {
        const client = await BridgeClient.open();
        assert.equal(await chat(client, prompt).then(({ text }) => text, String), expected, prompt);
        client.close();
        await assert.rejects(client.request('ping'));
    }
});

test('a failed request is reported with status 1', async (t) => {
    const installation = await demonstration(t);
    for (const [prompt, errors] of [
        ['error', 'tovictl: The bridge failed as you asked\n'],
        ['hang up', 'tovictl: The bridge closed the connection before it replied\n'],
    ])
        assert.deepEqual(await installation.run(['--prompt', prompt]).then(({ code, output, errors: text }) => [code, output, text]),
            [1, '', errors]);
});

test('a failure that names no request ends the prompt', async (t) => {
    await ScriptedBridge.start(t, (request, send) => send({ type: 'error', error: { message: 'out of order' } }));
    const { code, errors } = await new Installation(t).run(['--prompt', 'Hi']);
    assert.deepEqual([code, errors], [1, 'tovictl: out of order\n']);
});

const HOSTILE = 'a\u001b]0;title\u0007b\u001b[2Jc\rd\u009b31me\u007ff\u202eg\u0000h\tü😀\r\ni';

test('a reply cannot control a terminal, and is unchanged in a pipe', async (t) => {
    // The bundled bridge removes most of these characters from a model's reply, but others may not.
    await ScriptedBridge.start(t, ({ id }, send) => send({ type: 'response', id, payload: { response: HOSTILE } }));
    const installation = new Installation(t);
    const piped = await installation.run(['--prompt', 'Hi']);
    assert.deepEqual([piped.code, piped.output], [0, `${HOSTILE}\n`]);
    const shown = await installation.onTerminal(['--prompt', 'Hi']);
    assert.equal(shown.code, 0);
    assert.equal(shown.output.replaceAll('\r\n', '\n'), 'a␛]0;title␇b␛[2Jc␍d\ufffd31me␡f\ufffdg␀h\tü😀\ni\n');
});

test('half a surrogate pair becomes valid UTF-8', async (t) => {
    await ScriptedBridge.start(t, ({ id }, send) =>
        send(`{"type":"response","id":${id},"payload":{"response":"x\\ud800y\\n"}}`));
    const { bytes } = await new Installation(t).run(['--prompt', 'Hi']);
    assert.deepEqual(bytes, Buffer.from('x\ufffdy\n'));
});

test('the request has the params of the window\'s prompts', async (t) => {
    const bridge = await ScriptedBridge.start(t, ({ id }, send) => send({ type: 'response', id, payload: { response: 'Yes.' } }));
    const installation = new Installation(t);
    assert.equal((await installation.run(['--prompt', 'Hi', '-m', 'a/b'])).output, 'Yes.\n');
    await installation.run(['--prompt', 'Hi']);
    assert.deepEqual(bridge.requests, [
        { id: 1, method: 'chat', params: { message: 'Hi', agent: 'auto', inputMode: 'text', model: 'a/b' } },
        { id: 1, method: 'chat', params: { message: 'Hi', agent: 'auto', inputMode: 'text' } },
    ]);
});

test('nothing is sent before the bridge is ready', async (t) => {
    let sendReady;
    const connected = new Promise((resolve) => { sendReady = resolve; });
    const bridge = await ScriptedBridge.start(t, ({ id }, send) => send({ id, result: { response: 'Yes.' } }),
        { greeting: null, connected: sendReady });
    const command = new Installation(t).start(['--prompt', 'Hi']);
    const send = await connected;
    assert.deepEqual(bridge.requests, []);
    send({ type: 'event', payload: { event: 'ready' } });
    assert.equal((await command.ended).output, 'Yes.\n');
});

for (const [signal, status] of [['SIGINT', 130], ['SIGTERM', 143], ['SIGHUP', 129]]) {
    test(`${signal} stops the model's work, with status ${status}`, async (t) => {
        const { model, installation } = await start(t, null);
        const command = installation.start(['--prompt', 'Hi']);
        const exchange = await model.next();
        command.process.kill(signal);
        const { code, output, errors } = await command.ended;
        assert.deepEqual([code, output, errors], [status, '', '']);
        await exchange.closed;
    });
}

test('Ctrl+C sends "cancel", and does not wait for ever for its reply', async (t) => {
    const bridge = await ScriptedBridge.start(t);
    const command = new Installation(t).start(['--prompt', 'Hi']);
    await bridge.received('chat');
    command.process.kill('SIGINT');
    assert.equal((await command.ended).code, 130);
    assert.deepEqual(bridge.requests.map(({ method, params }) => [method, params.message]), [['chat', 'Hi'], ['cancel', undefined]]);
});

test('a second Ctrl+C does not wait at all', async (t) => {
    const bridge = await ScriptedBridge.start(t);
    const command = new Installation(t).start(['--prompt', 'Hi']);
    await bridge.received('chat');
    command.process.kill('SIGINT');
    await bridge.received('cancel');
    const began = performance.now();
    command.process.kill('SIGINT');
    assert.equal((await command.ended).code, 130);
    assert.ok(performance.now() - began < 900); // the wait for the reply takes 1000 ms
});

test('Ctrl+C while the prompt is read ends it', async (t) => {
    const command = new Installation(t).start(['--prompt']);
    // More than fits into the pipe, so that its end shows that the prompt is being read.
    await new Promise((resolve) => { command.process.stdin.write('x'.repeat(1024 * 1024), resolve); });
    command.process.kill('SIGINT');
    assert.equal((await command.ended).code, 130);
});

test('--timeout gives up with status 124 and stops the model\'s work', async (t) => {
    const { model, installation } = await start(t, null);
    const command = installation.run(['--prompt', 'Hi', '--timeout', '0.5']);
    const exchange = await model.next();
    const { code, output, errors } = await command;
    assert.deepEqual([code, output, errors], [124, '', 'tovictl: no reply in 0.5 s\n']);
    await exchange.closed;
    model.reply = (each) => each.answer('Yes.');
    assert.equal((await installation.run(['--prompt=Hi', '--timeout=20'])).output, 'Yes.\n');
});

test('a long reply passes a slow pipe whole', async (t) => {
    const long = '0123456789'.repeat(9900);
    const { installation } = await start(t, (exchange) => exchange.answer(long));
    const { output, errors } = await installation.shell(
        '"$tovictl" --prompt Hi | { read -rn 1 first; sleep 0.2; printf %s "$first"; cat; }');
    assert.equal(output, `${long}\n`);
    assert.equal(errors, '');
});

test('a pipe whose reader has gone is no failure', async (t) => {
    const { installation } = await start(t, (exchange) => exchange.answer('0123456789'.repeat(9900)));
    const { output, errors } = await installation.shell('"$tovictl" --prompt Hi | head -c 3; echo " ${PIPESTATUS[0]}"');
    assert.deepEqual([output, errors], ['012 0\n', '']);
});

test('a reply that cannot be written is a failure', async (t) => {
    const { installation } = await start(t);
    const { code, errors } = await installation.shell('"$tovictl" --prompt Hi > /dev/full');
    assert.deepEqual([code, errors], [1, 'tovictl: the reply could not be written: no space left\n']);
    assert.equal((await installation.shell('"$tovictl" --prompt Hi 2>&-')).output, 'To: Hi\n');
    assert.equal((await installation.shell('"$tovictl" --prompt Hi < /dev/null')).output, 'To: Hi\n');
});
