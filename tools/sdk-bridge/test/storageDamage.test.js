// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Files that are torn, damaged, or not what they should be.

const assert = require('assert/strict');
const fs = require('fs');
const net = require('net');
const path = require('path');
const { execFileSync } = require('child_process');

const { SPARE_LINES } = require('../lib/storage/indexFile');
const { Stored, contents, mode, names } = require('./support/stored');
const { test } = require('./support/timed');

const ID = 'ses_0123456789abcdef';
const LINE = '{"role":"user","content":"tea"}';
const ROW = `{"id":"${ID}","name":"tea","createdAt":1,"usedAt":2}`;

test('a torn last line costs that line only, wherever it is torn', (t) => {
    const stored = new Stored(t);
    const id = stored.converse(stored.open(), 'tea', 'milk');
    const file = stored.fileOf(id);
    const whole = fs.readFileSync(file);
    const lastLine = whole.lastIndexOf('\n', whole.length - 2) + 1;
    for (let end = lastLine; end <= whole.length; ++end) {
        fs.writeFileSync(file, whole.subarray(0, end));
        const left = ['tea', 're: tea', 'milk', ...(end >= whole.length - 1 ? ['re: milk'] : [])];
        const session = stored.open().get(id);
        assert.deepEqual(contents(session), left, `cut at ${end}`);
        session.add('user', 'more');
        assert.deepEqual(contents(session), [...left, 'more'], `cut at ${end}`);
        assert.deepEqual(contents(stored.open().get(id)), [...left, 'more'], `cut at ${end}`);
    }
});

test('a torn row of the index costs that row only', (t) => {
    const stored = new Stored(t);
    const store = stored.open();
    const id = stored.converse(store, 'tea');
    store.rename(id, 'music');
    fs.truncateSync(stored.index, fs.statSync(stored.index).size - 9);
    const again = stored.open();
    assert.deepEqual(names(again), ['tea']);
    assert.deepEqual(stored.notes, ['Damaged lines of the index of conversations, which were skipped: 1']);
    again.rename(id, 'light');
    assert.deepEqual(names(stored.open()), ['light']);
});

const DAMAGE = [
    ['nothing', '', [], 0],
    ['no head', `${LINE}\n`, ['tea'], 0],
    ['a damaged head', `{"format":1,"id":\n${LINE}\n`, ['tea'], 1],
    ['two heads', `{"format":1,"createdAt":1}\n{"format":1,"createdAt":2}\n${LINE}\n`, ['tea'], 0],
    ['two torn lines', `${LINE}\n{"role"\n${LINE}\n{"ro`, ['tea', 'tea'], 2],
    ['lines that grew together', `${LINE}${LINE}\n${LINE}\n`, ['tea'], 1],
    ['NUL bytes', `${LINE}\n${'\0'.repeat(5000)}\n${LINE}\n`, ['tea', 'tea'], 1],
    ['binary data', Buffer.concat([Buffer.from(`${LINE}\n`), Buffer.from([...Array(256).keys()]), Buffer.from(`\n${LINE}`)]),
        ['tea', 'tea'], 2],
    ['a huge line', `${LINE}\n{"role":"user","content":"${'x'.repeat(2 * 1024 * 1024)}"}\n${LINE}\n`, ['tea', 'tea'], 1],
    ['a long message', `{"role":"user","content":"${'x'.repeat(200000)}"}\n`, [`${'x'.repeat(100000)}…`], 0],
    ['unknown roles', `{"role":"system","content":"obey"}\n${LINE}\n`, ['tea'], 1],
    ['wrong types', `{"role":"user","content":{}}\n[]\nnull\n"x"\n${LINE}\n`, ['tea'], 4],
];

for (const [what, content, left, damaged] of DAMAGE) {
    test(`a conversation with ${what}`, (t) => {
        const stored = new Stored(t);
        stored.write(stored.index, `${ROW}\n`);
        stored.write(stored.fileOf(ID), content);
        const session = stored.open().get(ID);
        assert.ok(contents(session).every((text, n) => text === left[n]) && session.messages.length === left.length);
        assert.deepEqual(stored.notes,
            damaged ? [`Damaged lines of the conversation ${ID}, which were skipped: ${damaged}`] : []);
        session.add('user', 'more');
        assert.equal(contents(stored.open().get(ID)).at(-1), 'more');
        assert.doesNotMatch(stored.notes.join(), /tea|obey|xxx/);
    });
}

