// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');
const fs = require('fs');
const net = require('net');
const path = require('path');
const { once } = require('events');

const { Client } = require('../../sdk-bridge/test/support/client');
const { ModelServer } = require('../../sdk-bridge/test/support/modelServer');
const { StandIns } = require('../../sdk-bridge/test/support/standins');
const { startBridge, temporaryFolder } = require('../../sdk-bridge/test/support/child');
const { test } = require('../../sdk-bridge/test/support/timed');
const { Installation, writeProgram } = require('./support/installation');
const { PORT, ScriptedBridge } = require('./support/scriptedBridge');

const URL = `ws://127.0.0.1:${PORT}/ws`;
const DISPLAY_NUMBER = 7;
const MODELS = '.local/share/tovi-forkeldaos/models';

function write(file, text = 'x') {
    fs.mkdirSync(path.dirname(file), { recursive: true });
    fs.writeFileSync(file, text);
}

const PACTL = `case "$*" in
'list short sources') printf '0\\tspeakers.monitor\\tx\\n1\\tmicrophone\\tx\\n' ;;
'get-default-source') echo microphone ;;
'list short sinks') printf '0\\tspeakers\\tx\\n' ;;
'get-default-sink') echo speakers ;;
esac`;

//! An installation whose PATH has only node, a shell and stand-ins, in a session without anything.
function bareMachine(t) {
    const installation = new Installation(t);
    const standIns = new StandIns(fs.realpathSync(temporaryFolder(t)));
    for (const [name, target] of [['sh', '/bin/sh'], ['readlink', '/bin/readlink'], ['dirname', '/usr/bin/dirname'],
        ['node', process.execPath]])
        fs.symlinkSync(target, path.join(standIns.folder, name));
    const data = temporaryFolder(t);
    const env = {
        PATH: standIns.folder, XDG_DATA_DIRS: data, XDG_RUNTIME_DIR: installation.home, DISPLAY: '', WAYLAND_DISPLAY: '',
        QT_QPA_PLATFORM: '', PULSE_SOURCE: '', PULSE_SINK: '',
    };
    const run = (args = [], more = {}) => installation.run(['test', ...args], { env: { ...env, ...more } });
    const json = async (args = [], more = {}) => {
        const result = await run(['--json', ...args], more);
        assert.equal(result.errors, '');
        const { ok, checks } = JSON.parse(result.output);
        assert.equal(result.code, ok ? 0 : 1);
        return { ...result, ok, checks, states: Object.fromEntries(checks.map(({ id, state }) => [id, state])),
            of: (id) => checks.find((check) => check.id === id) };
    };
    return { installation, standIns, data, home: installation.home, run, json };
}

//! Puts everything there that the checks look for, except for a bridge.
async function equip(t, { installation, standIns, data, home }) {
    const display = net.createServer((socket) => socket.destroy()).listen(6000 + DISPLAY_NUMBER, '127.0.0.1');
    await once(display, 'listening');
    t.after(() => display.close());
    fs.appendFileSync(installation.program, '# libwhisper.so.1\n');
    standIns.add('pactl', PACTL).add('paplay', '').add('loomra', '')
        .add('dbus-send', 'echo "   boolean true"')
        .add('systemctl', 'printf "LoadState=loaded\\nActiveState=active\\nUnitFileState=enabled\\n"');
    write(path.join(data, 'icons/breeze/index.theme'));
    write(path.join(data, 'knotifications5/loomra-kde.notifyrc'));
    write(path.join(home, MODELS, 'ggml-small.en-q5_1.bin'));
    write(path.join(home, MODELS, 'en_US-lessac-medium.onnx'));
    write(path.join(home, MODELS, 'en_US-lessac-medium.onnx.json'), '{"audio":{"sample_rate":22050}}');
    writeProgram(path.join(home, '.local/bin/piper'), '');
    write(path.join(home, '.config/loomra/loomra.json'), '{"mcp":{"files":{"type":"local"},"web":{"enabled":false}}}');
    return { DISPLAY: `127.0.0.1:${DISPLAY_NUMBER}` };
}

async function startModel(t, reply = (exchange) => exchange.answer('ready')) {
    const model = await ModelServer.start(t, { reply });
    const bridge = await startBridge(t, { LOOMRA_BRIDGE_PORT: String(PORT), ...model.env });
    await bridge.complains(/^Prompts go to /m);
    return model;
}

