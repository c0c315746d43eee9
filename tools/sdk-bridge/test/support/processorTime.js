// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

//! Calls a function and returns the processor time that it took, in ms. Unlike the clock's it doesn't depend on what
//! else runs, so that a test can tell linear work from quadratic work on a busy machine, too.
function processorMs(work) {
    const before = process.cpuUsage();
    work();
    const { user, system } = process.cpuUsage(before);
    return (user + system) / 1000;
}

module.exports = { processorMs };
