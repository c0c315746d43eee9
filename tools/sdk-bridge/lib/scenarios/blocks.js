// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const BIG_TABLE_ROWS = 60;

const text = { type: 'text', content: 'A block of **text** with `markdown` in it.' };

const list = {
    type: 'list',
    title: 'Shopping list',
    items: ['A plain string', { id: 'second', label: 'An object with a label' }, null, 42],
};

const table = {
    type: 'table',
    columns: ['Place', 'Used', 'Free GB'],
    rows: [['Home', '18%', 212], ['System', '47%', 30.5], ['Backup', '93%', 4], ['Camera']],
};

const bigTable = {
    type: 'table',
    columns: ['Row', 'Share'],
    rows: Array.from({ length: BIG_TABLE_ROWS }, (_, n) => [n + 1, `${n}%`]),
};

const options = {
    type: 'options',
    prompt: 'Which window shall come to the front?',
    choices: [
        { id: 'editor', label: 'Text editor' },
        { id: 'terminal', label: 'Terminal' },
        { id: 'files', label: 'File manager' },
        'a choice that is no object',
    ],
};

const slider = { type: 'slider', label: 'Brightness', min: 10, max: 90, value: 40, step: 5, action: 'brightness' };

const code = {
    type: 'code',
    language: 'python',
    content: 'def greet(name):\n    """Says hello."""\n    return f"Hello, {name} <you & yours>"\n',
};

const callout = (variant, content) => ({ type: 'callout', variant, content });

const info = callout('info', 'Good to know: this bridge changes nothing on your desktop.');
const warning = callout('warning', 'Careful: this warning is about nothing at all.');
const tip = callout('tip', 'A tip: type `help` for the list.');

const unknown = { type: 'hologram', content: 'A block that nobody can draw yet.' };

const blocks = (response, ...list) => ({ response, ui: { blocks: list } });

module.exports = {
    title: 'Widgets',
    scenarios: [
        { phrases: ['text'], about: 'one block of text', answer: blocks('A block of text.', text) },
        { phrases: ['list'], about: 'a list', answer: blocks('A list of four things.', list) },
        { phrases: ['table'], about: 'a table', answer: blocks('Disk use of four places.', table) },
        { phrases: ['big table'], about: `a table of ${BIG_TABLE_ROWS} rows`, answer: blocks('A big table.', bigTable) },
        { phrases: ['options'], about: 'a question with choices', answer: blocks('Which window?', options) },
        { phrases: ['slider'], about: 'a slider to confirm', answer: blocks('How bright?', slider) },
        { phrases: ['code'], about: 'a block of code', answer: blocks('A function that greets.', code) },
        { phrases: ['callout'], about: 'a note', answer: blocks('Something to know.', info) },
        {
            phrases: ['callouts'],
            about: 'notes of every kind',
            answer: blocks('Three notes.', info, warning, tip),
        },
        {
            phrases: ['blocks'],
            about: 'one block of each kind',
            answer: blocks('One of each.', text, list, table, options, slider, code, info),
        },
        {
            phrases: ['unknown block'],
            about: 'a block of a kind that does not exist',
            answer: blocks('This text stands in for the block.', unknown),
        },
        {
            phrases: ['empty blocks'],
            about: 'blocks that hold nothing',
            answer: blocks('Blocks with nothing in them.', { type: 'list' }, { type: 'table' }, { type: 'options' },
                { type: 'slider' }, {}),
        },
        {
            phrases: ['own follow ups', 'own followups'],
            about: 'text and suggestions inside the document, which win over those beside it',
            answer: {
                response: 'The inner suggestions win.',
                ui: { blocks: [text], followUps: [{ title: 'Inner', prompt: 'plain inner' }] },
                followUps: [{ title: 'Outer', prompt: 'plain outer' }],
            },
        },
    ],
};
