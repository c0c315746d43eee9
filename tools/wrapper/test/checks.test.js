// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');
const fs = require('fs');
const net = require('net');
const path = require('path');
const { once } = require('events');

const { StandIns, hasEnded, until } = require('../../sdk-bridge/test/support/standins');
const { temporaryFolder } = require('../../sdk-bridge/test/support/child');
const { test } = require('../../sdk-bridge/test/support/timed');
const bridgeChecks = require('../cli/checks/bridge');
const desktopChecks = require('../cli/checks/desktop');
const soundChecks = require('../cli/checks/sound');
const { findProgram, run } = require('../cli/programs');
const { asLine, forTerminal } = require('../cli/text');
const { writeProgram } = require('./support/installation');

const MODELS = '.local/share/tovi-forkeldaos/models';
const MOONSHINE = 'sherpa-onnx-moonshine-tiny-en-quantized-2026-02-27';
const SHERPA = 'experiments/sherpa-onnx-prebuilt-v1.12.28';

const checks = Object.fromEntries([bridgeChecks, desktopChecks, soundChecks].flatMap((group) => group.checks)
    .map((check) => [check.id, check.run]));

function write(file, text = 'x') {
    fs.mkdirSync(path.dirname(file), { recursive: true });
    fs.writeFileSync(file, text);
}

//! A machine with empty folders. Programs are answered from `outputs`, by their command lines; all others are missing.
function machine(t, outputs = {}) {
    const [home, system, bin] = [temporaryFolder(t), temporaryFolder(t), temporaryFolder(t)];
    const program = path.join(bin, 'tovictl');
    writeProgram(program, 'built with libwhisper.so.1');
    const runFake = (name, args) => {
        const output = outputs[[name, ...args].join(' ')];
        return Promise.resolve({ code: output === undefined ? null : 0, output: output ?? '', errors: '' });
    };
    return { home, system, bin, program, run: runFake, outputs, env: { HOME: home, PATH: bin, XDG_DATA_DIRS: path.join(home, 'data') } };
}

const state = async (id, context) => (await checks[id](context)).state;
const detail = async (id, context) => (await checks[id](context)).detail;

test('the microphone', async (t) => {
    const context = machine(t);
    assert.match(await detail('microphone', context), /^pactl is not installed/);
    writeProgram(path.join(context.bin, 'pactl'), '');
    assert.equal(await state('microphone', context), 'problem'); // no server
    const { outputs, env } = context;
    outputs['pactl list short sources'] = '';
    assert.equal(await state('microphone', context), 'missing');
    outputs['pactl list short sources'] = '0\tspeakers.monitor\tx\n1\tmic\tx\n';
    outputs['pactl get-default-source'] = 'speakers.monitor\n';
    assert.match(await detail('microphone', context), /^speakers\.monitor records what the machine plays$/);
    env.PULSE_SOURCE = 'mic';
    assert.deepEqual(await checks.microphone(context), { state: 'ok', detail: 'mic', help: '' });
    env.PULSE_SOURCE = 'gone';
    assert.equal((await checks.microphone(context)).help, 'Choose one of: speakers.monitor, mic');
});

test('the sound output', async (t) => {
    const context = machine(t);
    writeProgram(path.join(context.bin, 'pactl'), '');
    assert.equal(await state('output', context), 'problem');
    context.outputs['pactl list short sinks'] = '0\tauto_null\tx\n';
    context.outputs['pactl get-default-sink'] = 'auto_null\n';
    assert.equal(await state('output', context), 'missing');
    context.outputs['pactl list short sinks'] = '0\tspeakers\tx\n';
    context.outputs['pactl get-default-sink'] = 'speakers\n';
    assert.match(await detail('output', context), /^paplay/);
    writeProgram(path.join(context.bin, 'paplay'), '');
    assert.equal(await detail('output', context), 'speakers');
});

