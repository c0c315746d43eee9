// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Plans, automations, reminders and power profiles only work on the simulated desktop. Whatever a user could take for a
// change of the real one says so.

//! For texts that the window shows.
const NOTE = 'Demonstration: nothing on this desktop is changed.';

//! Marks a result for clients.
const demonstration = (result) => ({ ...result, demonstration: true });

module.exports = { NOTE, demonstration };
