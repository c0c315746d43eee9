// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Preloaded into a bridge, this simulates a machine on which "npm ci" never ran. Moving the package away isn't enough,
// because some systems provide their own for all programs.
const Module = require('module');

const resolve = Module._resolveFilename;
Module._resolveFilename = (request, ...rest) => {
    if (request !== 'ws')
        return resolve(request, ...rest);
    throw Object.assign(new Error("Cannot find module 'ws'"), { code: 'MODULE_NOT_FOUND' });
};
