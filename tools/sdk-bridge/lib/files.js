// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const path = require('path').posix;

const { Failure } = require('./frames');
const { invalid } = require('./params');
const { cut } = require('./text');

const MAX_FILES = 1000;
const MAX_CHARACTERS = 16 * 1024 * 1024;
const MAX_PATH = 1024;
const MAX_SHOWN = 200;

const SAMPLES = {
    'README.md': '# A sample project\n\nIt lives in the memory of the bridge and ends with it.\n',
    'src/main.js': '\'use strict\';\n\nconst { greet } = require(\'./greet\');\n\nconsole.log(greet(\'world\'));\n',
    'src/greet.js': '\'use strict\';\n\nexports.greet = (name) => `Hello, ${name}!`;\n',
    'docs/notes.txt': 'Grüße — and a second line.\n',
    'empty.txt': '',
};

//! A small tree of files in memory. Paths are relative to its root, with or without a leading slash; none leads outside.
class FileTree {
    #contents = new Map(Object.entries(SAMPLES));

    //! The sorted names in a folder; those of folders end with a slash.
    list(folder) {
        const inner = this.#clean(folder);
        const prefix = inner === '' ? '' : `${inner}/`;
        const names = new Set();
        for (const file of this.#contents.keys()) {
            if (!file.startsWith(prefix))
                continue;
            const [name, ...deeper] = file.slice(prefix.length).split('/');
            names.add(deeper.length ? `${name}/` : name);
        }
        if (names.size)
            return [...names].sort();
        throw this.#contents.has(inner) ? this.#failure(folder, 'is no folder', 'NOT_A_FOLDER') : this.#missing(folder);
    }

    read(file) {
        const inner = this.#clean(file);
        const content = this.#contents.get(inner);
        if (content !== undefined)
            return content;
        throw this.#isFolder(inner) ? this.#failure(file, 'is a folder', 'IS_A_FOLDER') : this.#missing(file);
    }

    //! Writes a file and creates its folders.
    write(file, content) {
        const inner = this.#clean(file);
        if (inner === '' || /[/\\]$/.test(file) || this.#isFolder(inner))
            throw this.#failure(file, 'is a folder', 'IS_A_FOLDER');
        for (let above = path.dirname(inner); above !== '.'; above = path.dirname(above)) {
            if (this.#contents.has(above))
                throw this.#failure(above, 'is no folder', 'NOT_A_FOLDER');
        }
        const others = [...this.#contents].filter(([name]) => name !== inner);
        const characters = others.reduce((sum, [, text]) => sum + text.length, content.length);
        if (others.length >= MAX_FILES || characters > MAX_CHARACTERS)
            throw new Failure('The files of the bridge take no more', 'FULL');
        this.#contents.set(inner, content);
    }

    #clean(given) {
        if (given.length > MAX_PATH || given.includes('\0'))
            throw invalid('The parameter "path" is no path');
        return path.normalize(`/${given}`).slice(1).replace(/\/$/, '');
    }

    #isFolder(inner) {
        return inner === '' || [...this.#contents.keys()].some((file) => file.startsWith(`${inner}/`));
    }

    #failure(given, what, code) {
        return new Failure(`${JSON.stringify(cut(given, MAX_SHOWN))} ${what}`, code);
    }

    #missing(given) {
        return this.#failure(given, 'does not exist', 'FILE_NOT_FOUND');
    }
}

module.exports = { FileTree };
