// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const BEATS_EACH = 0.3;

//! The made-up results of some providers.
const ANSWERS = new Map([['demo', { responseMs: 120 }], ['workshop', { responseMs: 640, wantsToken: true }]]);
const SLOWEST_MS = 4000;
const OVERLOADED_EACH = 4;

//! The result of a model of any other provider, the same each time.
function madeUpAnswer(fullId) {
    const sum = [...fullId].reduce((all, letter) => all + letter.charCodeAt(0), 0);
    return { responseMs: 300 + (sum * 97) % SLOWEST_MS, isOverloaded: sum % OVERLOADED_EACH === 0 };
}

function tryModel({ fullId, displayName, provider }, tokens) {
    const { responseMs, wantsToken, isOverloaded } = ANSWERS.get(provider) ?? madeUpAnswer(fullId);
    let error = '';
    if (wantsToken && !tokens.has(provider))
        error = `No token is set for ${provider}`;
    else if (isOverloaded)
        error = 'The provider is overloaded. Please try again later.';
    const ok = error === '';
    return { model: fullId, displayName, ok, responseMs: ok ? responseMs : 0, response: ok ? 'Hello!' : '', error };
}

//! The result of a check: its rows and, as `recommended`, the fastest model that replied.
function withFastest(results) {
    const [fastest] = results.filter(({ ok }) => ok).sort((a, b) => a.responseMs - b.responseMs);
    return { results, recommended: fastest ?? null };
}

//! Pretends to try all free models in turn. Resolves to their results.
async function checkFree(models, tokens, pace) {
    const results = [];
    for (const model of models.filter(({ free }) => free)) {
        await pace.pass(BEATS_EACH);
        results.push(tryModel(model, tokens));
    }
    return withFastest(results);
}

module.exports = { checkFree, withFastest };
