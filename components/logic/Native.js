// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

/** Whether a native object exists and has a function of that name. */
function offers(object, name) {
    return Boolean(object) && typeof object[name] === "function";
}

/** Calls a function of a native object if both exist. @return its result, otherwise undefined */
function call(object, name, ...values) {
    return offers(object, name) ? object[name](...values) : undefined;
}