//! All files below a folder with their contents.
const snapshot = (folder) => fs.readdirSync(folder, { withFileTypes: true }).map((entry) => {
    const file = path.join(folder, entry.name);
    return [entry.name, entry.isDirectory() ? snapshot(file) : fs.readFileSync(file, 'utf8')];
});

test('with everything there, everything is ok', async (t) => {
    const machine = bareMachine(t);
    const env = await equip(t, machine);
    const model = await startModel(t);
    const before = snapshot(machine.home);
    const { ok, checks, of } = await machine.json([], env);
    assert.deepEqual(checks.filter(({ state }) => state !== 'ok'), []);
    assert.equal(ok, true);
    assert.deepEqual(checks.map(({ id }) => id), ['program', 'display', 'notifications', 'icons', 'agent', 'bridge', 'models',
        'providers', 'mcp', 'service', 'wakeword', 'microphone', 'output', 'recognition', 'voices']);
    assert.deepEqual(checks.filter(({ essential }) => essential).map(({ id }) => id), ['program', 'display', 'bridge']);
    assert.match(of('program').detail, /^tovictl 0\.3\.2 \(.*\)$/);
    assert.equal(of('models').detail, `local/tiny, by the model server at ${model.shown}`);
    assert.equal(of('mcp').detail, 'files, web (disabled)');
    assert.equal(of('microphone').detail, 'microphone');
    assert.match(of('recognition').detail, /^whisper-small-q5: .*\/ggml-small\.en-q5_1\.bin$/);

    // Nothing was changed, started or sent.
    assert.deepEqual(snapshot(machine.home), before);
    assert.equal(model.exchanges.length, 0);
    assert.deepEqual([...new Set(machine.standIns.calls)].sort(), [
        'dbus-send --session --print-reply --reply-timeout=2000 --dest=org.freedesktop.DBus /org/freedesktop/DBus ' +
            'org.freedesktop.DBus.NameHasOwner string:org.freedesktop.Notifications',
        'pactl get-default-sink',
        'pactl get-default-source',
        'pactl list short sinks',
        'pactl list short sources',
        'systemctl --user show tovi-bridge.service --property=LoadState,ActiveState,UnitFileState',
        'systemctl --user show tovi-wakeword.service --property=LoadState,ActiveState,UnitFileState',
    ]);
});

test('with nothing there, everything is named, with a way to get it', async (t) => {
    const machine = bareMachine(t);
    fs.rmSync(machine.installation.program);
    const { ok, checks } = await machine.json();
    assert.equal(ok, false);
    assert.deepEqual(checks.filter(({ state }) => state === 'ok').map(({ id }) => id), ['mcp']);
    for (const { id, state, help } of checks)
        assert.ok(state === 'ok' || help, id);
});

test('the lines for people', async (t) => {
    const machine = bareMachine(t);
    const { code, output, errors } = await machine.run();
    assert.deepEqual([code, errors], [1, '']);
    const lines = output.split('\n');
    assert.match(lines[0], /^ok {7}Program {10}tovictl 0\.3\.2 /);
    assert.equal(lines[1], 'missing  Display          neither DISPLAY nor WAYLAND_DISPLAY is set');
    assert.match(lines[2], /^ {26}-> Run tovictl in a desktop session$/);
    assert.match(output, /^missing {2}Bridge {11}No bridge answers at .*\n/m);
    assert.match(output, /^ {26}-> systemctl --user start tovi-bridge\.service, or: node .*bridge\.js$/m);
    assert.match(output, /\n\nEssential, and not working: Display, Bridge\.\n$/);

    const env = await equip(t, machine);
    await startModel(t);
    const { code: status, output: text } = await machine.run([], env);
    assert.equal(status, 0);
    assert.match(text, /\n\nNothing essential is missing\.\n$/);
});

test('only what is essential decides', async (t) => {
    const machine = bareMachine(t);
    const env = await equip(t, machine);
    await startBridge(t, { LOOMRA_BRIDGE_PORT: String(PORT) });
    for (const name of ['pactl', 'dbus-send', 'systemctl', 'loomra'])
        fs.rmSync(path.join(machine.standIns.folder, name));
    const { ok, states, of } = await machine.json([], env);
    assert.equal(ok, true);
    assert.equal(states.microphone, 'missing');
    assert.equal(of('models').detail, 'no model server: the bridge plays its demonstration');
    assert.equal((await machine.json([], { ...env, DISPLAY: '127.0.0.1:8' })).ok, false);
    writeProgram(machine.installation.program, '#!/bin/sh\necho "error: libfoo.so.1: no such file" >&2; exit 127\n');
    const broken = await machine.json([], env);
    assert.equal(broken.ok, false);
    assert.match(broken.of('program').detail, / does not start: error: libfoo\.so\.1: no such file$/);
});

