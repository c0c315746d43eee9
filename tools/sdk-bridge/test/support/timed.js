// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { test: plainTest } = require('node:test');

const LIMIT_MS = 30000;

//! A test with a timeout, whose failure names the test.
function test(name, ...optionsAndBody) {
    const body = optionsAndBody.pop();
    return plainTest(name, { timeout: LIMIT_MS, ...optionsAndBody[0] }, body);
}

module.exports = { test };