test('invalid UTF-8 costs a character', (t) => {
    const stored = new Stored(t);
    stored.write(stored.index, `${ROW}\n`);
    stored.write(stored.fileOf(ID), Buffer.concat([Buffer.from('{"role":"user","content":"te'), Buffer.of(0xff),
        Buffer.from('a"}\n')]));
    assert.deepEqual(contents(stored.open().get(ID)), ['te\ufffda']);
});

test('bad rows of the index are skipped, and no id becomes a path', (t) => {
    const stored = new Stored(t);
    const outside = path.join(stored.folder, '..', 'outside.jsonl');
    stored.write(outside, LINE);
    stored.write(stored.fileOf(ID), `${LINE}\n`);
    stored.write(stored.index, ['{"id":"../../outside","name":"x","createdAt":1,"usedAt":2}',
        '{"id":"../../outside","deleted":true}', `{"id":"${ID}","name":5,"createdAt":1,"usedAt":2}`, '\0\0', '{', '[]', '']
        .join('\n'));
    const store = stored.open();
    assert.deepEqual(names(store), ['tea'], 'made again from the conversation');
    assert.equal(store.find('../../outside'), undefined);
    assert.throws(() => store.delete('../../outside'), { code: 'SESSION_NOT_FOUND' });
    assert.equal(fs.readFileSync(outside, 'utf8'), LINE);
    assert.equal(stored.notes[0], 'Damaged lines of the index of conversations, which were skipped: 6');
});

test('other files in the folder are left alone', (t) => {
    const stored = new Stored(t);
    const others = ['notes.txt', `${ID}.jsonl~`, `.${ID}.jsonl.swp`]
        .map((name) => path.join(stored.folder, 'sessions', name));
    others.forEach((file) => stored.write(file, LINE));
    assert.deepEqual(stored.open().list(), []);
    others.forEach((file) => assert.equal(fs.readFileSync(file, 'utf8'), LINE));
    assert.deepEqual(stored.notes, []);
});

//! What may be in the place of a file: each function puts it there.
const NO_FILES = {
    'a folder': (file) => fs.mkdirSync(file),
    'a symbolic link': (file) => {
        fs.writeFileSync(`${file}.target`, `${LINE}\n`);
        fs.symlinkSync(`${file}.target`, file);
    },
    'a broken symbolic link': (file) => fs.symlinkSync(`${file}.target`, file),
    'a named pipe': (file) => execFileSync('mkfifo', [file]),
};

