// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const MARKDOWN = `# Heading one
## Heading two
### Heading three

A paragraph with **bold**, *italic*, _also italic_ and \`code\`.
Its second line stays a line of its own.

- a dash
* a star
+ a plus

1. first
2) second

> A quotation
> of two lines

---

\`\`\`
for (const word of words)
    print(word);   // <not a tag> & not an entity
\`\`\`

The end, with 5 < 6 and 7 > 6.`;

const UNFINISHED = `This block of code has no end:

\`\`\`
the last line is code as well`;

const UNICODE = `Grüße aus Köln, Привет, Γειά σου, 你好, こんにちは, 안녕하세요.
מימין לשמאל and من اليمين إلى اليسار within one line.
👩‍👩‍👧‍👦 🏳️‍🌈 🇩🇪 👍🏽 𝒜𝓃 𝓎 𝔠𝔥𝔞𝔯𝔞𝔠𝔱𝔢𝔯 beyond the basic plane, and é as two code points: é.
A\u200bzero\u200bwidth space, a\u00a0fixed one, a soft\u00adhyphen and İstanbul in lower case.`;

const LONG_WORD = 300;
const PARAGRAPHS = 60;

function longText() {
    const paragraphs = [];
    for (let n = 1; n <= PARAGRAPHS; ++n) {
        const word = 'unbreakable'.repeat(Math.ceil(LONG_WORD / 11)).slice(0, LONG_WORD);
        paragraphs.push(`Paragraph ${n} of ${PARAGRAPHS}. ${'Some words to fill the line. '.repeat(8)}${word}`);
    }
    return paragraphs.join('\n\n');
}

const followUp = (n) => ({
    title: `Step ${n}`,
    subtitle: `What comes after step ${n - 1}.`,
    prompt: `plain ${n}`,
    iconName: 'dialog-information',
    iconColor: '#3b82f6',
    iconBg: '0.2,0.4,0.8',
});

module.exports = {
    title: 'Answers',
    scenarios: [
        { phrases: ['plain'], about: 'one plain sentence', answer: { response: 'This is a plain answer.' } },
        { phrases: ['markdown'], about: 'all forms of text', answer: { response: MARKDOWN } },
        { phrases: ['unfinished'], about: 'a block of code without an end', answer: { response: UNFINISHED } },
        {
            phrases: ['percentages', 'percent'],
            about: 'figures that take a colour',
            answer: { response: 'Memory 20%, disk 20.5%, battery 50%, cache 51% and **75%**, swap 0% of 100%.' },
        },
        { phrases: ['unicode'], about: 'many scripts, emoji, odd blanks', answer: { response: UNICODE } },
        { phrases: ['long'], about: 'a very long answer with very long words', answer: () => ({ response: longText() }) },
        {
            phrases: ['follow ups', 'followups', 'follow-ups'],
            about: 'suggestions below a plain answer',
            answer: { response: 'Here is what you could do next.', followUps: [1, 2, 3, 4].map(followUp) },
        },
        {
            phrases: ['bare follow ups', 'bare followups'],
            about: 'suggestions that name next to nothing, and one too many',
            answer: {
                response: 'These suggestions leave much to their reader.',
                followUps: [
                    { label: 'plain' },
                    { prompt: 'markdown', description: 'A description instead of a subtitle.' },
                    { title: 'Neither prompt nor label' },
                    { prompt: 'unicode', icon: 'no-such-icon-anywhere', iconColor: 'no colour', iconBg: 'none' },
                    { prompt: 'percentages' },
                    { prompt: 'one too many' },
                ],
            },
        },
        {
            phrases: ['light'],
            about: 'words that make the window light',
            answer: { response: 'Light theme applied.' },
        },
        {
            phrases: ['dark'],
            about: 'words that make the window dark',
            answer: { response: 'Dark theme applied.' },
        },
        {
            phrases: ['usage'],
            about: 'an answer that used many tokens',
            answer: { response: 'That was expensive.', usage: { inputTokens: 31000, outputTokens: 9000 } },
        },
        {
            phrases: ['free of charge'],
            about: 'an answer that used no tokens',
            answer: { response: 'That cost nothing.', usage: { inputTokens: 0, outputTokens: 0 } },
        },
        {
            phrases: ['request'],
            about: 'what the program sent with your prompt',
            answer: (turn) => ({
                response: `Request ${turn.id} came with\n\n\`\`\`\n${JSON.stringify(turn.params, null, 2)}\n\`\`\``,
            }),
        },
    ],
};