test('the speech engine of the settings', async (t) => {
    const context = machine(t);
    const settings = path.join(context.home, '.config/kde.org/loomra-kde.conf');
    assert.match(await detail('recognition', context), /^whisper-small-q5: the model ggml-small\.en-q5_1\.bin is missing$/);
    write(path.join(context.system, '/usr/share/tovi-forkeldaos/models/ggml-base.en.bin'));
    assert.match(await detail('recognition', context), /; also usable: whisper$/);
    for (const [text, engine] of [
        ['[voice]\nsttBackend=moonshine\n', 'moonshine'],
        ['[voice]\nother=1\nsttBackend= Nemotron \n\n[x]\n', 'nemotron'],
        ['[voice]\nsttBackend="whisper-small"\n', 'whisper-small'],
        ['[voice]\nsttBackend=constructor\n', 'whisper'],
        ['[voice]\nsttBackend=\n', 'whisper'],
        ['[voice]\nother=1\n', 'whisper-small-q5'],
        ['[other]\nsttBackend=moonshine\n', 'whisper-small-q5'],
    ]) {
        write(settings, text);
        assert.equal((await detail('recognition', context)).split(':')[0], engine, text);
    }
    write(settings, '[voice]\nsttBackend=whisper\n');
    assert.equal(await state('recognition', context), 'ok');
    fs.writeFileSync(context.program, 'without');
    assert.equal(await detail('recognition', context), 'whisper: this build has no libwhisper');
});

test('an engine of sherpa-onnx needs its program, libraries and a whole model', async (t) => {
    const context = machine(t);
    write(path.join(context.home, '.config/kde.org/loomra-kde.conf'), '[voice]\nsttBackend=moonshine\n');
    assert.equal(await detail('recognition', context), 'moonshine: sherpa-onnx-offline is missing');
    writeProgram(path.join(context.home, SHERPA, 'bin/sherpa-onnx-offline'), '');
    assert.equal(await detail('recognition', context), 'moonshine: sherpa-onnx-offline is missing');
    fs.mkdirSync(path.join(context.home, SHERPA, 'lib'));
    assert.equal(await detail('recognition', context), `moonshine: the model ${MOONSHINE} is missing`);
    const model = path.join(context.home, MODELS, MOONSHINE);
    write(path.join(model, 'encoder_model.ort'));
    assert.match(await detail('recognition', context), / lacks decoder_model_merged\.ort, tokens\.txt$/);
    write(path.join(model, 'decoder_model_merged.ort'));
    write(path.join(model, 'tokens.txt'));
    assert.deepEqual(await checks.recognition(context), { state: 'ok', detail: `moonshine: ${model}`, help: '' });
});

test('spoken replies', async (t) => {
    const context = machine(t);
    assert.match(await detail('voices', context), /^the speech synthesiser piper is missing$/);
    writeProgram(path.join(context.home, 'piper/piper'), '\x7fELF');
    assert.match(await detail('voices', context), / has no English voice$/);
    const folder = path.join(context.home, 'piper/voices');
    write(path.join(folder, 'de_DE-x.onnx'));
    assert.match(await detail('voices', context), / has no English voice$/);
    const voice = path.join(folder, 'en_GB-x.onnx');
    write(voice);
    assert.match(await detail('voices', context), /en_GB-x\.onnx has no readable JSON file$/);
    write(`${voice}.json`, '{"audio":{"sample_rate":16000}}');
    assert.match(await detail('voices', context), / has 16000 Hz and would be played at the wrong speed$/);
    write(`${voice}.json`, '{"audio":{"sample_rate":22050}}');
    assert.equal(await state('voices', context), 'ok');
    write(path.join(context.home, MODELS, 'en_US-ryan-medium.onnx'));
    assert.match(await detail('voices', context), /en_US-ryan-medium\.onnx has no readable JSON file$/);
    writeProgram(path.join(context.system, 'usr/bin/piper'), '#!/usr/bin/python3\n');
    assert.equal((await checks.voices(context)).help, 'sudo apt remove piper');
});

