// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

/**
 * The last rows of a conversation as text, one line for each row. rows: array of {role, text, fallbackText}; size:
 * maximum number of rows. All roles but the user's count as the assistant's.
 */
function chatContext(rows, size) {
    return rows.slice(Math.max(0, rows.length - size))
        .map(row => (row.role === "user" ? "User: " : "Assistant: ") + (row.fallbackText || row.text || "") + "\n")
        .join("")
        .trim();
}
