// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const snippets = require('../snippets');
const { reply } = require('../outcomes');

const DEFAULT_LANGUAGE = 'javascript';
const ROOT = '.';

//! The language that the context of an edit names, if any.
const languageIn = ({ language } = {}) => (typeof language === 'string' ? language : DEFAULT_LANGUAGE);

const generateCode = ({ params: { prompt, language = DEFAULT_LANGUAGE } }) =>
    reply({ code: snippets.generate(prompt, language) });

const editCode = ({ params: { code, instruction, context } }) =>
    reply({ code: snippets.edit(code, instruction, languageIn(context)) });

function writeFile({ params: { path, content }, house }) {
    house.files.write(path, content);
    return reply({ ok: true, path });
}

module.exports = [
    { name: 'generateCode', params: { prompt: 'text', language: 'string?', context: 'object?' }, perform: generateCode },
    { name: 'editCode', params: { code: 'string', instruction: 'text', context: 'object?' }, perform: editCode },
    {
        name: 'getFiles',
        params: { path: 'string?' },
        perform: ({ params: { path = ROOT }, house }) => reply({ files: house.files.list(path) }),
    },
    {
        name: 'readFile',
        params: { path: 'text' },
        perform: ({ params: { path }, house }) => reply({ path, content: house.files.read(path) }),
    },
    { name: 'writeFile', params: { path: 'text', content: 'string' }, perform: writeFile },
];
