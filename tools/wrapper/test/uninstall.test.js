// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');
const fs = require('fs');
const path = require('path');
const { spawnSync } = require('child_process');

const { temporaryFolder } = require('../../sdk-bridge/test/support/child');
const { StandIns } = require('../../sdk-bridge/test/support/standins');
const { test } = require('../../sdk-bridge/test/support/timed');
const { BRIDGE_DIR, Installation, WRAPPER_DIR, writeProgram } = require('./support/installation');

const STOP = 'systemctl --user disable --now tovi-bridge.service';

const exists = (...parts) => fs.lstatSync(path.join(...parts), { throwIfNoEntry: false }) !== undefined;

//! Every file below a folder, as paths relative to it.
function filesIn(folder, below = '') {
    return fs.readdirSync(path.join(folder, below), { withFileTypes: true }).flatMap((entry) => {
        const file = path.join(below, entry.name);
        return entry.isDirectory() ? filesIn(folder, file) : [file];
    });
}

function write(file, text = 'x') {
    fs.mkdirSync(path.dirname(file), { recursive: true });
    fs.writeFileSync(file, text);
}

//! An installation with stand-ins for everything that acts on the system: no package owns a file, unless the test says so.
function start(t) {
    const installation = new Installation(t);
    const folder = fs.realpathSync(temporaryFolder(t));
    const standIns = new StandIns(folder).add('dpkg-query', 'exit 1').add('systemctl', 'exit 0').add('apt-get', 'exit 0')
        .add('sudo', 'exit 0').add('id', 'echo 0');
    const env = { PATH: `${folder}:${process.env.PATH}` };
    const calls = () => standIns.calls.filter((call) => !/^(dpkg-query|id)/.test(call));
    const run = (args, { request = ['uninstall'], ...options } = {}) =>
        installation.run([...request, ...args], { ...options, env: { ...env, ...options.env } });
    return { installation, standIns, calls, run, ...installation };
}

//! Records the installed files, and other entries. Entries of the list that begin with no slash are below the prefix.
function record({ prefix, parts }, entries = filesIn(prefix)) {
    const lines = entries.map((entry) => (entry.startsWith('/') ? entry : path.join(prefix, entry)));
    const manifest = path.join(parts, 'install_manifest.txt');
    write(manifest, [...lines, manifest, ''].join('\n'));
    return manifest;
}

test('an installation by hand is removed without a trace, and nothing else', async (t) => {
    const context = start(t);
    const { prefix, calls, run } = context;
    write(path.join(prefix, 'share/knotifications5/loomra-kde.notifyrc'));
    write(path.join(prefix, 'share/tovi-forkeldaos/deep/er/file'));
    record(context);
    write(path.join(prefix, 'share/knotifications5/other.notifyrc'));
    write(path.join(prefix, 'share/tovi-forkeldaos/models/mine.bin'));
    const { code, output, errors } = await run(['-y']);
    assert.deepEqual([code, errors], [0, '']);
    assert.match(output, /^tovictl was installed in .* by `cmake --install`\.\nRemoved from .*\.\n$/);
    assert.deepEqual(filesIn(prefix).sort(),
        ['share/knotifications5/other.notifyrc', 'share/tovi-forkeldaos/models/mine.bin']);
    assert.ok(!exists(prefix, 'libexec/tovi-forkeldaos'));
    assert.ok(!exists(prefix, 'share/tovi-forkeldaos/deep'));
    assert.ok(exists(prefix, 'bin')); // it may have been there before
    assert.ok(exists(BRIDGE_DIR, 'bridge.js')); // behind a symbolic link
    assert.deepEqual(calls(), [STOP]);
});

test('it asks before', async (t) => {
    const context = start(t);
    const { prefix, calls, run } = context;
    record(context);
    const before = filesIn(prefix);
    for (const input of ['', '\n', 'n\n', 'no\n', 'maybe\n', 'yy\n']) {
        const { code, output } = await run([], { input });
        assert.equal(code, 1, input);
        assert.match(output, /Stop the bridge and remove the \d+ files that are listed in .*\? \[y\/N\] /);
        assert.deepEqual(filesIn(prefix), before);
    }
    assert.deepEqual(calls(), []);
    assert.equal((await run([], { input: 'y\n' })).code, 0);
    assert.deepEqual(filesIn(prefix), []);
});

