// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Preloaded into a bridge, this makes the machine one where "npm ci" never ran. Moving the package away would not do:
// some systems offer one of their own to every program.
const Module = require('module');

const resolve = Module._resolveFilename;
Module._resolveFilename = (request, ...rest) => {
    if (request !== 'ws')
        return resolve(request, ...rest);
    throw Object.assign(new Error("Cannot find module 'ws'"), { code: 'MODULE_NOT_FOUND' });
};
