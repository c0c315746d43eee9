// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Disks that are full, read-only or not there: the sessions go on in memory.

const assert = require('assert/strict');
const fs = require('fs');
const path = require('path');

const { reasonOf } = require('../lib/storage/trouble');
const { Stored, contents, names } = require('./support/stored');
const { test } = require('./support/timed');

//! A disk that fails with an error code at each write, after some bytes, until `code` is ''.
function failingDisk(t, code, bytes = 0) {
    const disk = { code };
    const write = fs.writeSync;
    t.mock.method(fs, 'writeSync', (fd, buffer, offset) => {
        if (!disk.code)
            return write(fd, buffer, offset);
        if (bytes > 0 && !disk.isTorn && buffer.length - offset > bytes) {
            disk.isTorn = true; // the rest fails
            return write(fd, buffer, offset, bytes);
        }
        disk.isTorn = false;
        throw Object.assign(new Error(`${disk.code}: write`), { code: disk.code, syscall: 'write' });
    });
    return disk;
}

test('on a full disk sessions go on in memory, and everything is written once there is room', (t) => {
    const stored = new Stored(t);
    const store = stored.open();
    const tea = stored.converse(store, 'tea');
    const disk = failingDisk(t, 'ENOSPC', 10);
    store.get(tea).add('user', 'milk');
    store.get(tea).add('assistant', 're: milk');
    const music = stored.converse(store, 'music');
    store.rename(tea, 'hot tea');

    const full = 'New messages are not saved: the disk is full. Free some space. ' +
        'Until then they are lost when the bridge ends.';
    assert.equal(store.trouble, full);
    assert.deepEqual(stored.warnings(), [full], 'once');
    assert.deepEqual(stored.notes, [full]);
    assert.deepEqual(names(store), ['music', 'hot tea']);
    assert.deepEqual(contents(store.get(tea)), ['tea', 're: tea', 'milk', 're: milk']);

    disk.code = '';
    stored.converse(store, 'light');
    assert.equal(store.trouble, '');
    assert.deepEqual(stored.notes.slice(1), ['Conversations are saved again']);
    const again = stored.open();
    assert.deepEqual(names(again), ['light', 'music', 'hot tea']);
    assert.deepEqual(contents(again.get(tea)), ['tea', 're: tea', 'milk', 're: milk']);
    assert.deepEqual(contents(again.get(music)), ['music', 're: music']);

    disk.code = 'ENOSPC';
    store.get(tea).add('user', 'sugar');
    assert.deepEqual(stored.warnings(), [full, full], 'and again after it had worked');
});

test('one message is written when there is room, and the last chance is the end', (t) => {
    const stored = new Stored(t);
    const store = stored.open();
    const disk = failingDisk(t, 'EDQUOT');
    const id = stored.converse(store, 'tea');
    assert.match(store.trouble, /your disk quota is used up/);
    disk.code = '';
    store.close();
    assert.deepEqual(contents(stored.open().get(id)), ['tea', 're: tea']);
    assert.equal(fs.readFileSync(stored.fileOf(id), 'utf8').match(/"tea"/g).length, 1);
});

test('a session that was deleted while the disk was full stays deleted', (t) => {
    const stored = new Stored(t);
    const store = stored.open();
    const id = stored.converse(store, 'tea');
    const disk = failingDisk(t, 'ENOSPC');
    store.get(id).add('user', 'milk');
    store.delete(id);
    assert.equal(fs.existsSync(stored.fileOf(id)), false);
    disk.code = '';
    store.close();
    assert.deepEqual(stored.open().list(), []);
});

test('what is not saved is not unloaded', (t) => {
    const stored = new Stored(t);
    const store = stored.open();
    const disk = failingDisk(t, 'ENOSPC');
    const ids = Array.from({ length: 60 }, (_, n) => stored.converse(store, `${n}`));
    ids.forEach((id, n) => assert.deepEqual(contents(store.get(id)), [`${n}`, `re: ${n}`]));
    disk.code = '';
    store.close();
    const again = stored.open();
    ids.forEach((id, n) => assert.deepEqual(contents(again.get(id)), [`${n}`, `re: ${n}`]));
});

