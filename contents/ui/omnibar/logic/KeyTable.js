// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// A table of keys is an array of rows:
//   key        Qt.Key_…
//   modifiers  Qt.ControlModifier and the like; any if left out
//   holds      returns whether the row applies now; always if left out
//   act        what the key does

/** The first row for a key press that applies now, null if there is none. The keypad's keys count as normal ones. */
function find(rows, key, modifiers) {
    const pressed = modifiers & ~Qt.KeypadModifier;
    return rows.find(row => row.key === key && (row.modifiers === undefined || row.modifiers === pressed)
                            && (!row.holds || row.holds())) || null;
}
