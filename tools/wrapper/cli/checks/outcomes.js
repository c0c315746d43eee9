// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// The outcome of a check: its state, what was found, and for the last two what to do about it.

const ok = (detail) => ({ state: 'ok', detail, help: '' });
const missing = (detail, help) => ({ state: 'missing', detail, help });
const problem = (detail, help) => ({ state: 'problem', detail, help });

module.exports = { missing, ok, problem };
