// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// A scenario is a row: `phrases` (what a prompt begins with to choose it; the first is the one that help shows), `about`
// (for help), `pace` (beats before the answer) and `answer`, either the outcome itself or a function of the turn and of
// the words after the phrase that gives it. An outcome is {response, ui, followUps, usage}, of which only `response`
// must be there; `form` chooses another reply form and `payload` replaces the whole result.

const { cut } = require('../text');

const DEFAULT_PACE = 0.3; // beats
const MAX_ECHO = 2000;

const GROUPS = [
    require('./basics'),
    require('./blocks'),
    require('./progress'),
    require('./tools'),
    require('./trouble'),
    require('./hostile'),
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

// Longest first, so that "tool tag" is not taken for "tool".
const phrases = [...byPhrase.keys()].sort((a, b) => b.length - a.length);

const CONTINUES_WORD = /^[\p{L}\p{N}_-]/u;

//! Chooses by the prompt's first words, in any case, any white space between them counting as one blank.
//! Gives the scenario and `rest`, the words after the phrase (the whole prompt where none fits).
function choose(prompt) {
    const words = prompt.trim().replace(/\s+/g, ' ');
    const lower = words.toLowerCase();
    for (const phrase of phrases) {
        if (lower.startsWith(phrase) && !CONTINUES_WORD.test(lower.slice(phrase.length)))
            return { scenario: byPhrase.get(phrase), rest: words.slice(phrase.length).trim() };
    }
    return { scenario: echo, rest: prompt.trim() };
}

//! Plays the scenario that a prompt chooses and gives its outcome. Rejects with a Failure when it fails or is cancelled.
async function play(turn, prompt) {
    const { scenario, rest } = choose(prompt);
    const pace = scenario.pace ?? DEFAULT_PACE;
    if (pace > 0) // a scenario without a pace begins at once, before a cancel could get in between
        await turn.pause(pace);
    if (typeof scenario.answer !== 'function')
        return scenario.answer;
    return scenario.answer(turn, rest, (another) => play(turn, another));
}

module.exports = { GROUPS, choose, play };