test('--chat sends a prompt and leaves no conversation', async (t) => {
    const machine = bareMachine(t);
    const env = await equip(t, machine);
    const model = await startModel(t);
    const { ok, of } = await machine.json(['--chat'], env);
    assert.equal(ok, true);
    assert.match(of('chat').detail, /^reply in \d+\.\d s: ready$/);
    assert.equal(model.exchanges.length, 1);
    const client = await Client.open(URL);
    assert.deepEqual((await client.result('listSessions')).sessions, []);
    client.socket.terminate();

    model.reply = (exchange) => exchange.fail(500, { error: { message: 'no memory' } });
    const failed = await machine.json(['--chat'], env);
    assert.equal(failed.ok, false);
    assert.deepEqual([failed.of('chat').state, failed.of('chat').essential], ['problem', true]);
    assert.match(failed.of('chat').detail, /failed: no memory$/);
});

test('--chat without a bridge', async (t) => {
    const { of } = await bareMachine(t).json(['--chat']);
    assert.deepEqual([of('chat').state, of('chat').detail], ['missing', 'no prompt can be sent without a bridge']);
});

test('no check hangs', async (t) => {
    const machine = bareMachine(t);
    const env = await equip(t, machine);
    for (const name of ['pactl', 'dbus-send', 'busctl', 'systemctl'])
        machine.standIns.hanging(name);
    await ScriptedBridge.start(t); // it never replies
    const { states, of } = await machine.json([], env);
    for (const id of ['bridge', 'models', 'notifications', 'microphone', 'output', 'providers'])
        assert.equal(states[id], 'problem', id);
    assert.equal(of('bridge').detail, 'The bridge has not replied in 5 s');
    assert.equal(states.service, 'missing');
});

test('untrusted text cannot control the terminal', async (t) => {
    const evil = 'a\u001b]0;x\u0007\nok       Fake\u009b\u202e';
    await ScriptedBridge.start(t, ({ id, method }, send) => {
        const results = { listModels: { models: [{ fullId: evil }] }, health: { modelServer: evil },
            getTokenStatus: { providers: [{ provider: evil, configured: true, masked: 'secret' }] }, chat: { response: evil } };
        send({ type: 'response', id, payload: results[method] ?? {} });
    });
    const machine = bareMachine(t);
    write(path.join(machine.home, '.config/loomra/loomra.json'), JSON.stringify({ mcp: { [evil]: {} } }));
    machine.standIns.add('pactl', 'printf "1\\tmic\\033[2J\\n"');
    const { output, code } = await machine.run(['--chat']);
    assert.equal(code, 1);
    assert.doesNotMatch(output, /[\u0000-\u0009\u000b-\u001f\u007f-\u009f\u202e]|secret|^ok +Fake/m);
    assert.match(output, /^ok {7}MCP servers {6}a␛\]0;x␇ ok Fake/m);
});

test('results of wrong types break no check', async (t) => {
    for (const result of [null, 5, 'text', [], { models: 5, providers: 7 }, { models: [null, 3, {}], providers: [null, 4] }]) {
        await t.test(JSON.stringify(result), async (t2) => {
            await ScriptedBridge.start(t2, ({ id }, send) => send({ type: 'response', id, payload: result }));
            const { checks } = await bareMachine(t2).json();
            assert.deepEqual(checks.filter(({ detail }) => detail.startsWith('the check failed')), []);
        });
    }
});

test('wrong arguments and help', async (t) => {
    const { run } = bareMachine(t);
    for (const args of [['--cat'], ['x'], ['--json', '-x'], ['']]) {
        const { code, output, errors } = await run(args);
        assert.deepEqual([code, output], [2, '']);
        assert.match(errors, /^tovictl: unexpected argument ".*": see `tovictl test --help`\n$/);
    }
    for (const args of [['--help'], ['--chat', '-h']]) {
        const { code, output, errors } = await run(args);
        assert.deepEqual([code, errors], [0, '']);
        assert.match(output, /^Usage: tovictl test \[OPTIONS\]\n/);
    }
});