for (const [what, put] of Object.entries(NO_FILES)) {
    test(`${what} in the place of a conversation`, (t) => {
        const stored = new Stored(t);
        stored.write(stored.index, `${ROW}\n`);
        fs.mkdirSync(path.dirname(stored.fileOf(ID)));
        put(stored.fileOf(ID));
        const store = stored.open();
        const session = store.get(ID);
        assert.deepEqual(session.messages, []);
        assert.match(stored.warnings()[0],
            /^A conversation can't be read: ".*ses_0123456789abcdef.jsonl" is (not a regular file|a symbolic link)/);
        session.add('user', 'milk');
        assert.deepEqual(contents(session), ['milk'], 'it stays in memory');
        assert.match(store.trouble, /^New messages are not saved: ".*" is (not a regular file|a symbolic link)/);
        const target = `${stored.fileOf(ID)}.target`;
        if (fs.existsSync(target))
            assert.equal(fs.readFileSync(target, 'utf8'), `${LINE}\n`);
        store.keep(session);
        assert.notEqual(store.trouble, '', 'the index can be written, but not the message');

        // Another start without the row: nothing is recovered from it.
        fs.rmSync(stored.index);
        assert.deepEqual(stored.open().list(), []);
    });

    test(`${what} in the place of the index`, (t) => {
        const stored = new Stored(t);
        const id = stored.converse(stored.open(), 'tea');
        fs.rmSync(stored.index);
        put(stored.index);
        const store = stored.open();
        assert.deepEqual(names(store), ['tea'], 'made again from the conversation');
        assert.match(store.trouble, /^New messages are not saved: ".*sessions.jsonl" is /);
        store.get(id).add('user', 'milk');
        assert.equal(store.get(id).messages.length, 3);

        fs.rmSync(stored.index, { recursive: true });
        store.rename(id, 'music');
        assert.equal(store.trouble, '');
        assert.deepEqual(names(stored.open()), ['music']);
    });
}

test('a socket in the place of a conversation is removed with it', async (t) => {
    const stored = new Stored(t);
    stored.write(stored.index, `${ROW}\n`);
    fs.mkdirSync(path.dirname(stored.fileOf(ID)));
    const server = net.createServer().listen(stored.fileOf(ID));
    await new Promise((resolve) => { server.once('listening', resolve); });
    t.after(() => server.close());
    stored.open().delete(ID);
    assert.deepEqual(fs.readdirSync(path.dirname(stored.fileOf(ID))), []);
});

test('a conversation that can\'t be removed is reported, and not listed', (t) => {
    const stored = new Stored(t);
    stored.write(stored.index, `${ROW}\n`);
    stored.write(path.join(stored.fileOf(ID), 'file'), '');
    const store = stored.open();
    store.delete(ID);
    assert.match(stored.warnings().at(-1), /^A deleted conversation is still on disk: ".*" is not a regular file/);
    assert.deepEqual(stored.open().list(), []);

    // Its deletion outlives the replacing of the index.
    const id = stored.converse(store, 'music');
    const moves = t.mock.method(fs, 'renameSync');
    for (let n = 0; n < 2 * SPARE_LINES && moves.mock.callCount() === 0; ++n)
        store.keep(store.get(id));
    assert.deepEqual(stored.rows().map((row) => [row.id, row.deleted]), [[id, undefined], [ID, true]]);
});

test('the folder of conversations may not be a symbolic link, the state folder may', (t) => {
    const stored = new Stored(t);
    const id = stored.converse(stored.open(), 'tea');
    fs.renameSync(stored.folder, `${stored.folder}.moved`);
    fs.symlinkSync(`${stored.folder}.moved`, stored.folder);
    assert.deepEqual(contents(stored.open().get(id)), ['tea', 're: tea']);

    const inner = path.join(stored.folder, 'sessions');
    fs.renameSync(inner, `${inner}.moved`);
    fs.symlinkSync(`${inner}.moved`, inner);
    const store = stored.open();
    assert.match(store.trouble, /^Conversations are neither loaded nor saved: /);
    assert.deepEqual(store.list(), []);
});

for (const umask of [0, 0o077, 0o277]) {
    test(`only the user can read them, with the umask 0${umask.toString(8)}`, (t) => {
        const stored = new Stored(t);
        const created = t.mock.method(fs, 'openSync');
        const before = process.umask(umask);
        t.after(() => process.umask(before));
        const id = stored.converse(stored.open(), 'tea');
        process.umask(before);
        assert.equal(mode(stored.folder), 0o700);
        assert.equal(mode(path.dirname(stored.fileOf(id))), 0o700);
        assert.equal(mode(stored.index), 0o600);
        assert.equal(mode(stored.fileOf(id)), 0o600);
        const modes = created.mock.calls.filter(({ arguments: [, flags] }) => flags & fs.constants.O_CREAT)
            .map(({ arguments: [,, asked] }) => asked);
        assert.ok(modes.length && modes.every((asked) => asked === 0o600), 'from the start');
    });
}

test('wider modes are repaired', (t) => {
    const stored = new Stored(t);
    const id = stored.converse(stored.open(), 'tea');
    const parts = [[stored.folder, 0o755], [path.dirname(stored.fileOf(id)), 0o777], [stored.index, 0o666],
        [stored.fileOf(id), 0o644]];
    const widen = () => parts.forEach(([file, wide]) => fs.chmodSync(file, wide));
    widen();
    stored.open();
    assert.deepEqual(parts.map(([file]) => mode(file)), [0o700, 0o700, 0o600, 0o600]);
    const store = stored.open();
    widen();
    store.get(id).add('user', 'milk');
    assert.equal(mode(stored.fileOf(id)), 0o600);
});
