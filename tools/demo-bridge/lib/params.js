// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { Failure, isObject } = require('./frames');

const KINDS = {
    string: { test: (value) => typeof value === 'string', words: 'a string' },
    integer: { test: Number.isSafeInteger, words: 'a whole number' },
    object: { test: isObject, words: 'an object' },
};

//! Checks the params of a request against its rules, such as {message: 'string', sessionId: 'string?'}; a question
//! mark means that the key may be left out. Params without a rule are nobody's concern. Throws a Failure.
function checkParams(rules, params) {
    for (const [key, rule] of Object.entries(rules)) {
        const optional = rule.endsWith('?');
        const kind = KINDS[optional ? rule.slice(0, -1) : rule];
        const value = params[key];
        if (value === undefined && optional)
            continue;
        if (!kind.test(value))
            throw new Failure(`The parameter "${key}" must be ${kind.words}`, 'INVALID_PARAMS');
    }
}

module.exports = { checkParams };