test('the display', async (t) => {
    const context = machine(t);
    const { env, home } = context;
    env.XDG_RUNTIME_DIR = home;
    assert.equal(await state('display', context), 'missing');
    assert.equal(await checks.xwayland(context), null);
    for (const bad of ['nonsense', ':', 'x:y', '127.0.0.1:9', ':60000']) {
        env.DISPLAY = bad;
        assert.equal(await state('display', context), 'problem', bad);
    }
    const x = net.createServer((socket) => socket.destroy()).listen(6009, '127.0.0.1');
    await once(x, 'listening');
    t.after(() => x.close());
    env.DISPLAY = '127.0.0.1:9.0';
    assert.equal(await detail('display', context), 'X11, 127.0.0.1:9.0');

    env.WAYLAND_DISPLAY = 'wayland-5';
    assert.equal(await state('display', context), 'problem');
    const wayland = net.createServer((socket) => socket.destroy()).listen(path.join(home, 'wayland-5'));
    await once(wayland, 'listening');
    t.after(() => wayland.close());
    assert.equal(await detail('display', context), 'Wayland, wayland-5');
    assert.match(await detail('xwayland', context), /QT_QPA_PLATFORM=xcb/);
    env.QT_QPA_PLATFORM = 'xcb';
    assert.equal(await detail('xwayland', context), '127.0.0.1:9.0');
    env.DISPLAY = '';
    assert.equal(await state('xwayland', context), 'missing');
});

const BUS = '--session --print-reply --reply-timeout=2000 --dest=org.freedesktop.DBus /org/freedesktop/DBus';
const CALL = '--user call org.freedesktop.DBus /org/freedesktop/DBus org.freedesktop.DBus';

test('the notification service', async (t) => {
    const context = machine(t);
    const { outputs, env } = context;
    assert.equal(await detail('notifications', context), 'the session bus does not answer');
    outputs[`busctl ${CALL} NameHasOwner s org.freedesktop.Notifications`] = 'b false\n';
    outputs[`busctl ${CALL} ListActivatableNames`] = 'as 1 "org.freedesktop.NotificationsOther"\n';
    assert.equal(await state('notifications', context), 'missing');
    outputs[`busctl ${CALL} ListActivatableNames`] = 'as 2 "x" "org.freedesktop.Notifications"\n';
    assert.match(await detail('notifications', context), /^knotifications5\/loomra-kde\.notifyrc is in no data directory/);
    write(path.join(env.XDG_DATA_DIRS, 'knotifications5/loomra-kde.notifyrc'));
    assert.equal(await state('notifications', context), 'ok');
    outputs[`dbus-send ${BUS} org.freedesktop.DBus.NameHasOwner string:org.freedesktop.Notifications`] = '   boolean true\n';
    assert.equal(await state('notifications', context), 'ok');
});

test('the icon theme', async (t) => {
    const context = machine(t);
    assert.equal((await checks.icons(context)).help, 'sudo apt install breeze-icon-theme');
    write(path.join(context.env.XDG_DATA_DIRS, 'icons/breeze/index.theme'));
    assert.equal(await detail('icons', context), 'breeze');
    write(path.join(context.home, '.config/kdeglobals'), '[General]\nTheme=no\n\n[Icons]\nTheme=Mine\n\n[KDE]\n');
    assert.equal(await detail('icons', context), 'the icon theme Mine is not installed');
    write(path.join(context.home, '.icons/Mine/index.theme'));
    assert.equal(await detail('icons', context), 'Mine');
    write(path.join(context.home, '.config/kdeglobals'), '[Icons]\nTheme=../../etc\n');
    assert.equal(await detail('icons', context), 'breeze');
});

