// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// The store of sessions on disk, opened again as by the next bridge.

const assert = require('assert/strict');
const fs = require('fs');

const log = require('../lib/log');
const { SessionStore } = require('../lib/sessions');
const { seedSessions } = require('../lib/seed');
const { MAX_BYTES } = require('../lib/storage/conversation');
const { SPARE_LINES } = require('../lib/storage/indexFile');
const { Stored, contents, mode, names } = require('./support/stored');
const { test } = require('./support/timed');

const NOW = Date.UTC(2026, 0, 1);

test('everything is there after the next start', (t) => {
    const stored = new Stored(t);
    const store = stored.open({ now: () => NOW });
    const [tea, music] = [stored.converse(store, 'tea', 'milk'), stored.converse(store, 'music')];
    const empty = store.draft();
    store.keep(empty);
    store.rename(music, ' Quiet  music ');
    store.keep(store.get(tea));

    const again = stored.open();
    assert.deepEqual(again.list(), store.list());
    assert.deepEqual(again.list().map(({ id, name, createdAt }) => [id, name, createdAt]),
        [[tea, 'tea', NOW], [empty.id, 'New session', NOW], [music, 'Quiet music', NOW]]);
    assert.deepEqual(again.get(tea).messages, store.get(tea).messages);
    assert.deepEqual(contents(again.get(tea)), ['tea', 're: tea', 'milk', 're: milk']);
    assert.deepEqual(again.get(empty.id).messages, []);
    assert.equal(again.trouble, '');
    assert.deepEqual(stored.notes, []);
});

test('each message is a line, and listing reads none', (t) => {
    const stored = new Stored(t);
    const id = stored.converse(stored.open({ now: () => NOW }), 'tea');
    assert.equal(fs.readFileSync(stored.fileOf(id), 'utf8'), [
        { format: 1, id, createdAt: NOW },
        { role: 'user', content: 'tea', at: NOW },
        { role: 'assistant', content: 're: tea', at: NOW },
    ].map((row) => `${JSON.stringify(row)}\n`).join(''));
    assert.deepEqual(stored.rows(), [{ id, name: 'tea', createdAt: NOW, usedAt: NOW }]);

    const opened = t.mock.method(fs, 'openSync');
    stored.open().list();
    assert.deepEqual(opened.mock.calls.filter(({ arguments: [file] }) => file === stored.fileOf(id)), []);
});

test('a message is on disk as soon as it is added, also in a session that isn\'t listed yet', (t) => {
    const stored = new Stored(t);
    const draft = stored.open({ now: () => NOW }).draft();
    draft.add('user', 'tea   for\ntwo');
    assert.match(fs.readFileSync(stored.fileOf(draft.id), 'utf8'), /"tea {3}for\\ntwo"/);

    // Killed before the reply: the session is found again, and known from then on.
    const again = stored.open();
    assert.deepEqual(again.list(), [{ id: draft.id, name: 'tea for two', title: 'tea for two', createdAt: NOW }]);
    assert.deepEqual(stored.notes, ['Conversations that were missing in the index and were found again: 1']);
    assert.deepEqual(stored.open().list(), again.list());
    assert.equal(stored.notes.length, 1);
});

test('a name by the first prompt is on disk with the prompt', (t) => {
    const stored = new Stored(t);
    const store = stored.open();
    const session = store.draft();
    store.keep(session);
    session.add('user', 'tea');
    assert.deepEqual(names(stored.open()), ['tea']);
});

test('a discarded draft leaves nothing, a listed session can\'t be discarded', (t) => {
    const stored = new Stored(t);
    const store = stored.open();
    const draft = store.draft();
    store.discard(draft);
    assert.equal(fs.existsSync(stored.index), false);
    draft.add('user', 'tea');
    store.discard(draft);
    assert.equal(fs.existsSync(stored.fileOf(draft.id)), false);
    const id = stored.converse(store, 'music');
    store.discard(store.get(id));
    assert.deepEqual(names(stored.open()), ['music']);
});

test('a lost index is made again from the conversations', (t) => {
    const stored = new Stored(t);
    const store = stored.open({ now: () => NOW });
    const [first, second] = [stored.converse(store, 'tea'), stored.converse(store, `music ${'x'.repeat(99000)}`)];
    fs.utimesSync(stored.fileOf(first), NOW / 1000, NOW / 1000);
    fs.rmSync(stored.index);
    const again = stored.open();
    assert.deepEqual(again.list().map(({ id, name, createdAt }) => [id, name, createdAt]),
        [[second, `music ${'x'.repeat(34)}…`, NOW], [first, 'tea', NOW]]);
    assert.deepEqual(stored.open().list(), again.list());
});

