// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');

const { FileTree } = require('../lib/files');
const snippets = require('../lib/snippets');
const { startBridge } = require('./support/child');
const { test } = require('./support/timed');

const GENERATED = [
    ['javascript', 'Sort the list', '// Sort the list\nfunction makeSortTheList('],
    ['JS', 'Sort', '// Sort\nfunction makeSort('],
    ['python', 'Sort the\nlist', '# Sort the list\ndef make_sort_the_list('],
    ['C++', 'Sort', '// Sort\n#include <string>'],
    ['bash', 'Sort', '# Sort\nmake_sort() {'],
    ['qml', 'Sort', '// Sort\nimport QtQuick'],
    ['no such language', 'Sort', '// Sort\nfunction makeSort('],
    ['__proto__', 'Sort', '// Sort\nfunction makeSort('],
    ['', 'Сортировка', '// Сортировка\nfunction makeDemo('],
    ['javascript', 'class', '// class\nfunction makeClass('],
];

for (const [language, prompt, begin] of GENERATED) {
    test(`code in "${language}" for "${prompt.replace(/\n/g, ' ')}"`, () => {
        const code = snippets.generate(prompt, language);
        assert.ok(code.startsWith(begin), code);
    });
}

const EDITED = [
    ['a + b + ab', 'Rename a to total', 'total + b + ab'],
    ['a\n\n \nb\n', 'remove all blank lines', 'a\nb\n'],
    ['a  \nb\t\n', 'Remove trailing white space', 'a\nb\n'],
    ['\ta', 'tabs to spaces', '    a'],
    ['a', 'make it\nfaster', '// make it faster\na'],
];

for (const [code, instruction, edited] of EDITED) {
    test(`the edit "${instruction.replace(/\n/g, ' ')}"`, () =>
        assert.equal(snippets.edit(code, instruction, 'javascript'), edited));
}

test('code is generated and edited over the wire, the language as told', async (t) => {
    const client = await (await startBridge(t)).connect();
    const { code } = await client.result('generateCode', { prompt: 'Sort', language: 'python', context: {} });
    assert.match(code, /^# Sort\ndef make_sort\(/);
    assert.match((await client.result('generateCode', { prompt: 'Sort' })).code, /^\/\/ Sort\nfunction/);
    assert.deepEqual(await client.result('editCode', { code: 'a', instruction: 'faster', context: { language: 'python' } }),
        { code: '# faster\na' });
    assert.deepEqual(await client.result('editCode', { code: '', instruction: 'faster', context: { language: 7 } }),
        { code: '// faster\n' });
});

test('files are listed, read and written in memory', async (t) => {
    const bridge = await startBridge(t);
    const client = await bridge.connect();
    const top = ['README.md', 'docs/', 'empty.txt', 'src/'];
    assert.deepEqual((await client.result('getFiles', { path: '.' })).files, top);
    assert.deepEqual((await client.result('getFiles')).files, top);
    assert.equal((await client.result('readFile', { path: 'empty.txt' })).content, '');
    assert.match((await client.result('readFile', { path: 'docs/notes.txt' })).content, /^Grüße/);

    assert.deepEqual(await client.result('writeFile', { path: 'new/deep/file.txt', content: 'Words\n' }),
        { ok: true, path: 'new/deep/file.txt' });
    const other = await bridge.connect();
    assert.deepEqual(await other.result('readFile', { path: '/new/deep/file.txt' }),
        { path: '/new/deep/file.txt', content: 'Words\n' });
    assert.deepEqual((await other.result('getFiles', { path: 'new' })).files, ['deep/']);
    const { error } = await other.request('readFile', { path: 'none.txt' });
    assert.deepEqual(error, { message: '"none.txt" does not exist', code: 'FILE_NOT_FOUND' });
});

const REFUSED = [
    ['list', ['nowhere'], 'FILE_NOT_FOUND'],
    ['list', ['README.md'], 'NOT_A_FOLDER'],
    ['read', ['src'], 'IS_A_FOLDER'],
    ['read', ['/'], 'IS_A_FOLDER'],
    ['read', ['../../etc/passwd'], 'FILE_NOT_FOUND'],
    ['read', ['/etc/passwd'], 'FILE_NOT_FOUND'],
    ['write', ['src', ''], 'IS_A_FOLDER'],
    ['write', ['new/', ''], 'IS_A_FOLDER'],
    ['write', ['..', ''], 'IS_A_FOLDER'],
    ['write', ['README.md/below/it.txt', ''], 'NOT_A_FOLDER'],
    ['read', ['a\0b'], 'INVALID_PARAMS'],
    ['write', ['x'.repeat(1025), ''], 'INVALID_PARAMS'],
    ['write', ['big', 'x'.repeat(16 * 1024 * 1024)], 'FULL'],
];

for (const [operation, args, code] of REFUSED) {
    test(`${operation} of ${JSON.stringify(args[0].slice(0, 30))} is refused with ${code}`, () => {
        assert.throws(() => new FileTree()[operation](...args), { code });
    });
}

test('no path leads out of the tree', () => {
    const tree = new FileTree();
    assert.deepEqual(tree.list('../..'), tree.list('/'));
    tree.write('../../outside.txt', 'x');
    assert.ok(tree.list('.').includes('outside.txt'));
});

test('a file can be written over, and too many are refused', () => {
    const tree = new FileTree();
    for (let n = 0; n < 995; ++n)
        tree.write(`f${n}`, '');
    assert.throws(() => tree.write('one-too-many', ''), { code: 'FULL' });
    tree.write('f0', 'again');
    assert.equal(tree.read('f0'), 'again');
});
