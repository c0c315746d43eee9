// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const fs = require('fs/promises');
const { constants } = require('fs');

//! The first `limit` bytes of a regular file as text, or null if it can't be read.
async function readStart(path, limit) {
    let file;
    try {
        // Opening a pipe would block otherwise.
        file = await fs.open(path, constants.O_RDONLY | constants.O_NONBLOCK);
        if (!(await file.stat()).isFile())
            return null;
        const buffer = Buffer.alloc(limit);
        let size = 0;
        while (size < limit) {
            const { bytesRead } = await file.read(buffer, size, limit - size, null);
            if (bytesRead === 0)
                break;
            size += bytesRead;
        }
        return buffer.toString('utf8', 0, size);
    } catch {
        return null; // a report does without it
    } finally {
        await file?.close();
    }
}

module.exports = { readStart };
