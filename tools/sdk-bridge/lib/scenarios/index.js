// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// A scenario is a row: `phrases` (a prompt that begins with one of them selects the scenario; help shows the first),
// `about` (for help), `pace` (beats before the reply), `real` (true if the answer is no demonstration) and `answer`, which
// is the outcome or a function of the turn and of the text after the phrase. An outcome is
// {response, ui, followUps, usage}, of which only `response` is required; `form` selects another reply form and `payload`
// replaces the whole result.

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
            'No model stands behind this answer. Type `help` to see how to get one, and what can be shown without.',
    }),
};

const WITH_MODEL = (address) => `## Your model server

Prompts go to the model server at ${address}. Choose one of its models in the Models tab of the settings. If it does \
not answer, start it; nothing else needs to be restarted.`;

const WITHOUT_MODEL = `## How to get a model

No model server was found on this machine. Install one, then send your next prompt; nothing needs to be restarted:

- Ollama: \`ollama pull qwen2.5:3b\` (any chat model will do); it listens on port 11434.
- llama.cpp: \`llama-server -m MODEL.gguf -c 8192\`; it listens on port 8080, in Debian on 9931.
- Another server with \`/v1/chat/completions\`: start the bridge with \`LOOMRA_MODEL_URL=http://127.0.0.1:PORT\`.`;

//! `model` is the address of the model server, or ''.
function helpText(model) {
    const groups = GROUPS.map(({ title, scenarios }) =>
        [`### ${title}`, ...scenarios.map(({ phrases, about }) => `- \`${phrases[0]}\`: ${about}`)].join('\n'));
    const demo = model ? 'Begin a prompt with `demo` and one of these to see how the window shows it.'
        : 'Begin a prompt with one of these; anything else is repeated to you.';
    return [model ? WITH_MODEL(model) : WITHOUT_MODEL, '## What the demonstration can show', demo, ...groups]
        .join('\n\n');
}

const help = {
    phrases: ['help'],
    real: true,
    about: 'this list, and how to get a model',
    answer: ({ model }) => ({
        response: helpText(model),
        followUps: [
            { title: 'Markdown', subtitle: 'Every form of text.', prompt: 'demo markdown' },
            { title: 'Question', subtitle: 'A reply with choices.', prompt: 'demo options' },
            { title: 'Plan', subtitle: 'Watch the steps go by.', prompt: 'demo plan' },
            { title: 'Take your time', subtitle: 'Long enough to press Stop.', prompt: 'demo slow' },
        ],
    }),
};

GROUPS[0].scenarios.unshift(help);

const byPhrase = new Map(GROUPS.flatMap(({ scenarios }) =>
    scenarios.flatMap((scenario) => scenario.phrases.map((phrase) => [phrase.toLowerCase(), scenario]))));

// Longest first, so that "tool tag" doesn't match "tool".
const phrases = [...byPhrase.keys()].sort((a, b) => b.length - a.length);

const DEMO = /^demo(?:\s+([^]*))?$/i;
const HAS_WORDS = /[\p{L}\p{N}]/u;
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

//! The part of a prompt that selects a scenario even if there is a model: what follows "demo", and prompts of scenarios
//! marked `real`, which answer from this machine. Null for all others.
function wanted(prompt) {
    const demo = DEMO.exec(prompt.trim());
    if (demo)
        return demo[1] ? (choose(demo[1]).scenario === echo ? null : demo[1]) : help.phrases[0];
    const { scenario, rest } = choose(prompt);
    return scenario.real && !HAS_WORDS.test(rest) ? prompt : null;
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

module.exports = { GROUPS, choose, play, wanted };
