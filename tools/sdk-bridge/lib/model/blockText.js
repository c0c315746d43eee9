// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Valid blocks as Markdown: for the clipboard, for speech, and for clients without widgets.

//! A line that begins or ends a block of code in the window.
const FENCE_LINE = /^(\s*)(`{3,})/;
const INFO_WORD = /^[\w+#.-]+$/;

const bullets = (lines) => lines.map((line) => `- ${line}`).join('\n');

const paragraphs = (parts) => parts.filter(Boolean).join('\n\n');

const labelOf = (entry) => (typeof entry === 'string' ? entry : entry.label);

//! Ends the code in a text, or it would continue in the text after it.
function closed(text) {
    const fences = text.split('\n').filter((line) => FENCE_LINE.test(line)).length;
    return fences % 2 ? `${text}\n\`\`\`` : text;
}

//! Code in a fence. The window ends code at any line that begins with three backticks, however long the fence is, so
//! the code's own fences become tildes, which mean the same in Markdown.
function fenced(code, language = '') {
    const lines = code.replace(/\n$/, '').split('\n')
        .map((line) => line.replace(FENCE_LINE, (_, indent, ticks) => indent + '~'.repeat(ticks.length)));
    return ['```' + (INFO_WORD.test(language) ? language : ''), ...lines, '```'].join('\n');
}

const quoted = (text) => text.split('\n').map((line) => `> ${line}`.trimEnd()).join('\n');

//! A row of a table: "Name: Home, Used: 18%". Markdown's tables are of no use in the window or in speech.
function rowText(columns, cells) {
    return cells.map((cell, index) => (columns[index] && cell !== '' ? `${columns[index]}: ${cell}` : `${cell}`))
        .filter(Boolean)
        .join(', ');
}

function tableText({ columns, rows }) {
    const lines = rows.map((cells) => rowText(columns, cells)).filter(Boolean);
    return lines.length ? bullets(lines) : columns.filter(Boolean).join(', ');
}

const MARKDOWN = {
    text: ({ content }) => closed(content),
    list: ({ title, items }) => paragraphs([title && `**${title}**`, bullets(items.map(labelOf))]),
    table: tableText,
    options: ({ prompt, choices }) => paragraphs([prompt, bullets(choices.map(labelOf))]),
    slider: ({ label, min, max, value }) => `${label || 'Value'}: ${value} (${min} – ${max})`,
    code: ({ content, language }) => fenced(content, language),
    callout: ({ content }) => quoted(content),
};

//! A valid block as Markdown. A slider must have its value.
const markdownOf = (block) => MARKDOWN[block.type](block);

//! Follow-ups as Markdown, for a reply that has nothing else.
const suggestionsText = (followUps) => bullets(followUps.map(({ title, prompt }) => title || prompt));

module.exports = { closed, markdownOf, paragraphs, suggestionsText };
