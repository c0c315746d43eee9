// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Results of a check for workspace suggestions that no client asked for, as a bridge sends them that checks at intervals.

const { SUGGESTIONS, notification } = require('./runtime');

const METHOD = 'aiRuntimeCheckWorkspaceNotification';
const ANALYSIS = { clustersCreated: 2, candidatesDetected: 1 };
const LINES = 60;

const [READY, REVIEW] = SUGGESTIONS;

const LONG = {
    ...READY,
    title: `${READY.title} ${'It would save you a number of clicks each morning. '.repeat(4).trim()}`,
    body: Array.from({ length: LINES }, (_, n) => `Day ${n + 1}: text editor at 9:${String(n).padStart(2, '0')}.`).join('\n'),
};

const found = ({ id, title, confidence }) => ({ analysis: ANALYSIS, topSuggestion: { id, title, confidence } });

const sent = (suggestion, notificationChannel) => ({
    ...found(suggestion),
    notified: true,
    reason: '',
    notificationChannel,
    clientNotification: notification(suggestion),
});

const held = (reason, more) => ({ notified: false, reason, ...found(READY), ...more });

//! By the name that a prompt gives. The first is the default.
const NOTICES = new Map([
    ['ready', sent(READY, 'client')],
    ['review', sent(REVIEW, 'client')],
    ['plasma', sent(READY, 'freedesktop-actions')],
    ['long', sent(LONG, 'client')],
    ['no_suggestions', { notified: false, reason: 'no_suggestions', analysis: { clustersCreated: 0 } }],
    ['low_confidence', held('low_confidence')],
    ['dnd', held('dnd')],
    ['notification_failed', held('notification_failed', { notificationError: 'no notification server' })],
    ['dry_run', held('dry_run', { clientNotification: notification(READY) })],
]);

const NAMES = [...NOTICES.keys()];

//! The frame of a notice; undefined for an unknown name.
function notice(name) {
    const payload = NOTICES.get(name || NAMES[0]);
    return payload && { type: 'response', method: METHOD, payload };
}

module.exports = { NAMES, notice };
