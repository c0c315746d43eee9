// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');
const fs = require('fs');
const path = require('path');

const { temporaryFolder } = require('../../sdk-bridge/test/support/child');
const { test } = require('../../sdk-bridge/test/support/timed');
const { Installation, WRAPPER_DIR, writeProgram } = require('./support/installation');

//! The arguments and the path of the bridge that the stand-in for the program got.
function received({ output }) {
    const parts = output.split('\0').slice(0, -1);
    return { bridge: parts.pop(), args: parts };
}

//! Replaces what answers requests by scripts that print their name and arguments.
function fakeParts(parts) {
    for (const name of ['prompt', 'diagnose']) {
        fs.writeFileSync(path.join(parts, 'cli', `${name}.js`),
            `console.log(JSON.stringify(['${name}', ...process.argv.slice(2)]))`);
    }
    writeProgram(path.join(parts, 'tovictl-uninstall'), '#!/bin/sh\nprintf \'["uninstall"\'; printf \',"%s"\' "$@"; echo \']\'\n');
}

test('arguments reach the program unchanged', async (t) => {
    const installation = new Installation(t);
    for (const args of [
        [], ['-m'], ['--main'], ['-t'], ['--voice-test'], ['models'], ['help'], ['-h'], ['-V'],
        ['', ' ', 'a b', '*', '$(id)', '`id`', '"', '\'', '\\', '-n', '-e', 'line\nbreak', 'ü', '--', '--prompts', 'tests'],
        ['-m', 'x', '--model=y'],
    ]) {
        const result = await installation.run(args);
        assert.equal(result.code, 0);
        assert.deepEqual(received(result).args, args);
        assert.equal(result.errors, '');
    }
    assert.equal((await installation.run(['--version'])).output, 'tovictl 0.3.2\n');
});

test('the exit status is the program\'s', async (t) => {
    const installation = new Installation(t);
    for (const status of [0, 1, 2, 77, 127, 255])
        assert.equal((await installation.run(['models'], { env: { STATUS: String(status) } })).code, status);
    writeProgram(installation.program, '#!/bin/sh\nkill -TERM $$\n');
    assert.equal((await installation.run([])).signal, 'SIGTERM');
});

test('the program replaces the shell', async (t) => {
    const installation = new Installation(t);
    writeProgram(installation.program, '#!/bin/sh\necho $$\n');
    const command = installation.start([]);
    assert.equal((await command.ended).output, `${command.process.pid}\n`);
});

test('the first request among the arguments decides', async (t) => {
    const installation = new Installation(t);
    fakeParts(installation.parts);
    for (const [args, expected] of [
        [['--prompt', 'Hi'], ['prompt', '--prompt', 'Hi']],
        [['-p', 'Hi', '-m', 'x'], ['prompt', '-p', 'Hi', '-m', 'x']],
        [['--prompt=Hi there'], ['prompt', '--prompt=Hi there']],
        [['--prompt='], ['prompt', '--prompt=']],
        [['--prompt', 'test'], ['prompt', '--prompt', 'test']],
        [['-m', '--prompt', 'help'], ['prompt', '--prompt', 'help']],
        [['test'], ['diagnose', installation.program]],
        [['--main', 'test', '--json', '--help'], ['diagnose', installation.program, '--json', '--help']],
        [['test', 'uninstall', '--prompt'], ['diagnose', installation.program, 'uninstall', '--prompt']],
        [['uninstall', '-y'], ['uninstall', '-y']],
        [['uninstall', '--help'], ['uninstall', '--help']],
    ])
        assert.deepEqual(JSON.parse((await installation.run(args)).output), expected, args.join(' '));

    for (const args of [['--help', 'uninstall'], ['models', '--prompt', 'x'], ['-V', 'test'], ['help', '-p', 'x']])
        assert.deepEqual(received(await installation.run(args)).args, args);
});

