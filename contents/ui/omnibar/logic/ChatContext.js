// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

/**
 * The end of a conversation as one text, a line a row: the last size rows of rows, an array of
 * {role, text, fallbackText}. Whatever is not the user's counts as the assistant's.
 */
function chatContext(rows, size) {
    return rows.slice(Math.max(0, rows.length - size))
        .map(row => (row.role === "user" ? "User: " : "Assistant: ") + (row.fallbackText || row.text || "") + "\n")
        .join("")
        .trim();
}
