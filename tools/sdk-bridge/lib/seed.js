// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Conversations from the past weeks, so that lists of sessions have something to show.

const HOUR_MS = 60 * 60 * 1000;
//! From each session to the one before it. They add up to some weeks.
const GAPS_HOURS = [0.4, 2, 5, 17, 30];

const PROMPTS = [
    'Turn the volume down to 30',
    'Which windows are open?',
    'Make the panel a bit more transparent',
    'Remind me of the tea in four minutes',
    'Switch to the dark theme at eight in the evening',
    'Why is the fan so loud today?',
    'Find the largest files in my home directory, but leave out the pictures and everything that is in the trash',
    'Translate “Feierabend”',
    'Show the processes that use the most memory',
    'Plan the garden work for this week',
    'Rename the photos of the trip by their date',
    'What is the difference between a room and a workspace?',
    'Set up my desk for a video call',
    'Bitte öffne die Systemeinstellungen',
    'Summarise the notes of the meeting',
    'Write a shell loop over all *.svg files',
    'Is there a newer version of the printer driver?',
    'Colours for a calm desktop 🌿',
    'Explain this error: undefined reference to `main`',
    'Close everything but the editor',
];

//! Adds `count` sessions, the latest first in the list.
function seedSessions(store, count, now = Date.now()) {
    let createdAt = now;
    store.addSamples(Array.from({ length: count }, (_, n) => {
        createdAt -= GAPS_HOURS[n % GAPS_HOURS.length] * HOUR_MS;
        const round = Math.floor(n / PROMPTS.length);
        return {
            createdAt: Math.round(createdAt),
            messages: [
                { role: 'user', content: 'Again: '.repeat(round) + PROMPTS[n % PROMPTS.length] },
                { role: 'assistant', content: 'This conversation was made up by the bridge.' },
            ],
        };
    }));
}

module.exports = { seedSessions };
