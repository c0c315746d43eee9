// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { demonstration } = require('../demonstration');
const { reply } = require('../outcomes');

const demoReply = (result) => reply(demonstration(result));

const PARTS = { name: 'string?', trigger: 'object?', steps: 'objects?', condition: 'object?', enabled: 'boolean?' };

function automationDelete({ params: { id }, house }) {
    house.automations.delete(id);
    return demoReply({ ok: true, id });
}

function automationPause({ params: { id, pause }, house }) {
    const { enabled } = house.automations.pause(id, pause);
    return demoReply({ ok: true, id, enabled });
}

function reminderCancel({ params: { id }, house }) {
    house.reminders.cancel(id);
    return demoReply({ ok: true, id });
}

module.exports = [
    { name: 'automationList', perform: ({ house }) => demoReply({ automations: house.automations.list() }) },
    {
        name: 'automationCreate',
        params: { trigger: 'object', steps: 'objects', condition: 'object?', name: 'string?' },
        perform: ({ params, house }) => demoReply({ ok: true, id: house.automations.create(params).id }),
    },
    {
        name: 'automationUpdate',
        params: { id: 'string', ...PARTS },
        perform: ({ params, house }) => demoReply({ ok: true, id: house.automations.update(params).id }),
    },
    { name: 'automationDelete', params: { id: 'string' }, perform: automationDelete },
    { name: 'automationPause', params: { id: 'string', pause: 'boolean' }, perform: automationPause },

    { name: 'reminderList', perform: ({ house }) => demoReply({ reminders: house.reminders.list() }) },
    {
        name: 'reminderSchedule',
        params: { title: 'text', message: 'string?', delayMs: 'integer' },
        perform: ({ params, house }) => demoReply({ ok: true, id: house.reminders.schedule(params).id }),
    },
    { name: 'reminderCancel', params: { id: 'string' }, perform: reminderCancel },
];
