// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// The prompts that the window offers on its cards and as next steps. A row with `real` answers from real reports; the
// others are demonstrations.

const { NOTE } = require('../demonstration');
const { POWER_PROFILES } = require('../desktop');
const { processesReply, statusReply, windowsReply } = require('../reports/replies');
const { oneLine } = require('../text');

const NOTHING_YET = 'There is nothing to look back at yet: this is where our conversation begins.';

const last = (messages, role) => messages.filter((message) => message.role === role).pop()?.content;

const AGAIN = 'run that again';

//! Repeats the user's last prompt, skipping those that asked for a repeat.
function again(turn, rest, play) {
    const earlier = turn.history.filter(
        ({ role, content }) => role === 'user' && !oneLine(content).toLowerCase().startsWith(AGAIN));
    const prompt = last(earlier, 'user');
    return prompt === undefined ? { response: NOTHING_YET } : play(prompt);
}

function more(turn) {
    const answer = last(turn.history, 'assistant');
    return { response: answer === undefined ? NOTHING_YET : `There is more to say about this:\n\n${answer}` };
}

function shorter(turn) {
    const answer = last(turn.history, 'assistant');
    if (answer === undefined)
        return { response: NOTHING_YET };
    const [sentence] = answer.trim().match(/^[^\n]*?[.!?](?=\s|$)|^[^\n]*/);
    return { response: `In short: ${sentence}` };
}

//! Answers with a real report: `read(reports)` resolves to it, and `words(report)` makes the reply.
const real = (read, words) => async (turn) => words(await turn.orCancelled(read(turn.reports)));

async function focus(turn) {
    turn.event('agent.routed', { agent: 'kde-desktop-agent' });
    await turn.pause(0.5);
    return { response: 'The terminal would be in front now, but this bridge can\'t touch your windows.' };
}

//! The wording of the dashboard's chips for a profile.
function switchProfile(turn, rest) {
    const profile = POWER_PROFILES.find((name) => rest.toLowerCase() === `${name} power profile`);
    if (!profile)
        return { response: `${NOTE} The simulated desktop has these power profiles: ${POWER_PROFILES.join(', ')}.` };
    turn.desktop.put('powerProfile', profile);
    return { response: `${NOTE} The simulated desktop has the power profile “${profile}” now.` };
}

const reminder = {
    response: 'When shall I remind you?',
    ui: {
        blocks: [{
            type: 'options',
            prompt: 'When shall I remind you?',
            choices: [
                { id: '10m', label: 'In ten minutes' },
                { id: '1h', label: 'In an hour' },
                { id: 'tomorrow', label: 'Tomorrow morning' },
            ],
        }],
    },
};

const reminders = {
    response: 'This bridge can\'t remind you. One that controls the desktop can\n\n- set a reminder (“Remind me in ten minutes”)\n- list what is due\n- cancel one',
    followUps: [{ title: 'Another reminder', subtitle: 'Schedule a follow-up.', prompt: 'Help me set another reminder' }],
};

const actions = {
    response: 'A bridge that controls the desktop can\n\n- open, close and move windows\n- set volume and brightness\n' +
        '- change theme, wallpaper and panels\n- report on the system\n- remind you\n\n' +
        'This one only reports and talks: type `help` to see how to get a model, and what can be shown without.',
};

module.exports = {
    title: 'What the window suggests',
    scenarios: [
        {
            phrases: ['What kde and system actions can you help me with?', 'What else can you help me with?'],
            about: 'what there is',
            answer: actions,
        },
        {
            phrases: ['Show my current system status'],
            about: 'the real state of this machine',
            real: true,
            answer: real((reports) => reports.machine(), statusReply),
        },
        {
            phrases: ['Show top processes by CPU and memory'],
            about: 'the real processes of this machine',
            real: true,
            answer: real((reports) => reports.processes(), processesReply),
        },
        {
            phrases: ['List my open windows'],
            about: 'the real windows, as far as they can be seen',
            real: true,
            answer: real((reports) => reports.windows(), windowsReply),
        },
        { phrases: ['Focus the most recently used window'], about: 'an agent takes over', pace: 0, answer: focus },
        { phrases: ['Switch to'], about: 'a power profile of the simulated desktop', answer: switchProfile },
        { phrases: ['What reminder actions can you help me with?'], about: 'about reminders', answer: reminders },
        { phrases: ['Help me set another reminder'], about: 'a question with choices', answer: reminder },
        {
            phrases: ['Open related system settings'],
            about: 'a tool that opens a program',
            answer: (turn) => {
                turn.event('tool.executed', { tool: 'kde_launch_app', result: 'ok' });
                return { response: 'The settings would be open now, but this bridge can\'t open programs.' };
            },
        },
        { phrases: ['Tell me more about that'], about: 'the last answer with an introduction', answer: more },
        { phrases: ['Run that again'], about: 'your last prompt once more', pace: 0, answer: again },
        { phrases: ['Summarize that in one short paragraph'], about: 'the last answer\'s first sentence', answer: shorter },
    ],
};
