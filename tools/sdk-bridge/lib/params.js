// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { Failure, isObject } = require('./frames');

const KINDS = {
    string: { test: (value) => typeof value === 'string', words: 'a string' },
    text: { test: (value) => typeof value === 'string' && value.trim() !== '', words: 'a string that is not blank' },
    integer: { test: Number.isSafeInteger, words: 'a whole number' },
    boolean: { test: (value) => typeof value === 'boolean', words: 'true or false' },
    object: { test: isObject, words: 'an object' },
    objects: { test: (value) => Array.isArray(value) && value.every(isObject), words: 'a list of objects' },
};

const invalid = (words) => new Failure(words, 'INVALID_PARAMS');

//! Checks the params of a request against its rules, such as {message: 'string', sessionId: 'string?'}; keys with a
//! question mark are optional. Ignores params without a rule. Throws a Failure.
function checkParams(rules, params) {
    for (const [key, rule] of Object.entries(rules)) {
        const optional = rule.endsWith('?');
        const kind = KINDS[optional ? rule.slice(0, -1) : rule];
        const value = params[key];
        if (value === undefined && optional)
            continue;
        if (!kind.test(value))
            throw invalid(`The parameter "${key}" must be ${kind.words}`);
    }
}

//! Checks that a number is in the range from `least` to `most`. Throws a Failure.
function checkRange(key, value, least, most) {
    if (value < least || value > most)
        throw invalid(`The parameter "${key}" must be from ${least} to ${most}`);
}

//! Checks that a value is one of the given words. Throws a Failure.
function checkOneOf(key, value, words) {
    if (!words.includes(value))
        throw invalid(`The parameter "${key}" must be one of: ${words.join(', ')}`);
}

module.exports = { checkOneOf, checkParams, checkRange, invalid };
