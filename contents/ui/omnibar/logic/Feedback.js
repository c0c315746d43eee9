// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

/** The text of the nearest row of the user before row index that has any, else "". rows holds {role, text}. */
function nearestUserQuery(rows, index) {
    for (let i = Math.min(index, rows.length) - 1; i >= 0; --i) {
        if (rows[i].role === "user" && rows[i].text) {
            return rows[i].text;
        }
    }
    return "";
}