test('hostile entries of the manifest are refused', async (t) => {
    const context = start(t);
    const { prefix, parts, run } = context;
    const outside = fs.realpathSync(temporaryFolder(t));
    write(path.join(outside, 'precious'));
    write(path.join(prefix, '..precious'));
    write(path.join(prefix, 'etc/kept/file'));
    write(path.join(prefix, 'a b'));
    write(path.join(prefix, '-rf'));
    write(path.join(prefix, '*'));
    write(path.join(prefix, 'starred'));
    fs.symlinkSync(outside, path.join(prefix, 'way-out'));
    fs.symlinkSync(outside, path.join(prefix, 'link'));
    const sibling = `${prefix}-sibling`;
    t.after(() => fs.rmSync(sibling, { recursive: true, force: true }));
    write(path.join(sibling, 'precious'));

    const manifest = path.join(parts, 'install_manifest.txt');
    write(manifest, [
        path.join(outside, 'precious'),
        'etc/kept/file',
        './etc/kept/file',
        '..',
        '/',
        '/etc',
        '/nowhere/at/all',
        `${prefix}/../${path.basename(outside)}/precious`,
        `${prefix}/./etc/kept/file`,
        `${prefix}//etc/kept/file`,
        `${prefix}/etc/kept/..`,
        `${prefix}/etc/kept`,
        `${prefix}/etc/`,
        prefix,
        `${prefix}/`,
        `${prefix}/way-out/precious`,
        `${sibling}/precious`,
        '',
        '-rf',
        '--no-preserve-root',
        `${prefix}/no\u001b[2Jsuch/..`,
        // Good ones.
        `${prefix}/a b`,
        `${prefix}/-rf`,
        `${prefix}/*`,
        `${prefix}/link`,
        `${prefix}/missing`,
        `${prefix}/bin/tovictl`, // the last line has no line break
    ].join('\n'));
    const { code, output, errors } = await run(['-y']);
    assert.equal(code, 0, errors);
    assert.match(output, /Removed from/);
    for (const kept of [`${outside}/precious`, `${sibling}/precious`, `${prefix}/etc/kept/file`, `${prefix}/starred`,
        `${prefix}/way-out`, `${prefix}/..precious`, `${parts}/tovictl`])
        assert.ok(exists(kept), kept);
    for (const gone of ['a b', '-rf', '*', 'link', 'bin/tovictl'])
        assert.ok(!exists(prefix, gone), gone);
    assert.ok(!exists(manifest));
    assert.match(errors, /^tovictl: kept, because it is not an absolute path: etc\/kept\/file$/m);
    assert.match(errors, /^tovictl: kept, because it is not a plain path: .*\/etc\/kept\/\.\.$/m);
    assert.match(errors, /^tovictl: kept, because it is a directory: .*\/etc\/kept$/m);
    assert.match(errors, new RegExp(`^tovictl: kept, because it is not in ${prefix}: ${outside}/precious$`, 'm'));
    assert.match(errors, /: .*\/no\?\[2Jsuch\/\.\.$/m);
    assert.doesNotMatch(errors, /missing/);
});

test('a prefix with a symbolic link in its path is the same prefix', async (t) => {
    const context = start(t);
    const link = path.join(fs.realpathSync(temporaryFolder(t)), 'prefix');
    fs.symlinkSync(context.prefix, link);
    record(context, filesIn(context.prefix).map((file) => path.join(link, file)));
    assert.equal((await context.run(['-y'], { command: path.join(link, 'bin/tovictl') })).code, 0);
    assert.deepEqual(filesIn(context.prefix), []);
});

test('it can be run directly', async (t) => {
    const context = start(t);
    record(context);
    assert.equal((await context.run(['--yes'], { command: context.uninstaller, request: [] })).code, 0);
    assert.deepEqual(filesIn(context.prefix), []);
});

//! Installs the wrapper by CMake into a folder, and then another component alone. `env` adds variables.
function installByCMake(t, prefix, env = {}) {
    const folder = temporaryFolder(t);
    const root = path.join(WRAPPER_DIR, '..', '..');
    write(path.join(folder, 'late file'));
    write(path.join(folder, 'CMakeLists.txt'), `
        cmake_minimum_required(VERSION 3.25)
        project(wrapper LANGUAGES NONE)
        add_subdirectory([[${WRAPPER_DIR}]] wrapper)
        install(FILES "late file" DESTINATION share/tovi-forkeldaos COMPONENT late)
        include([[${root}/cmake/InstallManifest.cmake]])
    `);
    const cmake = (...args) => {
        const { status, stderr } = spawnSync('cmake', args, { env: { ...process.env, ...env }, encoding: 'utf8' });
        assert.equal(status, 0, stderr);
    };
    const build = path.join(folder, 'build');
    cmake('-S', folder, '-B', build);
    cmake('--install', build, '--prefix', prefix);
    cmake('--install', build, '--prefix', prefix, '--component', 'late');
}

test('what `cmake --install` has installed is removed', async (t) => {
    const { run } = start(t);
    const prefix = path.join(fs.realpathSync(temporaryFolder(t)), 'a prefix');
    installByCMake(t, prefix);
    assert.ok(exists(prefix, 'libexec/tovi-forkeldaos/cli/prompt.js'));
    assert.ok(exists(prefix, 'share/tovi-forkeldaos/late file'));
    const { code, output, errors } = await run(['-y'], { command: path.join(prefix, 'bin/tovictl') });
    assert.deepEqual([code, errors], [0, ''], output);
    assert.deepEqual(filesIn(prefix), []);
    assert.deepEqual(fs.readdirSync(path.join(prefix, 'libexec')), []);
});

test('packages have no record of the installation', (t) => {
    const stage = temporaryFolder(t);
    installByCMake(t, '/usr', { DESTDIR: stage });
    assert.ok(exists(stage, 'usr/libexec/tovi-forkeldaos/tovictl-uninstall'));
    assert.ok(!exists(stage, 'usr/libexec/tovi-forkeldaos/install_manifest.txt'));
    assert.equal(fs.statSync(path.join(stage, 'usr/libexec/tovi-forkeldaos/tovictl-uninstall')).mode & 0o777, 0o755);
});

test('a package is left to the package manager', async (t) => {
    const { standIns, calls, run, prefix, uninstaller } = start(t);
    standIns.printing('dpkg-query', `tovi-forkeldaos: ${uninstaller}\n`);
    const before = filesIn(prefix);
    const declined = await run([], { input: 'n\n' });
    assert.equal(declined.code, 1);
    assert.match(declined.output,
        /^tovictl was installed by the Debian package tovi-forkeldaos\. To remove it:\n {2}apt-get purge tovi-forkeldaos\n/);
    assert.deepEqual(calls(), []);
    assert.equal((await run([], { input: 'y\n' })).code, 0);
    assert.equal((await run(['-y'])).code, 0);
    assert.deepEqual(calls(), [STOP, 'apt-get purge tovi-forkeldaos', STOP, 'apt-get purge --yes tovi-forkeldaos']);
    standIns.add('id', 'echo 1000');
    const { output } = await run(['-y']);
    assert.match(output, /\n {2}sudo apt-get purge tovi-forkeldaos\n/);
    assert.equal(calls().at(-1), 'sudo -- apt-get purge --yes tovi-forkeldaos');
    standIns.add('sudo', 'exit 5');
    assert.equal((await run(['-y'])).code, 1);
    assert.deepEqual(filesIn(prefix), before);
});

const isRoot = process.getuid() === 0 && spawnSync('setpriv', ['--reuid=65534', '--clear-groups', 'true']).status === 0;

test('what only root may remove is left to root', { skip: isRoot ? false : 'only root can become another user' }, async (t) => {
    const context = start(t);
    const { prefix, standIns, calls, uninstaller } = context;
    record(context);
    for (const folder of [prefix, standIns.folder, context.installation.home])
        fs.chmodSync(folder, 0o755);
    write(standIns.callsFile, '');
    fs.chmodSync(standIns.callsFile, 0o666);
    standIns.add('id', 'echo 65534');
    const before = filesIn(prefix);
    const result = await context.run(['--clear-groups', uninstaller, '-y'], { command: 'setpriv', request: ['--reuid=65534'] });
    assert.equal(result.code, 0, result.errors);
    assert.match(result.output, new RegExp(`\n  sudo ${uninstaller} -y --keep-user-files\n`));
    assert.equal(calls().at(-1), `sudo -- ${uninstaller} -y --keep-user-files`);
    assert.deepEqual(filesIn(prefix), before);
});

test('a source tree has nothing to remove', async (t) => {
    const { run, installation, calls } = start(t);
    const root = path.join(fs.realpathSync(temporaryFolder(t)), 'source');
    fs.cpSync(WRAPPER_DIR, path.join(root, 'tools/wrapper'), { recursive: true });
    write(path.join(root, 'CMakeLists.txt'));
    write(path.join(root, 'build/release/install_manifest.txt'), `/somewhere/x\n${installation.uninstaller}\n`);
    const before = filesIn(root);
    const { code, output } = await run(['-y'], { command: path.join(root, 'tools/wrapper/tovictl') });
    assert.equal(code, 0);
    assert.match(output, /is run from the source tree .*; nothing was installed\. To remove it:\n {2}rm -r /);
    assert.ok(output.includes(`An installed copy is removed by: ${installation.uninstaller}\n`));
    assert.deepEqual([filesIn(root), calls()], [before, []]);
});

test('an unknown installation is not touched', async (t) => {
    const { prefix, run, calls } = start(t);
    const before = filesIn(prefix);
    const { code, errors } = await run(['-y']);
    assert.equal(code, 1);
    assert.match(errors, /^tovictl: no package owns .*install_manifest\.txt does not exist\. Use what installed it\.\n$/);
    assert.deepEqual([filesIn(prefix), calls()], [before, []]);
});

const OWN = ['.local/state/loomra-bridge/sessions/a.jsonl', '.config/loomra-kderc', '.config/kde.org/loomra-kde.conf',
    '.config/tovi-bridge.env', '.local/share/loomra-kde/loomra-debug.log', '.cache/loomra-kde/qmlcache/x'];
const FOREIGN = ['.config/loomra/loomra.json', '.local/share/tovi-forkeldaos/models/voice.onnx', '.config/kde.org/other.conf',
    '.config/loomra-kderc.bak', 'notes.txt'];

function fillHome({ installation: { home } }) {
    [...OWN, ...FOREIGN].forEach((file) => write(path.join(home, file)));
    return home;
}

test('-y removes the program and the user\'s files, and names them', async (t) => {
    const context = start(t);
    const home = fillHome(context);
    record(context);
    const { code, output } = await context.run(['-y']);
    assert.equal(code, 0);
    for (const file of ['.local/state/loomra-bridge', ...OWN.slice(1, 4), '.local/share/loomra-kde', '.cache/loomra-kde'])
        assert.ok(output.includes(`  ${path.join(home, file)}\n`), file);
    assert.ok(output.includes(`Kept in any case, because you or other programs put it there: ${path.join(home, '.config/loomra')}\n`));
    assert.deepEqual(filesIn(home).sort(), [...FOREIGN].sort());
    assert.ok(!exists(context.wrapper));
});

test('--keep-user-files keeps them without a question', async (t) => {
    for (const [args, input] of [[['-y', '--keep-user-files'], ''], [['--keep-user-files'], 'y\ny\n']]) {
        const context = start(t);
        const home = fillHome(context);
        record(context);
        const { code, output } = await context.run(args, { input });
        assert.equal(code, 0);
        assert.ok(!exists(context.wrapper));
        assert.doesNotMatch(output, /Your own files/);
        assert.deepEqual(filesIn(home).sort(), [...OWN, ...FOREIGN].sort());
    }
});

test('-y keeps the user\'s files if the program is kept', async (t) => {
    const failing = {
        'an unknown installation': () => {},
        'a package that cannot be removed': ({ standIns, uninstaller }) =>
            standIns.printing('dpkg-query', `tovi-forkeldaos: ${uninstaller}\n`).add('apt-get', 'exit 5'),
    };
    for (const [name, prepare] of Object.entries(failing)) {
        const context = start(t);
        const home = fillHome(context);
        prepare(context);
        const { code, output } = await context.run(['-y']);
        assert.equal(code, 1, name);
        assert.match(output, /They are kept, because the program is\. .*\n$/);
        assert.deepEqual(filesIn(home).sort(), [...OWN, ...FOREIGN].sort());
    }
});

test('under sudo the home of root is not touched', async (t) => {
    const context = start(t);
    const home = fillHome(context);
    record(context);
    const { code, output } = await context.run(['-y'], { env: { SUDO_USER: 'somebody' } });
    assert.equal(code, 0);
    assert.match(output, /Files of somebody are kept, because sudo started this/);
    assert.deepEqual(filesIn(home).sort(), [...OWN, ...FOREIGN].sort());
});

test('the two questions are separate', async (t) => {
    for (const [input, keepsProgram, keepsFiles] of [['y\nn\n', false, true], ['n\ny\n', true, false], ['y\ny\n', false, false],
        ['y\n', false, true]]) {
        const context = start(t);
        const home = fillHome(context);
        record(context);
        const { code } = await context.run([], { input });
        assert.equal(code, keepsProgram ? 1 : 0, input);
        assert.equal(exists(context.wrapper), keepsProgram, input);
        assert.deepEqual(filesIn(home).sort(), (keepsFiles ? [...OWN, ...FOREIGN] : FOREIGN).sort(), input);
    }
});

test('symbolic links are removed as such', async (t) => {
    const context = start(t);
    const home = fillHome(context);
    record(context);
    const elsewhere = temporaryFolder(t);
    write(path.join(elsewhere, 'loomra-bridge/file'));
    fs.symlinkSync(path.join(elsewhere, 'loomra-bridge'), path.join(elsewhere, 'state'));
    fs.mkdirSync(path.join(home, 'state'));
    fs.symlinkSync(path.join(elsewhere, 'loomra-bridge'), path.join(home, 'state/loomra-bridge'));
    const env = { XDG_STATE_HOME: path.join(home, 'state'), XDG_CACHE_HOME: 'relative' };
    const { code } = await context.run(['-y'], { env });
    assert.equal(code, 0);
    assert.ok(!exists(context.wrapper));
    assert.ok(exists(elsewhere, 'loomra-bridge/file'));
    assert.deepEqual(filesIn(home).sort(), [OWN[0], ...FOREIGN].sort());
});

test('without a usable home only the program is removed', async (t) => {
    for (const HOME of ['', '/', 'relative']) {
        const context = start(t);
        record(context);
        const { code, errors } = await context.run(['-y'], { env: { HOME } });
        assert.deepEqual([code, errors], [0, ''], HOME);
    }
});

test('wrong arguments and help', async (t) => {
    const { prefix, run } = start(t);
    const before = filesIn(prefix);
    for (const args of [['--force'], ['-y', 'x'], ['-yy'], ['']]) {
        const { code, errors } = await run(args);
        assert.equal(code, 2);
        assert.match(errors, /^tovictl: unexpected argument ".*": see `tovictl uninstall --help`\n$/);
    }
    for (const args of [['--help'], ['-h'], ['-y', '--help']]) {
        const { code, output, errors } = await run(args);
        assert.deepEqual([code, errors], [0, '']);
        assert.match(output, /^Usage: tovictl uninstall \[OPTIONS\]\n/);
    }
    assert.deepEqual(filesIn(prefix), before);
});
