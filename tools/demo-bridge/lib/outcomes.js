// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

//! What a method hands back when its request stays open for good.
const NO_REPLY = Symbol('no reply');

//! What a method hands back otherwise: the result, and the form that it goes out in.
const reply = (payload, form) => ({ payload, form });

module.exports = { NO_REPLY, reply };
