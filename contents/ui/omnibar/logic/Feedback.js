// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

/** The nearest non-empty text of the user before row index, "" if there is none. rows: array of {role, text}. */
function nearestUserQuery(rows, index) {
    for (let i = Math.min(index, rows.length) - 1; i >= 0; --i) {
        if (rows[i].role === "user" && rows[i].text) {
            return rows[i].text;
        }
    }
    return "";
}
