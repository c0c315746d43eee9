// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { Failure } = require('../frames');

const NOWHERE = 'http://127.0.0.1:9/pixel.png';

//! The address to which the hostile text points: by default a closed port, or the one in the prompt, where a test listens.
function targetOf(rest) {
    const [word] = rest.split(' ');
    return /^https?:\/\/[^\s"'<>]+$/.test(word) ? word : NOWHERE;
}

const image = (url) => `<img src="${url}">`;

const text = (url) => `${image(url)} <script>alert(1)</script> <b>not bold</b> &lt;not decoded&gt;

<a href="javascript:alert(1)">a link</a> <a href="${url}">another</a> <style>* { color: red }</style>
![an image](${url}) [a link](${url}) **${image(url)}** \`${image(url)}\` _${image(url)}_ 50%${image(url)}

# ${image(url)}

- ${image(url)}
1. ${image(url)}
> ${image(url)}

\`\`\`${image(url)}
</pre>${image(url)}
\`\`\`

%1 %2 {} \${x} </body></html>`;

const followUps = (url) => [
    { title: image(url), subtitle: image(url), prompt: `plain ${image(url)}`, iconName: url },
    { title: 'A path', prompt: 'plain', icon: '../../etc/passwd', iconColor: 'red"; import', iconBg: '1;1;1' },
    { title: 'A file', prompt: 'plain', iconName: 'file:///etc/passwd', iconColor: url, iconBg: 'NaN,-1,1e9' },
    { title: 'A provider', prompt: 'plain', iconName: 'image://theme/x', iconColor: '#zzz', iconBg: '' },
];

const blocks = (url) => [
    { type: 'text', content: text(url) },
    { type: 'list', title: image(url), items: [image(url), { label: image(url) }] },
    { type: 'table', columns: [image(url)], rows: [[image(url)]] },
    { type: 'options', prompt: image(url), choices: [{ id: image(url), label: image(url) }] },
    { type: 'slider', label: image(url), min: 0, max: 1, action: image(url) },
    { type: 'code', language: image(url), content: image(url) },
    { type: 'callout', variant: image(url), content: image(url) },
    { type: image(url), content: image(url) },
];

async function hostileEvents(turn, rest) {
    const mark = image(targetOf(rest));
    turn.event('agent.routed', { agent: mark });
    await turn.pause(0.5);
    turn.event('plan.phase', { phase: mark });
    await turn.pause(0.5);
    turn.event('plan.step', { index: 0, total: 2, capabilityId: mark, phase: mark });
    turn.event('tool.executed', { tool: mark, result: mark });
    await turn.pause(0.5);
    return { response: `[TOOL: ${mark}] [STATUS: ${mark}] [RESULT: ${mark}] ${mark}` };
}

module.exports = {
    title: 'Hostile words (add an http address for them to point at)',
    scenarios: [
        {
            phrases: ['hostile'],
            about: 'markup and scripts in text and suggestions',
            answer: (turn, rest) => ({ response: text(targetOf(rest)), followUps: followUps(targetOf(rest)) }),
        },
        { phrases: ['hostile events'], about: 'markup in agents, phases, steps and tools', pace: 0, answer: hostileEvents },
        {
            phrases: ['hostile blocks'],
            about: 'markup in every widget',
            answer: (turn, rest) => ({ response: image(targetOf(rest)), ui: { blocks: blocks(targetOf(rest)) } }),
        },
        {
            phrases: ['hostile error'],
            about: 'markup in an error',
            answer: (turn, rest) => {
                throw new Failure(`${image(targetOf(rest))} failed`, 'DEMO');
            },
        },
    ],
};