test('a file in the place of the folder', (t) => {
    const stored = new Stored(t);
    stored.write(stored.folder, '');
    const store = stored.open();
    const id = stored.converse(store, 'tea');
    const text = 'Conversations are neither loaded nor saved: a file is in the place of the folder ' +
        `"${stored.folder}". Move it away.`;
    assert.equal(store.trouble, text);
    assert.deepEqual(stored.notes, [text]);
    assert.deepEqual(contents(store.get(id)), ['tea', 're: tea']);
    store.delete(stored.converse(store, 'gone'));
    assert.equal(stored.notes.length, 1);

    // The folder appears while the bridge runs, with sessions.
    fs.rmSync(stored.folder);
    const music = stored.converse(stored.open(), 'music');
    store.get(id).add('user', 'milk');
    assert.equal(store.trouble, '');
    assert.deepEqual(names(store), ['tea', 'music']);
    assert.deepEqual(contents(store.get(music)), ['music', 're: music']);
    assert.deepEqual(contents(stored.open().get(id)), ['tea', 're: tea', 'milk']);
});

test('a folder that the user may not write', { skip: process.getuid() === 0 && 'root may write everywhere' }, (t) => {
    const stored = new Stored(t);
    stored.converse(stored.open(), 'tea');
    const parent = path.dirname(stored.folder);
    fs.chmodSync(parent, 0o500);
    try {
        const store = stored.open({ folder: path.join(parent, 'new') });
        assert.match(store.trouble, /the bridge is not allowed to use ".*". Check its owner and permissions\.$/);
        stored.converse(store, 'music');
        assert.deepEqual(names(store), ['music']);
    } finally {
        fs.chmodSync(parent, 0o700); // before the folder is removed
    }
});

test('a file system that became read-only', (t) => {
    const stored = new Stored(t);
    const id = stored.converse(stored.open(), 'tea');
    const open = fs.openSync;
    t.mock.method(fs, 'openSync', (file, flags, mode) => {
        if (flags & (fs.constants.O_RDWR | fs.constants.O_WRONLY))
            throw Object.assign(new Error('EROFS'), { code: 'EROFS', path: file });
        return open(file, flags, mode);
    });
    const store = stored.open();
    assert.equal(store.trouble, '', 'reading works');
    store.get(id).add('user', 'milk');
    stored.converse(store, 'music');
    assert.deepEqual(contents(store.get(id)), ['tea', 're: tea', 'milk']);
    assert.equal(stored.warnings().length, 1);
    assert.match(store.trouble, new RegExp(`"${stored.folder}" is on a read-only file system. Make it writable`));
});

test('a folder that is removed while the bridge runs is made again', (t) => {
    const stored = new Stored(t);
    const store = stored.open();
    const id = stored.converse(store, 'tea');
    fs.rmSync(stored.folder, { recursive: true });
    store.get(id).add('user', 'milk');
    store.keep(store.get(id));
    assert.equal(store.trouble, '');
    assert.deepEqual(contents(stored.open().get(id)), ['milk']);
    assert.deepEqual(contents(store.get(id)), ['tea', 're: tea', 'milk']);
});

test('two stores on one folder keep each other\'s messages', (t) => {
    const stored = new Stored(t);
    const [a, b] = [stored.open(), stored.open()];
    const ids = [];
    for (let n = 0; n < 20; ++n)
        ids.push(stored.converse(n % 2 ? a : b, `${n}`));
    const third = stored.open();
    assert.deepEqual(names(third).sort(), ids.map((_, n) => `${n}`).sort());

    // Both go on with the same conversation, and one of them leaves a torn line.
    const fourth = stored.open();
    third.get(ids[0]).add('user', 'x');
    fs.appendFileSync(stored.fileOf(ids[0]), '{"role":"us');
    fourth.get(ids[0]).add('user', 'y');
    third.get(ids[0]).add('user', 'z');
    assert.deepEqual(contents(stored.open().get(ids[0])), ['0', 're: 0', 'x', 'y', 'z']);

    // What one deletes and the other goes on with is there, without what was deleted.
    third.delete(ids[0]);
    fourth.get(ids[0]).add('user', 'more');
    fourth.keep(fourth.get(ids[0]));
    assert.deepEqual(contents(stored.open().get(ids[0])), ['more']);
});

test('every reason names what to do', () => {
    for (const [code, words] of [
        ['ENOSPC', 'the disk is full. Free some space'],
        ['EFBIG', 'a limit for the size of files is reached. Delete long conversations'],
        ['EACCES', 'the bridge is not allowed to use "/a\\nb". Check its owner and permissions'],
        ['EMFILE', 'too many files are open. Restart the bridge'],
        ['EIO', '"/a\\nb" can\'t be used (EIO). Check the disk'],
        [undefined, '"/a\\nb" can\'t be used (Error). Check the disk'],
    ])
        assert.equal(reasonOf(Object.assign(new Error('x'), { code }), '/a\nb'), words);
});
