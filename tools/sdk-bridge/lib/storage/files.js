// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Files that only their user may read. All functions are synchronous and throw the system's error.

const fs = require('fs');

const { NEWLINE } = require('./lines');

const FILE_MODE = 0o600;
const FOLDER_MODE = 0o700;
const PERMISSIONS = 0o777;

const { O_APPEND, O_CREAT, O_DIRECTORY, O_EXCL, O_NOFOLLOW, O_NONBLOCK, O_RDONLY, O_RDWR, O_WRONLY } = fs.constants;
// Without O_NONBLOCK, opening a named pipe would wait for its other end.
const SAFE = O_NOFOLLOW | O_NONBLOCK;

const NOTHING = Buffer.alloc(0);
const LINE_BREAK = Buffer.of(NEWLINE);

function restrict(fd, stat, mode) {
    if ((stat.mode & PERMISSIONS) !== mode)
        fs.fchmodSync(fd, mode);
}

//! Calls `use(fd, size)` with a regular file, after restricting its mode.
function withFile(path, flags, use) {
    const fd = fs.openSync(path, flags | SAFE, FILE_MODE);
    try {
        const stat = fs.fstatSync(fd);
        if (!stat.isFile())
            throw Object.assign(new Error(`${path} is not a regular file`), { code: 'ENOTFILE', path });
        restrict(fd, stat, FILE_MODE);
        return use(fd, stat);
    } finally {
        fs.closeSync(fd);
    }
}

//! Creates a folder and its parents unless they exist, and restricts its mode.
function openFolder(path, { mayBeLink }) {
    fs.mkdirSync(path, { recursive: true, mode: FOLDER_MODE });
    const fd = fs.openSync(path, O_RDONLY | O_DIRECTORY | (mayBeLink ? 0 : O_NOFOLLOW));
    try {
        restrict(fd, fs.fstatSync(fd), FOLDER_MODE);
    } finally {
        fs.closeSync(fd);
    }
}

//! Up to `length` bytes from a position; fewer at the end of the file.
function readAt(fd, start, length) {
    const bytes = Buffer.allocUnsafe(length);
    let done = 0;
    for (let count = -1; done < length && count !== 0; done += count)
        count = fs.readSync(fd, bytes, done, length - done, start + done);
    return bytes.subarray(0, done);
}

function writeAll(fd, bytes) {
    for (let done = 0; done < bytes.length;)
        done += fs.writeSync(fd, bytes, done);
}

const endsLine = (fd, size) => readAt(fd, size - 1, 1)[0] === NEWLINE;

//! Appends lines, or creates the file with `head` before them. After a torn line, which a killed process or a full disk
//! leaves, they begin on a line of their own.
function append(path, lines, head = NOTHING) {
    withFile(path, O_RDWR | O_APPEND | O_CREAT, (fd, { size }) => {
        const before = size === 0 ? head : endsLine(fd, size) ? NOTHING : LINE_BREAK;
        writeAll(fd, Buffer.concat([before, lines]));
    });
}

//! The last lines of a file, up to `limit` bytes. Empty if there is no such file.
function readTail(path, limit) {
    try {
        return withFile(path, O_RDONLY, (fd, { size }) => {
            if (size <= limit)
                return readAt(fd, 0, size);
            // One byte more, to see whether the first line is complete.
            const bytes = readAt(fd, size - limit - 1, limit + 1);
            const cut = bytes.indexOf(NEWLINE);
            return cut < 0 ? NOTHING : bytes.subarray(cut + 1);
        });
    } catch (error) {
        if (error.code === 'ENOENT')
            return NOTHING;
        throw error;
    }
}

//! The first lines of a file, up to `limit` bytes, and the time of its last change.
function readStart(path, limit) {
    return withFile(path, O_RDONLY, (fd, { size, mtimeMs }) => ({
        bytes: readAt(fd, 0, Math.min(size, limit)), isWhole: size <= limit, changedAt: Math.floor(mtimeMs),
    }));
}

//! Restricts the mode of a file that need not be read.
function restrictFile(path) {
    const stat = fs.lstatSync(path);
    if (stat.isFile() && (stat.mode & PERMISSIONS) !== FILE_MODE)
        withFile(path, O_RDONLY, () => {});
}

//! Replaces a file by what `makeLines(bytes)` makes of its content. The old file is complete until the new one is. What
//! another process appended meanwhile is added to the new one; only a line that it writes between the last two steps is
//! lost.
function replace(path, makeLines) {
    const temporary = `${path}.${process.pid}.new`;
    withFile(path, O_RDONLY, (oldFd, { size }) => {
        try {
            withFile(temporary, O_WRONLY | O_CREAT | O_EXCL, (fd) => {
                writeAll(fd, makeLines(readAt(oldFd, 0, size)));
                fs.fsyncSync(fd);
            });
            fs.renameSync(temporary, path);
        } catch (error) {
            remove(temporary);
            throw error;
        }
        const late = readAt(oldFd, size, fs.fstatSync(oldFd).size - size);
        if (late.length)
            append(path, late);
    });
}

//! Removes a file unless it doesn't exist.
function remove(path) {
    try {
        fs.unlinkSync(path);
    } catch (error) {
        if (error.code !== 'ENOENT')
            throw error;
    }
}

const namesIn = (folder) => fs.readdirSync(folder);

module.exports = { append, namesIn, openFolder, readStart, readTail, remove, replace, restrictFile };
