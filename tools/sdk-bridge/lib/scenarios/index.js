// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// A scenario is a row: `phrases` (a prompt that begins with one of them selects the scenario; help shows the first),
// `about` (for help), `pace` (beats before the reply) and `answer`, which is the outcome or a function of the turn and of
// the text after the phrase. An outcome is {response, ui, followUps, usage}, of which only `response` is required;
// `form` selects another reply form and `payload` replaces the whole result.

const { cut } = require('../text');

const DEFAULT_PACE = 0.3; // beats
const MAX_ECHO = 2000;

const GROUPS = [
    require('./basics'),
    require('./blocks'),
    require('./progress'),
    require('./tools'),
    require('./workspaces'),
    require('./trouble'),
    require('./hostile'),
    require('./dashboard'),
    require('./suggestions'),
];

const echo = {
    answer: (turn, prompt) => ({
        response: `You said: ${cut(prompt, MAX_ECHO)}\n\n` +
            'No model stands behind this answer: it comes from the demo bridge. Type `help` to see what it can show.',
    }),
};

function helpText() {
    const groups = GROUPS.map(({ title, scenarios }) =>
        [`### ${title}`, ...scenarios.map(({ phrases, about }) => `- \`${phrases[0]}\`: ${about}`)].join('\n'));
    return ['## What the demo bridge can show', 'Begin a prompt with one of these; anything else is repeated to you.', ...groups]
        .join('\n\n');
}

const help = {
    phrases: ['help'],
    about: 'this list',
    answer: () => ({
        response: helpText(),
        followUps: [
            { title: 'Markdown', subtitle: 'Every form of text.', prompt: 'markdown' },
            { title: 'Question', subtitle: 'A reply with choices.', prompt: 'options' },
            { title: 'Plan', subtitle: 'Watch the steps go by.', prompt: 'plan' },
            { title: 'Take your time', subtitle: 'Long enough to press Stop.', prompt: 'slow' },
        ],
    }),
};

GROUPS[0].scenarios.unshift(help);

const byPhrase = new Map(GROUPS.flatMap(({ scenarios }) =>
    scenarios.flatMap((scenario) => scenario.phrases.map((phrase) => [phrase.toLowerCase(), scenario]))));

// Longest first, so that "tool tag" doesn't match "tool".
const phrases = [...byPhrase.keys()].sort((a, b) => b.length - a.length);

const CONTINUES_WORD = /^[\p{L}\p{N}_-]/u;

//! Selects a scenario by the beginning of the prompt, ignoring case and the amount of whitespace.
//! Returns the scenario and `rest`, the text after the phrase (the whole prompt if none matches).
function choose(prompt) {
    const words = prompt.trim().replace(/\s+/g, ' ');
    const lower = words.toLowerCase();
    for (const phrase of phrases) {
        if (lower.startsWith(phrase) && !CONTINUES_WORD.test(lower.slice(phrase.length)))
            return { scenario: byPhrase.get(phrase), rest: words.slice(phrase.length).trim() };
    }
    return { scenario: echo, rest: prompt.trim() };
}

//! Plays the scenario of a prompt and resolves to its outcome. Rejects with a Failure if it fails or is cancelled.
async function play(turn, prompt) {
    const { scenario, rest } = choose(prompt);
    const pace = scenario.pace ?? DEFAULT_PACE;
    if (pace > 0) // without a pace it begins at once, before a cancel could arrive
        await turn.pause(pace);
    if (typeof scenario.answer !== 'function')
        return scenario.answer;
    return scenario.answer(turn, rest, (another) => play(turn, another));
}

module.exports = { GROUPS, choose, play };
