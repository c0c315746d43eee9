// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Random input for readers of untrusted data. The same seed gives the same input.

const VALUES = [null, true, 0, -1, 0.5, 1e300, 2 ** 53, '', ' ', 'a', '7', '\u202e', '\ud800', '\u001b[31m', '```',
    '```tovi-ui\n{}\n```', 'a'.repeat(30000), [], [[]], {}, { type: 'list' }, { label: 'a' }, { toString: 1, valueOf: 1 },
    [1, 'a', {}]];
const KEYS = ['type', 'content', 'items', 'label', 'rows', '__proto__', 'toString', 'x'];
const SCRAPS = ['`', '```', '\n```\n', '\n```tovi-ui\n', '```json\n', '~~~\n', '\r', '\n', '\n\n', '"', '\\', '{', ']', ',',
    ':', '=', '\0', '1e999', '"__proto__":', '\u2028', '\ufeff', '> ', '<think>', '</think>', 'data: ', '\\303', '(', ')'];

//! Pseudo-random numbers in [0, 1).
function randomFrom(seed) {
    let state = seed;
    return () => {
        state = (state + 0x6d2b79f5) | 0;
        let bits = Math.imul(state ^ (state >>> 15), 1 | state);
        bits = (bits + Math.imul(bits ^ (bits >>> 7), 61 | bits)) ^ bits;
        return ((bits ^ (bits >>> 14)) >>> 0) / 4294967296;
    };
}

//! An element of a list.
const pickFrom = (random) => (list) => list[Math.floor(random() * list.length)];

//! Adds a member, even one that is called "__proto__".
const own = (parent, key, value) =>
    Object.defineProperty(parent, key, { value, configurable: true, enumerable: true, writable: true });

//! Changes a random member of a JSON value.
function changeValue(root, random) {
    const pick = pickFrom(random);
    const places = [];
    const visit = (value) => {
        for (const key of Object.keys(value)) {
            places.push([value, key]);
            if (typeof value[key] === 'object' && value[key] !== null)
                visit(value[key]);
        }
    };
    visit(root);
    if (!places.length)
        return;
    const [parent, key] = pick(places);
    const change = pick([
        () => { parent[key] = structuredClone(pick(VALUES)); },
        () => { parent[key] = structuredClone(pick(places)[0]); },
        () => { own(parent, pick(KEYS), parent[key]); },
        () => { delete parent[key]; },
        () => { parent[key] = [parent[key]]; },
    ]);
    change();
}

//! Changes a text at a random place.
function changeText(text, random) {
    const pick = pickFrom(random);
    const at = Math.floor(random() * (text.length + 1));
    const end = at + Math.floor(random() * 20);
    return pick([
        () => text.slice(0, at) + pick(SCRAPS) + text.slice(at),
        () => text.slice(0, at) + text.slice(end),
        () => text.slice(0, at) + text.slice(at, end).repeat(3) + text.slice(end),
        () => text.slice(0, at),
    ])();
}

//! Calls an action up to `most` times.
function times(random, most, action) {
    for (let n = Math.floor(random() * (most + 1)); n > 0; --n)
        action();
}

//! A text, changed at up to `most` places.
function changedText(text, random, most = 3) {
    let changed = text;
    times(random, most, () => { changed = changeText(changed, random); });
    return changed;
}

//! A JSON value as text, of which up to two members and, half of the time, the text are changed.
function changedJson(value, random) {
    const copy = structuredClone(value);
    times(random, 2, () => changeValue(copy, random));
    const text = JSON.stringify(copy);
    return random() < 0.5 ? text : changedText(text, random);
}

//! Calls `check(input)` for many inputs that `make(random)` returns. An error names the input.
function forRandom({ seed, count }, make, check) {
    const random = randomFrom(seed);
    for (let n = 0; n < count; ++n) {
        const input = make(random);
        try {
            check(input);
        } catch (error) {
            error.message = `input ${n}, ${JSON.stringify(String(input).slice(0, 2000))}: ${error.message}`;
            throw error;
        }
    }
}

module.exports = { changeText, changeValue, changedJson, changedText, forRandom, pickFrom, randomFrom, times };
