// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const BEATS_EACH = 0.3;

//! The made-up result for the free model of each provider; the others need a token.
const ANSWERS = new Map([['demo', { responseMs: 120 }], ['workshop', { responseMs: 640, wantsToken: true }]]);

function tryModel({ fullId, displayName, provider }, tokens) {
    const { responseMs, wantsToken } = ANSWERS.get(provider);
    const ok = !wantsToken || tokens.has(provider);
    return {
        model: fullId,
        displayName,
        ok,
        responseMs: ok ? responseMs : 0,
        response: ok ? 'Hello!' : '',
        error: ok ? '' : `No token is set for ${provider}`,
    };
}

//! Tries all free models in turn. Resolves to a row for each and, as `recommended`, the fastest one that replied.
async function checkFree(models, tokens, pace) {
    const results = [];
    for (const model of models.filter(({ free }) => free)) {
        await pace.pass(BEATS_EACH);
        results.push(tryModel(model, tokens));
    }
    const [fastest] = results.filter(({ ok }) => ok).sort((a, b) => a.responseMs - b.responseMs);
    return { results, recommended: fastest ?? null };
}

module.exports = { checkFree };
