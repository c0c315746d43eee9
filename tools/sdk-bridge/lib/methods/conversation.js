// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const chat = require('../chat');
const { reply } = require('../outcomes');

function createSession({ house }) {
    const session = house.sessions.draft();
    house.sessions.keep(session);
    return reply({ sessionId: session.id });
}

function loadMessages({ params, house }) {
    const { messages } = house.sessions.get(params.sessionId);
    return reply({ messages: messages.map(({ role, content }) => ({ role, content })) });
}

function switchSession({ params, house }) {
    house.sessions.keep(house.sessions.get(params.sessionId));
    return reply({ sessionId: params.sessionId });
}

function deleteSession({ params, house }) {
    house.sessions.delete(params.sessionId);
    return reply({ sessionId: params.sessionId });
}

function renameSession({ params, house }) {
    const { id, name } = house.sessions.rename(params.sessionId, params.newName);
    return reply({ sessionId: id, newName: name });
}

module.exports = [
    {
        name: 'chat',
        params: {
            message: 'string',
            sessionId: 'string?',
            agent: 'string?',
            model: 'string?',
            inputMode: 'string?',
            context: 'object?',
        },
        perform: chat.chat,
    },
    { name: 'cancel', params: { sessionId: 'string?' }, perform: chat.cancel },
    {
        name: 'messageFeedback',
        params: { vote: 'string', messageIndex: 'integer', messageText: 'string', userQuery: 'string?', sessionId: 'string?' },
        perform: chat.messageFeedback,
    },
    {
        name: 'handleStructuredUiAction',
        params: { actionType: 'string', data: 'object', sessionId: 'string?' },
        perform: chat.handleStructuredUiAction,
    },

    { name: 'listSessions', perform: ({ house }) => reply({ sessions: house.sessions.list() }) },
    { name: 'createSession', perform: createSession },
    { name: 'switchSession', params: { sessionId: 'string' }, perform: switchSession },
    { name: 'deleteSession', params: { sessionId: 'string' }, perform: deleteSession },
    { name: 'renameSession', params: { sessionId: 'string', newName: 'string' }, perform: renameSession },
    {
        name: 'loadMessages',
        params: { sessionId: 'string' },
        perform: loadMessages,
    },
];