test('a conversation without a head has the time of its last change', (t) => {
    const stored = new Stored(t);
    stored.open();
    const id = 'ses_0123456789abcdef';
    stored.write(stored.fileOf(id), '{"role":"assistant","content":"hello"}\n');
    fs.utimesSync(stored.fileOf(id), NOW / 1000, NOW / 1000);
    stored.write(stored.fileOf('ses_0000000000000000'), '');
    assert.deepEqual(stored.open().list(), [{ id, name: 'New session', title: 'New session', createdAt: NOW }]);
});

test('a deleted session is gone for good, also with what its prompt still adds', (t) => {
    const stored = new Stored(t);
    const store = stored.open();
    const id = stored.converse(store, 'tea');
    const running = stored.open();
    const held = running.get(id); // not loaded
    running.delete(id);
    held.add('assistant', 'late');
    assert.deepEqual(contents(held), ['late']);
    assert.equal(fs.existsSync(stored.fileOf(id)), false);
    assert.equal(running.find(id), undefined);
    assert.deepEqual(stored.open().list(), []);
    assert.deepEqual(stored.rows().at(-1), { id, deleted: true });
});

test('a deletion that was interrupted is completed at the next start', (t) => {
    const stored = new Stored(t);
    const id = stored.converse(stored.open(), 'tea');
    fs.appendFileSync(stored.index, `{"id":"${id}","deleted":true}\n`);
    assert.deepEqual(stored.open().list(), []);
    assert.equal(fs.existsSync(stored.fileOf(id)), false);
});

test('all messages stay on disk, the newest are in memory', (t) => {
    const stored = new Stored(t);
    const store = stored.open();
    const session = store.draft();
    for (let n = 0; n < 3000; ++n)
        session.add('user', `${n}`);
    store.keep(session);
    assert.equal(session.messages.length, 3000);
    assert.equal(stored.open().get(session.id).messages.length, 3000);

    const long = 'x'.repeat(100000);
    for (let n = 0; n < 200; ++n)
        session.add('user', `${n} ${long}`);
    const kept = contents(session);
    assert.ok(kept.length > 100 && kept.length < 200);
    assert.ok(kept.at(-1).startsWith('199 '));
    assert.deepEqual(contents(stored.open().get(session.id)), kept);
    assert.ok(Buffer.byteLength(JSON.stringify(session.messages)) <= MAX_BYTES);
    assert.ok(fs.statSync(stored.fileOf(session.id)).size > 200 * 100000);
});

test('a file of any size is opened at its end', (t) => {
    const stored = new Stored(t);
    const id = stored.converse(stored.open(), 'tea');
    fs.truncateSync(stored.fileOf(id), 8 * 1024 * 1024 * 1024); // sparse
    fs.appendFileSync(stored.fileOf(id), '\n{"role":"user","content":"milk"}\n');
    assert.deepEqual(contents(stored.open().get(id)), ['milk']);
});

test('few conversations are in memory, and an object stays the same', (t) => {
    const stored = new Stored(t);
    const filled = stored.open();
    const ids = Array.from({ length: 60 }, (_, n) => stored.converse(filled, `${n}`));
    const store = stored.open();
    const held = store.get(ids[0]);
    const before = held.messages;
    assert.equal(held.messages, before);
    ids.forEach((id) => assert.equal(store.get(id).messages.length, 2));
    assert.notEqual(held.messages, before, 'it was unloaded');

    // A running prompt holds the object while others are used.
    held.add('assistant', 'late');
    ids.slice(1).forEach((id) => store.get(id).messages);
    held.add('user', 'later');
    assert.equal(store.get(ids[0]), held);
    assert.deepEqual(contents(held), ['0', 're: 0', 'late', 'later']);
});

test('sessions that were made up are not written, until the user continues one', (t) => {
    const stored = new Stored(t);
    const id = stored.converse(stored.open(), 'mine');
    const store = stored.open();
    seedSessions(store, 3);
    const [first, second, third, fourth] = store.list();
    assert.equal(first.id, id, 'what the user used last is first');
    const written = stored.rows().length;
    store.rename(second.id, 'Loud');
    store.keep(store.get(second.id));
    store.delete(third.id);
    store.close();
    assert.equal(stored.rows().length, written);
    assert.deepEqual(fs.readdirSync(`${stored.folder}/sessions`), [`${id}.jsonl`]);

    store.get(second.id).add('user', 'softer');
    assert.deepEqual(names(stored.open()), ['Loud', 'mine']);
    assert.deepEqual(contents(stored.open().get(second.id)), contents(store.get(second.id)));
    assert.equal(store.get(second.id).messages.length, 3);
    assert.equal(store.get(fourth.id).messages.length, 2);
});

