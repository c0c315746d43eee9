// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

//! Returned by a method whose request is never answered.
const NO_REPLY = Symbol('no reply');

//! Returned by all other methods: the result, and the form of the reply.
const reply = (payload, form) => ({ payload, form });

module.exports = { NO_REPLY, reply };
