// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

//! An abort controller that is aborted with the first of some signals. Call `release()` when it is no longer needed.
//! AbortSignal.any() is missing in node 18.
function follow(...signals) {
    const controller = new AbortController();
    const end = ({ target }) => controller.abort(target.reason);
    for (const signal of signals) {
        if (signal.aborted)
            controller.abort(signal.reason);
        signal.addEventListener('abort', end);
    }
    controller.release = () => signals.forEach((signal) => signal.removeEventListener('abort', end));
    return controller;
}

module.exports = { follow };