test('in memory only, the least recently used session is removed', (t) => {
    const notes = [];
    t.mock.method(log, 'note', (text) => notes.push(text));
    const store = new SessionStore({ folder: null });
    assert.match(notes.join(), /in memory only, because neither XDG_STATE_HOME nor HOME/);
    const sessions = Array.from({ length: 501 }, () => store.draft());
    sessions.slice(0, 500).forEach((session) => store.keep(session));
    store.keep(sessions[0]);
    store.keep(sessions[500]);
    assert.equal(store.list().length, 500);
    assert.equal(store.find(sessions[1].id), undefined);
    assert.deepEqual(store.list().slice(0, 2).map(({ id }) => id), [sessions[500].id, sessions[0].id]);
    sessions[0].add('user', 'x'.repeat(100001));
    assert.equal(sessions[0].messages[0].content.length, 100001);
});

test('the order stays when the clock is put back', (t) => {
    const stored = new Stored(t);
    let now = NOW;
    const store = stored.open({ now: () => now });
    stored.converse(store, 'tea');
    now -= 100000;
    stored.converse(store, 'music');
    assert.deepEqual(names(stored.open()), ['music', 'tea']);
    const later = stored.open({ now: () => now });
    stored.converse(later, 'light');
    assert.deepEqual(names(stored.open({ now: () => now })), ['light', 'music', 'tea']);
});

test('a time in the future counts as now', (t) => {
    const stored = new Stored(t);
    stored.write(stored.index, '{"id":"ses_0123456789abcdef","name":"tea","createdAt":1,"usedAt":8640000000000000}\n');
    const store = stored.open({ now: () => NOW });
    seedSessions(store, 1, NOW + 24 * 60 * 60 * 1000);
    assert.notEqual(names(store)[0], 'tea');
    stored.converse(store, 'music');
    assert.deepEqual(names(stored.open({ now: () => NOW })), ['music', 'tea']);
});

test('an index that has grown far is replaced by its rows', (t) => {
    const stored = new Stored(t);
    const store = stored.open();
    const [tea, gone] = [stored.converse(store, 'tea'), stored.converse(store, 'gone')];
    store.delete(gone);
    // Another bridge that uses the same folder.
    const other = stored.converse(stored.open(), 'of the other');
    const moves = t.mock.method(fs, 'renameSync');
    for (let n = 0; n <= SPARE_LINES && moves.mock.callCount() === 0; ++n)
        store.keep(store.get(tea));
    assert.equal(moves.mock.callCount(), 1);
    assert.deepEqual(stored.rows().map(({ id }) => id), [other, tea]);
    assert.equal(mode(stored.index), 0o600);
    assert.deepEqual(fs.readdirSync(stored.folder).sort(), ['sessions', 'sessions.jsonl']);
    store.keep(store.get(tea));
    assert.deepEqual(names(stored.open()), ['tea', 'of the other']);
});

test('a line that another bridge appends while the index is replaced is kept', (t) => {
    const stored = new Stored(t);
    const store = stored.open();
    const other = stored.open();
    const id = stored.converse(store, 'tea');
    const rename = fs.renameSync;
    let late;
    t.mock.method(fs, 'renameSync', (from, to) => {
        late = stored.converse(other, 'late');
        rename(from, to);
    });
    for (let n = 0; n <= SPARE_LINES && !late; ++n)
        store.keep(store.get(id));
    assert.deepEqual(stored.rows().map((row) => row.id), [id, late]);
});

test('an index that can\'t be replaced stays as it is', (t) => {
    const stored = new Stored(t);
    const store = stored.open();
    const id = stored.converse(store, 'tea');
    t.mock.method(fs, 'fsyncSync', () => { throw Object.assign(new Error('no space'), { code: 'ENOSPC' }); });
    for (let n = 0; n < SPARE_LINES + 10; ++n)
        store.keep(store.get(id));
    assert.equal(stored.rows().length, SPARE_LINES + 11);
    assert.deepEqual(fs.readdirSync(stored.folder).sort(), ['sessions', 'sessions.jsonl']);
    assert.deepEqual(stored.notes, ['The index of conversations could not be shortened: no space']);

    // What a process left that was killed while it did that is removed.
    stored.write(`${stored.index}.123.new`, '{"id"');
    stored.open();
    assert.equal(fs.existsSync(`${stored.index}.123.new`), false);
});