test('the user services', async (t) => {
    const context = machine(t);
    const key = (unit) => `systemctl --user show ${unit}.service --property=LoadState,ActiveState,UnitFileState`;
    for (const [id, unit] of [['service', 'tovi-bridge'], ['wakeword', 'tovi-wakeword']]) {
        assert.match(await detail(id, context), /user manager does not answer/);
        context.outputs[key(unit)] = ''; // systemctl ran without a user manager
        assert.match(await detail(id, context), /user manager does not answer/);
        context.outputs[key(unit)] = 'LoadState=not-found\nActiveState=inactive\nUnitFileState=\n';
        assert.equal(await detail(id, context), `${unit}.service is not installed`);
        context.outputs[key(unit)] = 'LoadState=loaded\nActiveState=failed\nUnitFileState=enabled\n';
        assert.deepEqual(await checks[id](context), { state: 'problem', detail: `${unit}.service is failed, enabled`,
            help: `journalctl --user -u ${unit}.service has the reason` });
        context.outputs[key(unit)] = 'LoadState=loaded\nActiveState=inactive\nUnitFileState=disabled\n';
        assert.equal(await state(id, context), 'ok');
    }
});

test('the file of the agent tool', async (t) => {
    const context = machine(t);
    const file = path.join(context.home, '.config/loomra/loomra.json');
    assert.equal(await detail('mcp', context), 'none');
    for (const [text, expected] of [
        ['{', 'problem'], ['', 'problem'], ['[]', 'none'], ['{}', 'none'], ['{"mcp":[1]}', 'none'], ['{"mcp":{}}', 'none'],
        ['\ufeff{"mcp":{"a":null,"b":{"enabled":false},"__proto__":{}}}', 'a, b (disabled), __proto__'],
        [JSON.stringify({ mcp: Object.fromEntries([...'abcdefghijkl'].map((name) => [name, {}])) }),
            'a, b, c, d, e, f, g, h, i, j and 2 more'],
    ]) {
        write(file, text);
        const outcome = await checks.mcp(context);
        assert.equal(outcome.state === 'problem' ? 'problem' : outcome.detail, expected, text);
    }
    fs.rmSync(file);
    fs.mkdirSync(file);
    assert.equal(await state('mcp', context), 'problem');
});

test('a program that does not end is killed with its descendants', async (t) => {
    const standIns = new StandIns(temporaryFolder(t)).hanging('slow').endless('loud').add('failing', 'echo out; echo err >&2; exit 3');
    const at = (name) => path.join(standIns.folder, name);
    assert.deepEqual(await run(at('failing'), []), { code: 3, output: 'out\n', errors: 'err\n' });
    assert.equal((await run(at('missing'), [])).code, null);
    const slow = run(at('slow'), [], { timeoutMs: 1000 });
    const pids = await standIns.pids();
    t.after(() => pids.filter((pid) => !hasEnded(pid)).forEach((pid) => process.kill(pid, 'SIGKILL')));
    assert.equal((await slow).code, null);
    await until(() => pids.every(hasEnded));
    assert.equal((await run(at('loud'), [])).code, null);
});

test('programs are found on PATH', (t) => {
    const folder = temporaryFolder(t);
    writeProgram(path.join(folder, 'a'), '');
    write(path.join(folder, 'b'));
    fs.mkdirSync(path.join(folder, 'c'));
    assert.equal(findProgram('a', { PATH: `/nowhere:relative::${folder}` }), path.join(folder, 'a'));
    assert.equal(findProgram('c', { PATH: folder }), '');
    assert.equal(findProgram('a', {}), '');
    if (process.getuid() !== 0)
        assert.equal(findProgram('b', { PATH: folder }), '');
});

test('text for a terminal', () => {
    assert.equal(forTerminal('a\tb\nc\r\nd\re'), 'a\tb\nc\nd␍e');
    assert.equal(forTerminal('\u0000\u001b\u007f\u0080\u009f\u202a\u202e\u2066\u2069'), '␀␛␡\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd');
    assert.equal(forTerminal('ä€😀\u200d\u200f'), 'ä€😀\u200d\u200f');
    assert.equal(asLine(' a \n\n b\u001b '), 'a b␛');
    assert.equal(asLine('😀'.repeat(5), 3), '😀😀😀…');
    assert.equal(asLine('😀'.repeat(3), 3), '😀😀😀');
});
