// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// A set of texts. The engine's own Set searches its entries one by one.

/** Adds a text to a set, which is {} at first. @return whether it is new */
function add(set, text) {
    const key = "|" + text; // no name that objects have already
    if (set[key] === true) {
        return false;
    }
    set[key] = true;
    return true;
}
