// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// The prompts that the window offers on its cards and as next steps. Their reports are made up.

const { POWER_PROFILES } = require('../desktop');
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

const status = {
    response: 'All is well on this made-up desktop:\n\n' +
        '- Processor: 12%\n- Memory: 48%\n- Disk: 71%\n- Battery: **18%**',
    followUps: [{
        title: 'Top processes',
        subtitle: 'CPU and memory usage.',
        prompt: 'Show top processes by CPU and memory',
        iconName: 'utilities-system-monitor',
    }],
};

const processes = {
    response: 'The busiest of five made-up programs.',
    ui: {
        blocks: [{
            type: 'table',
            columns: ['Program', 'CPU', 'Memory'],
            rows: [['browser', '31%', '22%'], ['compiler', '97%', '8%'], ['mail', '2%', '6%'], ['player', '4%', '3%'],
                ['editor', '1%', '2%']],
        }],
    },
};

const windows = {
    response: 'Three windows are open: the **text editor**, the **terminal** and the **file manager**.',
    ui: {
        blocks: [{ type: 'list', title: 'Open windows', items: ['Text editor', 'Terminal', 'File manager'] }],
    },
};

async function focus(turn) {
    turn.event('agent.routed', { agent: 'kde-desktop-agent' });
    await turn.pause(0.5);
    return { response: 'The terminal would be in front now, if the demo bridge could touch your windows.' };
}

//! The wording of the dashboard's chips for a profile.
function switchProfile(turn, rest) {
    const profile = POWER_PROFILES.find((name) => rest.toLowerCase() === `${name} power profile`);
    if (!profile)
        return { response: `There are these power profiles: ${POWER_PROFILES.join(', ')}.` };
    turn.desktop.put('powerProfile', profile);
    return { response: `The made-up desktop has the power profile “${profile}” now.` };
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
    response: 'With a real bridge I can\n\n- set a reminder (“Remind me in ten minutes”)\n- list what is due\n- cancel one',
    followUps: [{ title: 'Another reminder', subtitle: 'Schedule a follow-up.', prompt: 'Help me set another reminder' }],
};

const actions = {
    response: 'With a real bridge I can\n\n- open, close and move windows\n- set volume and brightness\n' +
        '- change theme, wallpaper and panels\n- report on the system\n- remind you\n\n' +
        'This is the demo bridge: type `help` to see what it can show.',
};

module.exports = {
    title: 'What the window suggests',
    scenarios: [
        {
            phrases: ['What kde and system actions can you help me with?', 'What else can you help me with?'],
            about: 'what there is',
            answer: actions,
        },
        { phrases: ['Show my current system status'], about: 'made-up figures', answer: status },
        { phrases: ['Show top processes by CPU and memory'], about: 'a made-up table', answer: processes },
        { phrases: ['List my open windows'], about: 'made-up windows', answer: windows },
        { phrases: ['Focus the most recently used window'], about: 'an agent takes over', pace: 0, answer: focus },
        { phrases: ['Switch to'], about: 'a power profile of the made-up desktop', answer: switchProfile },
        { phrases: ['What reminder actions can you help me with?'], about: 'about reminders', answer: reminders },
        { phrases: ['Help me set another reminder'], about: 'a question with choices', answer: reminder },
        {
            phrases: ['Open related system settings'],
            about: 'a tool that opens a program',
            answer: (turn) => {
                turn.event('tool.executed', { tool: 'kde_launch_app', result: 'ok' });
                return { response: 'The settings would be open now, if the demo bridge could open programs.' };
            },
        },
        { phrases: ['Tell me more about that'], about: 'the last answer with an introduction', answer: more },
        { phrases: ['Run that again'], about: 'your last prompt once more', pace: 0, answer: again },
        { phrases: ['Summarize that in one short paragraph'], about: 'the last answer\'s first sentence', answer: shorter },
    ],
};
