// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Code from templates, without a model.

const { cut, oneLine } = require('./text');

const MAX_INSTRUCTION = 2000;
const MAX_REMARK = 200;
const MAX_WORDS = 4;

const ALIASES = { js: 'javascript', py: 'python', 'c++': 'cpp', sh: 'bash', shell: 'bash' };

const camel = (words) => words.map((word, n) => (n ? word[0].toUpperCase() + word.slice(1) : word)).join('');
const snake = (words) => words.join('_');

const LANGUAGES = {
    javascript: {
        remark: '//',
        body: (words) => `function ${camel(words)}(items) {\n    return items.map((item) => String(item));\n}\n`,
    },
    python: { remark: '#', body: (words) => `def ${snake(words)}(items):\n    return [str(item) for item in items]\n` },
    cpp: {
        remark: '//',
        body: (words) => `#include <string>\n#include <vector>\n\nstd::string ${camel(words)}(` +
            'const std::vector<std::string> &items)\n{\n    std::string all;\n' +
            '    for (const auto &item : items)\n        all += item;\n    return all;\n}\n',
    },
    bash: { remark: '#', body: (words) => `${snake(words)}() {\n    printf '%s\\n' "$@"\n}\n` },
    qml: { remark: '//', body: (words) => `import QtQuick\n\nItem {\n    id: ${camel(words)}\n}\n` },
};

const languageOf = (name) => {
    const lower = name.trim().toLowerCase();
    const known = ALIASES[lower] ?? lower;
    return Object.hasOwn(LANGUAGES, known) ? LANGUAGES[known] : LANGUAGES.javascript;
};

//! A function name from the first words of a prompt that are valid in one.
function nameWords(prompt) {
    const words = prompt.toLowerCase().match(/[a-z][a-z0-9]*/g) ?? [];
    return words.length ? words.slice(0, MAX_WORDS) : ['demo'];
}

const remark = ({ remark: mark }, text) => `${mark} ${cut(oneLine(text), MAX_REMARK)}\n`;

//! Code with the prompt as its comment. An unknown language means JavaScript.
function generate(prompt, languageName) {
    const language = languageOf(languageName);
    // Prefixed, so that a reserved word makes a valid name.
    return remark(language, prompt) + language.body(['make', ...nameWords(prompt)]);
}

const EDITS = [
    {
        pattern: /\brename\s+([A-Za-z_]\w*)\s+to\s+([A-Za-z_]\w*)/i,
        edit: (code, [, from, to]) => code.replace(new RegExp(`\\b${from}\\b`, 'g'), to),
    },
    { pattern: /\bremove\b.*\b(?:blank|empty) lines\b/i, edit: (code) => code.replace(/^[ \t]*\r?\n/gm, '') },
    {
        pattern: /\bremove\b.*\btrailing (?:blanks|spaces|white ?space)\b/i,
        edit: (code) => code.replace(/(?<![ \t])[ \t]+$/gm, ''), // the lookbehind keeps this linear
    },
    { pattern: /\btabs to spaces\b/i, edit: (code) => code.replace(/\t/g, '    ') },
];

//! Follows the instructions that it knows; others become a comment above the code.
function edit(code, instruction, languageName) {
    for (const { pattern, edit: change } of EDITS) {
        const match = pattern.exec(instruction.slice(0, MAX_INSTRUCTION));
        if (match)
            return change(code, match);
    }
    return remark(languageOf(languageName), instruction) + code;
}

module.exports = { edit, generate };
