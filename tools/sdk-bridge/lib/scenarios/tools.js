// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

//! A reply after one tool has run.
const ran = (tool, response) => async (turn) => {
    turn.event('tool.executed', { tool, result: 'ok' });
    await turn.pause(0.5);
    return { response };
};

const tag = (status, rest) => `[TOOL: kde_launch_app] [STATUS: ${status}] [RESULT: ok]${rest && ` ${rest}`}`;

const MARKUP = `I will look at your windows.

<tool_call>{"name": "window_list", "arguments": {}}</tool_call>
<invoke name="window_list"><parameter name="all">true</parameter></invoke>
<function_call>window_list()</function_call>
<function=window_list></function>
<minimax:tool_call>



Two windows are open.</minimax:tool_call>`;

module.exports = {
    title: 'Tools',
    scenarios: [
        {
            phrases: ['launch'],
            about: 'a tool that opens a program, so the window makes room',
            answer: ran('kde_launch_app', 'The file manager is open.'),
        },
        {
            phrases: ['volume'],
            about: 'the same by a name with hyphens',
            answer: ran('kde-set-volume', 'The volume is set.'),
        },
        {
            phrases: ['tool'],
            about: 'a tool that leaves the window as it is',
            answer: ran('settings_read', 'The setting reads “on”.'),
        },
        {
            phrases: ['tool tag'],
            about: 'a tool\'s result within the text',
            answer: { response: `This is lost. ${tag('success', 'Opened the file manager.')}` },
        },
        { phrases: ['bare tool tag'], about: 'the same with no words after it', answer: { response: tag('success', '') } },
        {
            phrases: ['failed tool tag'],
            about: 'the same for a tool that failed',
            answer: { response: tag('failed', 'The file manager did not open.') },
        },
        {
            phrases: ['pending tool tag'],
            about: 'the same for a tool that still runs',
            answer: { response: tag('Running', 'The file manager is on its way.') },
        },
        { phrases: ['tool markup'], about: 'calls of tools that a model left in its words', answer: { response: MARKUP } },
        {
            phrases: ['bare tool markup'],
            about: 'nothing but such calls',
            answer: { response: '<tool_call>{"name": "window_list"}</tool_call>' },
        },
    ],
};