test('it is found through symbolic links and on PATH', async (t) => {
    const installation = new Installation(t);
    const bin = path.join(temporaryFolder(t), 'a bin');
    fs.mkdirSync(bin);
    fs.symlinkSync(installation.wrapper, path.join(bin, 'first'));
    fs.symlinkSync('first', path.join(bin, 'tovictl'));
    assert.deepEqual(received(await installation.run(['x'], { command: path.join(bin, 'tovictl') })).args, ['x']);
    const onPath = { command: 'sh', env: { PATH: `${bin}:${process.env.PATH}` } };
    assert.deepEqual(received(await installation.run(['-c', 'cd / && tovictl x'], onPath)).args, ['x']);
    assert.deepEqual(received(await installation.run(['tovictl', 'x'], { command: 'sh', cwd: bin })).args, ['x']);
});

test('the program is led to the bridge of the installation', async (t) => {
    const installation = new Installation(t);
    assert.equal(received(await installation.run([])).bridge, path.join(installation.parts, 'sdk-bridge'));
    assert.equal(received(await installation.run([], { env: { LOOMRA_BRIDGE_PATH: '/mine' } })).bridge, '/mine');
    fs.rmSync(path.join(installation.parts, 'sdk-bridge'));
    assert.equal(received(await installation.run([])).bridge, 'unset');
});

//! A source tree with the wrapper. Returns its root.
function sourceTree(t) {
    const root = path.join(fs.realpathSync(temporaryFolder(t)), 'source tree');
    fs.cpSync(WRAPPER_DIR, path.join(root, 'tools/wrapper'), { recursive: true });
    return root;
}

test('in a source tree it runs the release build', async (t) => {
    const installation = new Installation(t);
    const root = sourceTree(t);
    const command = path.join(root, 'tools/wrapper/tovictl');
    const { code, errors } = await installation.run([], { command });
    assert.equal(code, 127);
    assert.match(errors, /^tovictl: .*\/build\/release\/bin\/tovictl is missing: build it with `.*\/run --version`\n$/);

    writeProgram(path.join(root, 'build/release/bin/tovictl'), '#!/bin/sh\nprintf "%s\\0" "$XDG_DATA_DIRS" "$@" bridge\n');
    const run = async (env) => received(await installation.run(['a b'], { command, env })).args;
    assert.deepEqual(await run({ XDG_DATA_DIRS: '' }), ['/usr/local/share:/usr/share', 'a b']);
    assert.deepEqual(await run({ XDG_DATA_DIRS: '/mine' }), ['/mine', 'a b']);
    fakeParts(path.join(root, 'tools/wrapper'));
    assert.deepEqual(JSON.parse((await installation.run(['test'], { command })).output),
        ['diagnose', path.join(root, 'build/release/bin/tovictl')]);
});

test('what is missing is named, with status 127', async (t) => {
    const installation = new Installation(t);
    const bin = temporaryFolder(t);
    for (const tool of ['sh', 'readlink', 'dirname'])
        fs.symlinkSync(`/bin/${tool}`, path.join(bin, tool));
    for (const request of [['--prompt', 'x'], ['test']]) {
        const { code, output, errors } = await installation.run(request, { env: { PATH: bin } });
        assert.deepEqual([code, output], [127, '']);
        assert.match(errors, /^tovictl: this request needs Node\.js 18 or later, .*apt install nodejs\n$/);
    }
    assert.deepEqual(received(await installation.run(['x'], { env: { PATH: bin } })).args, ['x']);

    fs.rmSync(path.join(installation.parts, 'cli'), { recursive: true });
    fs.rmSync(installation.program);
    fs.rmSync(installation.uninstaller);
    for (const args of [[], ['--prompt', 'x'], ['test'], ['uninstall']]) {
        const { code, errors } = await installation.run(args);
        assert.equal(code, 127);
        assert.match(errors, /^tovictl: .* is missing: install tovictl again\n$/);
    }
});
